// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

// A file of which some fields cannot be read, for tests of what the library does then.

#include "embedded/model/Library.h"

#include "host/gis/LibGis.h"

#include <map>
#include <memory>
#include <set>
#include <string>

namespace model_testing {

/// Holds the cells of one library's tables, by field name, and gives them when a column is asked
/// for. Fields named in `unreadable` fail, until they are taken out of it.
class CPartlyReadableStore final : public embedded::IStore {
public:
    embedded::Result<void> readColumn(const gis::CDBTable&, const gis::CField& field,
        embedded::Column& column, const embedded::IsStopped& isStopped) override
    {
        const std::string name = field.name.Bytes();
        ++readings[name];
        if (unreadable.contains(name))
            return embedded::Error { embedded::ErrorCode::DamagedFile, "x.gpkg", name };
        if (isStopped && isStopped())
            return embedded::Error { embedded::ErrorCode::Cancelled, {}, {} };
        column.append(cells.at(name));
        if (missingRows > 0)
            column.truncate(column.rowCount() - missingRows);
        return {};
    }
    embedded::Result<void> readGeometry(gis::CTheme&, embedded::EntityStore&) override
    {
        return {};
    }
    embedded::Box extentOf(const gis::CTheme&) override { return {}; }
    bool entitiesIn(const gis::CTheme&, const embedded::Box&, std::vector<int>&) override
    {
        return false;
    }

    std::map<std::string, embedded::Column> cells;
    std::set<std::string> unreadable;
    std::map<std::string, int> readings; ///< How often each field was asked for.
    int missingRows = 0; ///< Rows that the file lacks.
};

/// Puts a library's first table into a file: nothing of it is in memory any more.
inline std::shared_ptr<CPartlyReadableStore> intoFile(gis::CLibGis& library)
{
    auto store = std::make_shared<CPartlyReadableStore>();
    gis::CDBTable* table = library.GetTable(0);
    for (int i = 0; i < table->fieldCount(); ++i)
        store->cells.emplace(table->field(i)->name.Bytes(), table->column(i));
    embedded::Library::of(&library)->setStore(store);
    table->markStored(table->rowCount());
    return store;
}

} // namespace model_testing
