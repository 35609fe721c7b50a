// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/embedded/shapefile/Expectations.h"

using embedded::ErrorCode;
using embedded::FindingCode;

namespace shapetest {

const std::map<std::string, ErrorCode>& refusals()
{
    static const std::map<std::string, ErrorCode> table {
        { "malformed-derived/zero_bytes.shp", ErrorCode::EmptyFile },
        { "malformed-derived/lfs_pointer.shp", ErrorCode::NoShapeHeader },
        { "malformed-derived/shp_header_only_60_bytes.shp", ErrorCode::NoShapeHeader },
        { "malformed-derived/shp_magic_wrong.shp", ErrorCode::NoShapeHeader },
        { "malformed-derived/shp_type_unknown.shp", ErrorCode::UnknownShapeType },
        { "malformed-derived/dbf_missing.shp", ErrorCode::NoDbf },
        { "malformed-derived/dbf_header_length_16.shp", ErrorCode::BadDbf },
        { "malformed-derived/dbf_header_length_huge.shp", ErrorCode::BadDbf },
        { "malformed-derived/dbf_record_length_short.shp", ErrorCode::BadDbf },
        { "malformed-derived/dbf_record_length_zero.shp", ErrorCode::BadDbf },
        { "shapelib/multipatch.shp", ErrorCode::UnknownShapeType },
        { "shapefile-rs/multipatch.shp", ErrorCode::UnknownShapeType },
        { "nts-esri/__emptyShapefile.shp", ErrorCode::UnknownShapeType },
        { "shapefile-js/bad.shp", ErrorCode::NoShapeHeader },
        { "mbostock-shapefile/ignore-properties.shp", ErrorCode::NoDbf },
        { "mbostock-shapefile/multipointm.shp", ErrorCode::NoDbf },
        { "mbostock-shapefile/pointm.shp", ErrorCode::NoDbf },
        { "mbostock-shapefile/polygonm.shp", ErrorCode::NoDbf },
        { "mbostock-shapefile/polylinem.shp", ErrorCode::NoDbf },
        { "nts-esri/EmptyShapeFile.shp", ErrorCode::NoDbf },
        { "nts-esri/UnifiedChecksMaterialNullAtEnd.shp", ErrorCode::NoDbf },
        { "nts-esri/UnifiedChecksMaterialNullAtStart.shp", ErrorCode::NoDbf },
        { "nts-esri/UnifiedChecksMaterialNullInMiddle.shp", ErrorCode::NoDbf },
        { "nts-esri/polygon intersecting line.shp", ErrorCode::NoDbf },
        { "nts-esri/shape_PointZM.shp", ErrorCode::NoDbf },
        { "nts-esri/shape_pointM.shp", ErrorCode::NoDbf },
        { "nts-esri/shape_pointZM_MissingM values.shp", ErrorCode::NoDbf },
        { "shapefile-rs/line.shp", ErrorCode::NoDbf },
        { "shapefile-rs/linem.shp", ErrorCode::NoDbf },
        { "shapefile-rs/linez.shp", ErrorCode::NoDbf },
        { "shapefile-rs/multi_polygon.shp", ErrorCode::NoDbf },
        { "shapefile-rs/multipoint.shp", ErrorCode::NoDbf },
        { "shapefile-rs/multipointz.shp", ErrorCode::NoDbf },
        { "shapefile-rs/point.shp", ErrorCode::NoDbf },
        { "shapefile-rs/pointm.shp", ErrorCode::NoDbf },
        { "shapefile-rs/pointz.shp", ErrorCode::NoDbf },
        { "shapefile-rs/polygon.shp", ErrorCode::NoDbf },
        { "shapefile-rs/polygon_hole.shp", ErrorCode::NoDbf },
        { "shapefile-rs/polygonm.shp", ErrorCode::NoDbf },
        { "shapefile-rs/polygonz.shp", ErrorCode::NoDbf },
    };
    return table;
}

const std::map<std::string, Codes>& warnings()
{
    using F = FindingCode;
    static const std::map<std::string, Codes> table {
        { "malformed-derived/cpg_unknown.shp", { F::EncodingUnknown } },
        { "malformed-derived/date_values_odd.shp", { F::DateUnreadable } },
        { "malformed-derived/dbf_all_deleted.shp", { F::RecordsDeleted } },
        { "malformed-derived/dbf_count_huge.shp", { F::RowCountDisagrees } },
        { "malformed-derived/dbf_count_small.shp", { F::RowsMissing } },
        { "malformed-derived/dbf_cut_in_record.shp", { F::RowCountDisagrees, F::RowsMissing } },
        { "malformed-derived/dbf_field_width_zero.shp", { F::FieldTypeTaken } },
        { "malformed-derived/float_binary_types.shp", { F::TimeDropped } },
        { "malformed-derived/logical_values_odd.shp", { F::LogicalUnreadable } },
        { "malformed-derived/memo_without_dbt.shp", { F::MemoMissing } },
        { "malformed-derived/numeric_values_odd.shp", { F::NumberUnreadable } },
        { "malformed-derived/prj_garbage.shp", { F::ReferenceSystemUnknown } },
        { "malformed-derived/rows_more_than_shapes.shp", { F::ShapesMissing } },
        { "malformed-derived/shp_cut_in_record.shp",
            { F::ShxDisagrees, F::ShpSizeDisagrees, F::ShapeUnreadable } },
        { "malformed-derived/shp_length_wrong.shp", { F::ShpSizeDisagrees } },
        { "malformed-derived/shp_mixed_types.shp", { F::ShapeTypeOther } },
        { "malformed-derived/shp_nan_inf_coords.shp", { F::ShapeUnreadable } },
        { "malformed-derived/shp_numparts_huge.shp", { F::ShapeUnreadable } },
        { "malformed-derived/shp_numpoints_huge.shp", { F::ShapeUnreadable } },
        { "malformed-derived/shp_numpoints_negative.shp", { F::ShapeUnreadable } },
        { "malformed-derived/shp_part_index_past_end.shp", { F::ShapeUnreadable } },
        { "malformed-derived/shp_record_length_huge.shp", { F::RecordLengthWrong } },
        { "malformed-derived/shp_record_length_zero.shp", { F::ShapeUnreadable } },
        { "malformed-derived/shp_trailing_garbage.shp", { F::ShpSizeDisagrees } },
        { "malformed-derived/shx_all_same_record.shp", { F::ShxDisagrees } },
        { "malformed-derived/shx_cut.shp", { F::ShxDisagrees } },
        { "malformed-derived/shx_missing.shp", { F::ShxMissing } },
        { "malformed-derived/shx_offset_negative.shp", { F::ShxDisagrees } },
        { "malformed-derived/shx_offset_past_end.shp", { F::ShxDisagrees } },
        { "malformed-derived/utf8_cpg_invalid_bytes.shp", { F::TextInvalid } },
        { "shapelib/3dpoints.shp", { F::ShxDisagrees } },
        { "pyshp/corrupt_too_long.shp", { F::ShpSizeDisagrees } },
        { "pyshp/latin1.shp", { F::ShxMissing } },
        { "mbostock-shapefile/number-null-property.shp", { F::ShxMissing } },
        { "mbostock-shapefile/singleton.shp", { F::ShxMissing } },
        { "nts-esri/AllNulls.shp", { F::ShxMissing } },
        { "nts-esri/UnifiedChecksMaterial.shp", { F::ShxMissing } },
        { "shapefile-js/export_multipointz.shp", { F::ShxDisagrees } },
        { "shapefile-js/htmlcpg.shp", { F::ShxMissing, F::EncodingUnknown } },
        { "shapefile-js/htmlprj.shp", { F::ShxMissing, F::ReferenceSystemUnknown } },
        { "shapefile-js/ipra_dresden_polygon.shp", { F::ShxDisagrees, F::ShpSizeDisagrees } },
    };
    return table;
}

const std::map<std::string, Deviation>& deviations()
{
    static const std::map<std::string, Deviation> table {
        // Siblings in another case than its own are not found by GDAL.
        { "malformed-derived/Mixed_Case.Shp", { .rows = true } },
        // Days that are none are no value; a date with separators is read.
        { "malformed-derived/date_values_odd.shp", { .fields = { "GIORNO" } } },
        // Shapes without a record stay.
        { "malformed-derived/dbf_count_small.shp", { .rows = true } },
        { "malformed-derived/dbf_cut_in_record.shp", { .rows = true } },
        // Names are decoded like texts.
        { "malformed-derived/dbf_field_name_not_ended.shp", { .names = true } },
        // The width is what the records leave.
        { "malformed-derived/dbf_field_width_zero.shp", { .fields = { "FID" } } },
        // Binary columns of a table that says it is FoxPro's are decoded.
        { "malformed-derived/float_binary_types.shp",
            { .fields = { "INT4", "DBL8", "MONEY", "STAMP" } } },
        // Whole numbers that a double cannot hold stay texts.
        { "malformed-derived/integer_limits.shp", { .fields = { "GRANDE" } } },
        { "malformed-derived/logical_values_odd.shp", { .fields = { "ATTIVO" } } },
        // The number of a memo's block is not its text.
        { "malformed-derived/memo_without_dbt.shp", { .fields = { "NOTE" } } },
        // Names are made different in the house's way.
        { "malformed-derived/names_hostile.shp", { .names = true } },
        // A decimal comma is read, what is no number is no value.
        { "malformed-derived/numeric_values_odd.shp", { .fields = { "VALORE" } } },
        // Rings are closed.
        { "malformed-derived/polygon_ring_faults.shp", { .shapes = true } },
        // The records of the .shp count, not its index.
        { "malformed-derived/shx_all_same_record.shp", { .shapes = true } },
        { "malformed-derived/shx_cut.shp", { .rows = true } },
        { "malformed-derived/shx_offset_negative.shp", { .rows = true } },
        { "malformed-derived/shx_offset_past_end.shp", { .shapes = true } },
        { "shapelib/3dpoints.shp", { .rows = true } },
        // Bytes that are invalid in the encoding become U+FFFD.
        { "malformed-derived/utf8_cpg_invalid_bytes.shp", { .fields = { "NOME" } } },
        // The largest double does not survive being written with 15 digits.
        { "mapshaper/invalid_coordinates.shp", { .shapes = true } },
        { "nts-esri/arcmap/fields_utf8.shp", { .shapes = true } },
        // GDAL gives a table without fields one.
        { "mbostock-shapefile/empty.shp", { .fields = { "*" } } },
    };
    return table;
}

} // namespace shapetest
