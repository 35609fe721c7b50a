// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/model/LibraryData.h"
#include "embedded/model/TableData.h"

#include "host/base/Dates.h"

#include <ctime>
#include <vector>

namespace embedded {

namespace {

/// A run of cell changes of one step, some 32 bytes a cell: a grid may write a hundred thousand at
/// once.
class CellsChange final : public orv::IChange {
public:
    struct Cell {
        gis::CField* field;
        int row;
        bool hadValue;
        bool hasValue;
        std::uint64_t before;
        std::uint64_t after;
    };
    CellsChange(std::weak_ptr<const Library::Life> library, gis::CDBTable* table)
        : m_library(std::move(library))
        , m_table(table)
    {
    }
    [[nodiscard]] gis::CDBTable* table() const { return m_table; }
    void add(const Cell& cell) { m_cells.push_back(cell); }
    void Undo() override
    {
        for (auto cell = m_cells.rbegin(); cell != m_cells.rend(); ++cell)
            write(*cell, cell->hadValue, cell->before);
    }
    void Redo() override
    {
        for (const Cell& cell : m_cells)
            write(cell, cell.hasValue, cell.after);
    }

private:
    void write(const Cell& cell, bool valid, std::uint64_t raw)
    {
        if (m_library.expired())
            return;
        const int field = m_table->indexOf(cell.field);
        if (field < 0 || cell.row >= m_table->rowCount())
            return;
        Column& column = m_table->columnForCells(field);
        if (valid)
            column.setRaw(cell.row, raw);
        else
            column.setEmpty(cell.row);
        m_table->markCellChanged(cell.row, field);
    }
    std::weak_ptr<const Library::Life> m_library; // a record may outlive the library
    gis::CDBTable* m_table;
    std::vector<Cell> m_cells;
};

/// The value with which a new row starts in a field; empty where none is set.
orv::CPolyValue defaultValue(const gis::CField& field)
{
    const orv::CPolyValue& first = field.constraints[0];
    orv::CPolyValue value;
    switch (field.format) {
    case gis::FieldFormat::Text:
    case gis::FieldFormat::List:
        if (first.TextView().empty())
            return {};
        return first;
    case gis::FieldFormat::Boolean:
        if (first.GetType() == orv::PolyInt32
            && (first.GetInt32Value() == 0 || first.GetInt32Value() == 1))
            value = first.GetInt32Value() == 1;
        return value;
    case gis::FieldFormat::Integer:
        return first.GetType() == orv::PolyInt32 && first.GetInt32Value() != orv::UnsetInteger
            ? first
            : value;
    case gis::FieldFormat::Decimal:
        return first.GetType() == orv::PolyDouble && first.GetDoubleValue() != orv::UnsetDecimal
            ? first
            : value;
    case gis::FieldFormat::Date: {
        const int mode = field.constraints[3].GetInt32Value();
        std::int64_t midnight = 0;
        // "Today" is the day on which the row is filled, not the one on which the field was made.
        if (mode == 1 && orv::LocalMidnight(std::time(nullptr), midnight))
            value.SetDateValue(midnight);
        else if (mode == 2 && first.GetType() == orv::PolyDate)
            value = first;
        return value;
    }
    }
    return value;
}

/// Quick, for the many fields without a default that are looked at in every row.
bool mayHaveDefault(const gis::CField& field)
{
    const orv::CPolyValue& first = field.constraints[0];
    switch (field.format) {
    case gis::FieldFormat::Text:
    case gis::FieldFormat::List:
        return !first.TextView().empty();
    case gis::FieldFormat::Date:
        return field.constraints[3].GetInt32Value() != 0;
    case gis::FieldFormat::Integer:
        return first.GetInt32Value() != orv::UnsetInteger;
    case gis::FieldFormat::Decimal:
        return first.GetDoubleValue() != orv::UnsetDecimal;
    default:
        return true;
    }
}

} // namespace

void Library::cell(orv::CResultRow* row, int fieldIndex, orv::CPolyValue& value)
{
    gis::CDBTable* table = gis::CDBTable::tableOf(row);
    const int index = gis::CDBTable::indexOf(row);
    if (!table || fieldIndex < 0 || fieldIndex >= table->fieldCount()
        || index >= table->rowCount()) {
        value.SetToEmpty();
        return;
    }
    table->column(fieldIndex).valueAt(index, value);
}

void Library::setCell(orv::CResultRow* row, int fieldIndex, const orv::CPolyValue& value)
{
    gis::CDBTable* table = gis::CDBTable::tableOf(row);
    const int index = gis::CDBTable::indexOf(row);
    if (!table || fieldIndex < 0 || fieldIndex >= table->fieldCount() || index >= table->rowCount())
        return;
    Column& column = table->columnForCells(fieldIndex);
    CellsChange::Cell cell { table->field(fieldIndex), index, column.hasValue(index), false, 0, 0 };
    if (cell.hadValue)
        cell.before = column.rawAt(index);
    // A text of no characters is no value: a cell that looks empty is found by IS NULL.
    if (value.GetType() == orv::PolyString && value.TextView().empty())
        column.setEmpty(index);
    else
        column.setValue(index, value);
    cell.hasValue = column.hasValue(index);
    if (cell.hasValue)
        cell.after = column.rawAt(index);
    markModified();
    if (cell.hadValue == cell.hasValue && cell.before == cell.after)
        return; // nothing to take back
    table->markCellChanged(index, fieldIndex);
    ++m_data->changeCount;
    orv::CChangeTransactionManager* changes = m_data->changes;
    if (!changes || changes->IsReplaying())
        return;
    auto* run = dynamic_cast<CellsChange*>(changes->LastChange());
    if (run && run->table() == table) {
        run->add(cell);
        return;
    }
    auto started = std::make_unique<CellsChange>(m_data->life, table);
    started->add(cell);
    changes->Record(std::move(started));
}

void Library::initializeWithDefaults(gis::CDBTable* table, orv::CResultRow* row)
{
    if (!table || gis::CDBTable::tableOf(row) != table)
        return;
    const int index = gis::CDBTable::indexOf(row);
    int i = -1;
    for (const gis::CField* each : table->m_data->fields) { // for a million rows, one by one
        ++i;
        const gis::CField& field = *each;
        if (field.isPredefined() || !mayHaveDefault(field))
            continue; // its value is computed, or there is none
        if (table->column(i).hasValue(index))
            continue;
        const orv::CPolyValue value = defaultValue(field);
        if (!value.IsEmpty())
            setCell(row, i, value);
    }
}

void Library::recalcPredefined(gis::CTheme* theme, gis::CEnt* ent)
{
    orv::CResultRow* row = EntityStore::rowOf(ent);
    gis::CDBTable* table = gis::CDBTable::tableOf(row);
    if (!theme || !table || EntityStore::themeOf(ent) != theme)
        return;
    int i = -1;
    for (const gis::CField* field : table->m_data->fields) {
        ++i;
        if (field->isPredefined())
            setCell(row, i, predefinedValue(field->type, *theme, EntityStore::indexOf(ent)));
    }
}

void Library::setLinkedPoint(LinkedPoint* point, const LinkedPoint& value)
{
    if (!point)
        return;
    const orv::ChangeStep step(m_data->changes, orv::String("Attributi del punto"));
    const LinkedPoint old = *point;
    *point = value;
    record([point, old] { *point = old; }, [point, value] { *point = value; });
    markModified();
    for (gis::CTheme* theme : m_data->themes) {
        if (!theme->geometry().hasLinkedPoints())
            continue;
        EntityStore& entities = theme->entities();
        for (int i = 0; i < entities.entityCount(); ++i)
            if (entities.linkedPointOf(i) == point)
                recalcPredefined(theme, entities.entity(i));
    }
}

} // namespace embedded
