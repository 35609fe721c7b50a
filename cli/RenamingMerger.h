// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/gis/Merge.h"

#include <vector>

namespace cli {

/// Gives every imported table and theme whose name is taken the next free one (" (2)", " (3)"),
/// also where it would fit the existing table: whoever asks for a renamed copy gets one.
class RenamingMerger final : public gis::IGisMerger {
public:
    explicit RenamingMerger(gis::CLibGis& library)
        : m_library(library)
    {
    }

    void OnBeforeLoadTable(const orv::String& name, gis::CLibGis*& library,
        gis::CDBTable*& existing, gis::CDBTable*& loaded) override;
    void OnAfterLoadTable(gis::CLibGis* library, gis::CDBTable* existing, gis::CDBTable* loaded,
        std::vector<int>& mapping) override;
    void GetTable(int index, gis::CDBTable*& table, int& rowOffset) override;
    gis::CTheme* OnLoadTheme(const orv::String& name, gis::CDBTable* table, gis::EntType type,
        gis::EntTypeCoords coords, std::int64_t targetDrawing) override;

private:
    gis::CLibGis& m_library;
    std::vector<gis::CDBTable*> m_tables;
};

} // namespace cli
