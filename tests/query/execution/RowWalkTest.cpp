// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "query/execution/RowWalk.h"

#include "host/base/Dates.h"
#include "tematica/QueryExecute.h"
#include "tests/support/RecordingLibrary.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

constexpr const char* Data = "table T (a integer, b decimal 2, c text, d decimal 1);"
                             "rows T: (1, 1.5, 'x', 2), (2, 2.5, 'y', 3), (-, -, -, -);"
                             "theme S: points on T; ents S: 0 [], 1 [], 2 []";

int runs(support::CRecordingLibrary& library, const char* filter)
{
    CQueryExecute query(&library, library.GetTheme(0));
    EXPECT_TRUE(query.SetQueryFilter(filter));
    library.clearCalls();
    std::vector<gis::CEnt*> entities;
    return query.Execute(entities);
}

TEST(RowWalkTest, OnlyCellsOfNamedFieldsAreRead)
{
    support::CRecordingLibrary library(Data);

    EXPECT_EQ(runs(library, "c = 'x'"), 1);

    EXPECT_EQ(library.countOf("GetRowValue"), 3);
    for (const std::string& call : library.callsOf("GetRowValue"))
        EXPECT_NE(call.find(", 2"), std::string::npos) << call;
}

TEST(RowWalkTest, ACellIsReadOnceARow)
{
    support::CRecordingLibrary library(Data);

    EXPECT_EQ(runs(library, "a = 1 OR a = 2 OR a + a = 7"), 2);

    EXPECT_EQ(library.countOf("GetRowValue"), 3);
}

TEST(RowWalkTest, AFieldsDigitsAreAskedOnceAQuery)
{
    support::CRecordingLibrary library(Data);

    EXPECT_EQ(runs(library, "b > 1 AND d > 1"), 2);

    EXPECT_EQ(library.countOf("GetFieldConstraints"), 2);
    EXPECT_EQ(library.countOf("GetNoEnts"), 1);
}

TEST(RowWalkTest, NothingIsWritten)
{
    support::CRecordingLibrary library(Data);

    runs(library, "a = 1");

    EXPECT_TRUE(library.changes().empty());
}

TEST(RowWalkTest, DecimalsAreRoundedToTheirDigits)
{
    orv::CPolyValue value(2.675);
    query::normaliseCell(gis::FieldFormat::Decimal, 2, value);
    EXPECT_EQ(value.GetDoubleValue(), 2.67); // the double lies below the half

    value = 2.5;
    query::normaliseCell(gis::FieldFormat::Decimal, 0, value);
    EXPECT_EQ(value.GetDoubleValue(), 2.0);
}

TEST(RowWalkTest, IntegersAndTextsStayAsTheyAre)
{
    orv::CPolyValue number(7);
    query::normaliseCell(gis::FieldFormat::Integer, 0, number);
    EXPECT_EQ(number.GetType(), orv::PolyInt32);
    orv::CPolyValue text("7.55");
    query::normaliseCell(gis::FieldFormat::Text, 1, text);
    EXPECT_EQ(text.GetStringValue(), "7.55");
}

TEST(RowWalkTest, NoValueStaysNoValue)
{
    for (const gis::FieldFormat format : { gis::FieldFormat::Decimal, gis::FieldFormat::Date }) {
        orv::CPolyValue value;
        query::normaliseCell(format, 2, value);
        EXPECT_TRUE(value.IsEmpty());
    }
}

TEST(RowWalkTest, DatesAreMovedToLocalMidnight)
{
    for (const int day : { 26, 27, 28 }) { // the clock changes on 27/03/2016 in Italy
        std::int32_t number = 0;
        ASSERT_TRUE(orv::DayNumber({ day, 3, 2016 }, number));
        const std::int64_t midnight = orv::LocalMidnightOfDay(number);
        for (const int hour : { 0, 1, 12, 15, 22 }) {
            orv::CPolyValue value;
            value.SetDateValue(midnight + hour * 3600 + 1800);
            query::normaliseCell(gis::FieldFormat::Date, 0, value);
            EXPECT_EQ(value.GetDateValue(), midnight) << day << " at " << hour;
        }
    }
}

TEST(RowWalkTest, MomentsOutsideTheCalendarStayAsTheyAre)
{
    orv::CPolyValue value;
    value.SetDateValue(std::int64_t(1) << 60);
    query::normaliseCell(gis::FieldFormat::Date, 0, value);
    EXPECT_EQ(value.GetDateValue(), std::int64_t(1) << 60);
}

} // namespace
