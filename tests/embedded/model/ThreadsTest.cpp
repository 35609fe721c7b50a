// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/model/Clone.h"
#include "embedded/model/Library.h"
#include "embedded/store/GeoPackage.h"
#include "tests/support/LibraryNotation.h"

#include "host/gis/Columns.h"

#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <string>
#include <thread>
#include <unistd.h>
#include <vector>

// What other threads read beside the user interface: columns, entity runs, snapshots, copies. Run
// with the thread sanitizer these tests also tell that nobody writes meanwhile.

namespace {

using support::makeLibrary;
using support::printLibrary;

constexpr int Rows = 150'000;

/// Many rows and points, in a file.
class ThreadsTest : public testing::Test {
protected:
    ThreadsTest()
        : path((std::filesystem::temp_directory_path()
            / ("tematica-threads-" + std::to_string(::getpid()) + ".gpkg"))
                   .string())
    {
        const auto library
            = makeLibrary("table T (nome text, n integer); theme P: points 2d on T active");
        gis::CTheme* theme = library->GetTheme(0);
        theme->table->addRows(Rows);
        for (int row = 0; row < Rows; ++row) {
            orv::CPolyValue name { orv::String(row % 3 == 0 ? "a" : "b") };
            orv::CPolyValue number(row % 7);
            library->SetRowValue(theme->table->row(row), 0, name);
            library->SetRowValue(theme->table->row(row), 1, number);
            theme->entities().addEntity(theme->table->row(row));
            double* vertex = theme->entities().addPart(1);
            vertex[0] = row;
            vertex[1] = row % 100;
        }
        EXPECT_TRUE(embedded::saveLibraryCopy(*library, path).ok());
    }
    ~ThreadsTest() override { std::filesystem::remove(path); }

    std::unique_ptr<gis::CLibGis> opened()
    {
        embedded::Report report;
        auto library = embedded::openLibrary(path, embedded::OpenMode::Read, nullptr, report);
        EXPECT_TRUE(library.ok());
        return std::move(library.value());
    }

    std::string path;
};

std::int64_t sumOf(gis::IColumns& columns, gis::CDBTable* table, int field)
{
    gis::ColumnView view;
    if (!columns.GetColumn(table, field, view))
        return -1;
    std::int64_t sum = 0;
    for (int chunk = 0; chunk < view.chunkCount; ++chunk)
        for (int i = 0; i < view.chunks[chunk].rowCount; ++i)
            sum += static_cast<const std::uint32_t*>(view.chunks[chunk].values)[i];
    return sum;
}

TEST_F(ThreadsTest, ColumnsAreReadByManyAtOnceAlsoForTheFirstTime)
{
    const auto library = opened();
    auto* columns = static_cast<gis::IColumns*>(library->Extension(gis::ColumnsExtension));
    gis::CDBTable* table = library->GetTable(0);
    gis::CTheme* theme = library->GetTheme(0);
    std::vector<std::int64_t> sums(4);
    std::atomic<int> runs { 0 };
    {
        std::vector<std::jthread> readers;
        for (std::size_t i = 0; i < sums.size(); ++i)
            readers.emplace_back([&, i] {
                for (int again = 0; again < 20; ++again) {
                    sums[i] = sumOf(*columns, table, 1) + sumOf(*columns, table, 0);
                    gis::EntityRunsView view;
                    runs += columns->GetEntityRuns(theme, view) ? view.entityCount / Rows : 0;
                }
            });
    }
    std::int64_t expected = 0;
    for (int row = 0; row < Rows; ++row)
        expected += row % 7 + (row % 3 == 0 ? 0 : 1);
    for (const std::int64_t sum : sums)
        EXPECT_EQ(sum, expected);
    EXPECT_EQ(runs, 80);
}

TEST_F(ThreadsTest, CellsAreAskedForWhileOthersReadTheColumnsForTheFirstTime)
{
    for (int again = 0; again < 5; ++again) {
        const auto library = opened();
        auto* columns = static_cast<gis::IColumns*>(library->Extension(gis::ColumnsExtension));
        gis::CDBTable* table = library->GetTable(0);
        std::vector<std::int64_t> sums(3);
        std::atomic<int> waiting { 4 };
        const auto startTogether = [&waiting] {
            for (--waiting; waiting > 0;)
                std::this_thread::yield();
        };
        std::vector<std::jthread> readers;
        for (std::size_t i = 0; i < sums.size(); ++i)
            readers.emplace_back([&, i] {
                startTogether();
                sums[i] = sumOf(*columns, table, i % 2 == 0 ? 0 : 1);
            });
        startTogether();
        orv::CPolyValue name; // as a grid shows them, on the library's own thread
        orv::CPolyValue number;
        library->GetRowValue(library->GetRow(table, 4), 0, name);
        library->GetRowValue(library->GetRow(table, 4), 1, number);
        readers.clear();

        EXPECT_EQ(name, orv::CPolyValue("b"));
        EXPECT_EQ(number, orv::CPolyValue(4));
        EXPECT_EQ(sums[0], Rows - Rows / 3) << "codes of a and b";
        EXPECT_EQ(sums[2], sums[0]);
        EXPECT_GT(sums[1], 0);
    }
}

TEST_F(ThreadsTest, ASnapshotIsReadWhileItsThemeGrowsAndShrinks)
{
    const auto library = opened();
    gis::CTheme* theme = library->GetTheme(0);
    const auto snapshot = theme->geometry().snapshot();
    std::atomic<bool> isDone = false;
    double sum = 0;
    std::jthread reader([&] {
        for (int again = 0; again < 3; ++again)
            for (int i = 0; i < snapshot->entityCount(); ++i)
                sum += snapshot->part(i, 0).x(0);
        isDone = true;
    });
    theme->table->addRows(1);
    while (!isDone) {
        theme->entities().addEntity(theme->table->row(Rows));
        double* vertex = theme->entities().addPart(1);
        vertex[0] = vertex[1] = -1;
        static_cast<void>(theme->geometry().snapshot());
        theme->entities().truncate(Rows);
    }
    reader.join();

    EXPECT_EQ(snapshot->entityCount(), Rows);
    EXPECT_EQ(sum, 3.0 * (Rows - 1.0) * Rows / 2);
}

TEST_F(ThreadsTest, ACopyIsSavedWhileItsOriginalIsEdited)
{
    const auto library = opened();
    const std::shared_ptr<gis::CLibGis> copy
        = embedded::cloneLibrary(*embedded::Library::of(library.get()));
    ASSERT_NE(copy, nullptr);
    const std::string copyPath = path + ".copy.gpkg";
    std::atomic<bool> isSaved = false;
    std::jthread saver([&] {
        EXPECT_TRUE(embedded::saveLibraryCopy(*copy, copyPath).ok());
        isSaved = true;
    });
    int row = 0;
    do {
        orv::CPolyValue name { orv::String("nuovo") };
        library->SetRowValue(library->GetRow(library->GetTable(0), row), 0, name);
        row = (row + 1) % Rows;
    } while (!isSaved);
    saver.join();

    embedded::Report report;
    const auto saved = embedded::openLibrary(copyPath, embedded::OpenMode::Read, nullptr, report);
    ASSERT_TRUE(saved.ok());
    orv::CPolyValue value;
    gis::CLibGis& read = *saved.value();
    read.GetRowValue(read.GetRow(read.GetTable(0), 0), 0, value);
    EXPECT_EQ(value.GetStringValue(), orv::String("a"));
    std::filesystem::remove(copyPath);
}

TEST(CloneTest, HoldsAllThatItsOriginalHoldsAndNothingOfIt)
{
    constexpr const char* Town
        = "table T (nome text required, larghezza decimal 2 min 0, tipo list ('A', 'B') default "
          "'A', punto text from name); rows T: ('a', 1.5, 'A', -), ('b', -, -, -);"
          "theme P: points 3d on T active locked; theme A: polygons 2d on T hidden;"
          "ents P: 0 [1 2 3] point 'P1' 'angolo'; ents A: 1 [0 0, 0 4, 4 4, 0 0]";
    const auto library = makeLibrary(Town);
    const std::string before = printLibrary(*library);

    const auto copy = embedded::cloneLibrary(*embedded::Library::of(library.get()));
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(printLibrary(*copy), before);

    orv::CPolyValue value { orv::String("altro") };
    copy->SetRowValue(copy->GetRow(copy->GetTable(0), 0), 0, value);
    copy->SetThemeName(copy->GetTheme(0), "Q");
    EXPECT_EQ(printLibrary(*library), before);
}

} // namespace
