// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "embedded/model/Library.h"

#include <map>
#include <mutex>
#include <unordered_map>

namespace embedded {

struct Library::Life { };

struct Library::Data {
    Data(gis::CLibGis& owner, orv::CChangeTransactionManager* manager, std::int64_t drawing)
        : facade(owner)
        , changes(manager)
        , targetDrawing(drawing)
    {
    }
    std::shared_ptr<const Life> life = std::make_shared<Life>();
    gis::CLibGis& facade;
    orv::CChangeTransactionManager* changes;
    std::int64_t targetDrawing;
    std::deque<LinkedPoint> points; // declared before the themes, which point into it
    std::size_t pointCount = 0;
    // Owned together with the changes that removed them, so that handles outlive a deletion that
    // may be undone.
    std::vector<std::shared_ptr<gis::CDBTable>> ownedTables;
    std::vector<std::shared_ptr<gis::CTheme>> ownedThemes;
    std::vector<gis::CDBTable*> tables;
    std::vector<gis::CTheme*> themes;
    gis::CTheme* active = nullptr;
    std::vector<Layer> layers;
    std::shared_ptr<IStore> store;
    std::vector<std::int64_t> savedTables;
    std::vector<std::int64_t> savedThemes;
    std::uint64_t savedPosition = 0;
    std::uint64_t changeCount = 0; // for libraries without a manager
    std::uint64_t savedChangeCount = 0;
    Report report;
    Error failure;
    IProgress* progress = nullptr;
    std::map<std::string, void*, std::less<>> extensions;
    std::mutex readingMutex;
    std::mutex viewsMutex; // the views of columns and runs, which are made when they are asked for
    struct Runs {
        int entityCount = -1;
        std::vector<gis::EntityRun> runs;
    };
    std::unordered_map<const gis::CTheme*, Runs> runs;

    void listTables()
    {
        tables.clear();
        for (const auto& table : ownedTables)
            tables.push_back(table.get());
    }
    void listThemes()
    {
        themes.clear();
        for (const auto& theme : ownedThemes)
            themes.push_back(theme.get());
    }
};

} // namespace embedded
