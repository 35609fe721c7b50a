// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT

#include "tests/embedded/expr/Trees.h"

#include "tests/support/TimeZoneScope.h"

#include <gtest/gtest.h>

#include <ctime>

namespace {

using namespace trees;
using orv::CPolyValue;
using support::TimeZoneScope;

Outcome callOf(CEESymbol& function, const std::vector<CPolyValue>& values)
{
    std::vector<CEEResult> arguments(values.size());
    for (std::size_t index = 0; index < values.size(); ++index)
        arguments[index].SetElem(values[index]);
    CEEResult result;
    if (!function.Eval(static_cast<int>(values.size()), arguments.data(), result))
        return fails;
    return gives(result.GetElem());
}

Outcome dateCall(const std::vector<CPolyValue>& values)
{
    CEESymbolFunVarious function(EEFunctionDate);
    return callOf(function, values);
}

Outcome partOf(int code, const std::vector<CPolyValue>& values)
{
    CEESymbolFunDate function(code);
    return callOf(function, values);
}

TEST(DateFunctionsTest, DateTakesDayMonthAndYearAndGivesLocalMidnight)
{
    const TimeZoneScope rome("Europe/Rome");

    EXPECT_EQ(
        dateCall({ CPolyValue(5), CPolyValue(3), CPolyValue(2016) }), gives(date(1457132400)));
    EXPECT_EQ(dateCall({ CPolyValue(5.0), CPolyValue(3.0), CPolyValue(2016.0) }),
        gives(date(1457132400)));
    EXPECT_EQ(
        dateCall({ CPolyValue(27), CPolyValue(3), CPolyValue(2016) }), gives(date(1459033200)));
    EXPECT_EQ(
        dateCall({ CPolyValue(1), CPolyValue(1), CPolyValue(1960) }), gives(date(-315622800)));
}

TEST(DateFunctionsTest, DateFailsForWhatIsNoDay)
{
    const std::vector<CPolyValue> cases[] = { { CPolyValue(31), CPolyValue(2), CPolyValue(2016) },
        { CPolyValue(29), CPolyValue(2), CPolyValue(2015) },
        { CPolyValue(0), CPolyValue(1), CPolyValue(2016) },
        { CPolyValue(1), CPolyValue(13), CPolyValue(2016) },
        { CPolyValue(1), CPolyValue(1), CPolyValue(0) },
        { CPolyValue(1), CPolyValue(1), CPolyValue(10000) },
        { CPolyValue(1.5), CPolyValue(1), CPolyValue(2016) },
        { CPolyValue(1), CPolyValue(1), CPolyValue(1e300) },
        { CPolyValue("1"), CPolyValue(1), CPolyValue(2016) },
        { CPolyValue(true), CPolyValue(1), CPolyValue(2016) },
        { date(1), CPolyValue(1), CPolyValue(2016) }, { CPolyValue(1), CPolyValue(1) },
        { CPolyValue(1), CPolyValue(1), CPolyValue(2016), CPolyValue(1) }, {} };
    for (const auto& values : cases)
        EXPECT_EQ(dateCall(values), fails) << values.size();
}

TEST(DateFunctionsTest, DateOfNoValueIsNoValue)
{
    EXPECT_EQ(dateCall({ none, CPolyValue(3), CPolyValue(2016) }), gives(none));
    EXPECT_EQ(dateCall({ CPolyValue(5), none, CPolyValue(2016) }), gives(none));
    EXPECT_EQ(dateCall({ CPolyValue(5), CPolyValue(3), none }), gives(none));
    EXPECT_EQ(dateCall({ CPolyValue("x"), CPolyValue(3), none }), gives(none));
    EXPECT_EQ(dateCall({ none, none }), fails);
}

TEST(DateFunctionsTest, PartsAreThoseOfTheLocalDay)
{
    const TimeZoneScope rome("Europe/Rome");
    constexpr std::int64_t NewYearsEve = 1451602799; // 31/12/2015 23:59:59

    EXPECT_EQ(partOf(EEFunctionYear, { date(NewYearsEve) }), gives(2015));
    EXPECT_EQ(partOf(EEFunctionMonth, { date(NewYearsEve) }), gives(12));
    EXPECT_EQ(partOf(EEFunctionDay, { date(NewYearsEve) }), gives(31));
    EXPECT_EQ(partOf(EEFunctionYear, { date(NewYearsEve + 1) }), gives(2016));
    EXPECT_EQ(partOf(EEFunctionDay, { date(-315622800) }), gives(1));
}

TEST(DateFunctionsTest, PartsOfNoValueAreNoValueAndOthersFail)
{
    for (const int code : { int(EEFunctionYear), int(EEFunctionMonth), int(EEFunctionDay) }) {
        EXPECT_EQ(partOf(code, { none }), gives(none));
        EXPECT_EQ(partOf(code, { CPolyValue(2016) }), fails);
        EXPECT_EQ(partOf(code, { CPolyValue("05/03/2016") }), fails);
        EXPECT_EQ(partOf(code, { date(INT64_MAX) }), fails);
        EXPECT_EQ(partOf(code, {}), fails);
        EXPECT_EQ(partOf(code, { date(1), date(1) }), fails);
    }
    EXPECT_EQ(partOf(30, { date(1) }), fails);
    EXPECT_EQ(partOf(35, { date(1) }), fails);
    EXPECT_EQ(partOf(35, { none }), fails);
}

TEST(DateFunctionsTest, NowIsTheMomentOfTheCallAndAlsoAVariable)
{
    CEESymbolTable table;
    table.AddSymbol("Now", new CEESymbolFunVarious(EEFunctionNow));
    const std::int64_t before = std::time(nullptr);

    const Outcome called = evaluate(call("Now"), &table);
    const Outcome named = evaluate(variable("Now"), &table);

    for (const Outcome& outcome : { called, named }) {
        EXPECT_TRUE(outcome.succeeds);
        EXPECT_EQ(outcome.value.GetType(), orv::PolyDate);
        EXPECT_GE(outcome.value.GetDateValue(), before - 1);
        EXPECT_LE(outcome.value.GetDateValue(), std::time(nullptr) + 1);
    }
    EXPECT_EQ(evaluate(call("Now", { constant(1) }), &table), fails);
    CEESymbolFunVarious unknown(32);
    EXPECT_EQ(callOf(unknown, {}), fails);
}

TEST(DateFunctionsTest, AFunctionWithoutItsArgumentsFailsAsAVariable)
{
    CEESymbolTable table;
    table.AddSymbol("Year", new CEESymbolFunDate(EEFunctionYear));
    table.AddSymbol("Date", new CEESymbolFunVarious(EEFunctionDate));

    EXPECT_EQ(evaluate(variable("Year"), &table), fails);
    EXPECT_EQ(evaluate(variable("Date"), &table), fails);
    EXPECT_EQ(evaluate(call("Year"), &table), fails);
}

} // namespace
