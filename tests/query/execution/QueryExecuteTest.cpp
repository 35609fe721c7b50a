// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tematica/QueryExecute.h"

#include "embedded/model/Table.h"
#include "host/base/Dates.h"
#include "host/gis/TableEdit.h"
#include "tests/query/support/CaseFile.h"
#include "tests/support/LibraryNotation.h"
#include "tests/support/RecordingLibrary.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace {

/// The data of the case table.
constexpr const char* Roads = R"(
    table Strade (Nome text, Tipo list ('Strada', 'Via'), Attivo boolean, Corsie integer,
                  Larghezza decimal 2, Quota decimal 0, Rilievo date, "Data rilievo" date,
                  Year integer);
    rows Strade: ('Via Roma 12', 'Strada', yes, 2, 3.5, 100.4, 05/03/2016, 27/03/2016, 1),
                 ('Via Milano', 'Via', no, 1, 3.495, 99.5, 06/03/2016, -, 2),
                 ('via roma', 'Strada', -, -, -, 100.5, -, 30/10/2016, -),
                 (-, 'Strada', yes, 3, 0.005, -, 01/01/1970, 01/01/2010, 4),
                 ('Piazza città', -, no, 0, 12.345, -2, 31/12/1969, -, 5);
    theme Vie: lines on Strade;
    ents Vie: 0 [0 0, 1 0], 1 [0 0, 1 0], 2 [0 0, 1 0], 3 [0 0, 1 0], 4 []
)";

/// Numbers of the entities found, from 1; "refused" when the filter is.
std::string found(gis::CLibGis& library, const std::string& filter)
{
    CQueryExecute query(&library, library.GetTheme(0));
    if (!query.SetQueryFilter(orv::String(std::string_view(filter))))
        return "refused";
    std::vector<gis::CEnt*> entities;
    const int count = query.Execute(entities);
    EXPECT_EQ(static_cast<std::size_t>(count), entities.size());
    std::string text;
    for (int i = 0; i < library.GetNoEnts(library.GetTheme(0)); ++i)
        for (gis::CEnt* entity : entities)
            if (entity == library.GetEnt(library.GetTheme(0), i))
                text += (text.empty() ? "" : " ") + std::to_string(i + 1);
    return text.empty() ? "none" : text;
}

class QueryExecuteTest : public testing::Test {
protected:
    QueryExecuteTest()
    {
        testing::internal::CaptureStderr(); // what the parser says is the language's test
    }
    ~QueryExecuteTest() override { testing::internal::GetCapturedStderr(); }
};

TEST_F(QueryExecuteTest, FiltersFindTheEntitiesOfTheTable)
{
    const auto library = support::makeLibrary(Roads);
    support::CRecordingLibrary cellByCell(Roads); // offers no columns
    for (const auto& line : testing_query::readCases("execution/filters.txt", 2)) {
        SCOPED_TRACE("filters.txt:" + std::to_string(line.number));
        EXPECT_EQ(found(*library, line.columns[0]), line.columns[1]) << "over columns";
        EXPECT_EQ(found(cellByCell, line.columns[0]), line.columns[1]) << "cell by cell";
    }
}

TEST_F(QueryExecuteTest, ATimeOfDayIsDroppedBeforeDatesAreCompared)
{
    support::CRecordingLibrary library(Roads);
    std::int32_t day = 0;
    ASSERT_TRUE(orv::DayNumber({ 27, 3, 2016 }, day)); // the clock changes on that day
    const std::int64_t afternoon = orv::LocalMidnightOfDay(day + 1) - 30600; // 15:30
    library.answerCells([&](orv::CResultRow*, int field, orv::CPolyValue& value) {
        if (field == 6)
            value.SetDateValue(afternoon);
        return field == 6;
    });

    EXPECT_EQ(found(library, "Rilievo = Date(27,3,2016)"), "1 2 3 4 5");
}

TEST_F(QueryExecuteTest, WithoutAFilterNothingIsFound)
{
    const auto library = support::makeLibrary(Roads);
    CQueryExecute query(library.get(), library->GetTheme(0));
    std::vector<gis::CEnt*> entities(7);

    EXPECT_EQ(query.Execute(entities), 0);
    EXPECT_TRUE(entities.empty());
}

TEST_F(QueryExecuteTest, ABadTextTakesTheFilterAway)
{
    const auto library = support::makeLibrary(Roads);
    CQueryExecute query(library.get(), library->GetTheme(0));
    std::vector<gis::CEnt*> entities;
    ASSERT_TRUE(query.SetQueryFilter("Corsie = 2"));
    ASSERT_EQ(query.Execute(entities), 1);

    EXPECT_FALSE(query.SetQueryFilter("Corsie ="));
    EXPECT_EQ(query.Execute(entities), 0);
    EXPECT_TRUE(entities.empty());
}

TEST_F(QueryExecuteTest, AFilterMayRunManyTimesAndBeReplaced)
{
    const auto library = support::makeLibrary(Roads);
    CQueryExecute query(library.get(), library->GetTheme(0));
    std::vector<gis::CEnt*> entities;
    ASSERT_TRUE(query.SetQueryFilter("Corsie >= 1"));
    EXPECT_EQ(query.Execute(entities), 3);
    EXPECT_EQ(query.Execute(entities), 3);
    ASSERT_TRUE(query.SetQueryFilter("Corsie >= 2"));
    EXPECT_EQ(query.Execute(entities), 2);
}

TEST_F(QueryExecuteTest, CopiesShareTheFilterUntilOneIsGivenAnother)
{
    const auto library = support::makeLibrary(Roads);
    std::vector<gis::CEnt*> entities;
    auto original = std::make_unique<CQueryExecute>(library.get(), library->GetTheme(0));
    ASSERT_TRUE(original->SetQueryFilter("Corsie >= 1"));

    CQueryExecute copy(*original);
    CQueryExecute assigned(nullptr, nullptr);
    assigned = *original;
    ASSERT_TRUE(original->SetQueryFilter("Corsie = 0"));

    EXPECT_EQ(original->Execute(entities), 1);
    EXPECT_EQ(copy.Execute(entities), 3);
    original.reset();
    EXPECT_EQ(copy.Execute(entities), 3);
    EXPECT_EQ(assigned.Execute(entities), 3);
}

TEST_F(QueryExecuteTest, WithoutLibraryOrThemeNothingIsFound)
{
    const auto library = support::makeLibrary(Roads);
    std::vector<gis::CEnt*> entities;
    for (gis::CLibGis* host : { static_cast<gis::CLibGis*>(nullptr), library.get() }) {
        CQueryExecute query(host, nullptr);
        EXPECT_TRUE(query.SetQueryFilter("1 = 1"));
        EXPECT_EQ(query.Execute(entities), 0);
    }
}

TEST_F(QueryExecuteTest, AThemeWithoutEntitiesGivesNone)
{
    const auto library
        = support::makeLibrary("table T (a integer); rows T: (1), (2); theme S: points on T");

    EXPECT_EQ(found(*library, "a = 1"), "none");
    EXPECT_EQ(found(*library, "1 = 1"), "none");
}

TEST_F(QueryExecuteTest, ATableWithoutFieldsStillKnowsTheFunctions)
{
    const char* const notation
        = "table T (); rows T: (), (); theme S: points on T; ents S: 0 [0 0], 1 [1 1]";
    const auto library = support::makeLibrary(notation);
    support::CRecordingLibrary cellByCell(notation);
    for (gis::CLibGis* host : { library.get(), static_cast<gis::CLibGis*>(&cellByCell) }) {
        EXPECT_EQ(found(*host, "1 = 1"), "1 2");
        EXPECT_EQ(found(*host, "1 = 2"), "none");
        EXPECT_EQ(found(*host, "Year(Date(1,2,2010)) = 2010 AND Now() > Date(1,1,2000)"), "1 2");
        EXPECT_EQ(found(*host, "a = 1"), "none");
    }
}

TEST_F(QueryExecuteTest, OfTwoFieldsOfOneNameTheFirstIsMeant)
{
    const auto library
        = support::makeLibrary("table T (a integer, a integer); rows T: (1, 2), (2, 1);"
                               "theme S: points on T; ents S: 0 [], 1 []");

    EXPECT_EQ(found(*library, "a = 1"), "1");
}

TEST_F(QueryExecuteTest, FieldsAddedLaterAreNotKnown)
{
    const auto library = support::makeLibrary("table T (a integer); rows T: (1);"
                                              "theme S: points on T; ents S: 0 []");
    CQueryExecute before(library.get(), library->GetTheme(0));
    library->GetTable(0)->addField("b", gis::FieldFormat::Integer);
    CQueryExecute after(library.get(), library->GetTheme(0));
    std::vector<gis::CEnt*> entities;

    ASSERT_TRUE(before.SetQueryFilter("b IS NULL"));
    ASSERT_TRUE(after.SetQueryFilter("b IS NULL"));

    EXPECT_EQ(before.Execute(entities), 0);
    EXPECT_EQ(after.Execute(entities), 1);
}

TEST_F(QueryExecuteTest, EntitiesComeInTheirOwnOrder)
{
    const auto library = support::makeLibrary("table T (a integer); rows T: (1), (2), (3), (4);"
                                              "theme S: points on T;"
                                              "ents S: 3 [], 0 [], 2 []");
    CQueryExecute query(library.get(), library->GetTheme(0));
    ASSERT_TRUE(query.SetQueryFilter("a <> 2 AND a <> 1"));
    std::vector<gis::CEnt*> entities;

    ASSERT_EQ(query.Execute(entities), 2);
    EXPECT_EQ(entities[0], library->GetEnt(library->GetTheme(0), 0));
    EXPECT_EQ(entities[1], library->GetEnt(library->GetTheme(0), 2));
}

TEST_F(QueryExecuteTest, NulBytesOfTheFilterReachTheParser)
{
    const auto library = support::makeLibrary(Roads);

    EXPECT_EQ(found(*library, std::string("Corsie = 2\0 garbage (", 21)), "1");
}

/// The query was made when the table had three fields; it is asked when it has one, or four.
template <typename Host> void expectFieldsByPosition()
{
    Host library("table T (a integer, b integer, c integer); rows T: (1, 2, 3), (2, 2, 4);"
                 "theme P: points 2d on T; ents P: 0 [0 0], 1 [1 1]");
    gis::CDBTable* table = library.GetTable(0);
    CQueryExecute first(&library, library.GetTheme(0));
    CQueryExecute third(&library, library.GetTheme(0));
    ASSERT_TRUE(first.SetQueryFilter("a = 1"));
    ASSERT_TRUE(third.SetQueryFilter("c = 3"));
    std::vector<gis::CEnt*> entities;
    {
        gis::CCtrlDlgTableEdit edit(&library, table);
        edit.AppendField("d", gis::FieldFormat::Integer);
        ASSERT_TRUE(edit.Commit());
    }
    EXPECT_EQ(third.Execute(entities), 1);
    {
        gis::CCtrlDlgTableEdit edit(&library, table);
        for (int i = 3; i > 0; --i)
            edit.DeleteField(edit.GetCurField(i));
        ASSERT_TRUE(edit.Commit());
    }
    EXPECT_EQ(first.Execute(entities), 1);
    EXPECT_EQ(third.Execute(entities), 0) << "a field that is no more has no value";
    ASSERT_TRUE(third.SetQueryFilter("c IS NULL"));
    EXPECT_EQ(third.Execute(entities), 2);
}

struct CColumnHost final : support::CRecordingLibrary {
    explicit CColumnHost(const char* notation)
        : CRecordingLibrary(notation)
    {
        offerColumns(true);
    }
};

TEST_F(QueryExecuteTest, FieldsThatWentSinceTheQueryWasMadeHaveNoValue)
{
    expectFieldsByPosition<CColumnHost>();
    expectFieldsByPosition<support::CRecordingLibrary>();
}

} // namespace
