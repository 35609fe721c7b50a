// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/model/TableData.h"

#include "embedded/model/Library.h"
#include "host/base/Numbers.h"

#include <algorithm>
#include <chrono>
#include <mutex>
#include <thread>

namespace gis {

int CField::decimalDigits() const
{
    if (format != FieldFormat::Decimal)
        return 0;
    return std::clamp(constraints[3].GetInt32Value(), 0, MaxDecimalDigits);
}

} // namespace gis

namespace embedded {

std::array<orv::CPolyValue, gis::ConstraintCount> defaultConstraints(gis::FieldFormat format)
{
    using orv::CPolyValue;
    std::array<CPolyValue, gis::ConstraintCount> values;
    switch (format) {
    case gis::FieldFormat::Text:
        values[0] = "";
        values[3] = 0;
        break;
    case gis::FieldFormat::Boolean:
        values[0] = 2; // none
        break;
    case gis::FieldFormat::Integer:
        for (int i = 0; i < 3; ++i)
            values[static_cast<std::size_t>(i)] = orv::UnsetInteger;
        break;
    case gis::FieldFormat::Decimal:
        for (int i = 0; i < 3; ++i)
            values[static_cast<std::size_t>(i)] = orv::UnsetDecimal;
        values[3] = 2;
        break;
    case gis::FieldFormat::List:
        values[0] = "";
        values[3].CreateArray(0, orv::PolyString);
        break;
    case gis::FieldFormat::Date:
        values[0] = 0;
        values[3] = 0;
        break;
    }
    return values;
}

} // namespace embedded

namespace gis {

using embedded::ColumnSlot;

CDBTable::CDBTable(embedded::Library& library, const orv::String& name)
    : m_data(std::make_unique<embedded::TableData>(*this, library, name))
{
}
CDBTable::~CDBTable() = default;

embedded::Library& CDBTable::library() const
{
    return m_data->library;
}
const orv::String& CDBTable::name() const
{
    return m_data->name;
}
void CDBTable::setName(const orv::String& name)
{
    m_data->name = name;
}

int CDBTable::fieldCount() const
{
    return static_cast<int>(m_data->fields.size());
}

CField* CDBTable::field(int index) const
{
    return index >= 0 && index < fieldCount() ? m_data->fields[static_cast<std::size_t>(index)]
                                              : nullptr;
}

int CDBTable::indexOf(const CField* field) const
{
    const auto found = std::find(m_data->fields.begin(), m_data->fields.end(), field);
    return found == m_data->fields.end() ? -1 : static_cast<int>(found - m_data->fields.begin());
}

int CDBTable::findField(const orv::String& name) const
{
    int folded = -1;
    for (int i = 0; i < fieldCount(); ++i) {
        const orv::String& candidate = m_data->fields[static_cast<std::size_t>(i)]->name;
        if (candidate == name)
            return i;
        if (folded < 0 && candidate.CompareIgnoreCase(name) == 0)
            folded = i;
    }
    return folded;
}

CField* CDBTable::addField(const orv::String& name, FieldFormat format)
{
    CField& field = m_data->pool.emplace_back();
    field.name = name;
    field.format = format;
    field.constraints = embedded::defaultConstraints(format);
    field.table = this;
    m_data->fields.push_back(&field);
    m_data->slots.emplace_back(format);
    m_data->slots.back().column.appendEmpty(rowCount());
    m_data->structureChanged = true;
    return &field;
}

int CDBTable::rowCount() const
{
    return m_data->rows.size();
}
orv::CResultRow* CDBTable::row(int index) const
{
    return index >= 0 && index < rowCount() ? m_data->rows.at(index) : nullptr;
}
int CDBTable::indexOf(const orv::CResultRow* row)
{
    return row ? embedded::RecordArena<orv::CResultRow>::indexOf(row) : -1;
}
CDBTable* CDBTable::tableOf(const orv::CResultRow* row)
{
    return row ? static_cast<CDBTable*>(embedded::RecordArena<orv::CResultRow>::ownerOf(row))
               : nullptr;
}
CEnt* CDBTable::entityOf(const orv::CResultRow* row)
{
    return row ? row->entity : nullptr;
}
void CDBTable::setEntity(orv::CResultRow* row, CEnt* ent)
{
    if (row)
        row->entity = ent;
}

void CDBTable::addRows(int count)
{
    for (int i = 0; i < fieldCount(); ++i) {
        static_cast<void>(column(i)); // a column that is read later would not know of the new rows
        m_data->slots[static_cast<std::size_t>(i)].column.appendEmpty(count);
    }
    const int first = rowCount();
    m_data->rows.resize(first + count);
    for (int row = first; row < first + count; ++row)
        m_data->rows.at(row)->entity = nullptr;
}

void CDBTable::setColumn(int fieldIndex, embedded::Column column)
{
    ColumnSlot& slot = m_data->slots[static_cast<std::size_t>(fieldIndex)];
    slot.column = std::move(column);
    slot.loaded = true;
    slot.failure.reset();
    slot.isWritten = true;
    slot.allChanged = true;
}

void CDBTable::restoreColumn(int fieldIndex, const embedded::Column& column)
{
    m_data->slots[static_cast<std::size_t>(fieldIndex)].column = column;
}

void CDBTable::takeLoaded(int fieldIndex, embedded::Column column)
{
    ColumnSlot& slot = m_data->slots[static_cast<std::size_t>(fieldIndex)];
    if (column.rowCount() < rowCount())
        column.appendEmpty(rowCount() - column.rowCount());
    slot.column = std::move(column);
    slot.loaded = true;
    slot.failure.reset();
}

void CDBTable::truncateRows(int count)
{
    for (int i = 0; i < fieldCount(); ++i) {
        static_cast<void>(column(i));
        m_data->slots[static_cast<std::size_t>(i)].column.truncate(count);
    }
    m_data->rows.resize(std::min(count, rowCount()));
    if (count < m_data->storedRows)
        m_data->structureChanged = true; // rows that the store holds are gone
}

const embedded::Column& CDBTable::column(int fieldIndex)
{
    static_cast<void>(loadColumn(fieldIndex, {}));
    return m_data->slots[static_cast<std::size_t>(fieldIndex)].column;
}

bool CDBTable::loadColumn(int fieldIndex, const embedded::IsStopped& isStopped)
{
    ColumnSlot& slot = m_data->slots[static_cast<std::size_t>(fieldIndex)];
    if (slot.loaded)
        return true;
    std::unique_lock lock(m_data->library.readingMutex(), std::defer_lock);
    if (!isStopped)
        lock.lock();
    while (!lock.owns_lock() && !lock.try_lock()) { // another column takes long
        if (isStopped())
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    if (slot.loaded) // by another thread meanwhile
        return true;
    auto read = readColumn(fieldIndex, isStopped);
    if (!read && isStopped && read.error().code == embedded::ErrorCode::Cancelled)
        return false;
    slot.failure.reset();
    if (read) {
        slot.column = std::move(read.value());
    } else {
        slot.failure = read.error();
        slot.column = embedded::Column(slot.column.kind());
        slot.column.appendEmpty(rowCount());
    }
    slot.loaded = true;
    return true;
}

embedded::Result<embedded::Column> CDBTable::readColumn(
    int fieldIndex, const embedded::IsStopped& isStopped) const
{
    const CField& read = *field(fieldIndex);
    embedded::Column cells(embedded::columnKindOf(read.format));
    embedded::IStore* store = m_data->library.store();
    embedded::Result<void> result;
    if (store)
        result = store->readColumn(*this, read, cells, isStopped);
    if (result && cells.rowCount() != rowCount())
        result = embedded::Error { embedded::ErrorCode::ReadFailed, read.name.Bytes(), {} };
    if (!result)
        return result.error();
    return cells;
}

void CDBTable::forgetFailedColumns()
{
    for (ColumnSlot& slot : m_data->slots)
        if (slot.failure && !slot.isWritten && rowCount() == m_data->storedRows)
            slot.loaded = false;
}

bool CDBTable::readAllColumns()
{
    forgetFailedColumns();
    for (int i = 0; i < fieldCount(); ++i)
        static_cast<void>(column(i));
    return !failedColumn();
}

bool CDBTable::isColumnLoaded(int fieldIndex) const
{
    return m_data->slots[static_cast<std::size_t>(fieldIndex)].loaded;
}

const embedded::Error* CDBTable::columnFailure(int fieldIndex) const
{
    const ColumnSlot& slot = m_data->slots[static_cast<std::size_t>(fieldIndex)];
    return slot.failure ? &*slot.failure : nullptr;
}

const embedded::Error* CDBTable::failedColumn() const
{
    for (const ColumnSlot& slot : m_data->slots)
        if (slot.failure)
            return &*slot.failure;
    return nullptr;
}

embedded::Column& CDBTable::columnForWriting(int fieldIndex)
{
    static_cast<void>(column(fieldIndex));
    ColumnSlot& slot = m_data->slots[static_cast<std::size_t>(fieldIndex)];
    slot.isWritten = true;
    slot.allChanged = true;
    return slot.column;
}

embedded::Column& CDBTable::columnForCells(int fieldIndex)
{
    static_cast<void>(column(fieldIndex));
    return m_data->slots[static_cast<std::size_t>(fieldIndex)].column;
}

void CDBTable::markCellChanged(int row, int fieldIndex)
{
    ColumnSlot& slot = m_data->slots[static_cast<std::size_t>(fieldIndex)];
    if (row >= m_data->storedRows)
        return;
    slot.isWritten = true;
    if (slot.allChanged)
        return;
    const auto word = static_cast<std::size_t>(row) / 64;
    if (slot.changed.size() <= word)
        slot.changed.resize(static_cast<std::size_t>(m_data->storedRows) / 64 + 1);
    slot.changed[word] |= std::uint64_t(1) << (row % 64);
}

bool CDBTable::structureChanged() const
{
    return m_data->structureChanged;
}

void CDBTable::changedCells(std::vector<int>& rows, std::vector<bool>& fields) const
{
    rows.clear();
    fields.assign(m_data->slots.size(), false);
    std::vector<std::uint64_t> any(static_cast<std::size_t>(m_data->storedRows) / 64 + 1);
    for (std::size_t i = 0; i < m_data->slots.size(); ++i) {
        const ColumnSlot& slot = m_data->slots[i];
        if (slot.allChanged) {
            fields[i] = true;
            std::fill(any.begin(), any.end(), ~std::uint64_t(0));
            continue;
        }
        for (std::size_t word = 0; word < std::min(any.size(), slot.changed.size()); ++word) {
            any[word] |= slot.changed[word];
            if (slot.changed[word] != 0)
                fields[i] = true;
        }
    }
    for (int row = 0; row < std::min(m_data->storedRows, rowCount()); ++row)
        if (any[static_cast<std::size_t>(row) / 64] >> (row % 64) & 1u)
            rows.push_back(row);
}

int CDBTable::storedRowCount() const
{
    return m_data->storedRows;
}

void CDBTable::markSaved()
{
    m_data->storedRows = rowCount();
    m_data->structureChanged = false;
    for (ColumnSlot& slot : m_data->slots) {
        slot.isWritten = false;
        slot.allChanged = false;
        slot.changed.clear();
    }
}

void CDBTable::markStored(int count)
{
    m_data->rows.resize(count);
    for (ColumnSlot& slot : m_data->slots) {
        slot.column = embedded::Column(slot.column.kind());
        slot.failure.reset();
        slot.loaded = false;
    }
    markSaved();
}

embedded::Structure CDBTable::structure()
{
    embedded::Structure structure;
    for (int i = 0; i < fieldCount(); ++i) {
        static_cast<void>(column(i));
        CField& f = *field(i);
        structure.push_back({ &f, f.name, f.format, f.type, f.requested, f.constraints,
            m_data->slots[static_cast<std::size_t>(i)] });
    }
    return structure;
}

void CDBTable::applyStructure(embedded::Structure& structure)
{
    m_data->fields.clear();
    m_data->slots.clear();
    for (embedded::FieldState& state : structure) {
        if (!state.handle) {
            state.handle = &m_data->pool.emplace_back();
            state.handle->table = this;
        }
        CField& f = *state.handle;
        f.name = state.name;
        f.format = state.format;
        f.type = state.type;
        f.requested = state.requested;
        f.constraints = state.constraints;
        m_data->fields.push_back(&f);
        m_data->slots.push_back(state.slot);
        m_data->slots.back().allChanged = true;
    }
    m_data->structureChanged = true;
}

} // namespace gis
