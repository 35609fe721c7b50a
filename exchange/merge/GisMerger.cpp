// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tematica/GisMerger.h"

#include "exchange/merge/MergeDecider.h"
#include "exchange/merge/MergeTables.h"

#include "host/gis/LibGis.h"

#include <unordered_map>

namespace gis {

// Hidden: a nested class would take over the visibility of the exported one around it.
class __attribute__((visibility("hidden"))) CGisMerger::Impl {
public:
    CLibGis* library = nullptr;
    std::shared_ptr<CLibGis> scratch;
    std::vector<CDBTable*> results; // entry i received the i-th loaded table
    std::unordered_map<CDBTable*, int> rowsBefore;
    std::shared_ptr<exchange::IMergeDecider> decider;

    void addResult(CDBTable* table, bool isNew)
    {
        results.push_back(table);
        if (isNew)
            rowsBefore[table] = 0;
    }
};

CGisMerger::CGisMerger(CLibGis* library)
    : m_impl(std::make_shared<Impl>())
{
    m_impl->library = library;
    if (!library)
        return;
    const int count = library->GetNumTables();
    for (int i = 0; i < count; ++i) {
        CDBTable* table = library->GetTable(i);
        m_impl->rowsBefore[table] = library->GetNumRows(table);
    }
}

CGisMerger::CGisMerger(const CGisMerger& other)
    : IGisMerger(other)
    , m_impl(std::make_shared<Impl>(*other.m_impl))
{
}

CGisMerger& CGisMerger::operator=(const CGisMerger& other)
{
    if (this != &other)
        m_impl = std::make_shared<Impl>(*other.m_impl);
    return *this;
}

CGisMerger::~CGisMerger() = default;

CLibGis* CGisMerger::ProvideLibGis()
{
    m_impl->scratch = std::make_shared<CLibGis>(nullptr, std::int64_t { 0 });
    return m_impl->scratch.get();
}

void CGisMerger::OnBeforeLoadTable(
    const orv::String& name, CLibGis*& library, CDBTable*& existing, CDBTable*& loaded)
{
    library = m_impl->library;
    existing = loaded = nullptr;
    if (!library)
        return;
    existing = library->FindTable(name);
    // Of a used name: loaded apart first, so that a refusal leaves the user's library as it was.
    if (existing)
        library = ProvideLibGis();
    loaded = library->CreateTable(name);
}

void CGisMerger::OnAfterLoadTable(
    CLibGis* library, CDBTable* existing, CDBTable* loaded, std::vector<int>& mapping)
{
    if (!m_impl->library)
        return;
    if (!existing) {
        m_impl->addResult(loaded, true);
        return;
    }
    CLibGis* incomingLibrary = m_impl->scratch ? m_impl->scratch.get() : library;
    switch (exchange::mergeTables(
        *m_impl->library, existing, incomingLibrary, loaded, mapping, m_impl->decider.get())) {
    case MergeResult::Renamed:
        m_impl->addResult(m_impl->library->CreateTableAsCopyOf(loaded), true);
        break;
    case MergeResult::Merged:
        m_impl->addResult(existing, false);
        break;
    case MergeResult::Undecided:
        break;
    }
}

void CGisMerger::GetTable(int index, CDBTable*& table, int& rowOffset)
{
    const bool isKnown = index >= 0 && index < static_cast<int>(m_impl->results.size());
    table = isKnown ? m_impl->results[static_cast<std::size_t>(index)] : nullptr;
    rowOffset = table ? m_impl->rowsBefore[table] : 0;
}

CTheme* CGisMerger::OnLoadTheme(const orv::String& name, CDBTable* table, EntType type,
    EntTypeCoords coords, std::int64_t targetDrawing)
{
    CLibGis* library = m_impl->library;
    if (!library)
        return nullptr;
    CTheme* theme = library->FindTheme(name);
    if (!theme)
        return library->CreateTheme(table, name, type, coords, targetDrawing);

    const bool agrees = library->GetTable(theme) == table && CLibGis::GetEntType(theme) == type
        && library->GetEntCoords(theme) == coords;
    // The drawing is set even where the theme is not taken: whoever imports into a drawing expects
    // the theme of that name to draw there.
    if (targetDrawing != 0 && targetDrawing != library->GetThemeTargetDrawing(theme))
        library->SetThemeTargetDrawing(theme, targetDrawing);
    if (agrees)
        return theme;
    if (!m_impl->decider)
        return nullptr;
    return m_impl->decider->decideTheme(*library, { name, table, type, coords });
}

} // namespace gis

namespace exchange {

void setMergeDecider(gis::CGisMerger& merger, std::shared_ptr<IMergeDecider> decider)
{
    merger.m_impl->decider = std::move(decider);
}

} // namespace exchange
