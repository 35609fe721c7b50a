// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT

// Random structure edits against a reference that keeps whole tables as plain values.
#include "host/gis/TableEdit.h"

#include "host/base/ChangeManager.h"
#include "host/base/Dates.h"
#include "tests/support/Describe.h"
#include "tests/support/LibraryNotation.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <optional>
#include <random>
#include <set>

namespace {

using gis::CCtrlDlgTableEdit;
using gis::FieldFormat;
using orv::CPolyValue;

constexpr int RowCount = 7;
constexpr const char* Texts[]
    = { "12", "-3.75", "x", "S\xC3\xAC", "no", "05/03/2016", "1", "0", "7.5 m", "3000000000" };
constexpr const char* Names[] = { "a", "b", "c", "A", "d", "e", "", "Nome lungo" };
constexpr FieldFormat Formats[] = { FieldFormat::Text, FieldFormat::Boolean, FieldFormat::Integer,
    FieldFormat::Decimal, FieldFormat::List, FieldFormat::Date };

std::optional<double> numberOf(std::string_view text)
{
    double value = 0.0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size())
        return {};
    return value;
}

CPolyValue wholeNumber(double value)
{
    const double rounded = std::round(value);
    const bool fits = rounded >= -2147483648.0 && rounded <= 2147483647.0;
    return fits ? CPolyValue(static_cast<int>(rounded)) : CPolyValue();
}

/// What a cell becomes, written down plainly; all decimals of these tables have two digits.
CPolyValue converted(const CPolyValue& value, FieldFormat to)
{
    const int kind = value.GetType();
    if (value.IsEmpty())
        return {};
    if (to == FieldFormat::Text || to == FieldFormat::List)
        return CPolyValue(kind == orv::PolyDouble ? orv::String::ValueOf(value.GetDoubleValue(), 2u)
                                                  : value.GetStringValue());
    const std::string text(value.TextView());
    const bool isNumber = kind == orv::PolyInt32 || kind == orv::PolyDouble;
    const auto number = isNumber ? std::optional<double>(value.GetDoubleValue()) : numberOf(text);
    switch (to) {
    case FieldFormat::Integer:
        return number ? wholeNumber(*number) : CPolyValue();
    case FieldFormat::Decimal:
        return number ? CPolyValue(*number) : CPolyValue();
    case FieldFormat::Boolean:
        if (kind == orv::PolyBool)
            return value;
        if (text == "S\xC3\xAC" || text == "1" || (isNumber && *number == 1.0))
            return CPolyValue(true);
        if (text == "No" || text == "no" || text == "0" || (isNumber && *number == 0.0))
            return CPolyValue(false);
        return {};
    default:
        break;
    }
    std::int64_t midnight = 0;
    CPolyValue date;
    if (kind == orv::PolyDate)
        return value;
    if (orv::ParseDateText(text, midnight))
        date.SetDateValue(midnight);
    return date;
}

struct ReferenceField {
    int id = 0;
    std::string name;
    FieldFormat format = FieldFormat::Text;
    std::vector<CPolyValue> cells;
    bool operator==(const ReferenceField& other) const
    {
        return id == other.id && name == other.name && format == other.format
            && cells == other.cells;
    }
};
using ReferenceTable = std::vector<ReferenceField>;

std::string print(const ReferenceTable& table)
{
    std::string out;
    for (const auto& field : table)
        out += field.name + " " + support::describe(field.format) + "\n";
    for (std::size_t row = 0; row < RowCount; ++row)
        for (const auto& field : table)
            out += support::describe(field.cells[row]) + (&field == &table.back() ? "\n" : ", ");
    return out;
}

std::string print(gis::CLibGis& library, gis::CDBTable* table)
{
    std::string out;
    const int fields = library.GetNumFields(table);
    for (int f = 0; f < fields; ++f) {
        gis::CField* field = library.GetField(table, f);
        out += library.GetFieldName(field).Bytes() + " "
            + support::describe(library.GetFieldFormat(field)) + "\n";
    }
    for (int row = 0; row < library.GetNumRows(table); ++row)
        for (int f = 0; f < fields; ++f) {
            CPolyValue value;
            library.GetRowValue(library.GetRow(table, row), f, value);
            out += support::describe(value) + (f + 1 == fields ? "\n" : ", ");
        }
    return out;
}

/// One sequence: the same acts on the library's table and on the reference.
class Sequence final {
public:
    explicit Sequence(unsigned seed)
        : m_random(seed)
        , m_library(support::makeLibrary("table T ()", &m_changes))
        , m_table(m_library->GetTable(0))
    {
        support::TablePlan plan;
        plan.rows.resize(RowCount);
        for (int f = 0; f < 3; ++f) {
            ReferenceField field;
            field.id = m_nextId++;
            field.name = Names[f];
            field.format = pick(Formats);
            support::FieldPlan planned;
            planned.name = field.name.c_str();
            planned.format = field.format;
            planned.constraints = support::unsetConstraints(field.format);
            plan.fields.push_back(planned);
            for (auto& row : plan.rows) {
                row.push_back(randomValue(field.format));
                field.cells.push_back(row.back());
            }
            m_now.push_back(std::move(field));
        }
        support::fillTable(*m_table, plan);
        m_history.push_back(m_now);
        m_edit = std::make_unique<CCtrlDlgTableEdit>(m_library.get(), m_table);
        m_pending = m_now;
    }

    void run(int acts)
    {
        for (int i = 0; i < acts && !testing::Test::HasFailure(); ++i) {
            act();
            check();
        }
    }

private:
    template <typename T, std::size_t N> const T& pick(const T (&all)[N])
    {
        return all[below(static_cast<int>(N))];
    }
    int below(int end) { return std::uniform_int_distribution<int>(0, end - 1)(m_random); }
    CPolyValue randomValue(FieldFormat format);
    void act();
    void add();
    void swapFields();
    void commit();
    void travel(bool back);
    void writeCell();
    void remember();
    void check();

    CCtrlDlgTableEdit::CFieldChangeTracker* tracker(int index)
    {
        return m_edit->GetCurField(index);
    }

    std::mt19937 m_random;
    orv::CChangeTransactionManager m_changes;
    std::unique_ptr<gis::CLibGis> m_library;
    gis::CDBTable* m_table;
    std::unique_ptr<CCtrlDlgTableEdit> m_edit;
    ReferenceTable m_now; // as committed
    ReferenceTable m_pending; // cells as committed, in their old format, until the commit
    std::vector<ReferenceTable> m_history;
    std::size_t m_position = 0;
    int m_nextId = 1;
    std::string m_log;
};

CPolyValue Sequence::randomValue(FieldFormat format)
{
    if (below(5) == 0)
        return {};
    CPolyValue value;
    switch (format) {
    case FieldFormat::Boolean:
        return CPolyValue(below(2) == 1);
    case FieldFormat::Integer:
        return CPolyValue(below(5) - 1);
    case FieldFormat::Decimal:
        return CPolyValue((below(9) - 4) * 0.25);
    case FieldFormat::Date:
        value.SetDateValue(orv::LocalMidnightOfDay(below(40000) - 5000));
        return value;
    default:
        return CPolyValue(pick(Texts));
    }
}

void Sequence::act()
{
    const int count = static_cast<int>(m_pending.size());
    const int chosen = count > 0 ? below(count) : -1;
    const int kind = below(20);
    m_log += std::to_string(kind) + " ";
    if (kind < 3)
        add();
    else if (kind < 6 && chosen >= 0) {
        m_pending[static_cast<std::size_t>(chosen)].name = pick(Names);
        m_edit->SetFieldName(tracker(chosen),
            orv::String(std::string_view(m_pending[static_cast<std::size_t>(chosen)].name)));
    } else if (kind < 9 && chosen >= 0) {
        const FieldFormat format = pick(Formats);
        m_pending[static_cast<std::size_t>(chosen)].format = format;
        m_edit->SetFieldFormat(tracker(chosen), format);
    } else if (kind < 11)
        swapFields();
    else if (kind == 11 && chosen >= 0) {
        m_edit->DeleteField(tracker(chosen));
        m_pending.erase(m_pending.begin() + chosen);
    } else if (kind < 15)
        commit();
    else if (kind == 15) {
        EXPECT_TRUE(m_edit->Revert());
        m_pending = m_now;
    } else if (kind < 19)
        travel(kind != 18);
    else
        writeCell();
}

void Sequence::add()
{
    ReferenceField field;
    field.id = m_nextId++;
    field.name = pick(Names);
    field.format = pick(Formats);
    field.cells.resize(RowCount);
    m_edit->AppendField(orv::String(std::string_view(field.name)), field.format);
    m_pending.push_back(std::move(field));
}

void Sequence::swapFields()
{
    const int count = static_cast<int>(m_pending.size());
    const int first = below(count + 2) - 1;
    const int second = below(count + 2) - 1;
    m_edit->SwapOrder(first, second);
    if (first >= 0 && second >= 0 && first < count && second < count)
        std::swap(m_pending[static_cast<std::size_t>(first)],
            m_pending[static_cast<std::size_t>(second)]);
}

void Sequence::commit()
{
    std::set<std::string> names;
    bool isUsable = true;
    for (const auto& field : m_pending) {
        std::string folded = field.name;
        for (char& c : folded)
            c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
        isUsable = isUsable && !folded.empty() && names.insert(folded).second;
    }
    ASSERT_EQ(m_edit->Commit(), isUsable);
    if (!isUsable)
        return;
    ReferenceTable next = m_pending;
    for (auto& field : next) {
        const auto old = std::find_if(m_now.begin(), m_now.end(),
            [&field](const ReferenceField& one) { return one.id == field.id; });
        if (old == m_now.end())
            continue;
        // Texts and lists hold the same texts: nothing is rounded or printed anew.
        field.cells = old->cells;
        if (old->format != field.format)
            for (auto& cell : field.cells)
                cell = converted(cell, field.format);
    }
    if (!(next == m_now)) {
        m_now = next;
        remember();
    }
    m_pending = m_now;
}

void Sequence::remember()
{
    m_history.resize(++m_position);
    m_history.push_back(m_now);
}

void Sequence::travel(bool back)
{
    const bool isPossible = back ? m_position > 0 : m_position + 1 < m_history.size();
    ASSERT_EQ(back ? m_changes.Undo() : m_changes.Redo(), isPossible);
    if (isPossible)
        m_now = m_history[back ? --m_position : ++m_position];
    // Dialogs are modal: nobody undoes under an open editor, so a new one begins.
    m_edit = std::make_unique<CCtrlDlgTableEdit>(m_library.get(), m_table);
    m_pending = m_now;
}

void Sequence::writeCell()
{
    if (m_now.empty())
        return;
    const int field = below(static_cast<int>(m_now.size()));
    const int row = below(RowCount);
    CPolyValue& cell = m_now[static_cast<std::size_t>(field)].cells[static_cast<std::size_t>(row)];
    CPolyValue value = randomValue(m_now[static_cast<std::size_t>(field)].format);
    if (value == cell)
        return;
    m_library->SetRowValue(m_library->GetRow(m_table, row), field, value);
    cell = value;
    remember();
}

void Sequence::check()
{
    ASSERT_EQ(print(*m_library, m_table), print(m_now)) << "after the acts " << m_log;
    ASSERT_EQ(m_edit->GetNoCurFields(), static_cast<int>(m_pending.size()));
    for (std::size_t i = 0; i < m_pending.size(); ++i) {
        auto* field = tracker(static_cast<int>(i));
        ASSERT_EQ(m_edit->GetFieldName(field).Bytes(), m_pending[i].name) << m_log;
        ASSERT_EQ(m_edit->GetFieldFormat(field), m_pending[i].format) << m_log;
    }
}

TEST(TableEditPropertyTest, RandomEditsAgreeWithAReference)
{
    constexpr unsigned Sequences = 10000;
    constexpr int Acts = 30;
    for (unsigned seed = 1; seed <= Sequences; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        Sequence(seed).run(Acts);
        if (HasFailure())
            break;
    }
}

} // namespace
