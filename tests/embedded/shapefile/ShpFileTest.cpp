// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/shapefile/ShpFile.h"

#include "embedded/shapefile/ShapeView.h"
#include "tests/embedded/shapefile/RawShapefile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using embedded::ErrorCode;
using embedded::ShapeFault;
using embedded::ShapeView;
using embedded::ShpFile;
using embedded::ShpRecordState;
using namespace shapetest;

namespace {

class ShpFileTest : public testing::Test {
protected:
    ShpFile opened(const std::string& shp, const std::string& shx)
    {
        writeFile(folder / "a.shp", shp);
        if (!shx.empty())
            writeFile(folder / "a.shx", shx);
        auto file = ShpFile::open(folder / "a.shp");
        EXPECT_TRUE(file.ok());
        file.value().findRecords(shx.empty() ? std::string() : folder / "a.shx");
        return std::move(file.value());
    }

    /// The x of each record's first vertex; NaN for a null shape, infinity for one that cannot be
    /// read.
    static std::vector<double> firstX(const ShpFile& file)
    {
        std::vector<double> result;
        for (const auto& record : file.records()) {
            ShapeView shape;
            if (ShapeView::read(file, record, shape) != ShapeFault::None)
                result.push_back(std::numeric_limits<double>::infinity());
            else
                result.push_back(shape.partCount() == 0 ? std::nan("") : shape.x(0));
        }
        return result;
    }

    static void replace(std::string& bytes, std::size_t at, const std::string& with)
    {
        bytes.replace(at, with.size(), with);
    }

    ErrorCode errorOf(const std::string& bytes)
    {
        writeFile(folder / "a.shp", bytes);
        const auto file = ShpFile::open(folder / "a.shp");
        return file ? ErrorCode::Internal : file.error().code;
    }

    TemporaryFolder folder;
    const double Unreadable = std::numeric_limits<double>::infinity();
};

TEST_F(ShpFileTest, RecordsAreReadInFileOrder)
{
    const ShpFile file = opened(pointFile(4).shp(), pointFile(4).shx());

    EXPECT_THAT(firstX(file), testing::ElementsAre(0, 1, 2, 3));
    EXPECT_EQ(file.index().difference, "");
    EXPECT_EQ(file.sizeDifference(), "");
}

TEST_F(ShpFileTest, FilesThatAreNoShapefileAreRefused)
{
    std::string otherCode = pointFile(1).shp();
    replace(otherCode, 0, big32(9995));
    RawShp multipatch = pointFile(1);
    multipatch.type = 31;
    RawShp nulls = pointFile(0);
    nulls.type = 0;

    EXPECT_EQ(errorOf(""), ErrorCode::EmptyFile);
    EXPECT_EQ(errorOf(pointFile(1).shp().substr(0, 99)), ErrorCode::NoShapeHeader);
    EXPECT_EQ(errorOf(otherCode), ErrorCode::NoShapeHeader);
    EXPECT_EQ(errorOf(multipatch.shp()), ErrorCode::UnknownShapeType);
    EXPECT_EQ(errorOf(nulls.shp()), ErrorCode::UnknownShapeType);
    EXPECT_EQ(ShpFile::open(folder / "none.shp").error().code, ErrorCode::FileNotFound);
    EXPECT_EQ(ShpFile::open(folder.path()).error().code, ErrorCode::NotAFile);
}

TEST_F(ShpFileTest, AMissingOrOtherIndexChangesNothingOfTheRecords)
{
    std::string sameEntries = pointFile(3).shx();
    replace(sameEntries, 108, sameEntries.substr(100, 8));
    replace(sameEntries, 116, sameEntries.substr(100, 8));

    EXPECT_TRUE(opened(pointFile(3).shp(), "").index().isMissing);
    const ShpFile same = opened(pointFile(3).shp(), sameEntries);
    EXPECT_NE(same.index().difference, "");
    EXPECT_THAT(firstX(same), testing::ElementsAre(0, 1, 2));
    const ShpFile fewer = opened(pointFile(3).shp(), pointFile(2).shx());
    EXPECT_EQ(fewer.index().difference, "2 entries, 3 records");
    EXPECT_THAT(firstX(fewer), testing::ElementsAre(0, 1, 2));
}

TEST_F(ShpFileTest, AnIndexOfNumberedRecordsGivesTheirOrder)
{
    // A program that rewrote shape 1 at the end leaves the old one at the beginning.
    RawShp shp = pointFile(3);
    shp.contents.push_back(pointContent(100, 100));
    std::string bytes = shp.shp();
    replace(bytes, 100 + 3 * 28, big32(1));
    std::string index = pointFile(3).shx();
    replace(index, 100, big32((100 + 3 * 28) / 2));

    const ShpFile file = opened(bytes, index);

    EXPECT_EQ(file.index().difference, "");
    EXPECT_THAT(firstX(file), testing::ElementsAre(100, 1, 2));
}

TEST_F(ShpFileTest, AnImpossibleLengthOverAWholeShapeIsSteppedOver)
{
    std::string huge = pointFile(4).shp();
    replace(huge, 128 + 4, big32(1 << 30));
    std::string negative = pointFile(4).shp();
    replace(negative, 128 + 4, big32(-7));
    std::string shorter = pointFile(4).shp();
    replace(shorter, 128 + 4, big32(4));

    for (const std::string& bytes : { huge, negative, shorter }) {
        const ShpFile file = opened(bytes, pointFile(4).shx());
        EXPECT_THAT(firstX(file), testing::ElementsAre(0, 1, 2, 3));
        EXPECT_EQ(file.records()[1].state, ShpRecordState::LengthWrong);
    }
}

TEST_F(ShpFileTest, ARecordOfNoLengthHasNoShapeAndTheNextAreFound)
{
    std::string bytes = pointFile(4).shp();
    replace(bytes, 128 + 4, big32(0));

    EXPECT_THAT(firstX(opened(bytes, "")), testing::ElementsAre(0, Unreadable, 2, 3));
}

TEST_F(ShpFileTest, RecordsAfterNoiseAreFoundByTheirNumbers)
{
    std::string bytes = pointFile(5).shp();
    replace(bytes, 128, std::string(28 + 10, '\xEE'));

    EXPECT_THAT(firstX(opened(bytes, "")), testing::ElementsAre(0, Unreadable, Unreadable, 3, 4));
}

TEST_F(ShpFileTest, BytesAfterTheLastRecordAreNoRecords)
{
    for (const char filling : { '\xFF', '\0' }) {
        const ShpFile file
            = opened(pointFile(2).shp() + std::string(400, filling), pointFile(2).shx());
        EXPECT_THAT(firstX(file), testing::ElementsAre(0, 1));
        EXPECT_NE(file.sizeDifference(), "");
        EXPECT_FALSE(file.isCut());
    }
}

TEST_F(ShpFileTest, ALengthFieldThatIsTooSmallLosesNothing)
{
    std::string bytes = pointFile(3).shp();
    replace(bytes, 24, big32(50));

    const ShpFile file = opened(bytes, pointFile(3).shx());

    EXPECT_THAT(firstX(file), testing::ElementsAre(0, 1, 2));
    EXPECT_NE(file.sizeDifference(), "");
}

TEST_F(ShpFileTest, ACutRecordHasNoShape)
{
    const std::string bytes = pointFile(3).shp();

    const ShpFile file = opened(bytes.substr(0, bytes.size() - 5), pointFile(3).shx());

    EXPECT_THAT(firstX(file), testing::ElementsAre(0, 1, Unreadable));
    EXPECT_TRUE(file.isCut());
}

struct FaultCase {
    const char* what;
    std::int32_t type;
    std::string content;
    ShapeFault fault;
    int parts;
};

class ShapeFaultTest : public ShpFileTest, public testing::WithParamInterface<FaultCase> { };

TEST_P(ShapeFaultTest, IsFound)
{
    RawShp raw;
    raw.type = GetParam().type;
    raw.contents = { GetParam().content, nullContent() };
    const ShpFile file = opened(raw.shp(), raw.shx());
    ASSERT_EQ(file.records().size(), 2u);

    ShapeView shape;
    EXPECT_EQ(ShapeView::read(file, file.records()[0], shape), GetParam().fault);
    EXPECT_EQ(shape.partCount(), GetParam().parts);
}

std::string changed(std::string bytes, std::size_t at, const std::string& with)
{
    return bytes.replace(at, with.size(), with);
}

std::vector<FaultCase> faultCases()
{
    const double nan = std::nan("");
    const double infinite = std::numeric_limits<double>::infinity();
    const std::string square
        = partsContent(5, { { 0, 0, 0, 1, 1, 1, 1, 0, 0, 0 }, { 2, 2, 2, 3, 3, 3, 2, 2 } });
    return {
        { "Sound", 5, square, ShapeFault::None, 2 },
        { "NoRings", 5, partsContent(5, {}), ShapeFault::None, 0 },
        { "EmptyRing", 5, partsContent(5, { {} }), ShapeFault::None, 0 },
        { "HugeParts", 5, changed(square, 36, little32(0x7FFFFFFF)), ShapeFault::ImpossibleCounts,
            0 },
        { "HugePoints", 5, changed(square, 40, little32(134217728)), ShapeFault::ImpossibleCounts,
            0 },
        { "NegativePoints", 5, changed(square, 40, little32(-1)), ShapeFault::ImpossibleCounts, 0 },
        { "NegativeParts", 5, changed(square, 36, little32(-1)), ShapeFault::ImpossibleCounts, 0 },
        { "PartPastEnd", 5, changed(square, 48, little32(9999)), ShapeFault::ImpossibleParts, 0 },
        { "NegativePart", 5, changed(square, 48, little32(-3)), ShapeFault::ImpossibleParts, 0 },
        { "FirstPartNotAtStart", 5, changed(square, 44, little32(1)), ShapeFault::ImpossibleParts,
            0 },
        { "NotANumber", 1, pointContent(nan, 1), ShapeFault::UnusableCoordinates, 0 },
        { "Infinite", 1, pointContent(1, infinite), ShapeFault::UnusableCoordinates, 0 },
        { "VeryLarge", 1, pointContent(1e300, -1e300), ShapeFault::None, 1 },
        { "OtherType", 1, partsContent(3, { { 0, 0, 1, 1 } }), ShapeFault::OtherType, 0 },
        { "UnknownType", 1, little32(99) + std::string(16, '\0'), ShapeFault::OtherType, 0 },
    };
}

INSTANTIATE_TEST_SUITE_P(Records, ShapeFaultTest, testing::ValuesIn(faultCases()),
    [](const auto& record) { return std::string(record.param.what); });

TEST_F(ShpFileTest, HeightsAndMeasuresAreWhereTheTypeHasThem)
{
    RawShp raw;
    raw.type = 13;
    raw.contents = { partsContent(13, { { 0, 0, 1, 1 } }, { 5, 6 }, { 7, -1e39 }),
        partsContent(13, { { 0, 0, 1, 1 } }, { 5, 6 }) };
    const ShpFile file = opened(raw.shp(), raw.shx());
    ShapeView measured;
    ShapeView plain;
    ASSERT_EQ(ShapeView::read(file, file.records()[0], measured), ShapeFault::None);
    ASSERT_EQ(ShapeView::read(file, file.records()[1], plain), ShapeFault::None);

    EXPECT_EQ(measured.z(1), 6);
    EXPECT_EQ(measured.m(0), 7);
    EXPECT_TRUE(std::isnan(measured.m(1)));
    EXPECT_TRUE(measured.hasRealMeasure());
    EXPECT_EQ(plain.z(0), 5);
    EXPECT_FALSE(plain.hasRealMeasure());
}

TEST_F(ShpFileTest, APointWithHeightMayLackItsMeasure)
{
    RawShp raw;
    raw.type = 11;
    raw.contents = { pointContent(1, 2, 3, 4), pointContent(5, 6, 7, 8).substr(0, 28) };
    const ShpFile file = opened(raw.shp(), raw.shx());
    ShapeView whole;
    ShapeView shorter;
    ASSERT_EQ(ShapeView::read(file, file.records()[0], whole), ShapeFault::None);
    ASSERT_EQ(ShapeView::read(file, file.records()[1], shorter), ShapeFault::None);

    EXPECT_EQ(whole.m(0), 4);
    EXPECT_EQ(shorter.z(0), 7);
    EXPECT_TRUE(std::isnan(shorter.m(0)));
}

TEST_F(ShpFileTest, TruncationAtAnyByteIsSurvived)
{
    RawShp raw;
    raw.type = 5;
    for (int i = 0; i < 3; ++i)
        raw.contents.push_back(
            partsContent(5, { { 0, 0, 0, 1, 1, 1, 0, 0 }, { 2, 2, 2, 3, 3, 3, 2, 2 } }));
    const std::string whole = raw.shp();
    for (std::size_t length = 100; length <= whole.size(); ++length) {
        const ShpFile file = opened(whole.substr(0, length), raw.shx());
        std::size_t readable = 0;
        for (const double x : firstX(file))
            readable += std::isinf(x) ? 0 : 1;
        EXPECT_EQ(readable, (length - 100) / (8 + raw.contents[0].size())) << length;
    }
}

TEST_F(ShpFileTest, AnyByteMayBeWrong)
{
    RawShp raw;
    raw.type = 13;
    for (int i = 0; i < 3; ++i)
        raw.contents.push_back(
            partsContent(13, { { 0, 0, 1, 1 }, { 2, 2, 3, 3 } }, { 1, 2, 3, 4 }, { 1, 2, 3, 4 }));
    const std::string whole = raw.shp();
    for (std::size_t at = 100; at < whole.size(); ++at)
        for (const char value : { '\0', '\x01', '\x7F', '\x80', '\xFF' }) {
            std::string bytes = whole;
            bytes[at] = value;
            const ShpFile file = opened(bytes, "");
            // However wrong one byte is, at most one record and its neighbour suffer.
            std::size_t readable = 0;
            for (const double x : firstX(file))
                readable += std::isinf(x) ? 0 : 1;
            EXPECT_GE(readable, 1u) << at;
            EXPECT_LE(file.records().size(), 4u) << at;
        }
}

} // namespace
