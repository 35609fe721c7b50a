// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "host/gis/TableEdit.h"

#include "embedded/base/Result.h"
#include "embedded/model/FieldUses.h"

#include "host/base/Numbers.h"

#include <algorithm>
#include <unordered_set>

using embedded::ConversionCount;
using embedded::FieldChange;
using embedded::Finding;
using embedded::FindingCode;
using embedded::FindingSeverity;
using embedded::Library;

namespace gis {

/// A field as it is to be; `change.field` is what it was.
class CCtrlDlgTableEdit::CFieldChangeTracker final {
public:
    FieldChange change;
};

namespace {

/// One progress over several columns, read or converted; remembers that the user stopped it.
class ConversionProgress final : public embedded::IProgress {
public:
    ConversionProgress(embedded::IProgress* whole, std::size_t columns)
        : m_whole(whole)
        , m_columns(static_cast<double>(columns))
    {
    }
    bool advance(double fraction) override
    {
        if (m_whole && !m_cancelled)
            m_cancelled = !m_whole->advance(m_columns > 0 ? (m_done + fraction) / m_columns : 1.0);
        return !m_cancelled;
    }
    ~ConversionProgress()
    {
        if (m_whole)
            m_whole->finish();
    }
    ConversionProgress(const ConversionProgress&) = delete;
    ConversionProgress& operator=(const ConversionProgress&) = delete;
    void nextColumn() { m_done += 1.0; }
    [[nodiscard]] bool isCancelled() const { return m_cancelled; }

private:
    IProgress* m_whole;
    double m_columns;
    double m_done = 0.0;
    bool m_cancelled = false;
};

bool namesAreUsable(const std::vector<FieldChange>& fields)
{
    std::unordered_set<std::string> names;
    for (const auto& field : fields)
        if (field.name.Length() == 0 || !names.insert(orv::FoldAsciiCase(field.name.View())).second)
            return false;
    return true;
}

bool isFormat(FieldFormat format)
{
    return format >= FieldFormat::Text && format <= FieldFormat::Date;
}

bool isFormatChange(const FieldChange& change)
{
    return change.field && change.field->format != change.format;
}

/// What a change of formats costs, for the user's list of steps.
orv::String costText(const std::vector<std::pair<orv::String, ConversionCount>>& costs)
{
    orv::String text;
    for (const auto& [name, count] : costs) {
        if (count.emptied == 0)
            continue;
        const std::string values = std::to_string(count.emptied)
            + (count.emptied == 1 ? " valore non convertibile in "
                                  : " valori non convertibili in ");
        text = text + (text.Length() == 0 ? ": " : ", ");
        text = text + values.c_str() + name;
    }
    return text;
}

void reportCosts(embedded::Report& report, const orv::String& table,
    const std::vector<std::pair<orv::String, ConversionCount>>& costs)
{
    const auto add = [&](FindingCode code, FindingSeverity severity, const orv::String& field,
                         std::int64_t count) {
        Finding finding;
        finding.code = code;
        finding.severity = severity;
        finding.subject = field.Bytes();
        finding.detail = table.Bytes();
        finding.count = count;
        report.add(std::move(finding));
    };
    for (const auto& [name, count] : costs) {
        add(FindingCode::CellsConverted, FindingSeverity::Note, name, count.converted);
        add(FindingCode::CellsEmptied,
            count.emptied > 0 ? FindingSeverity::Warning : FindingSeverity::Note, name,
            count.emptied);
        add(FindingCode::CellsUnchanged, FindingSeverity::Note, name, count.unchanged);
    }
}

} // namespace

class CCtrlDlgTableEdit::Impl {
public:
    using Tracker = CFieldChangeTracker;

    Impl(CLibGis* facade, CDBTable* edited)
        : library(Library::of(facade))
        , table(edited)
    {
        load();
    }

    void load()
    {
        trackers.clear();
        current.clear();
        if (!tableExists())
            return;
        for (int i = 0; i < table->fieldCount(); ++i)
            add(embedded::unchangedField(*table->field(i)));
        known.clear();
        for (const auto& tracker : trackers)
            known.insert(tracker->change.field);
    }

    Tracker* add(FieldChange change)
    {
        trackers.push_back(std::make_unique<Tracker>());
        trackers.back()->change = std::move(change);
        current.push_back(trackers.back().get());
        return current.back();
    }

    [[nodiscard]] bool tableExists() const
    {
        if (!library || !table)
            return false;
        const auto& tables = library->tables();
        return std::find(tables.begin(), tables.end(), table) != tables.end();
    }

    [[nodiscard]] bool isToBeRead(int fieldIndex) const;
    [[nodiscard]] std::size_t columnsToRead() const;
    [[nodiscard]] bool isKept(const std::vector<FieldChange>& fields, const CField* field) const;
    embedded::Result<void> readColumns(
        const std::vector<FieldChange>& fields, ConversionProgress& progress) const;
    [[nodiscard]] std::vector<FieldChange> wanted() const;
    bool convert(std::vector<FieldChange>& fields,
        std::vector<std::pair<orv::String, ConversionCount>>& costs,
        ConversionProgress& progress) const;
    void apply(std::vector<FieldChange> fields) const;

    Library* library;
    CDBTable* table;
    std::vector<std::unique_ptr<Tracker>> trackers; // those of deleted fields too
    std::vector<Tracker*> current;
    std::unordered_set<const CField*> known; // fields that the table had at the beginning
};

bool CCtrlDlgTableEdit::Impl::isToBeRead(int fieldIndex) const
{
    return !table->isColumnLoaded(fieldIndex) || table->columnFailure(fieldIndex);
}

std::size_t CCtrlDlgTableEdit::Impl::columnsToRead() const
{
    std::size_t count = 0;
    for (int i = 0; i < table->fieldCount(); ++i)
        count += isToBeRead(i) ? 1 : 0;
    return count;
}

bool CCtrlDlgTableEdit::Impl::isKept(
    const std::vector<FieldChange>& fields, const CField* field) const
{
    return std::any_of(fields.begin(), fields.end(),
        [field](const FieldChange& change) { return change.field == field; });
}

/// Reads what is still in the file only: a column that cannot be read would be committed as empty.
/// One whose field goes need not be there.
embedded::Result<void> CCtrlDlgTableEdit::Impl::readColumns(
    const std::vector<FieldChange>& fields, ConversionProgress& progress) const
{
    for (int i = 0; i < table->fieldCount(); ++i) {
        if (!isToBeRead(i))
            continue;
        // Failed, and written to since: the file's cells fit no more.
        const bool isLost = table->isColumnLoaded(i);
        auto read = isLost ? *table->columnFailure(i) : table->readColumn(i);
        if (!read && isKept(fields, table->field(i)))
            return read.error();
        if (read)
            table->takeLoaded(i, std::move(read.value()));
        progress.nextColumn();
        if (!progress.advance(0.0))
            return embedded::Error { embedded::ErrorCode::Cancelled, {}, {} };
    }
    return {};
}

/// The pending list against the table as it is now: a field that went meanwhile (undo) is made
/// anew, one that came meanwhile stays.
std::vector<FieldChange> CCtrlDlgTableEdit::Impl::wanted() const
{
    std::unordered_set<const CField*> present;
    for (int i = 0; i < table->fieldCount(); ++i)
        present.insert(table->field(i));
    std::vector<FieldChange> fields;
    for (const Tracker* tracker : current) {
        fields.push_back(tracker->change);
        if (!present.contains(fields.back().field))
            fields.back().field = nullptr;
    }
    for (int i = 0; i < table->fieldCount(); ++i)
        if (!known.contains(table->field(i)))
            fields.push_back(embedded::unchangedField(*table->field(i)));
    return fields;
}

/// Converts aside, so that a cancelled commit leaves nothing behind.
bool CCtrlDlgTableEdit::Impl::convert(std::vector<FieldChange>& fields,
    std::vector<std::pair<orv::String, ConversionCount>>& costs, ConversionProgress& progress) const
{
    for (auto& change : fields) {
        if (!isFormatChange(change))
            continue;
        ConversionCount count;
        change.column.emplace(embedded::convertColumn(table->column(table->indexOf(change.field)),
            change.field->format, change.format, change.field->decimalDigits(), count, &progress));
        if (progress.isCancelled())
            return false;
        progress.nextColumn();
        costs.emplace_back(change.name, count);
    }
    return true;
}

void CCtrlDlgTableEdit::Impl::apply(std::vector<FieldChange> fields) const
{
    std::unordered_set<const CField*> kept;
    for (const auto& change : fields) {
        kept.insert(change.field);
        if (isFormatChange(change))
            embedded::convertClassLimits(*library, *change.field, change.format, *change.column);
    }
    for (int i = 0; i < table->fieldCount(); ++i)
        if (!kept.contains(table->field(i)))
            embedded::releaseField(*library, *table->field(i));
    library->replaceFields(table, std::move(fields));
}

CCtrlDlgTableEdit::CCtrlDlgTableEdit(CLibGis* library, CDBTable* table)
    : m_impl(std::make_unique<Impl>(library, table))
{
}

CCtrlDlgTableEdit::~CCtrlDlgTableEdit() = default;

int CCtrlDlgTableEdit::GetNoCurFields()
{
    return static_cast<int>(m_impl->current.size());
}

CCtrlDlgTableEdit::CFieldChangeTracker* CCtrlDlgTableEdit::GetCurField(int index)
{
    if (index < 0 || index >= GetNoCurFields())
        return nullptr;
    return m_impl->current[static_cast<std::size_t>(index)];
}

CCtrlDlgTableEdit::CFieldChangeTracker* CCtrlDlgTableEdit::AppendField(
    const orv::String& name, FieldFormat format)
{
    FieldChange change;
    change.name = name;
    change.format = isFormat(format) ? format : FieldFormat::Text;
    change.constraints = embedded::defaultConstraints(change.format);
    return m_impl->add(std::move(change));
}

void CCtrlDlgTableEdit::DeleteField(CFieldChangeTracker* field)
{
    // The record itself stays: the dialog's page still writes to the field it was made for.
    auto& current = m_impl->current;
    current.erase(std::remove(current.begin(), current.end(), field), current.end());
}

void CCtrlDlgTableEdit::SwapOrder(int first, int second)
{
    if (GetCurField(first) && GetCurField(second))
        std::swap(m_impl->current[static_cast<std::size_t>(first)],
            m_impl->current[static_cast<std::size_t>(second)]);
}

orv::String CCtrlDlgTableEdit::GetFieldName(CFieldChangeTracker* field)
{
    return field ? field->change.name : orv::String();
}

void CCtrlDlgTableEdit::SetFieldName(CFieldChangeTracker* field, const orv::String& name)
{
    if (field)
        field->change.name = name;
}

FieldFormat CCtrlDlgTableEdit::GetFieldFormat(CFieldChangeTracker* field)
{
    return field ? field->change.format : FieldFormat::Text;
}

void CCtrlDlgTableEdit::SetFieldFormat(CFieldChangeTracker* field, FieldFormat format)
{
    if (!field || !isFormat(format) || field->change.format == format)
        return;
    field->change.format = format;
    field->change.constraints = embedded::defaultConstraints(format);
}

FieldType CCtrlDlgTableEdit::GetFieldType(CFieldChangeTracker* field)
{
    return field ? field->change.type : FieldType::FromUser;
}

void CCtrlDlgTableEdit::SetFieldType(CFieldChangeTracker* field, FieldType type)
{
    if (field && type >= FieldType::FromUser && type <= FieldType::Photo5)
        field->change.type = type;
}

bool CCtrlDlgTableEdit::IsFieldRequested(CFieldChangeTracker* field)
{
    return field && field->change.requested;
}

void CCtrlDlgTableEdit::SetFieldRequested(CFieldChangeTracker* field, bool requested)
{
    if (field)
        field->change.requested = requested;
}

bool CCtrlDlgTableEdit::IsFieldPredefined(CFieldChangeTracker* field)
{
    return field && field->change.type != FieldType::FromUser;
}

void CCtrlDlgTableEdit::GetFieldConstraints(
    CFieldChangeTracker* field, orv::CPolyValue* constraints)
{
    if (field && constraints)
        std::copy(field->change.constraints.begin(), field->change.constraints.end(), constraints);
}

void CCtrlDlgTableEdit::SetFieldConstraints(
    CFieldChangeTracker* field, const orv::CPolyValue* constraints)
{
    if (field && constraints)
        std::copy(constraints, constraints + ConstraintCount, field->change.constraints.begin());
}

bool CCtrlDlgTableEdit::Commit()
{
    if (!m_impl->tableExists())
        return false;
    std::vector<FieldChange> fields = m_impl->wanted();
    if (!namesAreUsable(fields))
        return false;
    std::vector<std::pair<orv::String, ConversionCount>> costs;
    m_impl->table->forgetFailedColumns(); // the reason may be gone
    embedded::IProgress* const whole = m_impl->library->progress();
    embedded::Result<void> read;
    bool isDone = false;
    {
        const auto columns = m_impl->columnsToRead()
            + static_cast<std::size_t>(std::count_if(fields.begin(), fields.end(), isFormatChange));
        ConversionProgress progress(whole, columns);
        read = m_impl->readColumns(fields, progress);
        isDone = read && m_impl->convert(fields, costs, progress);
    }
    if (!read && read.error().code != embedded::ErrorCode::Cancelled && whole)
        whole->failed(read.error());
    if (!isDone)
        return false;

    Library& library = *m_impl->library;
    CDBTable& table = *m_impl->table;
    // Several structures changed in one step of the user are one report.
    const bool isPartOfStep = library.changes() && library.changes()->IsStepOpen();
    reportCosts(isPartOfStep ? library.report() : library.beginReport(), table.name(), costs);
    bool isSame = static_cast<int>(fields.size()) == table.fieldCount();
    for (int i = 0; isSame && i < table.fieldCount(); ++i)
        isSame = embedded::isSameField(*table.field(i), fields[static_cast<std::size_t>(i)]);
    if (!isSame) {
        const orv::ChangeStep step(
            library.changes(), "Struttura di " + table.name() + costText(costs));
        m_impl->apply(std::move(fields));
    }
    library.markModified();
    m_impl->load();
    return true;
}

bool CCtrlDlgTableEdit::Revert()
{
    m_impl->load();
    return m_impl->tableExists();
}

} // namespace gis
