// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "query/execution/Readings.h"

#include "kit/MessageBox.h"

#include "host/gis/LibGis.h"
#include "tematica/QueryExecute.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace query {

/// The distinct values of a field as the list of values shows them.
struct GatheredValues {
    gis::FieldFormat format = gis::FieldFormat::Text;
    std::vector<std::string> texts; // ascending by value; neighbours that look alike are one row
    bool isReadable = true; // false: there are none because the host could not read them
};

/// The logic of the query dialog without a window: the theme, the field whose values are listed,
/// the query and what it found.
class CCtrlDlgQuery final {
public:
    CCtrlDlgQuery(std::int64_t drawing, gis::CLibGis* library);
    CCtrlDlgQuery(const CCtrlDlgQuery&) = delete;
    CCtrlDlgQuery& operator=(const CCtrlDlgQuery&) = delete;
    ~CCtrlDlgQuery();

    struct Named {
        orv::String name;
        void* handle = nullptr;
    };
    /// The themes in the library's order, and the row of the active one (-1: none is active).
    [[nodiscard]] std::vector<Named> themes() const;
    [[nodiscard]] int activeTheme() const;

    /// Another theme, by its row (-1: none); no field is chosen any more.
    void selectTheme(int row);
    [[nodiscard]] gis::CTheme* theme() const { return m_theme; }
    [[nodiscard]] orv::String themeName() const;
    /// The fields of the theme's table; a row is the field's index.
    [[nodiscard]] std::vector<Named> fields() const;

    /// A field was clicked: its values, or nothing where there is nothing to do (no row, or the
    /// field whose values are listed already). A field that could not be read is not listed: each
    /// click asks for it again.
    [[nodiscard]] std::optional<GatheredValues> clickField(int row);

    /// Fields that have to be read before a click on a row of the fields, or a run, can answer;
    /// none where there is nothing to be asked. `columnSource` holds nothing for hosts that are
    /// asked cell by cell.
    [[nodiscard]] std::vector<int> fieldsOfClick(int row) const;
    [[nodiscard]] std::vector<int> fieldsOfFilter(const orv::String& filter) const;
    [[nodiscard]] ColumnSource columnSource() const;
    [[nodiscard]] gis::CDBTable* table() const;

    /// Runs a filter that names these fields. The refusal to be shown when its text is wrong; then
    /// nothing is found.
    [[nodiscard]] std::optional<kit::Message> run(
        const orv::String& filter, const std::vector<int>& fields);
    /// The field that the host could not read, so that the last run found nothing.
    [[nodiscard]] const std::optional<orv::String>& unreadableField() const { return m_unreadable; }
    /// Entities found by the last run, in entity order; they may be taken.
    [[nodiscard]] std::vector<gis::CEnt*>& found() { return m_found; }

private:
    std::int64_t m_drawing;
    gis::CLibGis* m_library;
    gis::CTheme* m_theme = nullptr;
    std::unique_ptr<CQueryExecute> m_executor; // null before the first run
    std::vector<gis::CEnt*> m_found;
    std::optional<orv::String> m_unreadable;
    int m_field = -1;
};

/// The display texts of a field's distinct values over a theme's entities.
[[nodiscard]] GatheredValues gatherValues(
    gis::CLibGis& library, gis::CTheme* theme, int fieldIndex);

} // namespace query
