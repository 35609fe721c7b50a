// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "query/execution/FieldSymbols.h"
#include "query/execution/FilterNames.h"
#include "query/execution/RowWalk.h"
#include "query/execution/plan/Program.h"

#include <atomic>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace query {

/// How many entities of a theme satisfy a filter, counted aside from the dialog's own query.
/// Owner, thread: made and stepped on the library's thread; where the host offers columns
/// (`isByColumns`) `countColumns` may run on any other while the library does not change.
class CFilterCount final {
public:
    /// The filter must be one (FilterCheck.h); null without a theme.
    [[nodiscard]] static std::unique_ptr<CFilterCount> make(
        gis::CLibGis& library, gis::CTheme* theme, std::string_view filter);
    CFilterCount(const CFilterCount&) = delete;
    CFilterCount& operator=(const CFilterCount&) = delete;
    ~CFilterCount();

    [[nodiscard]] int total() const { return m_total; }
    /// Names in the filter that are neither fields nor functions: what uses them is never true.
    [[nodiscard]] const std::vector<orv::String>& unknownNames() const { return m_unknownNames; }

    /// A field of the filter that the host cannot read: there is nothing to be counted.
    [[nodiscard]] const std::optional<orv::String>& unreadableField() const { return m_unreadable; }

    [[nodiscard]] bool isByColumns() const { return m_isByColumns; }
    /// Ends early, with a number that means nothing, once it is stopped.
    [[nodiscard]] int countColumns() const;
    /// Thread: any.
    void stop() const { m_isStopped = true; }

    /// Looks at entities, cell by cell, for so long; true when all have been looked at.
    bool step(int milliseconds);
    [[nodiscard]] int found() const { return m_found; }

private:
    CFilterCount(gis::CLibGis& library, gis::CTheme* theme, std::string_view filter);
    void prepareColumns();

    gis::CLibGis& m_library;
    gis::CTheme* m_theme;
    gis::CDBTable* m_table;
    FieldSymbols m_symbols;
    std::unique_ptr<CEEExpression> m_filter;
    QuerySource m_source;
    std::vector<orv::String> m_unknownNames;
    std::optional<orv::String> m_unreadable;
    mutable std::atomic<bool> m_isStopped = false;
    plan::Program m_program;
    gis::EntityRunsView m_runs;
    int m_usedRows = 0;
    bool m_isByColumns = false;
    std::unique_ptr<RowSymbols> m_rowSymbols; // the slow way's state between its steps
    int m_total = 0;
    int m_next = 0;
    int m_found = 0;
};

} // namespace query
