// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/model/Library.h"
#include "embedded/store/Rings.h"
#include "embedded/store/Wkb.h"
#include "tests/support/LibraryNotation.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

using namespace embedded::store;

namespace {

struct Shape {
    std::unique_ptr<gis::CLibGis> library;
    [[nodiscard]] embedded::EntityStore& entities() const
    {
        return embedded::Library::of(library.get())->themes()[0]->entities();
    }
    [[nodiscard]] ShapeLayout layout() const
    {
        const gis::CTheme& theme = *embedded::Library::of(library.get())->themes()[0];
        return { theme.type, entities().hasZ(), entities().hasM(), false, 3003 };
    }
};

Shape shape(const std::string& kind, const std::string& parts)
{
    return { support::makeLibrary(
        "table T (a text); rows T: (-); theme P: " + kind + " on T; ents P: 0 [" + parts + "]") };
}

std::string hexadecimal(std::string_view bytes)
{
    std::string text;
    for (const char c : bytes) {
        text += "0123456789ABCDEF"[static_cast<unsigned char>(c) >> 4];
        text += "0123456789ABCDEF"[static_cast<unsigned char>(c) & 15];
    }
    return text;
}

std::string bytesFrom(std::string_view digits)
{
    std::string bytes;
    const auto value
        = [](char c) { return static_cast<unsigned>(c <= '9' ? c - '0' : c - 'A' + 10); };
    for (std::size_t i = 0; i + 1 < digits.size(); i += 2)
        bytes += static_cast<char>(value(digits[i]) * 16 + value(digits[i + 1]));
    return bytes;
}

} // namespace

TEST(WkbTest, APointIsTheStandardsBytes)
{
    const Shape point = shape("points 2d", "1 2");
    std::string out, hint;
    encodeShape(point.entities(), 0, point.layout(), out, hint);

    EXPECT_EQ(hexadecimal(out),
        "4750000"
        "1BB0B0000"
        "0101000000"
        "000000000000F03F"
        "0000000000000040");
    EXPECT_TRUE(hint.empty());
}

TEST(WkbTest, ALineHasItsBoxAndItsKindForThreeDimensions)
{
    const Shape line = shape("lines 3d", "1 2 3, 5 6 7");
    std::string out, hint;
    encodeShape(line.entities(), 0, line.layout(), out, hint);

    EXPECT_EQ(hexadecimal(out.substr(0, 4)), "47500003");
    EXPECT_EQ(hexadecimal(out.substr(8, 32)),
        "000000000000F03F"
        "0000000000001440"
        "0000000000000040"
        "0000000000001840");
    EXPECT_EQ(hexadecimal(out.substr(40, 18)),
        "01ED03000001000000"
        "01EA03000002000000");
}

TEST(WkbTest, HolesStandWithTheSmallestRingThatHoldsThem)
{
    const Shape shapes = shape("polygons 2d",
        "0 0, 0 100, 100 100, 100 0, 0 0 | 10 10, 90 10, 90 90, 10 90, 10 10 | "
        "20 20, 20 40, 40 40, 40 20, 20 20 | 25 25, 30 25, 30 30, 25 30, 25 25 | "
        "200 0, 210 0, 210 10, 200 10, 200 0");

    const RingGroups groups = groupRings(shapes.entities(), 0);

    const std::vector<std::vector<int>> wanted { { 0, 1 }, { 2, 3 }, { 4 } };
    EXPECT_EQ(groups.polygons, wanted);
    EXPECT_FALSE(groups.isPlain) << "the last ring runs like a hole and stands alone";
}

TEST(WkbTest, PartsKeepTheirOrderWhateverTheGroups)
{
    const Shape shapes = shape("polygons 2d",
        "2 2, 4 2, 4 4, 2 4, 2 2 | 0 0, 0 10, 10 10, 10 0, 0 0 | "
        "50 50, 50 60, 60 60, 60 50, 50 50 | 6 6, 8 6, 8 8, 6 8, 6 6");
    std::string out, hint;
    encodeShape(shapes.entities(), 0, shapes.layout(), out, hint);
    ASSERT_FALSE(hint.empty());

    ShapeBuffer read;
    ASSERT_EQ(decodeShape(out, hint, shapes.layout(), read), ShapeState::Taken);
    ASSERT_EQ(read.partSizes.size(), 4u);
    EXPECT_EQ(read.coordinates[0], 2);
    EXPECT_EQ(read.coordinates[10], 0);
    EXPECT_EQ(read.coordinates[20], 50);
    EXPECT_EQ(read.coordinates[30], 6);
}

TEST(WkbTest, AHintThatDoesNotFitIsLeftAside)
{
    const Shape shapes = shape("polygons 2d", "0 0, 0 10, 10 10, 10 0, 0 0");
    std::string out, hint;
    encodeShape(shapes.entities(), 0, shapes.layout(), out, hint);
    for (const std::string bad : { "\5", "\0\0", "\1", "\xFF\xFF" }) {
        ShapeBuffer read;
        EXPECT_EQ(decodeShape(out, bad, shapes.layout(), read), ShapeState::Taken);
        EXPECT_EQ(read.partSizes, std::vector<int> { 5 });
    }
}

// Counter-clockwise, not closed, big-endian, without a box: as other programs may write it.
TEST(WkbTest, RingsOfOtherProgramsAreClosedAndTurned)
{
    const std::string blob = bytesFrom("4750000000000000"
                                       "00"
                                       "00000003"
                                       "00000001"
                                       "00000003"
                                       "0000000000000000"
                                       "0000000000000000"
                                       "4024000000000000"
                                       "0000000000000000"
                                       "4024000000000000"
                                       "4024000000000000");
    ShapeBuffer read;
    const ShapeLayout layout { gis::EntType::Polygons, false, true, false, 0 };

    ASSERT_EQ(decodeShape(blob, {}, layout, read), ShapeState::Taken);

    ASSERT_EQ(read.partSizes, std::vector<int> { 4 });
    EXPECT_EQ(read.coordinates[3], 10);
    EXPECT_EQ(read.coordinates[4], 10);
    EXPECT_TRUE(std::isnan(read.coordinates[5])) << "no measure was given";
}

TEST(WkbTest, EmptyUnsupportedAndCutShapesAreToldApart)
{
    const ShapeLayout points { gis::EntType::Points, false, false, false, 0 };
    const std::string whole = bytesFrom("4750000100000000"
                                        "0101000000"
                                        "000000000000F03F"
                                        "0000000000000040");
    ShapeBuffer read;
    EXPECT_EQ(decodeShape(bytesFrom("4750001100000000"
                                    "0101000000"
                                    "000000000000F87F"
                                    "000000000000F87F"),
                  {}, points, read),
        ShapeState::None);
    EXPECT_EQ(decodeShape(bytesFrom("4750000100000000"
                                    "0108000000"
                                    "00000000"),
                  {}, points, read),
        ShapeState::Unsupported);
    EXPECT_EQ(decodeShape(bytesFrom("4750000100000000"
                                    "0104000000"
                                    "FFFFFFFF"),
                  {}, points, read),
        ShapeState::Damaged);
    for (std::size_t length = 0; length < whole.size(); ++length)
        EXPECT_EQ(decodeShape(whole.substr(0, length), {}, points, read), ShapeState::Damaged);
    EXPECT_TRUE(read.partSizes.empty());
    EXPECT_TRUE(read.coordinates.empty());
    EXPECT_EQ(read.partCounts.size(), 3u + whole.size());
}

TEST(WkbTest, RandomBytesNeverCrash)
{
    std::mt19937 random(3);
    const Shape shapes
        = shape("polygons 2d", "0 0, 0 10, 10 10, 10 0, 0 0 | 2 2, 4 2, 4 4, 2 4, 2 2");
    std::string whole, hint;
    encodeShape(shapes.entities(), 0, shapes.layout(), whole, hint);
    for (int round = 0; round < 20000; ++round) {
        std::string blob = whole.substr(0, random() % (whole.size() + 1));
        for (int hits = static_cast<int>(random() % 4); hits > 0 && !blob.empty(); --hits)
            blob[random() % blob.size()] = static_cast<char>(random());
        ShapeLayout layout { static_cast<gis::EntType>(1 + 2 * (random() % 3)), random() % 2 == 0,
            random() % 2 == 0, false, 0 };
        ShapeBuffer read;
        static_cast<void>(decodeShape(blob, round % 2 ? "\1\0" : "", layout, read));
        static_cast<void>(lookAtShape(blob));
        EXPECT_EQ(read.partCounts.size(), 1u);
    }
}
