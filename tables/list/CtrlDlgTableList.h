// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "kit/MessageBox.h"

#include "host/gis/LibGis.h"

#include <optional>
#include <vector>

namespace tables {

/// "Gestione tabelle" without its window: which tables there are, and what may be done to them.
/// Owner, thread: the library is the host's and must outlive it; the library's thread.
class CCtrlDlgTableList final {
public:
    struct Row {
        orv::String name;
        gis::CDBTable* table;
    };

    /// May be null: there are no tables then.
    void setLibrary(gis::CLibGis* library) { m_library = library; }
    [[nodiscard]] gis::CLibGis* library() const { return m_library; }
    /// Ascending without regard to the case of ASCII letters, equal names as the library has them.
    [[nodiscard]] std::vector<Row> rows() const;

    void create(const orv::String& name);
    /// The refusal of a name that cannot be; nothing when the table was renamed, also to the name
    /// that it has.
    [[nodiscard]] std::optional<kit::Message> rename(gis::CDBTable* table, const orv::String& name);
    /// To be answered with Yes before a table is removed.
    [[nodiscard]] static kit::Message deleteQuestion();
    /// The refusal of a table that a theme uses; nothing when it was deleted.
    [[nodiscard]] std::optional<kit::Message> remove(gis::CDBTable* table);

private:
    gis::CLibGis* m_library = nullptr;
};

} // namespace tables
