// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace embedded {

struct Error;

/// What an import, an export or a structure change has to say about the data. A finding never stops
/// the work by itself.
enum class FindingCode {
    // import
    EncodingChosen, // subject: encoding; detail: why (".cpg", "language byte", "valid UTF-8",
    // "default", "asked for")
    EncodingUnknown, // subject: the name in the .cpg
    ShxMissing,
    ShxDisagrees, // detail: what differs
    RowsMissing, // count: shapes without a record (kept, no values)
    ShapesMissing, // count: records without a shape (left out)
    RecordsDeleted, // count: records marked as deleted (left out)
    ShapeUnreadable, // record; detail: why (row kept, no shape); count: so many more like it
    RecordLengthWrong, // record: its length field is wrong, the shape was read by its own counts
    ShpSizeDisagrees, // detail: how the .shp's length field, its records and the file differ
    RowCountDisagrees, // count: whole records in the .dbf; detail: the number its header says
    ShapeTypeOther, // record: a shape of another type than the file's (row kept, no shape)
    TextInvalid, // subject: field; count: cells with bytes invalid in the encoding
    NumberUnreadable, // subject: field; count: cells that are no number (no value)
    DateUnreadable, // subject: field; count
    LogicalUnreadable, // subject: field; count
    TimeDropped, // subject: field; count: times of day dropped
    FieldRenamed, // subject: new name; detail: name in the file
    FieldTypeTaken, // subject: field; detail: the format taken and why (e.g. "text: values beyond
    // 32 bits and 2^53")
    MemoMissing, // subject: field
    ReferenceSystemUnknown, // the .prj cannot be understood; kept as it is
    TableRenamed, // subject: new name
    ThemeRenamed, // subject: new name
    CellsEmptied, // subject: field; count: cells emptied by a conversion
    MeasureDropped, // count
    // export
    FieldNameCut, // subject: field; detail: name in the file
    TextCut, // subject: field; count
    TextReplaced, // subject: field; count: texts with bytes that are no UTF-8, written as "?"
    NumberCut, // subject: field; count: numbers that do not fit the column, left out
    NumberRounded, // subject: field; count: numbers written with fewer digits than they have
    DateCut, // subject: field; count: dates outside the years 1 to 9999
    FormatChanged, // subject: field; detail: e.g. "list as text"
    ReferenceSystemMissing,
    CoordinateDropped, // detail: "Z" or "M"
    CoordinateAdded, // detail: "Z" or "M"
    ShapesNotWritten, // count: shapes with coordinates that are no numbers (row kept, no shape)
    // structure
    CellsConverted, // subject: field; count
    CellsUnchanged, // subject: field; count
    // opening a library or another program's file
    ColumnTakenOver, // subject: field; detail: table: added by another program
    ColumnGone, // subject: field; detail: table
    RowsTakenOver, // subject: table; count
    GeometryUnsupported, // subject: layer; count: curves, collections ... (row kept, no shape)
    FieldLeftOut, // subject: field; detail: table: holds what no field can (bytes, other shapes)
    LayerSkipped, // subject: layer; detail: why
};

enum class FindingSeverity {
    Note, // said in a report file, not a warning
    Warning, // one line on standard error; refused by --strict
};

struct Finding {
    FindingCode code {};
    FindingSeverity severity = FindingSeverity::Warning;
    std::string subject;
    std::string detail;
    std::int64_t count = 0;
    std::int64_t record = 0; // from 1; 0 = none
};

/// Everything one operation found, in order.
struct Report {
    std::vector<Finding> findings;
    void add(Finding finding) { findings.push_back(std::move(finding)); }
    [[nodiscard]] bool hasWarnings() const
    {
        for (const auto& finding : findings)
            if (finding.severity == FindingSeverity::Warning)
                return true;
        return false;
    }
};

/// Told how far long work is; answers false to have it stopped (nothing of it is then kept).
/// Thread: called on the thread that does the work, at most some ten times a second.
class IProgress {
public:
    virtual bool advance(double fraction) = 0;
    /// The work that was told of has ended, well or not; called where it is part of a longer whole.
    virtual void finish() { }
    /// Why work could not be done whose dialog has no words for it (a structure whose cells cannot
    /// be read); called on the library's thread, after `finish`.
    virtual void failed(const Error& /*error*/) { }

protected:
    ~IProgress() = default;
};

} // namespace embedded
