// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/store/CellReader.h"

#include "embedded/store/CellText.h"
#include "embedded/store/Statement.h"

#include "host/base/Numbers.h"

#include <sqlite3.h>

#include <array>
#include <cmath>
#include <limits>
#include <string_view>

namespace embedded::store {
namespace {

std::string_view textOf(sqlite3_value* value)
{
    const auto* bytes = sqlite3_value_text(value);
    if (!bytes)
        return {};
    return { reinterpret_cast<const char*>(bytes),
        static_cast<std::size_t>(sqlite3_value_bytes(value)) };
}

bool fitsInteger(double value)
{
    return value >= std::numeric_limits<std::int32_t>::min()
        && value <= std::numeric_limits<std::int32_t>::max() && std::trunc(value) == value;
}

constexpr const char* TakeFunction = "tematica_take";
constexpr const char* TakerType = "tematica cell taker";

// Each run of the function keeps its taker, which comes bound as a pointer, in its own context.
void step(sqlite3_context* context, int, sqlite3_value** values)
{
    auto** taker = static_cast<CCellTaker**>(
        sqlite3_aggregate_context(context, static_cast<int>(sizeof(CCellTaker*))));
    if (taker && !*taker)
        *taker = static_cast<CCellTaker*>(sqlite3_value_pointer(values[0], TakerType));
    if (!taker || !*taker) {
        sqlite3_result_error_nomem(context);
        return;
    }
    // No exception may pass through SQLite.
    try {
        (*taker)->take(values[1]);
    } catch (...) {
        sqlite3_result_error_nomem(context);
    }
}

void finish(sqlite3_context* context)
{
    sqlite3_result_null(context);
}

void addTakeFunction(Connection& connection)
{
    if (connection.hasCellFunction())
        return;
    const int made = sqlite3_create_function_v2(connection.handle(), TakeFunction, 2,
        SQLITE_UTF8 | SQLITE_DIRECTONLY, nullptr, nullptr, &step, &finish, nullptr);
    if (made != SQLITE_OK)
        connection.fail(made);
    connection.hasCellFunction() = true;
}

/// While it lives the connection's statements end, with SQLITE_INTERRUPT, once they are stopped.
class CStopAsked final {
public:
    CStopAsked(Connection& connection, const IsStopped& isStopped)
        : m_handle(isStopped ? connection.handle() : nullptr)
    {
        constexpr int StepsBetween = 10000; // of SQLite's machine: well below a millisecond
        if (m_handle)
            sqlite3_progress_handler(
                m_handle, StepsBetween, &ask, const_cast<IsStopped*>(&isStopped));
    }
    CStopAsked(const CStopAsked&) = delete;
    CStopAsked& operator=(const CStopAsked&) = delete;
    ~CStopAsked()
    {
        if (m_handle)
            sqlite3_progress_handler(m_handle, 0, nullptr, nullptr);
    }

private:
    static int ask(void* isStopped)
    {
        try { // no exception may pass through SQLite
            return (*static_cast<const IsStopped*>(isStopped))() ? 1 : 0;
        } catch (...) {
            return 1;
        }
    }

    sqlite3* m_handle;
};

} // namespace

void CellCounts::add(const CellCounts& other)
{
    converted += other.converted;
    emptied += other.emptied;
    timesDropped += other.timesDropped;
}

void CCellTaker::empty()
{
    m_column.appendEmpty();
}

void CCellTaker::take(sqlite3_value* value)
{
    if (sqlite3_value_type(value) == SQLITE_NULL) {
        empty();
        return;
    }
    if (sqlite3_value_type(value) == SQLITE_BLOB) {
        ++m_counts.emptied;
        empty();
        return;
    }
    switch (m_format) {
    case gis::FieldFormat::Text:
    case gis::FieldFormat::List:
        takeText(value);
        break;
    case gis::FieldFormat::Boolean:
        takeBoolean(value);
        break;
    case gis::FieldFormat::Integer:
        takeInteger(value);
        break;
    case gis::FieldFormat::Decimal:
        takeDecimal(value);
        break;
    case gis::FieldFormat::Date:
        takeDate(value);
        break;
    }
}

void CCellTaker::takeText(sqlite3_value* value)
{
    const int type = sqlite3_value_type(value);
    if (type != SQLITE_TEXT)
        ++m_counts.converted;
    if (type == SQLITE_FLOAT)
        m_column.appendText(orv::ShortestText(sqlite3_value_double(value)));
    else
        m_column.appendText(textOf(value));
}

void CCellTaker::takeBoolean(sqlite3_value* value)
{
    if (sqlite3_value_type(value) != SQLITE_TEXT) {
        m_column.appendBoolean(sqlite3_value_double(value) != 0);
        return;
    }
    if (const auto isTrue = booleanOf(textOf(value))) {
        ++m_counts.converted;
        m_column.appendBoolean(*isTrue);
    } else {
        ++m_counts.emptied;
        empty();
    }
}

void CCellTaker::takeInteger(sqlite3_value* value)
{
    double number = 0;
    const int type = sqlite3_value_type(value);
    if (type == SQLITE_INTEGER) {
        const std::int64_t whole = sqlite3_value_int64(value);
        if (whole >= std::numeric_limits<std::int32_t>::min()
            && whole <= std::numeric_limits<std::int32_t>::max()) {
            m_column.appendInteger(static_cast<std::int32_t>(whole));
            return;
        }
        number = static_cast<double>(whole);
    } else if (type == SQLITE_FLOAT) {
        number = sqlite3_value_double(value);
    } else if (!orv::ParseDouble(textOf(value), number)) {
        number = std::numeric_limits<double>::quiet_NaN();
    }
    if (fitsInteger(number)) {
        ++m_counts.converted;
        m_column.appendInteger(static_cast<std::int32_t>(number));
    } else {
        ++m_counts.emptied;
        empty();
    }
}

void CCellTaker::takeDecimal(sqlite3_value* value)
{
    if (sqlite3_value_type(value) != SQLITE_TEXT) {
        m_column.appendDecimal(sqlite3_value_double(value));
        return;
    }
    const std::string_view text = textOf(value);
    double number = std::numeric_limits<double>::quiet_NaN();
    if (text == "nan" || orv::ParseDouble(text, number)) {
        m_counts.converted += text == "nan" ? 0 : 1;
        m_column.appendDecimal(number);
    } else {
        ++m_counts.emptied;
        empty();
    }
}

void CCellTaker::takeDate(sqlite3_value* value)
{
    std::int32_t day = 0;
    bool hasTime = false;
    if (sqlite3_value_type(value) == SQLITE_TEXT && parseIsoDay(textOf(value), day, hasTime)) {
        m_counts.timesDropped += hasTime ? 1 : 0;
        m_column.appendInteger(day);
    } else {
        ++m_counts.emptied;
        empty();
    }
}

CellCounts readCells(Connection& connection, const CellSource& source, gis::FieldFormat format,
    Column& column, const IsStopped& isStopped)
{
    CCellTaker taker(format, column);
    const CStopAsked asked(connection, isStopped);
    addTakeFunction(connection);
    // An index on the column would give its cells in another order, so it must not be used.
    std::string sql = std::string("SELECT ") + TakeFunction + "(?1, " + quoted(source.column)
        + ") FROM " + quoted(source.table);
    if (!source.fidColumn.empty())
        sql += " NOT INDEXED WHERE " + quoted(source.fidColumn) + " BETWEEN ?2 AND ?3";
    Statement statement(connection, sql);
    statement.bindPointer(1, &taker, TakerType);
    if (!source.fidColumn.empty()) {
        statement.bindInteger(2, source.firstFid);
        statement.bindInteger(3, source.lastFid);
    }
    statement.step();
    return taker.counts();
}

} // namespace embedded::store
