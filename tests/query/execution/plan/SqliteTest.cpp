// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/model/Library.h"
#include "embedded/model/Table.h"
#include "embedded/model/Theme.h"
#include "tematica/QueryExecute.h"
#include "tests/query/support/RandomTable.h"

#include <gtest/gtest.h>

#include <sqlite3.h>

#include <memory>
#include <random>
#include <string>
#include <vector>

// Where the filter language and SQL mean the same, the answers must be SQLite's: numbers with
// numbers, texts with texts, three-valued logic, LIKE as GLOB without its special characters.

namespace {

class SqliteTest : public testing::Test {
protected:
    SqliteTest()
        : m_seed(testing_query::seedOfRun())
        , m_random(m_seed)
    {
        sqlite3_open(":memory:", &m_database);
        run("CREATE TABLE Dati (id INTEGER PRIMARY KEY, T TEXT, U TEXT, N INTEGER, M INTEGER, "
            "D REAL, E REAL)");
        fill();
    }
    ~SqliteTest() override { sqlite3_close(m_database); }

    void run(const std::string& sql)
    {
        ASSERT_EQ(sqlite3_exec(m_database, sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK)
            << sql;
    }

    int below(int limit) { return std::uniform_int_distribution<int>(0, limit - 1)(m_random); }
    template <typename Value> Value oneOf(const std::vector<Value>& all)
    {
        return all[static_cast<std::size_t>(below(static_cast<int>(all.size())))];
    }

    void fill()
    {
        using embedded::Column;
        embedded::Library& library = *embedded::Library::of(&m_library);
        gis::CDBTable* const table = library.createTable("Dati");
        using gis::FieldFormat;
        const std::pair<const char*, FieldFormat> fields[]
            = { { "T", FieldFormat::Text }, { "U", FieldFormat::Text },
                  { "N", FieldFormat::Integer }, { "M", FieldFormat::Integer },
                  { "D", FieldFormat::Decimal }, { "E", FieldFormat::Decimal } };
        for (const auto& [name, format] : fields) {
            gis::CField* field = table->addField(name, format);
            if (format == FieldFormat::Decimal)
                field->constraints[3] = 2; // quarters are compared as they are
        }
        table->addRows(Rows);
        std::vector<std::string> sql(Rows);
        for (int field = 0; field < 6; ++field) {
            Column column(embedded::columnKindOf(fields[field].second));
            for (std::string& row : sql)
                row += ", " + addCell(column);
            table->setColumn(field, std::move(column));
        }
        run("BEGIN");
        for (const std::string& row : sql)
            run("INSERT INTO Dati VALUES (NULL" + row + ")");
        run("COMMIT");
        m_theme
            = library.createTheme(table, "Tema", gis::EntType::Points, gis::EntTypeCoords::XY, 0);
        for (int row = 0; row < Rows; ++row)
            m_theme->entities().addEntity(table->row(row));
    }

    /// A cell into the column, and as SQL.
    std::string addCell(embedded::Column& column)
    {
        if (below(5) == 0) {
            column.appendEmpty();
            return "NULL";
        }
        if (column.kind() == gis::ColumnKind::Dictionary) {
            const std::string text = oneOf<std::string>({ "a", "b", "ab", "abc", "Z", "via" });
            column.appendText(text);
            return "'" + text + "'";
        }
        const int number = below(9) - 4;
        if (column.kind() == gis::ColumnKind::Integer) {
            column.appendInteger(number);
            return std::to_string(number);
        }
        column.appendDecimal(number / 4.0);
        return std::to_string(number) + " / 4.0";
    }

    std::string number(int depth)
    {
        if (depth == 0 || below(3) == 0)
            return oneOf<std::string>({ "N", "M", "D", "E", "1", "2.5", "0.25", "-1" });
        // No division: by zero SQL gives NULL where the filter language fails.
        return "(" + number(depth - 1) + oneOf<std::string>({ " + ", " - ", " * " })
            + number(depth - 1) + ")";
    }

    /// A condition that reads the same in both languages; LIKE is put in for SQL afterwards.
    std::string condition(int depth)
    {
        if (depth > 0 && below(3) != 0) {
            const std::string both = "(" + condition(depth - 1) + (below(2) == 0 ? " AND " : " OR ")
                + condition(depth - 1) + ")";
            return below(4) == 0 ? "NOT " + both : both;
        }
        const std::string comparison
            = oneOf<std::string>({ " = ", " <> ", " < ", " > ", " <= ", " >= " });
        switch (below(4)) {
        case 0:
            return oneOf<std::string>({ "T", "U", "'b'" }) + comparison
                + oneOf<std::string>({ "T", "U", "'ab'", "'a'" });
        case 1:
            return oneOf<std::string>({ "T", "N", "E" })
                + (below(2) == 0 ? " IS NULL" : " IS NOT NULL");
        case 2:
            return "T LIKE " + oneOf<std::string>({ "'a%'", "'%b'", "'_'", "'a_c'", "'%'" });
        default:
            return number(2) + comparison + number(2);
        }
    }

    /// LIKE of the filter language as SQL: of ASCII texts, and no value is like nothing.
    static std::string toSql(std::string text)
    {
        for (std::size_t at = text.find("T LIKE '"); at != std::string::npos;
             at = text.find("T LIKE '", at)) {
            const std::size_t end = text.find('\'', at + 8);
            std::string pattern = text.substr(at + 8, end - at - 8);
            for (char& letter : pattern)
                letter = letter == '%' ? '*' : letter == '_' ? '?' : letter;
            const std::string sql = "(T IS NOT NULL AND T GLOB '" + pattern + "')";
            text.replace(at, end - at + 1, sql);
            at += sql.size();
        }
        return text;
    }

    std::vector<int> bySqlite(const std::string& condition)
    {
        std::vector<int> rows;
        sqlite3_stmt* statement = nullptr;
        const std::string sql = "SELECT id FROM Dati WHERE " + toSql(condition) + " ORDER BY id";
        EXPECT_EQ(sqlite3_prepare_v2(m_database, sql.c_str(), -1, &statement, nullptr), SQLITE_OK)
            << sql;
        while (sqlite3_step(statement) == SQLITE_ROW)
            rows.push_back(sqlite3_column_int(statement, 0));
        sqlite3_finalize(statement);
        return rows;
    }

    std::vector<int> byFilter(const std::string& condition)
    {
        CQueryExecute query(&m_library, m_theme);
        EXPECT_TRUE(query.SetQueryFilter(orv::String(std::string_view(condition)))) << condition;
        std::vector<gis::CEnt*> found;
        query.Execute(found);
        std::vector<int> rows;
        for (const gis::CEnt* entity : found)
            rows.push_back(embedded::EntityStore::indexOf(entity) + 1);
        return rows;
    }

    static constexpr int Rows = 400;
    unsigned m_seed;
    std::mt19937 m_random;
    sqlite3* m_database = nullptr;
    gis::CLibGis m_library;
    gis::CTheme* m_theme = nullptr;
};

TEST_F(SqliteTest, RandomConditionsFindWhatSqliteFinds)
{
    SCOPED_TRACE("seed " + std::to_string(m_seed));
    int nonEmpty = 0;
    for (int i = 0; i < 1500 && !HasFailure(); ++i) {
        const std::string text = condition(3);
        const auto expected = bySqlite(text);
        EXPECT_EQ(byFilter(text), expected) << text;
        nonEmpty += expected.empty() ? 0 : 1;
    }
    EXPECT_GT(nonEmpty, 500);
}

} // namespace
