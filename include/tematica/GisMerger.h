// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "tematica/Export.h"

#include "host/gis/Merge.h"

#include <memory>

namespace exchange {
class IMergeDecider;
}

namespace gis {
class CGisMerger;
}

namespace exchange {
void setMergeDecider(gis::CGisMerger& merger, std::shared_ptr<IMergeDecider> decider);
}

namespace gis {

/// Settles what becomes of the tables and themes of an import: name clashes are resolved silently
/// where the tables agree, else by asking. Owner, thread: one per import, made before it and
/// destroyed after; the library must outlive it. Copies share the scratch library.
class TEMATICA_API CGisMerger : public IGisMerger {
public:
    explicit CGisMerger(CLibGis* library);
    CGisMerger(const CGisMerger& other);
    CGisMerger& operator=(const CGisMerger& other);

    void OnBeforeLoadTable(const orv::String& name, CLibGis*& library, CDBTable*& existing,
        CDBTable*& loaded) override;
    void OnAfterLoadTable(
        CLibGis* library, CDBTable* existing, CDBTable* loaded, std::vector<int>& mapping) override;
    void GetTable(int index, CDBTable*& table, int& rowOffset) override;
    CTheme* OnLoadTheme(const orv::String& name, CDBTable* table, EntType type,
        EntTypeCoords coords, std::int64_t targetDrawing) override;
    ~CGisMerger() override;

private:
    friend void exchange::setMergeDecider(CGisMerger&, std::shared_ptr<exchange::IMergeDecider>);
    CLibGis* ProvideLibGis();

    class Impl;
    std::shared_ptr<Impl> m_impl;
};

} // namespace gis
