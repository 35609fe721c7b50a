// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/shapefile/DbfCells.h"

#include "embedded/shapefile/DbfFile.h"
#include "embedded/shapefile/DbfMemo.h"
#include "host/base/Dates.h"
#include "tests/embedded/shapefile/RawShapefile.h"

#include <gtest/gtest.h>

#include <cmath>

using embedded::CellState;
using embedded::DbfFile;
using embedded::DbfNumber;
using namespace shapetest;

namespace {

struct NumberCase {
    const char* cell;
    CellState state;
    double value;
    bool isWhole;
    bool isExact;
    int digits;
};

TEST(DbfCellsTest, NumbersAreReadAsWritten)
{
    const NumberCase cases[] = {
        { "       12.50", CellState::Value, 12.5, false, true, 2 },
        { "         1,5", CellState::Value, 1.5, false, true, 1 },
        { "************", CellState::Empty, 0, true, true, 0 },
        { "            ", CellState::Empty, 0, true, true, 0 },
        { "", CellState::Empty, 0, true, true, 0 },
        { "         abc", CellState::Unreadable, 0, true, true, 0 },
        { "1e5", CellState::Value, 1e5, true, true, 0 },
        { "1.25E-3", CellState::Value, 1.25e-3, false, true, 5 },
        { "1.50000000e+001", CellState::Value, 15, true, true, 7 },
        { "1e400", CellState::Unreadable, 0, true, true, 0 },
        { "-", CellState::Unreadable, 0, true, true, 0 },
        { "+7", CellState::Value, 7, true, true, 0 },
        { "007", CellState::Value, 7, true, true, 0 },
        { "-0", CellState::Value, 0, true, true, 0 },
        { "0x10", CellState::Unreadable, 0, true, true, 0 },
        { "inf", CellState::Unreadable, 0, true, true, 0 },
        { "nan", CellState::Unreadable, 0, true, true, 0 },
        { "1.2.3", CellState::Unreadable, 0, true, true, 0 },
        { "1.234,5", CellState::Unreadable, 0, true, true, 0 },
        { "++1", CellState::Unreadable, 0, true, true, 0 },
        { "9007199254740992", CellState::Value, 9007199254740992.0, true, true, 0 },
        { "-9007199254740992", CellState::Value, -9007199254740992.0, true, true, 0 },
        { "9007199254740993", CellState::Value, 9007199254740992.0, true, false, 0 },
        { "12345678901234567890", CellState::Value, 12345678901234567890.0, true, false, 0 },
        { "00000000000000000000000012", CellState::Value, 12, true, true, 0 },
        { "5\0\0\0", CellState::Value, 5, true, true, 0 },
    };
    for (const NumberCase& wanted : cases) {
        const DbfNumber number = embedded::parseDbfNumber(wanted.cell);
        EXPECT_EQ(number.state, wanted.state) << wanted.cell;
        EXPECT_EQ(number.value, wanted.value) << wanted.cell;
        EXPECT_EQ(number.isWhole, wanted.isWhole) << wanted.cell;
        EXPECT_EQ(number.isExact, wanted.isExact) << wanted.cell;
        EXPECT_EQ(number.digits, wanted.digits) << wanted.cell;
    }
}

TEST(DbfCellsTest, LogicalsAreTYFNInAnyCase)
{
    for (const char cell : std::string("TtYy")) {
        bool value = false;
        EXPECT_EQ(embedded::parseDbfLogical({ &cell, 1 }, value), CellState::Value);
        EXPECT_TRUE(value);
    }
    for (const char cell : std::string("FfNn")) {
        bool value = true;
        EXPECT_EQ(embedded::parseDbfLogical({ &cell, 1 }, value), CellState::Value);
        EXPECT_FALSE(value);
    }
    bool value = false;
    for (const char* cell : { "?", " ", "" })
        EXPECT_EQ(embedded::parseDbfLogical(cell, value), CellState::Empty);
    for (const char* cell : { "1", "0", "X" })
        EXPECT_EQ(embedded::parseDbfLogical(cell, value), CellState::Unreadable);
}

TEST(DbfCellsTest, DatesAreRealDays)
{
    const auto day = [](int d, int m, int y) {
        std::int32_t number = 0;
        EXPECT_TRUE(orv::DayNumber({ d, m, y }, number));
        return number;
    };
    const std::pair<const char*, std::int32_t> dates[]
        = { { "20240229", day(29, 2, 2024) }, { "00010101", day(1, 1, 1) },
              { "99991231", day(31, 12, 9999) }, { "18991230", day(30, 12, 1899) },
              { "2023-1-5", day(5, 1, 2023) }, { "2023/12/31", day(31, 12, 2023) } };
    for (const auto& [cell, wanted] : dates) {
        std::int32_t number = 0;
        EXPECT_EQ(embedded::parseDbfDate(cell, number), CellState::Value) << cell;
        EXPECT_EQ(number, wanted) << cell;
    }
    std::int32_t number = 0;
    for (const char* cell : { "00000000", "        ", "" })
        EXPECT_EQ(embedded::parseDbfDate(cell, number), CellState::Empty) << cell;
    for (const char* cell : { "20230229", "20231345", "********", "2023", "202301", "2023-1",
             "2023-001-5", "20230101x", "2023-+1-5", "2023--5" })
        EXPECT_EQ(embedded::parseDbfDate(cell, number), CellState::Unreadable) << cell;
}

TEST(DbfCellsTest, BinaryNumbersOfFoxProAndDBase7)
{
    EXPECT_EQ(embedded::parseFoxProInteger(little32(-7)).value, -7);
    EXPECT_EQ(embedded::parseFoxProDouble(number(3.25)).value, 3.25);
    EXPECT_EQ(embedded::parseFoxProDouble(number(3.25)).digits, 2);
    EXPECT_EQ(embedded::parseFoxProDouble(number(std::nan(""))).state, CellState::Unreadable);
    EXPECT_EQ(embedded::parseFoxProMoney(little32(123450) + little32(0)).value, 12.345);
    EXPECT_EQ(embedded::parseDBaseInteger(std::string("\x80\0\0\x07", 4)).value, 7);
    EXPECT_EQ(embedded::parseDBaseInteger("\x7F\xFF\xFF\xFF").value, -1);
    EXPECT_EQ(embedded::parseDBaseInteger(std::string(4, '\0')).state, CellState::Empty);
    std::string half = "\xBF\xE0" + std::string(6, '\0');
    EXPECT_EQ(embedded::parseDBaseDouble(half).value, 0.5);
}

class DbfFileTest : public testing::Test {
protected:
    std::string faultOf(const std::string& bytes)
    {
        writeFile(folder / "a.dbf", bytes);
        const auto file = DbfFile::open(folder / "a.dbf");
        if (file)
            return {};
        EXPECT_EQ(file.error().code, embedded::ErrorCode::BadDbf);
        return file.error().detail;
    }
    DbfFile opened(const std::string& bytes)
    {
        writeFile(folder / "a.dbf", bytes);
        auto file = DbfFile::open(folder / "a.dbf");
        EXPECT_TRUE(file.ok());
        return std::move(file.value());
    }
    static std::string changed(std::string bytes, std::size_t at, const std::string& with)
    {
        return bytes.replace(at, with.size(), with);
    }

    TemporaryFolder folder;
};

TEST_F(DbfFileTest, RecordsLieWhereTheHeaderSays)
{
    RawDbf dbf;
    dbf.fields = { { "A", 'C', 3 }, { "B", 'N', 5, 2 } };
    dbf.rows = { { "x", " 1.50" }, { "yyy", "99.99" } };
    dbf.deleted = { false, true };
    dbf.languageByte = 0x57;

    const DbfFile file = opened(dbf.bytes());

    EXPECT_EQ(file.recordCount(), 2u);
    EXPECT_EQ(file.languageByte(), 0x57);
    EXPECT_EQ(file.fields()[1].name, "B");
    EXPECT_EQ(file.fields()[1].decimals, 2);
    EXPECT_EQ(file.cell(0, file.fields()[0]), "x  ");
    EXPECT_EQ(file.cell(1, file.fields()[1]), "99.99");
    EXPECT_FALSE(file.isDeleted(0));
    EXPECT_TRUE(file.isDeleted(1));
}

TEST_F(DbfFileTest, ImpossibleHeadersAreRefused)
{
    const std::string sound = textTable({ "a", "b" }).bytes();

    EXPECT_NE(faultOf(""), "");
    EXPECT_NE(faultOf(sound.substr(0, 31)), "");
    EXPECT_EQ(faultOf(changed(sound, 8, little16(16))), "header length 16");
    EXPECT_NE(faultOf(changed(sound, 8, little16(65535))), "");
    EXPECT_EQ(faultOf(changed(sound, 10, little16(0))), "record length 0");
    EXPECT_EQ(faultOf(changed(sound, 10, little16(1))), "record length 1, its fields take 2");
    EXPECT_EQ(faultOf(sound), "");
}

TEST_F(DbfFileTest, TheCountIsThatOfTheRecordsThatAreThere)
{
    const std::string sound = textTable({ "a", "b", "c" }).bytes();

    const DbfFile huge = opened(changed(sound, 4, little32(2147483647)));
    EXPECT_EQ(huge.recordCount(), 3u);
    EXPECT_EQ(huge.declaredCount(), 2147483647u);
    const DbfFile small = opened(changed(sound, 4, little32(1)));
    EXPECT_EQ(small.recordCount(), 1u);
    EXPECT_EQ(small.storedCount(), 3u);
    EXPECT_EQ(opened(sound.substr(0, sound.size() - 2)).recordCount(), 2u);
}

TEST_F(DbfFileTest, AFieldListMayLackItsEndAndNamesTheirNul)
{
    std::string bytes = textTable({ "a" }).bytes();
    bytes.replace(32, 11, "ABCDEFGHIJK");
    bytes[64] = ' ';

    const DbfFile file = opened(bytes);

    ASSERT_EQ(file.fields().size(), 1u);
    EXPECT_EQ(file.fields()[0].name, "ABCDEFGHIJK");
}

TEST_F(DbfFileTest, ATableMayHaveNoFields)
{
    RawDbf dbf;
    dbf.rows = { {}, {} };

    EXPECT_EQ(opened(dbf.bytes()).recordCount(), 2u);
}

TEST_F(DbfFileTest, WideTextsKeepTheirHighByteAmongTheDecimals)
{
    std::string bytes = textTable({ std::string(200, 'a') }).bytes();
    const std::string row = bytes.substr(65, 201);
    bytes.resize(65);
    bytes += row + std::string(256, 'b');
    bytes = changed(changed(bytes, 32 + 17, std::string(1, '\1')), 10, little16(457));

    const DbfFile file = opened(bytes);

    EXPECT_EQ(file.fields()[0].widthBytes, 456);
    EXPECT_EQ(file.recordCount(), 1u);
}

TEST_F(DbfFileTest, TruncationAtAnyByteIsSurvived)
{
    const std::string whole = textTable({ "aaaa", "bbbb", "cccc" }).bytes();
    for (std::size_t length = 0; length < whole.size(); ++length) {
        writeFile(folder / "cut.dbf", std::string_view(whole).substr(0, length));
        const auto file = DbfFile::open(folder / "cut.dbf");
        EXPECT_EQ(file.ok(), length >= 65) << length;
        if (file) {
            EXPECT_EQ(file.value().recordCount(), (length - 65) / 5) << length;
        }
    }
}

TEST_F(DbfFileTest, MemosOfDBase3EndAtTheirMark)
{
    writeFile(folder / "a.dbt",
        std::string(512, '\0') + "first\x1A\x1A" + std::string(505, ' ') + "second\x1A");
    const embedded::DbfMemo memo(folder / "a.dbf", 0x83);

    ASSERT_TRUE(memo.isOpen());
    EXPECT_EQ(memo.text("         1"), "first");
    EXPECT_EQ(memo.text("         2"), "second");
    EXPECT_EQ(memo.text("          "), "");
    EXPECT_EQ(memo.text("        99"), std::nullopt);
}

TEST_F(DbfFileTest, MemosOfDBase4AndFoxProStateTheirLength)
{
    const std::string header4 = little32(2) + std::string(16, '\0') + little16(512);
    writeFile(folder / "b.dbt",
        header4 + std::string(512 - header4.size(), '\0') + little32(0x0008FFFF) + little32(13)
            + "hello");
    writeFile(folder / "c.fpt",
        big32(1) + std::string("\0\0\0\x40", 4) + std::string(56, '\0') + big32(1) + big32(3)
            + "abc");
    const embedded::DbfMemo dBase4(folder / "b.dbf", 0x8B);
    const embedded::DbfMemo foxPro(folder / "c.dbf", 0x30);

    EXPECT_EQ(dBase4.text("         1"), "hello");
    EXPECT_EQ(foxPro.text(little32(1)), "abc");
    EXPECT_EQ(foxPro.text(little32(0)), "");
    EXPECT_EQ(foxPro.text(little32(7)), std::nullopt);
}

} // namespace
