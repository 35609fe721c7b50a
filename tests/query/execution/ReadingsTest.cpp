// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT

// Queries over a host that says which fields it could not read (host/gis/Readings.h).
#include "query/execution/Readings.h"

#include "host/gis/Readings.h"
#include "query/language/FilterParser.h"
#include "tematica/QueryExecute.h"
#include "tests/support/RecordingLibrary.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

namespace {

constexpr const char* Roads
    = "table Strade (Nome text, Corsie integer, Rilievo date, Year integer);"
      "rows Strade: ('Via Roma', -, 05/03/2016, 1), ('Via Milano', -, 06/03/2017, 2);"
      "theme Vie: lines on Strade; ents Vie: 0 [0 0, 1 0], 1 [0 0, 1 0]";

class CSomeReadings final : public gis::IReadings {
public:
    bool IsReadable(gis::CDBTable* table, int fieldIndex) override
    {
        asked.insert(fieldIndex);
        lastTable = table;
        return !unreadable.contains(fieldIndex);
    }
    bool Read(gis::CDBTable*, int fieldIndex, gis::IReadingStop* stop) override
    {
        read.push_back(fieldIndex);
        return !stop || !stop->IsStopped();
    }
    std::vector<int> read;
    std::set<int> unreadable;
    std::set<int> asked;
    gis::CDBTable* lastTable = nullptr;
};

/// By columns and cell by cell.
class ReadingsTest : public testing::TestWithParam<bool> {
protected:
    ReadingsTest()
        : m_library(Roads)
    {
        m_library.offerColumns(GetParam());
        m_library.offer(gis::ReadingsExtension, static_cast<gis::IReadings*>(&m_readings));
        m_readings.unreadable = { 1 }; // Corsie, which therefore looks empty
    }
    int found(const char* filter)
    {
        CQueryExecute query(&m_library, m_library.GetTheme(0));
        EXPECT_TRUE(query.SetQueryFilter(filter)) << filter;
        std::vector<gis::CEnt*> entities(5);
        const int count = query.Execute(entities);
        EXPECT_EQ(entities.size(), static_cast<std::size_t>(count));
        return count;
    }

    support::CRecordingLibrary m_library;
    CSomeReadings m_readings;
};

TEST_P(ReadingsTest, AFilterOverAnUnreadableFieldFindsNothing)
{
    for (const char* filter : { "Corsie IS NULL", "[Corsie] IS NULL", "CORSIE IS NULL",
             "1 = 1 OR Corsie > 2", "Nome LIKE 'Via%' OR (Corsie + 1) * 2 = 4",
             "Corsie IS NOT NULL OR 1 = 1", "1 = 1 OR Corsie LIKE '%'",
             "1 = 1 OR Date(Corsie, 1, 2000) = Rilievo", "NOT (1 = 2 AND Corsie = 1)" })
        EXPECT_EQ(found(filter), 0) << filter;
}

TEST_P(ReadingsTest, OtherFiltersAreAnswered)
{
    EXPECT_EQ(found("Nome LIKE 'Via%'"), 2);
    EXPECT_EQ(found("Year(Rilievo) = 2016"), 1);
    EXPECT_EQ(found("1 = 1"), 2) << "of no field";
    EXPECT_EQ(found("Nome = 'Via Roma' OR Ignoto = 1"), 1) << "of no field of this table";
    EXPECT_FALSE(m_readings.asked.contains(1)) << "who is not asked for need not be read";
    EXPECT_EQ(m_readings.lastTable, m_library.GetTable(0));
}

TEST_P(ReadingsTest, ACallOfAFunctionDoesNotAskForTheFieldOfThatName)
{
    m_readings.unreadable = { 3 }; // Year

    EXPECT_EQ(found("Year(Rilievo) = 2016"), 1);
    EXPECT_EQ(found("Year = 1 OR 1 = 1"), 0);
}

TEST_P(ReadingsTest, WhenTheFieldCanBeReadAgainTheSameQueryIsAnswered)
{
    CQueryExecute query(&m_library, m_library.GetTheme(0));
    ASSERT_TRUE(query.SetQueryFilter("Corsie IS NULL"));
    std::vector<gis::CEnt*> entities;
    ASSERT_EQ(query.Execute(entities), 0);

    m_readings.unreadable.clear();

    EXPECT_EQ(query.Execute(entities), 2);
}

TEST_P(ReadingsTest, HostsThatDoNotSayAreBelieved)
{
    m_library.offer(gis::ReadingsExtension, nullptr);

    EXPECT_EQ(found("Corsie IS NULL"), 2);
}

TEST_P(ReadingsTest, TheFirstUnreadableFieldIsNamedAsTheTableHasIt)
{
    m_readings.unreadable = { 0, 1 };
    const auto parsed = query::parseFilter(
        "Year(Rilievo) = 2016 AND (corsie = 1 OR Nome = 'x')", query::ErrorReport::Silent);

    const auto name = query::unreadableField(&m_library, m_library.GetTheme(0), *parsed.root);

    ASSERT_TRUE(name.has_value());
    EXPECT_EQ(*name, orv::String("Corsie"));
    EXPECT_FALSE(query::unreadableField(nullptr, m_library.GetTheme(0), *parsed.root));
    EXPECT_FALSE(query::unreadableField(&m_library, nullptr, *parsed.root));
}

TEST_P(ReadingsTest, FieldsAreReadBeforehandUntilTheReadingIsStopped)
{
    const query::ColumnSource source(&m_library);
    ASSERT_TRUE(bool(source));
    std::vector<double> fractions;
    const auto goesOn = [&fractions](double fraction) {
        fractions.push_back(fraction);
        return fractions.size() < 4;
    };

    EXPECT_FALSE(query::readColumns(source, m_library.GetTable(0), { 2, 0, 3 }, goesOn));

    EXPECT_EQ(m_readings.read, (std::vector<int> { 2, 0 }));
    EXPECT_EQ(fractions, (std::vector<double> { 0, 0, 1.0 / 3, 1.0 / 3 }))
        << "before each, and while it is read";
    fractions.clear();
    EXPECT_TRUE(query::readColumns(source, m_library.GetTable(0), { 1 }, goesOn));
    EXPECT_TRUE(query::readColumns(source, nullptr, { 1 }, goesOn));
    EXPECT_EQ(m_readings.read, (std::vector<int> { 2, 0, 1 }));
    EXPECT_FALSE(bool(query::ColumnSource(nullptr)));
}

INSTANTIATE_TEST_SUITE_P(ColumnsAndCells, ReadingsTest, testing::Bool());

} // namespace
