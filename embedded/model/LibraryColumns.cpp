// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/model/LibraryData.h"

#include "embedded/model/TableData.h"

#include "host/gis/Feedback.h"

#include <algorithm>

namespace gis {

IColumns::~IColumns() = default;
IFeedback::~IFeedback() = default;
IReadings::~IReadings() = default;
IReadingStop::~IReadingStop() = default;

} // namespace gis

namespace embedded {

namespace {

/// Entities at equal distances whose rows follow one another, as long as both hold.
std::vector<gis::EntityRun> runsOf(const EntityStore& entities)
{
    std::vector<gis::EntityRun> runs;
    const int perBlock = EntityStore::entitiesPerBlock();
    constexpr auto Stride = static_cast<std::ptrdiff_t>(sizeof(gis::CEnt));
    for (int i = 0; i < entities.entityCount(); ++i) {
        gis::CEnt* ent = entities.entity(i);
        const int row = gis::CDBTable::indexOf(EntityStore::rowOf(ent));
        const bool follows
            = !runs.empty() && i % perBlock != 0 && runs.back().firstRow + runs.back().count == row;
        if (follows)
            ++runs.back().count;
        else
            runs.push_back({ ent, Stride, row, 1 });
    }
    return runs;
}

} // namespace

bool Library::GetColumn(gis::CDBTable* table, int fieldIndex, gis::ColumnView& view)
{
    if (!table || &table->library() != this || fieldIndex < 0 || fieldIndex >= table->fieldCount())
        return false;
    const embedded::Column& column = table->column(fieldIndex);
    const std::lock_guard lock(m_data->viewsMutex);
    view = column.view();
    return true;
}

bool Library::IsReadable(gis::CDBTable* table, int fieldIndex)
{
    if (!table || &table->library() != this || fieldIndex < 0 || fieldIndex >= table->fieldCount())
        return true; // nothing of a file
    static_cast<void>(table->column(fieldIndex));
    return !table->columnFailure(fieldIndex);
}

bool Library::Read(gis::CDBTable* table, int fieldIndex, gis::IReadingStop* stop)
{
    if (!table || &table->library() != this || fieldIndex < 0 || fieldIndex >= table->fieldCount())
        return true; // nothing of a file
    IsStopped isStopped;
    if (stop)
        isStopped = [stop] { return stop->IsStopped(); };
    return table->loadColumn(fieldIndex, isStopped);
}

bool Library::GetEntityRuns(gis::CTheme* theme, gis::EntityRunsView& view)
{
    if (!theme || &theme->library() != this)
        return false;
    const std::lock_guard lock(m_data->viewsMutex);
    Data::Runs& runs = m_data->runs[theme];
    const int count = theme->entities().entityCount();
    if (runs.entityCount != count) { // entities are only added and taken back, never exchanged
        runs.runs = runsOf(theme->entities());
        runs.entityCount = count;
        for (const gis::EntityRun& run : runs.runs)
            if (run.firstRow < 0) { // an entity without a row cannot be had as columns
                runs.runs.clear();
                runs.entityCount = -1;
                return false;
            }
    }
    view = { runs.runs.data(), static_cast<int>(runs.runs.size()), count };
    return true;
}

void Library::setExtension(const std::string& name, void* extension)
{
    if (extension)
        m_data->extensions[name] = extension;
    else
        m_data->extensions.erase(name);
}

void* Library::extension(const char* name)
{
    if (!name)
        return nullptr;
    if (std::string_view(name) == gis::ColumnsExtension)
        return static_cast<gis::IColumns*>(this);
    if (std::string_view(name) == gis::ReadingsExtension)
        return static_cast<gis::IReadings*>(this);
    const auto found = m_data->extensions.find(std::string_view(name));
    return found == m_data->extensions.end() ? nullptr : found->second;
}

} // namespace embedded
