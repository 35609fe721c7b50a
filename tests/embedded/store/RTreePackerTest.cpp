// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/store/RTreePacker.h"
#include "embedded/store/Statement.h"
#include "tests/embedded/store/StoreTesting.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <set>

using namespace embedded::store;

namespace {

class RTreePackerTest : public testing::Test {
protected:
    void SetUp() override
    {
        // Whether it is safe on the disk is nobody's question here.
        connection.execute("PRAGMA journal_mode = OFF; PRAGMA synchronous = OFF");
        connection.execute("CREATE VIRTUAL TABLE \"r\" USING rtree(id, minx, maxx, miny, maxy)");
    }
    std::vector<IndexEntry> randomEntries(int count)
    {
        std::vector<IndexEntry> entries;
        std::uniform_real_distribution<double> place(-1000, 1000), size(0, 20);
        for (int i = 0; i < count; ++i) {
            embedded::Box box;
            const double x = place(random), y = place(random);
            box.add(x, y);
            box.add(x + size(random), y + size(random));
            entries.push_back(indexEntry(3 * i + 1, box));
        }
        return entries;
    }
    std::set<std::int64_t> found(float x0, float x1, float y0, float y1)
    {
        std::set<std::int64_t> ids;
        Statement hits(connection,
            "SELECT id FROM r WHERE maxx >= ?1 AND minx <= ?2 AND maxy >= ?3 AND miny <= ?4");
        int parameter = 0;
        for (const float side : { x0, x1, y0, y1 })
            hits.bindReal(++parameter, static_cast<double>(side));
        while (hits.step())
            ids.insert(hits.integer(0));
        return ids;
    }

    storetest::CTemporaryFolder folder;
    Connection connection { folder.file("r.db"), Connection::Access::Create, 0 };
    std::mt19937 random { 5 };
};

} // namespace

TEST_F(RTreePackerTest, SqliteCallsEverySizeSoundAndFindsTheSame)
{
    // One node holds 51 entries: just below, at and above one level, two levels, three.
    for (const int count : { 0, 1, 50, 51, 52, 53, 102, 103, 2600, 2601, 2602, 2653, 20000 }) {
        SCOPED_TRACE(count);
        const auto entries = randomEntries(count);
        writePackedIndex(connection, "r", entries);

        EXPECT_EQ(connection.textOf("SELECT rtreecheck('r')"), "ok");
        EXPECT_EQ(connection.integerOf("SELECT count(*) FROM r"), count);
        std::set<std::int64_t> wanted;
        for (const auto& entry : entries)
            if (entry.box[1] >= -50 && entry.box[0] <= 120 && entry.box[3] >= 0
                && entry.box[2] <= 80)
                wanted.insert(entry.fid);
        EXPECT_EQ(found(-50, 120, 0, 80), wanted);
        EXPECT_EQ(readIndex(connection, "r").size(), entries.size());
    }
}

TEST_F(RTreePackerTest, APackedIndexCanBeChangedBySqlite)
{
    writePackedIndex(connection, "r", randomEntries(5000));

    connection.execute("DELETE FROM r WHERE id % 7 = 1; INSERT INTO r VALUES (100000, 1, 2, 3, 4)");

    EXPECT_EQ(connection.textOf("SELECT rtreecheck('r')"), "ok");
    EXPECT_TRUE(found(1, 2, 3, 4).count(100000));
}

TEST_F(RTreePackerTest, TheExtentIsTheRootsBox)
{
    EXPECT_TRUE(indexExtent(connection, "r").isEmpty());
    const auto entries = randomEntries(3000);
    writePackedIndex(connection, "r", entries);

    const embedded::Box extent = indexExtent(connection, "r");

    Statement row(connection, "SELECT min(minx), max(maxx), min(miny), max(maxy) FROM r");
    ASSERT_TRUE(row.step());
    EXPECT_EQ(extent.minX, row.real(0));
    EXPECT_EQ(extent.maxX, row.real(1));
    EXPECT_EQ(extent.minY, row.real(2));
    EXPECT_EQ(extent.maxY, row.real(3));
}

TEST_F(RTreePackerTest, BoxesAreRoundedOutwards)
{
    for (const double value :
        { 0.1, -0.1, 16777217.0, -16777217.0, 4860123.4567891, 1e300, -1e300 }) {
        embedded::Box box;
        box.add(value, value);
        const IndexEntry entry = indexEntry(1, box);
        EXPECT_LE(static_cast<double>(entry.box[0]), value);
        EXPECT_GE(static_cast<double>(entry.box[1]), value);
        if (std::abs(value) < 1e30) {
            EXPECT_NEAR(static_cast<double>(entry.box[0]), value, std::abs(value) * 1e-6);
        }
    }
}

TEST_F(RTreePackerTest, EqualAndInfiniteBoxesArePacked)
{
    std::vector<IndexEntry> entries(1000);
    for (std::size_t i = 0; i < entries.size(); ++i)
        entries[i].fid = static_cast<std::int64_t>(i);
    const float infinity = std::numeric_limits<float>::infinity();
    entries[3].box = { -infinity, infinity, 0, 0 };
    writePackedIndex(connection, "r", entries);

    EXPECT_EQ(connection.textOf("SELECT rtreecheck('r')"), "ok");
    EXPECT_EQ(found(0, 0, 0, 0).size(), 1000u);
}
