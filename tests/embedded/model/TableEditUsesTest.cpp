// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT

// A table's fields change under labels, maps and a file that cannot be read.
#include "host/gis/TableEdit.h"
#include "host/gis/ThemeMapEdit.h"

#include "embedded/model/Library.h"
#include "tests/support/LibraryNotation.h"

#include <gtest/gtest.h>

namespace {

using embedded::Library;
using gis::CCtrlDlgTableEdit;
using gis::CCtrlThemeMapEdit;
using gis::FieldFormat;
using gis::MapType;
using support::makeLibrary;

/// A theme with a label and a map over the field `larghezza`.
struct Mapped {
    explicit Mapped(MapType type)
        : library(makeLibrary("table Strade (codice text, larghezza decimal 1);"
                              "rows Strade: ('S1', 3.5), ('S2', 7); theme Vie: lines on Strade",
            &changes))
        , table(library->GetTable(0))
        , theme(library->GetTheme(0))
        , field(library->GetField(table, 1))
    {
        gis::TOpzLabel label;
        label.field = field;
        library->SetThemeOpzLabel(theme, label);
        CCtrlThemeMapEdit map(theme);
        map.SetMapType(type);
        map.SetField(field);
        map.SetNumClasses(2);
        map.Commit(nullptr);
        changes.Clear();
    }
    orv::CChangeTransactionManager changes;
    std::unique_ptr<gis::CLibGis> library;
    gis::CDBTable* table;
    gis::CTheme* theme;
    gis::CField* field;
};

TEST(TableEditUsesTest, LabelsAndMapsLetGoOfADeletedFieldAndTakeItBackByUndo)
{
    Mapped mapped(MapType::SingleValue);
    CCtrlDlgTableEdit edit(mapped.library.get(), mapped.table);
    edit.DeleteField(edit.GetCurField(1));

    ASSERT_TRUE(edit.Commit());
    EXPECT_EQ(mapped.library->GetThemeOpzLabel(mapped.theme).field, nullptr);
    EXPECT_EQ(CCtrlThemeMapEdit(mapped.theme).GetMapType(), MapType::None);
    EXPECT_EQ(CCtrlThemeMapEdit(mapped.theme).GetField(), nullptr);

    ASSERT_TRUE(mapped.changes.Undo());
    EXPECT_EQ(mapped.library->GetThemeOpzLabel(mapped.theme).field, mapped.field);
    EXPECT_EQ(CCtrlThemeMapEdit(mapped.theme).GetMapType(), MapType::SingleValue);
    EXPECT_EQ(CCtrlThemeMapEdit(mapped.theme).GetField(), mapped.field);
    EXPECT_EQ(CCtrlThemeMapEdit(mapped.theme).GetNumFeatureClasses(), 3);
    EXPECT_FALSE(mapped.changes.CanUndo());
}

TEST(TableEditUsesTest, ARenamedFieldStaysInLabelsAndMaps)
{
    Mapped mapped(MapType::Interval);
    CCtrlDlgTableEdit edit(mapped.library.get(), mapped.table);
    edit.SetFieldName(edit.GetCurField(1), "ampiezza");
    edit.SwapOrder(0, 1);

    ASSERT_TRUE(edit.Commit());

    EXPECT_EQ(mapped.library->GetThemeOpzLabel(mapped.theme).field, mapped.field);
    EXPECT_EQ(CCtrlThemeMapEdit(mapped.theme).GetField(), mapped.field);
    EXPECT_EQ(CCtrlThemeMapEdit(mapped.theme).GetMapType(), MapType::Interval);
}

TEST(TableEditUsesTest, ClassLimitsFollowTheFormatAsCellsDo)
{
    Mapped mapped(MapType::SingleValue);
    CCtrlDlgTableEdit edit(mapped.library.get(), mapped.table);
    edit.SetFieldFormat(edit.GetCurField(1), FieldFormat::Text);

    ASSERT_TRUE(edit.Commit());

    CCtrlThemeMapEdit map(mapped.theme);
    orv::CPolyValue low;
    orv::CPolyValue high;
    gis::CLibGis::GetLimitValue(map.GetFeatureClass(1), low, high);
    EXPECT_EQ(low, orv::CPolyValue("3.5"));
    EXPECT_EQ(high, orv::CPolyValue("3.5"));
    mapped.changes.Undo();
    CCtrlThemeMapEdit before(mapped.theme);
    gis::CLibGis::GetLimitValue(before.GetFeatureClass(1), low, high);
    EXPECT_EQ(low, orv::CPolyValue(3.5));
}

TEST(TableEditUsesTest, AnIntervalMapEndsWithTheNumbers)
{
    Mapped mapped(MapType::Interval);
    CCtrlDlgTableEdit edit(mapped.library.get(), mapped.table);
    edit.SetFieldFormat(edit.GetCurField(1), FieldFormat::Integer);
    ASSERT_TRUE(edit.Commit());
    EXPECT_EQ(CCtrlThemeMapEdit(mapped.theme).GetMapType(), MapType::Interval);

    edit.SetFieldFormat(edit.GetCurField(1), FieldFormat::Date);
    ASSERT_TRUE(edit.Commit());
    EXPECT_EQ(CCtrlThemeMapEdit(mapped.theme).GetMapType(), MapType::None);
}

/// A file whose columns cannot be read any more.
class CUnreadableStore final : public embedded::IStore {
public:
    embedded::Result<void> readColumn(const gis::CDBTable&, const gis::CField&, embedded::Column&,
        const embedded::IsStopped&) override
    {
        return embedded::Error { embedded::ErrorCode::DamagedFile, "x.gpkg", "" };
    }
    embedded::Result<void> readGeometry(gis::CTheme&, embedded::EntityStore&) override
    {
        return embedded::Error { embedded::ErrorCode::DamagedFile, "x.gpkg", "" };
    }
    embedded::Box extentOf(const gis::CTheme&) override { return {}; }
    bool entitiesIn(const gis::CTheme&, const embedded::Box&, std::vector<int>&) override
    {
        return false;
    }
};

TEST(TableEditUsesTest, ColumnsThatCannotBeReadAreNotCommittedAsEmpty)
{
    orv::CChangeTransactionManager changes;
    const auto library = makeLibrary("table T (a text, b text)", &changes);
    Library::of(library.get())->setStore(std::make_shared<CUnreadableStore>());
    library->GetTable(0)->markStored(5);
    CCtrlDlgTableEdit edit(library.get(), library->GetTable(0));
    edit.SwapOrder(0, 1);

    EXPECT_FALSE(edit.Commit());

    EXPECT_FALSE(changes.CanUndo());
    EXPECT_FALSE(library->GetTable(0)->isColumnLoaded(0));
    EXPECT_EQ(library->GetFieldName(library->GetField(library->GetTable(0), 0)), orv::String("a"));
}

TEST(TableEditUsesTest, ColumnsThatCouldNotBeShownAreNotCommittedAsEmptyEither)
{
    orv::CChangeTransactionManager changes;
    const auto library = makeLibrary("table T (a text, b text)", &changes);
    Library::of(library.get())->setStore(std::make_shared<CUnreadableStore>());
    gis::CDBTable* table = library->GetTable(0);
    table->markStored(5);
    orv::CPolyValue value;
    library->GetRowValue(library->GetRow(table, 0), 0, value); // as a grid does
    EXPECT_TRUE(value.IsEmpty());
    CCtrlDlgTableEdit edit(library.get(), table);
    edit.SetFieldFormat(edit.GetCurField(0), gis::FieldFormat::Decimal);

    EXPECT_FALSE(edit.Commit());

    EXPECT_FALSE(changes.CanUndo());
    EXPECT_EQ(library->GetFieldFormat(library->GetField(table, 0)), gis::FieldFormat::Text);
}

} // namespace
