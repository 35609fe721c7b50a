// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/model/MergePlan.h"

#include "embedded/model/FieldUses.h"
#include "embedded/model/ThemeClasses.h"

#include <algorithm>
#include <limits>

namespace embedded {
namespace {

bool isSameName(const orv::String& left, const orv::String& right)
{
    return left.CompareIgnoreCase(right) == 0;
}

/// The field of an incoming field's name that no earlier one has taken; exact names come first.
gis::CField* matchOf(const gis::CDBTable& existing, const gis::CField& incoming,
    std::vector<bool>& isMatched, bool exact)
{
    for (int i = 0; i < existing.fieldCount(); ++i) {
        gis::CField* field = existing.field(i);
        const bool fits
            = exact ? field->name == incoming.name : isSameName(field->name, incoming.name);
        if (!fits || isMatched[static_cast<std::size_t>(i)])
            continue;
        isMatched[static_cast<std::size_t>(i)] = true;
        return field;
    }
    return nullptr;
}

orv::CPolyValue listOf(const Column& texts)
{
    const auto values = distinctValues(texts, std::numeric_limits<int>::max());
    orv::CPolyValue list;
    list.CreateArray(static_cast<unsigned>(values.size()), orv::PolyString);
    for (unsigned i = 0; i < values.size(); ++i)
        list.SetStringValue(i, values[i].GetStringValue());
    return list;
}

void reportEmptied(Library& library, const orv::String& field, const ConversionCount& count)
{
    if (count.emptied == 0)
        return;
    Finding finding;
    finding.code = FindingCode::CellsEmptied;
    finding.subject = field.Bytes();
    finding.count = count.emptied;
    library.report().add(std::move(finding));
}

/// The steps of one merge, over copies of columns until the tables are changed.
class Merging final {
public:
    Merging(Library& library, const MergePlan& plan)
        : m_library(library)
        , m_plan(plan)
        , m_incoming(plan.incomingFields.size())
        , m_mapping(plan.incomingFields.size(), -1)
    {
        for (int i = 0; i < plan.existing->fieldCount(); ++i)
            m_fields.push_back(unchangedField(*plan.existing->field(i)));
    }

    std::vector<int> run()
    {
        for (std::size_t i = 0; i < m_plan.incomingFields.size(); ++i) {
            const IncomingField& field = m_plan.incomingFields[i];
            if (field.isAdded())
                addField(i);
            else if (field.existing)
                joinField(i, *field.existing);
        }
        applyFields();
        appendRows();
        return m_mapping;
    }

private:
    void addField(std::size_t position);
    void joinField(std::size_t position, const gis::CField& existing);
    void applyFields();
    void appendRows();
    [[nodiscard]] orv::String freeFieldName(const orv::String& wanted) const;

    Library& m_library;
    const MergePlan& m_plan;
    std::vector<FieldChange> m_fields;
    std::vector<std::optional<Column>> m_incoming; // the incoming cells in their new format
    std::vector<int> m_mapping;
};

orv::String Merging::freeFieldName(const orv::String& wanted) const
{
    const auto isUsed = [this](const orv::String& name) {
        return std::any_of(m_fields.begin(), m_fields.end(),
            [&name](const FieldChange& field) { return isSameName(field.name, name); });
    };
    orv::String name = wanted;
    for (int number = 1; isUsed(name); ++number)
        name = wanted + "_" + orv::String::ValueOf(number);
    return name;
}

void Merging::addField(std::size_t position)
{
    const IncomingField& field = m_plan.incomingFields[position];
    FieldChange added = unchangedField(*field.incoming);
    added.field = nullptr;
    added.name = freeFieldName(field.isRename ? field.newName : field.incoming->name);
    m_mapping[position] = static_cast<int>(m_fields.size());
    m_incoming[position].emplace(m_plan.incoming->column(m_plan.incoming->indexOf(field.incoming)));
    m_fields.push_back(std::move(added));
}

void Merging::joinField(std::size_t position, const gis::CField& existing)
{
    const IncomingField& field = m_plan.incomingFields[position];
    const gis::FieldFormat format = field.isConflict() ? field.newFormat : existing.format;
    const int index = m_plan.existing->indexOf(&existing);
    FieldChange& change = m_fields[static_cast<std::size_t>(index)];
    m_mapping[position] = index;
    ConversionCount count;
    m_incoming[position].emplace(
        convertColumn(m_plan.incoming->column(m_plan.incoming->indexOf(field.incoming)),
            field.incoming->format, format, field.incoming->decimalDigits(), count));
    if (format != existing.format) {
        change.format = format;
        change.constraints = defaultConstraints(format);
        change.column.emplace(convertColumn(m_plan.existing->column(index), existing.format, format,
            existing.decimalDigits(), count));
    }
    if (field.isConflict() && field.createsList && format == gis::FieldFormat::List) {
        Column both = change.column ? *change.column : m_plan.existing->column(index);
        both.append(*m_incoming[position]);
        change.constraints[3] = listOf(both);
    }
    reportEmptied(m_library, existing.name, count);
}

void Merging::applyFields()
{
    gis::CDBTable& table = *m_plan.existing;
    bool isSame = static_cast<int>(m_fields.size()) == table.fieldCount();
    for (const FieldChange& change : m_fields) {
        isSame = isSame && isSameField(*change.field, change);
        if (change.field && change.field->format != change.format)
            convertClassLimits(m_library, *change.field, change.format, *change.column);
    }
    if (!isSame)
        m_library.replaceFields(&table, std::move(m_fields));
}

void Merging::appendRows()
{
    gis::CDBTable& table = *m_plan.existing;
    const int firstRow = table.rowCount();
    if (m_plan.incoming->rowCount() == 0)
        return;
    table.addRows(m_plan.incoming->rowCount());
    for (std::size_t i = 0; i < m_mapping.size(); ++i) {
        if (m_mapping[i] < 0)
            continue;
        Column& column = table.columnForCells(m_mapping[i]); // the rows that were there stay
        column.truncate(firstRow);
        column.append(*m_incoming[i]);
    }
    m_library.recordRowsAdded(&table, firstRow);
}

} // namespace

MergePlan::MergePlan(gis::CDBTable* existingTable, gis::CDBTable* incomingTable)
    : existing(existingTable)
    , incoming(incomingTable)
{
    if (!isComplete())
        return;
    incomingFields.resize(static_cast<std::size_t>(incoming->fieldCount()));
    std::vector<bool> isMatched(static_cast<std::size_t>(existing->fieldCount()));
    for (const bool exact : { true, false })
        for (std::size_t i = 0; i < incomingFields.size(); ++i) {
            IncomingField& field = incomingFields[i];
            field.incoming = incoming->field(static_cast<int>(i));
            if (!field.existing)
                field.existing = matchOf(*existing, *field.incoming, isMatched, exact);
        }
    for (std::size_t i = 0; i < incomingFields.size(); ++i) {
        IncomingField& field = incomingFields[i];
        if (!field.isConflict())
            continue;
        field.newFormat = field.existing->format;
        int number = 0;
        do
            field.newName = field.incoming->name + "_" + orv::String::ValueOf(++number);
        while (isFieldNameUsed(field.newName, static_cast<int>(i)));
    }
}

gis::ResultCompare MergePlan::compare() const
{
    int last = -1;
    bool isInOrder = true;
    for (const IncomingField& field : incomingFields) {
        if (!field.existing || field.isConflict())
            return gis::ResultCompare::Conflicts;
        const int index = existing->indexOf(field.existing);
        isInOrder = isInOrder && index > last;
        last = index;
    }
    return isInOrder ? gis::ResultCompare::Compatible : gis::ResultCompare::OtherOrder;
}

std::vector<gis::CField*> MergePlan::newFields() const
{
    std::vector<gis::CField*> fields;
    for (const IncomingField& field : incomingFields)
        if (!field.existing)
            fields.push_back(field.incoming);
    return fields;
}

bool MergePlan::isFieldNameUsed(const orv::String& name, int exceptPosition) const
{
    for (int i = 0; i < existing->fieldCount(); ++i)
        if (isSameName(existing->field(i)->name, name))
            return true;
    for (std::size_t i = 0; i < incomingFields.size(); ++i) {
        const IncomingField& field = incomingFields[i];
        const orv::String& other = field.existing ? field.newName : field.incoming->name;
        if (static_cast<int>(i) != exceptPosition && isSameName(other, name))
            return true;
    }
    return false;
}

std::vector<int> mergeTables(Library& library, const MergePlan& plan)
{
    const orv::ChangeStep step(library.changes(), "Unione di " + plan.existing->name());
    std::vector<int> mapping = Merging(library, plan).run();
    library.markModified();
    return mapping;
}

} // namespace embedded
