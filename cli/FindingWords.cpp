// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "cli/Messages.h"

namespace cli {

std::string_view word(embedded::FindingCode code)
{
    using embedded::FindingCode;
    switch (code) {
    case FindingCode::EncodingChosen:
        return "encoding-chosen";
    case FindingCode::EncodingUnknown:
        return "encoding-unknown";
    case FindingCode::ShxMissing:
        return "shx-missing";
    case FindingCode::ShxDisagrees:
        return "shx-disagrees";
    case FindingCode::RowsMissing:
        return "rows-missing";
    case FindingCode::ShapesMissing:
        return "shapes-missing";
    case FindingCode::RecordsDeleted:
        return "records-deleted";
    case FindingCode::ShapeUnreadable:
        return "shape-unreadable";
    case FindingCode::RecordLengthWrong:
        return "record-length-wrong";
    case FindingCode::ShpSizeDisagrees:
        return "shp-size-disagrees";
    case FindingCode::RowCountDisagrees:
        return "row-count-disagrees";
    case FindingCode::ShapeTypeOther:
        return "shape-type-other";
    case FindingCode::TextInvalid:
        return "text-invalid";
    case FindingCode::NumberUnreadable:
        return "number-unreadable";
    case FindingCode::DateUnreadable:
        return "date-unreadable";
    case FindingCode::LogicalUnreadable:
        return "logical-unreadable";
    case FindingCode::TimeDropped:
        return "time-dropped";
    case FindingCode::FieldRenamed:
        return "field-renamed";
    case FindingCode::FieldTypeTaken:
        return "field-type-taken";
    case FindingCode::MemoMissing:
        return "memo-missing";
    case FindingCode::ReferenceSystemUnknown:
        return "reference-system-unknown";
    case FindingCode::TableRenamed:
        return "table-renamed";
    case FindingCode::ThemeRenamed:
        return "theme-renamed";
    case FindingCode::CellsEmptied:
        return "cells-emptied";
    case FindingCode::MeasureDropped:
        return "measure-dropped";
    case FindingCode::FieldNameCut:
        return "field-name-cut";
    case FindingCode::TextCut:
        return "text-cut";
    case FindingCode::TextReplaced:
        return "text-replaced";
    case FindingCode::NumberCut:
        return "number-cut";
    case FindingCode::NumberRounded:
        return "number-rounded";
    case FindingCode::DateCut:
        return "date-cut";
    case FindingCode::FormatChanged:
        return "format-changed";
    case FindingCode::ReferenceSystemMissing:
        return "reference-system-missing";
    case FindingCode::CoordinateDropped:
        return "coordinate-dropped";
    case FindingCode::CoordinateAdded:
        return "coordinate-added";
    case FindingCode::ShapesNotWritten:
        return "shapes-not-written";
    case FindingCode::CellsConverted:
        return "cells-converted";
    case FindingCode::CellsUnchanged:
        return "cells-unchanged";
    case FindingCode::ColumnTakenOver:
        return "column-taken-over";
    case FindingCode::ColumnGone:
        return "column-gone";
    case FindingCode::RowsTakenOver:
        return "rows-taken-over";
    case FindingCode::GeometryUnsupported:
        return "geometry-unsupported";
    case FindingCode::FieldLeftOut:
        return "field-left-out";
    case FindingCode::LayerSkipped:
        return "layer-skipped";
    }
    return "";
}

} // namespace cli
