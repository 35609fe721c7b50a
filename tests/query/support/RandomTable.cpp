// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/query/support/RandomTable.h"

#include "embedded/model/Library.h"
#include "embedded/model/Table.h"
#include "embedded/model/Theme.h"
#include "host/base/Dates.h"

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <numeric>
#include <vector>

namespace testing_query {

namespace {

using embedded::Column;
using gis::FieldFormat;

int below(std::mt19937& random, int limit)
{
    return std::uniform_int_distribution<int>(0, limit - 1)(random);
}

template <typename Value> const Value& oneOf(std::mt19937& random, const std::vector<Value>& all)
{
    return all[static_cast<std::size_t>(below(random, static_cast<int>(all.size())))];
}

const std::vector<std::string> Texts { "", "a", "b", "ab", "ba", "A", "Sì", "1", "Via Roma 12",
    "via roma", "\xC3\xA0", "aa%", "a_b", std::string("a\0b", 3) };
const std::vector<std::int32_t> Integers { 0, 1, -1, 2, 3, 5, 8, 100, 46341, -46341, 1 << 30,
    std::numeric_limits<std::int32_t>::max(), std::numeric_limits<std::int32_t>::min() };
const std::vector<double> Decimals { 0, -0.0, 1, -1, 0.5, 1.5, 2.5, 0.005, 0.015, 1.005, 2.675, 3.5,
    3.495, 3.505, -3.495, 12.34, 0.125, 1e-300, 1e15, 1e200, -1e200, 1.7e308, 1e-10, 5e-11, 4.5e15,
    std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity(),
    std::numeric_limits<double>::quiet_NaN() };

std::int32_t dayNumberOf(int day, int month, int year)
{
    std::int32_t number = 0;
    orv::DayNumber({ day, month, year }, number);
    return number;
}

std::vector<std::int32_t> days()
{
    return { 0, -1, dayNumberOf(5, 3, 2016), dayNumberOf(27, 3, 2016), dayNumberOf(30, 10, 2016),
        dayNumberOf(1, 1, 2010), dayNumberOf(31, 12, 1969), dayNumberOf(1, 1, 1),
        dayNumberOf(31, 12, 9999), dayNumberOf(29, 2, 2020) };
}

Column randomColumn(std::mt19937& random, FieldFormat format, const RandomTableSettings& settings)
{
    Column column(embedded::columnKindOf(format));
    const bool hasGaps = settings.gapPercent > 0 && below(random, 4) != 0;
    const auto allDays = days();
    for (int row = 0; row < settings.rowCount; ++row) {
        if (hasGaps && below(random, 100) < settings.gapPercent) {
            column.appendEmpty();
            continue;
        }
        switch (column.kind()) {
        case gis::ColumnKind::Boolean:
            column.appendBoolean(below(random, 2) == 0);
            break;
        case gis::ColumnKind::Integer:
            column.appendInteger(oneOf(random, Integers));
            break;
        case gis::ColumnKind::Decimal:
            column.appendDecimal(below(random, 3) == 0
                    ? static_cast<double>(below(random, 40000) - 20000) / 1000.0
                    : oneOf(random, Decimals));
            break;
        case gis::ColumnKind::Date:
            column.appendInteger(oneOf(random, allDays));
            break;
        default:
            column.appendText(oneOf(random, Texts));
        }
    }
    return column;
}

std::vector<int> entityRows(std::mt19937& random, const RandomTableSettings& settings)
{
    std::vector<int> rows(static_cast<std::size_t>(settings.rowCount));
    std::iota(rows.begin(), rows.end(), 0);
    switch (settings.order) {
    case EntityOrder::Reversed:
        std::reverse(rows.begin(), rows.end());
        break;
    case EntityOrder::EveryThird:
        std::erase_if(rows, [](int row) { return row % 3 != 1; });
        break;
    case EntityOrder::Shuffled:
        std::shuffle(rows.begin(), rows.end(), random);
        rows.resize(rows.size() / 2);
        break;
    default:
        break;
    }
    return rows;
}

const std::vector<std::string> Literals { "0", "1", "-1", "2", "3", "100", "2147483647",
    "-2147483648", "99999999999", "0.5", "1.5", "-3.5", "3.5", "1.01", "0.01", "0.02", "2.68",
    "2.67", "1.5e-3", ".5", "'a'", "'b'", "'ab'", "''", "'Via Roma 12'", "'zz'", "TRUE", "FALSE",
    "Date(5,3,2016)", "Date(27,3,2016)", "Date(1,1,1970)", "Date(31,2,2016)", "Date(1,1,1)", "Now",
    "Date('a',1,1)", "1/0", "(1+1)", "(2*1.5)", "170000000000000000000.0", "NoSuch(1)" };
const std::vector<std::string> Fields { "T", "U", "L", "A", "B", "N", "M", "D", "E", "F", "G", "H",
    "t", "NoField" };
const std::vector<std::string> Numbers { "N", "M", "D", "E", "F", "Year(G)", "Month(H)", "Day(G)",
    "Year(T)", "1", "2", "-3", "0", "0.5", "2147483647", "1.0e308", "1.5" };
const std::vector<std::string> Patterns { "'%'", "''", "'a%'", "'%a'", "'_'", "'%i%'", "'Via%12'",
    "'1%'", "'%/%'", "'S%'", "'-%'", "'%.5'" };
const std::vector<std::string> Comparisons { " = ", " <> ", " < ", " > ", " <= ", " >= " };

/// A value of the same kind as a field, so that comparisons often fit.
std::string literalLike(std::mt19937& random, const std::string& field)
{
    static const std::vector<std::string> texts { "'a'", "'ab'", "'Sì'", "''", "'zz'", "T", "L" };
    static const std::vector<std::string> truths { "TRUE", "FALSE", "A", "B" };
    static const std::vector<std::string> moments { "Date(5,3,2016)", "Date(27,3,2016)", "G", "H",
        "Date(1,1,1)", "Now()", "Date(31,12,9999)" };
    switch (field[0]) {
    case 'T':
    case 'U':
    case 'L':
        return oneOf(random, texts);
    case 'A':
    case 'B':
        return oneOf(random, truths);
    case 'G':
    case 'H':
        return oneOf(random, moments);
    default:
        return oneOf(random, Numbers);
    }
}

std::string randomNumber(std::mt19937& random, int depth)
{
    static const std::vector<std::string> operators { " + ", " - ", " * ", " / " };
    if (depth <= 0 || below(random, 3) == 0)
        return below(random, 12) == 0 ? oneOf(random, Literals) : oneOf(random, Numbers);
    const std::string left = randomNumber(random, depth - 1);
    const std::string right = randomNumber(random, depth - 1);
    return "(" + left + oneOf(random, operators) + right + ")";
}

std::string randomPredicate(std::mt19937& random)
{
    const std::string field = oneOf(random, Fields);
    switch (below(random, 8)) {
    case 0:
        return field + " LIKE " + oneOf(random, Patterns);
    case 1:
        return field + (below(random, 2) == 0 ? " IS NULL" : " IS NOT NULL");
    case 2: {
        const std::string left = randomNumber(random, 3);
        return left + oneOf(random, Comparisons) + randomNumber(random, 2);
    }
    case 3: {
        const std::string literal = oneOf(random, Literals);
        return literal + oneOf(random, Comparisons) + field;
    }
    case 4:
        return field + oneOf(random, Comparisons) + oneOf(random, Literals);
    case 5:
        return field + oneOf(random, Comparisons) + oneOf(random, Fields);
    default:
        return field + oneOf(random, Comparisons) + literalLike(random, field);
    }
}

} // namespace

unsigned seedOfRun()
{
    const char* const given = std::getenv("TEMATICA_TEST_SEED");
    if (given)
        return static_cast<unsigned>(std::strtoul(given, nullptr, 10));
    return std::random_device()();
}

std::unique_ptr<gis::CLibGis> makeRandomLibrary(
    std::mt19937& random, const RandomTableSettings& settings)
{
    auto facade = std::make_unique<gis::CLibGis>();
    embedded::Library& library = *embedded::Library::of(facade.get());
    gis::CDBTable* const table = library.createTable("Dati");
    const std::pair<const char*, FieldFormat> fields[] = { { "T", FieldFormat::Text },
        { "U", FieldFormat::Text }, { "L", FieldFormat::List }, { "A", FieldFormat::Boolean },
        { "B", FieldFormat::Boolean }, { "N", FieldFormat::Integer }, { "M", FieldFormat::Integer },
        { "D", FieldFormat::Decimal }, { "E", FieldFormat::Decimal }, { "F", FieldFormat::Decimal },
        { "G", FieldFormat::Date }, { "H", FieldFormat::Date } };
    for (const auto& [name, format] : fields)
        table->addField(name, format);
    table->field(8)->constraints[3] = 0;
    table->field(9)->constraints[3] = 10;
    table->addRows(settings.rowCount);
    int index = 0;
    for (const auto& [name, format] : fields)
        table->setColumn(index++, randomColumn(random, format, settings));
    gis::CTheme* const theme
        = library.createTheme(table, "Tema", gis::EntType::Points, gis::EntTypeCoords::XY, 0);
    for (const int row : entityRows(random, settings))
        theme->entities().addEntity(table->row(row));
    return facade;
}

std::string randomFilter(std::mt19937& random, int depth)
{
    if (depth <= 0 || below(random, 3) == 0) {
        const bool isNegated = below(random, 6) == 0;
        return (isNegated ? "NOT " : "") + randomPredicate(random);
    }
    const std::string left = randomFilter(random, depth - 1);
    const std::string right = randomFilter(random, depth - 1);
    const std::string negation = below(random, 5) == 0 ? "NOT " : "";
    return negation + "(" + left + (below(random, 2) == 0 ? " AND " : " OR ") + right + ")";
}

} // namespace testing_query
