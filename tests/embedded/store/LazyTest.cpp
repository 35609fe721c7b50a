// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/embedded/store/LibraryImage.h"
#include "tests/embedded/store/StoreTesting.h"
#include "tests/support/LibraryNotation.h"

#include <gtest/gtest.h>

#include <atomic>

#include <thread>

using namespace storetest;
using embedded::Library;
using embedded::OpenMode;

namespace {

constexpr int Many = 400000; // enough for two threads

/// A theme of many points, saved.
class LazyTest : public testing::Test {
protected:
    static void SetUpTestSuite()
    {
        folder = std::make_unique<CTemporaryFolder>();
        gis::CLibGis library;
        Library& model = *Library::of(&library);
        gis::CDBTable* table = model.createTable("T");
        table->addField("n", gis::FieldFormat::Integer);
        table->addField("t", gis::FieldFormat::Text);
        table->addRows(Many);
        for (int row = 0; row < Many; ++row) {
            if (row % 10 != 3)
                table->columnForWriting(0).setInteger(row, row);
            table->columnForWriting(1).setText(row, "testo " + std::to_string(row % 1000));
        }
        gis::CTheme* theme
            = model.createTheme(table, "P", gis::EntType::Points, gis::EntTypeCoords::XY, 0);
        for (int row = 0; row < Many; ++row) {
            gis::CDBTable::setEntity(table->row(row), theme->entities().addEntity(table->row(row)));
            double* place = theme->entities().addPart(1);
            place[0] = row % 1000;
            place[1] = row / 1000;
        }
        ASSERT_TRUE(embedded::saveLibraryAs(library, path()).ok());
    }
    static void TearDownTestSuite() { folder.reset(); }
    static std::string path() { return folder->file("molti.gpkg"); }

    static std::unique_ptr<CTemporaryFolder> folder;
    std::unique_ptr<gis::CLibGis> library = opened(path());
    gis::CDBTable* table = Library::of(library.get())->tables()[0];
    gis::CTheme* theme = Library::of(library.get())->themes()[0];
};
std::unique_ptr<CTemporaryFolder> LazyTest::folder;

} // namespace

TEST_F(LazyTest, OpeningReadsNoCellsAndNoShapes)
{
    EXPECT_EQ(table->rowCount(), Many);
    EXPECT_EQ(theme->entities().entityCount(), Many);
    EXPECT_FALSE(table->isColumnLoaded(0));
    EXPECT_FALSE(table->isColumnLoaded(1));
    EXPECT_FALSE(theme->isGeometryLoaded());
}

TEST_F(LazyTest, AColumnIsReadByItselfAndRight)
{
    const embedded::Column& column = table->column(0);

    EXPECT_FALSE(table->isColumnLoaded(1));
    ASSERT_EQ(column.rowCount(), Many);
    for (int row = 0; row < Many; ++row)
        if (row % 10 == 3 ? column.hasValue(row) : column.integerAt(row) != row)
            FAIL() << row;
    const embedded::Column& texts = table->column(1);
    EXPECT_EQ(texts.dictionary().size(), 1000u);
    for (int row = 0; row < Many; ++row)
        if (texts.textAt(row) != "testo " + std::to_string(row % 1000))
            FAIL() << row;
}

TEST_F(LazyTest, ShapesAreReadRight)
{
    const embedded::EntityStore& entities = theme->geometry();
    for (int i = 0; i < Many; ++i)
        if (entities.partCount(i) != 1 || entities.part(i, 0).x(0) != i % 1000
            || entities.part(i, 0).y(0) != i / 1000)
            FAIL() << i;
}

TEST_F(LazyTest, ExtentAndRectanglesAreAnsweredWithoutReading)
{
    const embedded::Box extent = theme->extent();
    EXPECT_EQ(extent.minX, 0);
    EXPECT_EQ(extent.maxX, 999);
    EXPECT_EQ(extent.maxY, Many / 1000 - 1);
    embedded::Box box;
    box.add(10, 20);
    box.add(12, 21);
    std::vector<int> indexes;

    ASSERT_TRUE(Library::of(library.get())->store()->entitiesIn(*theme, box, indexes));

    EXPECT_EQ(indexes, (std::vector<int> { 20010, 20011, 20012, 21010, 21011, 21012 }));
    EXPECT_FALSE(theme->isGeometryLoaded());
}

TEST_F(LazyTest, ColumnsMayBeAskedForFromSeveralThreads)
{
    auto& store = *Library::of(library.get())->store();
    embedded::Column numbers(gis::ColumnKind::Integer), texts(gis::ColumnKind::Dictionary);
    std::thread other(
        [&] { EXPECT_TRUE(store.readColumn(*table, *table->field(1), texts, {}).ok()); });
    EXPECT_TRUE(store.readColumn(*table, *table->field(0), numbers, {}).ok());
    other.join();
    EXPECT_EQ(numbers.rowCount(), Many);
    EXPECT_EQ(texts.rowCount(), Many);
}

TEST_F(LazyTest, AReadingOfAColumnEndsSoonAfterItIsStopped)
{
    std::atomic<int> asked = 0;
    const embedded::IsStopped atTheSecond = [&asked] { return ++asked >= 2; };

    EXPECT_FALSE(table->loadColumn(1, atTheSecond));

    EXPECT_GE(asked, 2);
    EXPECT_LE(asked, 4) << "of both threads that read";
    EXPECT_FALSE(table->isColumnLoaded(1));
    EXPECT_EQ(Library::of(library.get())->failedRead(), nullptr);
    EXPECT_TRUE(table->loadColumn(1, [] { return false; }));
    EXPECT_EQ(table->column(1).rowCount(), Many);
    EXPECT_EQ(table->columnFailure(1), nullptr);
}

TEST(LazyOrderTest, EntitiesInAnotherOrderThanTheirRowsAreFoundByRectangle)
{
    const CTemporaryFolder own;
    const std::string file = own.file("a.gpkg");
    ASSERT_TRUE(embedded::saveLibraryAs(
        *support::makeLibrary("table T (a text); rows T: ('x'), ('y'), ('z');"
                              "theme P: points 2d on T; ents P: 2 [2 2], 0 [0 0], 1 [1 1]"),
        file)
                    .ok());

    const auto library = opened(file);
    gis::CTheme* theme = Library::of(library.get())->themes()[0];
    embedded::Box box;
    box.add(1.5, 1.5);
    box.add(2.5, 2.5);
    std::vector<int> indexes;
    ASSERT_TRUE(Library::of(library.get())->store()->entitiesIn(*theme, box, indexes));

    EXPECT_EQ(indexes, std::vector<int> { 0 });
    EXPECT_EQ(theme->geometry().part(0, 0).x(0), 2);
}
