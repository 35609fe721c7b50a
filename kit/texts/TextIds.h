// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

// Numbers of the texts in res/texts/it.json. 14187 has no text and no name.

namespace texts {

inline constexpr int First = 14100;
inline constexpr int Last = 14188;

// Columns of lists
inline constexpr int ColumnName = 14100;
inline constexpr int ColumnType = 14101;
inline constexpr int ColumnFormat = 14102;

// Tool tips of the two list toolbars, by the button's position from `ToolTipNew`
inline constexpr int ToolTipNew = 14103;
inline constexpr int ToolTipDelete = 14104;
inline constexpr int ToolTipRename = 14105;
inline constexpr int ToolTipProperties = 14106;
inline constexpr int ToolTipShow = 14107;

// Names
inline constexpr int TableNameMissing = 14108;
inline constexpr int Attention = 14109; // caption of message boxes
inline constexpr int TableNameUsed = 14110;
inline constexpr int FieldNameUsed = 14111;

// Choices of the field pages
inline constexpr int BooleanDefaultNone = 14112;
inline constexpr int BooleanDefaultYes = 14113;
inline constexpr int BooleanDefaultNo = 14114;
inline constexpr int DateDefaultNone = 14115;
inline constexpr int DateDefaultToday = 14116;
inline constexpr int DateDefaultGiven = 14117;

// Formats of fields, in the order in which lists offer them (not in value order)
inline constexpr int FormatText = 14118;
inline constexpr int FormatInteger = 14119;
inline constexpr int FormatDecimal = 14120;
inline constexpr int FormatList = 14121;
inline constexpr int FormatBoolean = 14122;
inline constexpr int FormatDate = 14123;

// Sources of a field's value: `FieldTypeFromUser` + the value of gis::FieldType
inline constexpr int FieldTypeFromUser = 14124;
inline constexpr int FieldTypePhoto5 = 14138;

// Structure editor and field pages
inline constexpr int FieldNamesMissing = 14139;
inline constexpr int RangeIncongruent = 14140;
inline constexpr int DefaultOutsideRange = 14141;
inline constexpr int DefaultInvalid = 14142;
inline constexpr int MinimumInvalid = 14143;
inline constexpr int MaximumInvalid = 14144;
inline constexpr int DigitsTooMany = 14145;

// Themes and tables
inline constexpr int ThemeNameMissing = 14146;
inline constexpr int ThemeNameUsed = 14147;
inline constexpr int ThemeTableMissing = 14148;
inline constexpr int TableInUse = 14149;
inline constexpr int FieldRequired = 14150; // %s: the field
inline constexpr int EntTypePoints = 14151;
inline constexpr int EntTypeLines = 14152;
inline constexpr int EntTypePolygons = 14153;
inline constexpr int ThemeTable = 14154; // %s: the table
inline constexpr int ThemeSheetCaption = 14155;
inline constexpr int ThemeInUse = 14156;
inline constexpr int LabelFieldNone = 14157;
inline constexpr int DeleteTable = 14158;
inline constexpr int DeleteTheme = 14159;

// Exchange and symbols
inline constexpr int ShpNotWritten = 14160; // %s: the path
inline constexpr int DbfNotWritten = 14161; // %s: the path
inline constexpr int LineTypeMissing = 14162;
inline constexpr int LineTypeColumn = 14163;
inline constexpr int LineTypeLookColumn = 14164;
inline constexpr int ShapefileExists = 14165; // %s: the path without extension
inline constexpr int ShapefileUnreadable = 14166;
inline constexpr int TableRenamed = 14167; // %s: the new name
inline constexpr int ValueOutsideRange = 14168;
inline constexpr int ImportFileMissing = 14169; // %s: the file
inline constexpr int ExportCoordsAsTheme = 14170;
inline constexpr int ExportCoords2D = 14171;
inline constexpr int ExportCoords3D = 14172;
inline constexpr int EntCoords2D = 14173;
inline constexpr int EntCoordsM = 14174;
inline constexpr int EntCoords3D = 14175;

// Thematic maps
inline constexpr int MapTypeNone = 14176;
inline constexpr int MapTypeSingleValue = 14177;
inline constexpr int MapTypeInterval = 14178;
inline constexpr int ClassColumnColour = 14179;
inline constexpr int ClassColumnValue = 14180;
inline constexpr int ClassColumnLabel = 14181;
inline constexpr int ClassAll = 14182;
inline constexpr int ClassEmpty = 14183;
inline constexpr int ClassDefault = 14184;

// Query and import
inline constexpr int FilterSyntaxError = 14185;
inline constexpr int ImportCaption = 14186;
inline constexpr int NoNumericField = 14188;

} // namespace texts
