// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tables/grid/GridField.h"

#include "tests/support/RecordingLibrary.h"

#include <gtest/gtest.h>

using tables::acceptCellText;
using tables::cellChoices;
using tables::cellText;
using tables::GridField;
using tables::valueOfCellText;

namespace {

orv::CPolyValue dateValue(std::int64_t seconds)
{
    orv::CPolyValue value;
    value.SetDateValue(seconds);
    return value;
}

std::string text(const orv::CPolyValue& value, int digits = 2)
{
    return cellText(value, digits).Bytes();
}

/// The only field of a table made from this notation.
struct OneField {
    support::CRecordingLibrary library;
    GridField field;
    explicit OneField(const std::string& notation)
        : library("table T (" + notation + ")")
        , field(tables::gridFields(&library, library.GetTable(0)).at(0))
    {
    }
    /// What becomes of an entered text; "refused" where it breaks a bound.
    std::string accept(const char* entered)
    {
        orv::String entry(entered);
        return acceptCellText(library, field, entry) ? entry.Bytes() : "refused";
    }
};

} // namespace

TEST(CellTextTest, IsChosenByTheKindOfTheValue)
{
    EXPECT_EQ(text(orv::CPolyValue()), "");
    EXPECT_EQ(text(orv::CPolyValue(true)), "S\xC3\xAC");
    EXPECT_EQ(text(orv::CPolyValue(false)), "No");
    EXPECT_EQ(text(orv::CPolyValue(-12)), "-12");
    EXPECT_EQ(text(orv::CPolyValue("Via %1")), "Via %1");
    EXPECT_EQ(text(orv::CPolyValue(1.235), 2), "1.24");
    EXPECT_EQ(text(orv::CPolyValue(1.0), 0), "1");
}

TEST(CellTextTest, ADateShowsItsLocalDayAndTheDateZeroNothing)
{
    orv::CPolyValue fifthOfMarch
        = valueOfCellText(orv::String("05/03/2016"), gis::FieldFormat::Date);

    EXPECT_EQ(text(fifthOfMarch), "05/03/2016");
    EXPECT_EQ(text(dateValue(fifthOfMarch.GetDateValue() + 15 * 3600)), "05/03/2016");
    EXPECT_EQ(text(dateValue(0)), "");
}

TEST(CellTextTest, IsReadBackByTheFormatOfTheField)
{
    using gis::FieldFormat;
    const auto read = [](const char* cell, FieldFormat format) {
        return valueOfCellText(orv::String(cell), format);
    };

    for (const FieldFormat format : { FieldFormat::Text, FieldFormat::Boolean, FieldFormat::Integer,
             FieldFormat::Decimal, FieldFormat::List, FieldFormat::Date })
        EXPECT_TRUE(read("", format).IsEmpty()) << static_cast<int>(format);
    EXPECT_EQ(read("12", FieldFormat::Text), orv::CPolyValue("12"));
    EXPECT_EQ(read("A", FieldFormat::List), orv::CPolyValue("A"));
    EXPECT_EQ(read("S\xC3\xAC", FieldFormat::Boolean), orv::CPolyValue(true));
    EXPECT_EQ(read("No", FieldFormat::Boolean), orv::CPolyValue(false));
    EXPECT_EQ(read("Si\xCC\x80", FieldFormat::Boolean), orv::CPolyValue(false)); // decomposed
    EXPECT_EQ(read("abc", FieldFormat::Integer), orv::CPolyValue(0));
    EXPECT_EQ(read("2.5", FieldFormat::Decimal), orv::CPolyValue(2.5));
}

TEST(CellTextTest, ADateNeedsARealDayWithFourDigitsOfYear)
{
    const auto date = [](const char* cell) {
        return valueOfCellText(orv::String(cell), gis::FieldFormat::Date);
    };

    EXPECT_EQ(date("5/3/2016"), date("05/03/2016"));
    EXPECT_EQ(date("5/3/2016").GetType(), orv::PolyDate);
    for (const char* wrong : { "31/02/2016", "2016-03-05", "5/3/16", "00/01/2016", "oggi" })
        EXPECT_TRUE(date(wrong).IsEmpty()) << wrong;
}

TEST(AcceptCellTextTest, BoundsOfIntegersAreInclusiveAndCountOnlyWhereTheyAreSet)
{
    OneField both("n integer min -2 max 8");
    EXPECT_EQ(both.accept("8"), "8");
    EXPECT_EQ(both.accept("9"), "refused");
    EXPECT_EQ(both.accept("-2"), "-2");
    EXPECT_EQ(both.accept("-3"), "refused");
    OneField none("n integer");
    EXPECT_EQ(none.accept("2147483647"), "2147483647");
    EXPECT_EQ(none.accept("-2147483648"), "-2147483648");
    OneField onlyMin("n integer min 5");
    EXPECT_EQ(onlyMin.accept("4"), "refused");
    EXPECT_EQ(onlyMin.accept("1000000"), "1000000");
}

TEST(AcceptCellTextTest, AnIntegerBecomesTheDigitsOfWhatWasRead)
{
    OneField field("n integer");

    EXPECT_EQ(field.accept("007"), "7");
    EXPECT_EQ(field.accept(" 12 strade"), "12");
    EXPECT_EQ(field.accept("abc"), "0");
    EXPECT_EQ(field.accept("1.9"), "1");
    EXPECT_EQ(field.accept("99999999999"), "2147483647");
}

TEST(AcceptCellTextTest, ATextWithoutDigitsIsRefusedWhereZeroIsOutsideTheBounds)
{
    OneField field("n integer min 1 max 8");

    EXPECT_EQ(field.accept("abc"), "refused");
}

TEST(AcceptCellTextTest, ADecimalGetsTheDigitsOfItsField)
{
    OneField field("n decimal 2 min 0 max 10");

    EXPECT_EQ(field.accept("2.5"), "2.50");
    EXPECT_EQ(field.accept("2.999"), "3.00");
    EXPECT_EQ(field.accept("10"), "10.00");
    EXPECT_EQ(field.accept("10.001"), "refused");
    EXPECT_EQ(field.accept("-0.001"), "refused");
}

TEST(AcceptCellTextTest, AnEmptyTextIsAlwaysRight)
{
    EXPECT_EQ(OneField("n integer min 1").accept(""), "");
    EXPECT_EQ(OneField("n decimal 2 min 1").accept(""), "");
    EXPECT_EQ(OneField("n date").accept(""), "");
}

TEST(AcceptCellTextTest, ADateIsWrittenInFullAndAnImpossibleOneIsCleared)
{
    OneField field("n date");

    EXPECT_EQ(field.accept("5/3/2016"), "05/03/2016");
    EXPECT_EQ(field.accept("30/2/2016"), "");
    EXPECT_EQ(field.accept("1/1/0050"), "1/1/0050") << "no date any more with two digits of year";
}

TEST(CellChoicesTest, YesNoOffersNoThenYesThenNothing)
{
    OneField field("n boolean");

    const auto choices = cellChoices(field.library, field.field);

    EXPECT_EQ(choices, (std::vector<orv::String> { "No", "S\xC3\xAC", "" }));
}

TEST(CellChoicesTest, AListStartsWithTheEntryThatTheLibraryGivesForMinusOne)
{
    OneField field("n list ('A', 'B')");
    field.library.clearCalls();

    const auto choices = cellChoices(field.library, field.field);

    EXPECT_EQ(choices, (std::vector<orv::String> { "", "A", "B" }));
    EXPECT_EQ(field.library.callsOf("GetListElement"),
        (std::vector<std::string> {
            "GetListElement(T.n, -1)", "GetListElement(T.n, 0)", "GetListElement(T.n, 1)" }));
}

TEST(CellChoicesTest, OtherFormatsOfferNone)
{
    for (const char* notation : { "n text", "n integer", "n decimal", "n date" }) {
        OneField field(notation);
        EXPECT_TRUE(cellChoices(field.library, field.field).empty()) << notation;
    }
}

TEST(GridFieldsTest, NoTableHasNoColumns)
{
    support::CRecordingLibrary library;

    EXPECT_TRUE(tables::gridFields(&library, nullptr).empty());
    EXPECT_TRUE(tables::gridFields(nullptr, nullptr).empty());
}
