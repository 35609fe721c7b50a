// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

// Handles, enumerations and records of the GIS model. Handles are owned by the host; nobody else
// looks inside.

#include "host/base/PolyValue.h"

#include <cstdint>

namespace orv {
class CResultRow;
class CChangeTransactionManager;
} // namespace orv

namespace gis {

class CLibGis;
class CDBTable;
class CField;
class CTheme;
class CEnt;
class CEntPart;
class CEntVert;
class CEntVertController;
class CFeatureClass;
class CMergeTable;
class CDiffTypeFieldInfo;
class ILinkImportedEnt;

/// Data type of a field.
enum class FieldFormat : int {
    Text = 0,
    Boolean = 1,
    Integer = 2,
    Decimal = 3,
    List = 4,
    Date = 5,
};

/// Where a field's value comes from: the user, or the library (a predefined field).
enum class FieldType : int {
    FromUser = 0,
    PointName = 1,
    PointDescription = 2,
    Area = 3,
    Perimeter2D = 4,
    Perimeter3D = 5,
    CentroidX = 6,
    CentroidY = 7,
    CentroidZ = 8,
    Sketch = 9,
    Photo1 = 10,
    Photo2 = 11,
    Photo3 = 12,
    Photo4 = 13,
    Photo5 = 14,
};

/// Geometry of a theme's entities; the values are the shapefile's shape types.
enum class EntType : int {
    Points = 1,
    Lines = 3,
    Polygons = 5,
};

enum class EntTypeCoords : int {
    XY = 0,
    XYM = 1,
    XYZ = 2,
};

/// Kind of a theme's thematic map; the value is also the row of the map-type combo box.
enum class MapType : int {
    None = 0,
    SingleValue = 1,
    Interval = 2,
};

/// What comparing an incoming table with an existing one of its name found.
enum class ResultCompare : int {
    Compatible = 0,
    OtherOrder = 1,
    Conflicts = 2,
};

/// What became of an incoming table.
enum class MergeResult : int {
    Renamed = 0,
    Merged = 1,
    Undecided = 2,
};

/// A field's constraints travel as an array of this many values; their meaning depends on the
/// format: text: 0 default, 3 an integer kept as it is; boolean: 0 default as integer (1 yes, 0 no,
/// 2 none); integer: 0 default, 1 minimum, 2 maximum (`orv::UnsetInteger` = not set); decimal: the
/// same as doubles (`orv::UnsetDecimal`), 3 digits after the point (0 to 10); list: 0 default, 3
/// array of texts; date: 0 date or integer 0, 3 mode (0 none, 1 today, 2 given).
inline constexpr int ConstraintCount = 4;
inline constexpr int MaxDecimalDigits = 10;

/// Label options of a theme, read and written as a whole.
struct TOpzLabel {
    CField* field = nullptr; // null: no label
    orv::String styleName;
    int colour = 7; // index of the CAD engine
    double heightDrawingUnits = 0.0;
    double rotationRadians = 0.0;
    double horizontalOffset = 0.0;
    double verticalOffset = 0.0;
    bool aligned = false; // the text follows the line (line themes only)
    friend bool operator==(const TOpzLabel&, const TOpzLabel&) = default;
};

} // namespace gis

/// Import options; 12 bytes, in this order.
struct TOpzImportShape {
    bool createPoints = false;
    std::int32_t nameField = -1; // index in the .dbf; -1 and -2: none
    std::int32_t codeField = -1;
};
static_assert(sizeof(TOpzImportShape) == 12);
