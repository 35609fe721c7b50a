// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tables/grid/GridContents.h"

#include "tests/support/LibraryNotation.h"
#include "tests/support/RecordingLibrary.h"

#include "host/base/Dates.h"

#include <gtest/gtest.h>

#include <limits>

using support::CRecordingLibrary;
using tables::CGridContents;
using tables::saveGrid;

namespace {

/// Every rule must hold for hosts with columns and for hosts without.
class GridSaveTest : public testing::TestWithParam<bool> {
protected:
    void open(const std::string& notation)
    {
        m_library = std::make_unique<CRecordingLibrary>(notation);
        m_library->offerColumns(GetParam());
        m_table = m_library->GetTable(0);
        m_contents = std::make_unique<CGridContents>(m_library.get(), m_table);
        m_contents->fill();
        m_library->clearCalls();
    }
    void enter(int row, int field, const char* text)
    {
        ASSERT_EQ(m_contents->enter(row, field, orv::String(text)), CGridContents::Entry::Taken);
    }
    /// Saves; the changing calls in their order.
    std::vector<std::string> save()
    {
        m_outcome = saveGrid(*m_contents);
        return m_library->changes();
    }
    std::string rows() const
    {
        const support::RecordingPause pause(*m_library);
        return support::printRows(*m_table);
    }

    std::unique_ptr<CRecordingLibrary> m_library;
    gis::CDBTable* m_table = nullptr;
    std::unique_ptr<CGridContents> m_contents;
    tables::GridSaveOutcome m_outcome;
};

const std::vector<std::string> Nothing;
const std::string Modified = "SetModifiedFlag(yes)";

} // namespace

TEST_P(GridSaveTest, AnUntouchedGridOfExactValuesWritesAndMarksNothing)
{
    open("table T (t text, b boolean, i integer, d decimal 2, l list ('A'), g date);"
         "rows T: ('x', yes, 5, 1.25, 'A', 05/03/2016), (-, -, -, -, -, -), ('y', no, 0, 0, 'B', "
         "-)");

    EXPECT_EQ(save(), Nothing);
    EXPECT_TRUE(m_outcome.isSaved);
}

TEST_P(GridSaveTest, ATextOfNoBytesBecomesNoValue)
{
    open("table T (t text, l list ('A')); rows T: ('x', 'A'), ('', 'A'), ('y', '')");

    EXPECT_EQ(save(),
        (std::vector<std::string> {
            "SetRowValue(T[1], 0, -)", "SetRowValue(T[2], 1, -)", Modified }));
}

TEST_P(GridSaveTest, EditedCellsAreWrittenInFillOrder)
{
    open("table T (t text, i integer); rows T: ('a', 1), ('b', 2), ('c', 3)");
    enter(2, 0, "z");
    enter(0, 1, "7");
    enter(0, 0, "y");

    EXPECT_EQ(save(),
        (std::vector<std::string> { "SetRowValue(T[0], 0, 'y')", "SetRowValue(T[0], 1, 7)",
            "SetRowValue(T[2], 0, 'z')", Modified }));
}

TEST_P(GridSaveTest, AnEditThatRestoresTheTextWritesNothing)
{
    open("table T (t text); rows T: ('a')");
    enter(0, 0, "b");
    enter(0, 0, "a");

    EXPECT_EQ(save(), Nothing);
}

TEST_P(GridSaveTest, AYesNoCellSetToTheEmptyEntrySavesNoValueAndSetToNoSavesFalse)
{
    open("table T (b boolean); rows T: (yes), (yes), (-)");
    enter(0, 0, "");
    enter(1, 0, "No");
    enter(2, 0, "S\xC3\xAC");

    EXPECT_EQ(save(),
        (std::vector<std::string> { "SetRowValue(T[0], 0, -)", "SetRowValue(T[1], 0, no)",
            "SetRowValue(T[2], 0, yes)", Modified }));
}

TEST_P(GridSaveTest, AChangedDecimalMarksTheLibraryAndIsNotWritten)
{
    open("table T (d decimal 2); rows T: (1.5)");
    enter(0, 0, "2.5");

    EXPECT_EQ(save(), std::vector<std::string> { Modified });
    EXPECT_TRUE(m_outcome.isSaved);
    EXPECT_EQ(m_contents->storedValue(0, 0), orv::CPolyValue(1.5));
}

TEST_P(GridSaveTest, AClearedDecimalIsWritten)
{
    open("table T (d decimal 2); rows T: (1.5)");
    enter(0, 0, "");

    EXPECT_EQ(save(), (std::vector<std::string> { "SetRowValue(T[0], 0, -)", Modified }));
}

TEST_P(GridSaveTest, AnUntouchedDecimalWithHiddenDigitsCountsAsChanged)
{
    open("table T (t text, d decimal 2); rows T: ('a', 1), ('b', 1.23456)");

    EXPECT_EQ(save(), std::vector<std::string> { Modified });
    EXPECT_EQ(m_contents->storedValue(1, 1), orv::CPolyValue(1.23456));
}

TEST_P(GridSaveTest, ADecimalWithinTheToleranceOfItsTextDoesNotCount)
{
    open("table T (d decimal 2); rows T: (1.2500000000001), (123456789.250000001)");

    EXPECT_EQ(save(), Nothing);
}

TEST_P(GridSaveTest, ADecimalEditedBackToWhatItShowsCountsLikeAnUntouchedOne)
{
    open("table T (d decimal 2); rows T: (1.23456)");
    enter(0, 0, "9");
    enter(0, 0, "1.23");

    EXPECT_EQ(save(), std::vector<std::string> { Modified });
}

TEST_P(GridSaveTest, ADecimalThatHasNoTextIsCleared)
{
    open("table T (d decimal 2); rows T: (1), (2)");
    {
        const support::RecordingPause pause(*m_library);
        orv::CPolyValue none(std::numeric_limits<double>::quiet_NaN());
        m_library->SetRowValue(m_library->GetRow(m_table, 1), 0, none);
    }
    m_library->clearCalls();

    EXPECT_EQ(save(), (std::vector<std::string> { "SetRowValue(T[1], 0, -)", Modified }));
}

TEST_P(GridSaveTest, ARequiredFieldWithoutAValueStopsTheSaveAfterTheWriting)
{
    open("table T (t text required, i integer required); rows T: ('a', 1), ('b', -), (-, 3)");
    enter(0, 0, "neu");

    EXPECT_EQ(save(), std::vector<std::string> { "SetRowValue(T[0], 0, 'neu')" });
    EXPECT_FALSE(m_outcome.isSaved);
    EXPECT_EQ(m_outcome.emptyRequiredField, 1);
}

TEST_P(GridSaveTest, TheFirstEmptyRequiredCellInFillOrderIsNamed)
{
    open("table T (a text required, b text required); rows T: ('x', 'y'), (-, -), ('x', -)");
    save();
    EXPECT_EQ(m_outcome.emptyRequiredField, 0);

    open("table T (a text required, b text required); rows T: ('x', -), (-, 'y')");
    save();
    EXPECT_EQ(m_outcome.emptyRequiredField, 1);
}

TEST_P(GridSaveTest, ClearingARequiredCellIsRefusedAndItsOldValueIsGone)
{
    open("table T (a text required); rows T: ('x')");
    enter(0, 0, "");

    EXPECT_EQ(save(), std::vector<std::string> { "SetRowValue(T[0], 0, -)" });
    EXPECT_EQ(m_outcome.emptyRequiredField, 0);
}

TEST_P(GridSaveTest, ARequiredDecimalThatIsEmptyCannotBeFilledHere)
{
    open("table T (d decimal 2 required); rows T: (-)");
    enter(0, 0, "5");

    save();

    EXPECT_EQ(m_outcome.emptyRequiredField, 0);
}

TEST_P(GridSaveTest, ADateIsWrittenAsTheMidnightOfItsDay)
{
    open("table T (g date); rows T: (01/02/2015), (02/02/2015)");
    enter(0, 0, "5/3/2016");
    enter(1, 0, "32/1/2016");

    EXPECT_EQ(save(),
        (std::vector<std::string> {
            "SetRowValue(T[0], 0, 05/03/2016)", "SetRowValue(T[1], 0, -)", Modified }));
    std::int64_t midnight = 0;
    ASSERT_TRUE(orv::ParseDateText("05/03/2016", midnight));
    EXPECT_EQ(m_contents->storedValue(0, 0).GetDateValue(), midnight);
}

TEST_P(GridSaveTest, RowsOfAListAreSavedInTheOrderOfTheList)
{
    open("table T (t text); rows T: ('a'), ('b'), ('c')");
    m_contents->fill({ m_library->GetRow(m_table, 2), m_library->GetRow(m_table, 0) });
    m_library->clearCalls();
    enter(1, 0, "y");
    enter(0, 0, "z");

    EXPECT_EQ(save(),
        (std::vector<std::string> {
            "SetRowValue(T[2], 0, 'z')", "SetRowValue(T[0], 0, 'y')", Modified }));
}

INSTANTIATE_TEST_SUITE_P(
    Hosts, GridSaveTest, testing::Bool(), [](const testing::TestParamInfo<bool>& columns) {
        return columns.param ? "WithColumns" : "CellByCell";
    });

namespace {

/// A host whose cells are not of the formats' kinds, or not midnight, or empty texts.
struct OddHost {
    CRecordingLibrary library;
    std::vector<orv::CPolyValue> cells;
    CGridContents contents;
    OddHost(const std::string& fields, std::vector<orv::CPolyValue> values)
        : library("table T (" + fields + "); rows T: (-, -)")
        , cells(std::move(values))
        , contents(&library, library.GetTable(0))
    {
        library.answerCells([this](orv::CResultRow*, int field, orv::CPolyValue& value) {
            value = cells[static_cast<std::size_t>(field)];
            return true;
        });
        contents.fill();
        library.clearCalls();
    }
    std::vector<std::string> save()
    {
        EXPECT_TRUE(saveGrid(contents).isSaved);
        return library.changes();
    }
};

orv::CPolyValue date(std::int64_t seconds)
{
    orv::CPolyValue value;
    value.SetDateValue(seconds);
    return value;
}

} // namespace

TEST(GridSaveOfOddHostsTest, AStoredTimeOfDayIsRewrittenAsMidnight)
{
    std::int64_t midnight = 0;
    ASSERT_TRUE(orv::ParseDateText("05/03/2016", midnight));
    OddHost host("g date, t text", { date(midnight + 15 * 3600), orv::CPolyValue("x") });

    EXPECT_EQ(
        host.save(), (std::vector<std::string> { "SetRowValue(T[0], 0, 05/03/2016)", Modified }));
}

TEST(GridSaveOfOddHostsTest, TheDateZeroIsLostOnlyWhenItWasEdited)
{
    OddHost untouched("g date, t text", { date(0), orv::CPolyValue("x") });
    EXPECT_EQ(untouched.save(), Nothing);

    OddHost edited("g date, t text", { date(0), orv::CPolyValue("x") });
    ASSERT_EQ(edited.contents.enter(0, 0, orv::String("05/03/2016")), CGridContents::Entry::Taken);
    EXPECT_EQ(edited.save().size(), 2U);
}

TEST(GridSaveOfOddHostsTest, ADateBefore1000OrBeyondTheCalendarIsLostOnlyWhenItWasEdited)
{
    std::int64_t ancient = 0;
    ASSERT_TRUE(orv::ParseDateText("01/01/0050", ancient));
    for (const std::int64_t moment : { ancient, std::numeric_limits<std::int64_t>::max() }) {
        OddHost untouched("g date, t text", { date(moment), orv::CPolyValue("x") });
        EXPECT_EQ(untouched.save(), Nothing);
    }

    OddHost edited("g date, t text", { date(ancient), orv::CPolyValue("x") });
    ASSERT_EQ(edited.contents.enter(0, 0, orv::String("")), CGridContents::Entry::Taken);
    EXPECT_EQ(edited.save(), (std::vector<std::string> { "SetRowValue(T[0], 0, -)", Modified }));
}

TEST(GridSaveOfOddHostsTest, AValueOfAnotherKindIsRewrittenInTheFormatOfItsField)
{
    OddHost host("t text, b boolean", { orv::CPolyValue(5), orv::CPolyValue("") });

    EXPECT_EQ(host.save(),
        (std::vector<std::string> {
            "SetRowValue(T[0], 0, '5')", "SetRowValue(T[0], 1, -)", Modified }));
}

TEST(GridSaveOfOddHostsTest, NoLibraryIsSavedWithoutAComplaint)
{
    CGridContents contents(nullptr, nullptr);
    contents.fill();

    EXPECT_TRUE(saveGrid(contents).isSaved);
}
