// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "cli/Messages.h"

#include <fmt/format.h>

namespace cli {

namespace {

using embedded::ErrorCode;
using embedded::FindingCode;

const char* pattern(ErrorCode code)
{
    switch (code) {
    case ErrorCode::FileNotFound:
        return "{subject}: there is no such file";
    case ErrorCode::NotAFile:
        return "{subject}: this is a folder or a device, not a file";
    case ErrorCode::NoPermission:
        return "{subject}: not permitted to read this";
    case ErrorCode::ReadFailed:
        return "{subject}: could not be read{detail}";
    case ErrorCode::EmptyFile:
        return "{subject}: the file is empty";
    case ErrorCode::NotALibrary:
        return "{subject}: neither a library nor a shapefile{detail}";
    case ErrorCode::NewerFormat:
        return "{subject}: made by a newer version of this program{detail}; this one cannot open "
               "it";
    case ErrorCode::DamagedFile:
        return "{subject}: the file is damaged{detail}";
    case ErrorCode::LockedForWriting:
        return "{subject}: another program has the file open for writing; close it there first";
    case ErrorCode::BusyReaders:
        return "{subject}: other programs are reading the file, so nothing can be written now; try "
               "again";
    case ErrorCode::ReadOnly:
        return "{subject}: the file cannot be written to; choose another one";
    case ErrorCode::WriteFailed:
        return "{subject}: could not be written{detail}";
    case ErrorCode::OtherProgramsFile:
        return "{subject}: another program made this file, so nothing is added to it; choose a "
               "library of your own, or a new one";
    case ErrorCode::DiskFull:
        return "{subject}: could not be written, the disk is full";
    case ErrorCode::FolderNotFound:
        return "{subject}: there is no such folder";
    case ErrorCode::FolderNotAbsolute:
        return "{subject}: the folder must be given with its whole path";
    case ErrorCode::NoShapeHeader:
        return "{subject}: this is not a shapefile, its header cannot be read";
    case ErrorCode::UnknownShapeType:
        return "{subject}: shapes of this type cannot be taken{detail}";
    case ErrorCode::NoDbf:
        return "{subject}: the .dbf file with the attributes is missing";
    case ErrorCode::BadDbf:
        return "{subject}: the .dbf file cannot be read{detail}";
    case ErrorCode::UnknownEncoding:
        return "{subject}: no encoding of this name is known";
    case ErrorCode::StrictFinding:
        return "{subject}: refused because of --strict{detail}";
    case ErrorCode::NameClash:
        return "a table or theme named {subject} exists already; choose with --on-conflict rename "
               "or merge";
    case ErrorCode::UnknownTheme:
        return "there is no theme named {subject}{detail}";
    case ErrorCode::UnknownField:
        return "there is no field named {subject}{detail}";
    case ErrorCode::SeveralThemes:
        return "{subject}: there are several themes{detail}; choose one with --theme";
    case ErrorCode::NoThemes:
        return "{subject}: there is no theme in this file";
    case ErrorCode::Cancelled:
        return "stopped; nothing was written";
    case ErrorCode::Internal:
        return "an error inside the program{detail}";
    }
    return "";
}

const char* pattern(FindingCode code)
{
    switch (code) {
    case FindingCode::EncodingChosen:
        return "texts read as {subject}{detail}";
    case FindingCode::EncodingUnknown:
        return "the .cpg file names an unknown encoding, {subject}; it is left aside";
    case FindingCode::ShxMissing:
        return "the .shx file is missing; the shapes were found in the .shp itself";
    case FindingCode::ShxDisagrees:
        return "the .shx file does not fit the .shp{detail}; the shapes were found in the .shp "
               "itself";
    case FindingCode::RowsMissing:
        return "{count} shapes have no record in the .dbf{detail}; kept without values";
    case FindingCode::ShapesMissing:
        return "{count} records of the .dbf have no shape in the .shp; left out";
    case FindingCode::RecordsDeleted:
        return "{count} records are marked as deleted; left out";
    case FindingCode::ShapeUnreadable:
        return "record {record}: the shape cannot be read{detail}; its row is kept without a "
               "shape{more}";
    case FindingCode::RecordLengthWrong:
        return "record {record}: its length is given wrongly; the shape was read by its own "
               "counts{more}";
    case FindingCode::ShpSizeDisagrees:
        return "the .shp file's size is not what its header says{detail}";
    case FindingCode::RowCountDisagrees:
        return "the .dbf holds {count} whole records, its header says otherwise{detail}";
    case FindingCode::ShapeTypeOther:
        return "record {record}: a shape of another type than the file's; its row is kept without "
               "a shape{more}";
    case FindingCode::TextInvalid:
        return "field {subject}: {count} texts hold bytes that are invalid in the encoding";
    case FindingCode::NumberUnreadable:
        return "field {subject}: {count} cells hold no number; left without a value";
    case FindingCode::DateUnreadable:
        return "field {subject}: {count} cells hold no date; left without a value";
    case FindingCode::LogicalUnreadable:
        return "field {subject}: {count} cells hold neither yes nor no; left without a value";
    case FindingCode::TimeDropped:
        return "field {subject}: the time of day of {count} values was dropped";
    case FindingCode::FieldRenamed:
        return "field {detail} of the file is named {subject}";
    case FindingCode::FieldTypeTaken:
        return "field {subject} taken as {detail}";
    case FindingCode::MemoMissing:
        return "field {subject}: the file with its memo texts is missing; left without values";
    case FindingCode::ReferenceSystemUnknown:
        return "the reference system is not understood; kept as it is";
    case FindingCode::TableRenamed:
        return "the table is named {subject}, since its name was taken";
    case FindingCode::ThemeRenamed:
        return "the theme is named {subject}, since its name was taken";
    case FindingCode::CellsEmptied:
        return "field {subject}: {count} values could not be converted and were emptied";
    case FindingCode::MeasureDropped:
        return "the measures of {count} shapes were dropped";
    case FindingCode::FieldNameCut:
        return "field {subject} is named {detail} in the file";
    case FindingCode::TextCut:
        return "field {subject}: {count} texts were cut; a column holds neither more than its "
               "width nor blanks at the end";
    case FindingCode::TextReplaced:
        return "field {subject}: {count} texts hold bytes that are no UTF-8; each such byte is "
               "written as \"?\"";
    case FindingCode::NumberCut:
        return "field {subject}: {count} numbers do not fit the column and were left out";
    case FindingCode::NumberRounded:
        return "field {subject}: {count} numbers were rounded to the column's digits";
    case FindingCode::DateCut:
        return "field {subject}: {count} dates outside the years 1 to 9999 were left out";
    case FindingCode::FormatChanged:
        return "field {subject}: {detail}";
    case FindingCode::ReferenceSystemMissing:
        return "the theme has no reference system, so no .prj was written";
    case FindingCode::CoordinateDropped:
        return "the {detail} coordinate was dropped";
    case FindingCode::CoordinateAdded:
        return "a {detail} coordinate of 0 was added";
    case FindingCode::ShapesNotWritten:
        return "{count} shapes hold coordinates that are no numbers; their records are written "
               "without a shape";
    case FindingCode::CellsConverted:
        return "field {subject}: {count} values were converted";
    case FindingCode::CellsUnchanged:
        return "field {subject}: {count} values stayed as they were";
    case FindingCode::ColumnTakenOver:
        return "field {subject}, added by another program, was taken over{detail}";
    case FindingCode::ColumnGone:
        return "field {subject} was removed by another program{detail}";
    case FindingCode::RowsTakenOver:
        return "table {subject}: {count} rows of another program were taken over";
    case FindingCode::GeometryUnsupported:
        return "layer {subject}: {count} shapes are of a kind that cannot be taken; their rows are "
               "kept without a shape";
    case FindingCode::FieldLeftOut:
        return "field {subject} was left out: it holds what no field can{detail}";
    case FindingCode::LayerSkipped:
        return "layer {subject} was left out{detail}";
    }
    return "";
}

/// Whether a pattern speaks of the detail as a part of the sentence; else it stands in brackets.
bool isDetailInline(std::string_view text)
{
    const auto position = text.find("{detail}");
    return position != std::string_view::npos && position > 0 && text[position - 1] == ' ';
}

std::string filled(const char* text, const std::string& subject, const std::string& detail,
    std::int64_t count, std::int64_t record)
{
    const std::string shown = isDetailInline(text) || detail.empty() ? detail : " (" + detail + ")";
    const std::string more = count > 0 ? fmt::format(", and {} more like it", count) : "";
    return fmt::format(fmt::runtime(text), fmt::arg("subject", subject), fmt::arg("detail", shown),
        fmt::arg("count", count), fmt::arg("record", record), fmt::arg("more", more));
}

} // namespace

std::string sentence(const embedded::Error& error)
{
    return filled(pattern(error.code), error.subject, error.detail, 0, 0);
}

std::string sentence(const embedded::Finding& finding)
{
    return filled(
        pattern(finding.code), finding.subject, finding.detail, finding.count, finding.record);
}

} // namespace cli
