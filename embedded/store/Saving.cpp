// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/store/ChangeWriter.h"
#include "embedded/store/GeoPackage.h"
#include "embedded/store/GeoPackageStore.h"
#include "embedded/store/ReplacedFile.h"
#include "embedded/store/Schema.h"

#include <algorithm>

namespace embedded {
namespace store {
namespace {

CGeoPackageStore* storeOf(Library& library)
{
    return dynamic_cast<CGeoPackageStore*>(library.store());
}

// What could not be read shows as empty; written back, it would be lost.
void checkReads(Library& library)
{
    if (!library.failedRead())
        return;
    if (const auto loaded = library.loadAll(); !loaded)
        throw StoreFailure(loaded.error());
}

void loadTable(Library& library, gis::CDBTable& table)
{
    for (int i = 0; i < table.fieldCount(); ++i)
        static_cast<void>(table.column(i));
    for (gis::CTheme* theme : library.themes())
        if (theme->table == &table)
            static_cast<void>(theme->geometry());
    checkReads(library);
}

/// Numbers for all objects: those that they have in the file, new ones for the others.
ObjectIds idsFor(const Library& library, FileState& state, bool keepKnown)
{
    ObjectIds ids;
    for (const gis::CDBTable* table : library.tables())
        ids.tables[table]
            = keepKnown && state.tables.count(table->storeId) ? table->storeId : state.newId();
    for (const gis::CTheme* theme : library.themes())
        ids.themes[theme]
            = keepKnown && state.themes.count(theme->storeId) ? theme->storeId : state.newId();
    return ids;
}

CNameSet namesIn(Connection& connection)
{
    CNameSet names;
    Statement rows(connection, "SELECT name FROM sqlite_master");
    while (rows.step())
        names.take(rows.text(0));
    return names;
}

// Registered extents and identifiers follow what the layers hold and are called now.
void registerLayers(SaveContext& context)
{
    for (const gis::CDBTable* table : context.library.tables()) {
        const StoredTable& stored = context.state.tables.at(context.ids.tables.at(table));
        if (const StoredPart* rows = stored.partOf(0))
            setContents(context.connection, rows->physicalName, table->name().Bytes(), nullptr);
    }
    for (const gis::CTheme* theme : context.library.themes()) {
        const std::int64_t id = context.ids.themes.at(theme);
        const StoredTheme& state = context.state.themes.at(id);
        const StoredPart* part = context.state.tables.at(state.tableId).partOf(id);
        if (!part)
            failWith(
                ErrorCode::DamagedFile, context.connection.path(), "a theme without its layer");
        const Box extent = state.isExtentExact
            ? state.extent
            : indexExtent(context.connection, rtreeName(part->physicalName, state.geometryColumn));
        setContents(context.connection, part->physicalName, theme->name.Bytes(), &extent);
    }
}

void dropTable(Connection& connection, FileState& state, std::int64_t tableId, CNameSet& names)
{
    for (const StoredPart& part : state.tables.at(tableId).parts) {
        dropPhysicalTable(connection, part.physicalName);
        names.release(part.physicalName);
        if (part.themeId == 0)
            continue;
        const std::string where = " WHERE theme_id = " + std::to_string(part.themeId);
        connection.execute("DELETE FROM tematica_rings" + where);
        connection.execute("DELETE FROM tematica_links" + where);
        state.themes.erase(part.themeId);
    }
    state.tables.erase(tableId);
}

// Tables of the file that no table of the library stands for any more.
std::vector<std::int64_t> goneTables(const FileState& state, const ObjectIds& ids)
{
    std::vector<std::int64_t> gone;
    for (const auto& [id, stored] : state.tables)
        if (std::none_of(ids.tables.begin(), ids.tables.end(),
                [&, known = id](const auto& entry) { return entry.second == known; }))
            gone.push_back(id);
    return gone;
}

void takeIds(Library& library, const ObjectIds& ids)
{
    for (gis::CDBTable* table : library.tables())
        table->storeId = ids.tables.at(table);
    for (gis::CTheme* theme : library.themes())
        theme->storeId = ids.themes.at(theme);
}

/// Writes into the held transaction what changed; returns the file's state then.
FileState writeInPlace(CGeoPackageStore& opened, Library& library, const ObjectIds& ids,
    FileState state, const std::vector<std::pair<gis::CDBTable*, TableWork>>& work)
{
    Connection& connection = opened.connection();
    std::int64_t rows = 0;
    for (const auto& [table, what] : work)
        rows += rowsToWrite(state, *table, what);
    CNameSet names = namesIn(connection);
    for (const std::int64_t gone : goneTables(state, ids))
        dropTable(connection, state, gone, names);
    for (const auto& [table, what] : work)
        if (what == TableWork::Whole && state.tables.count(ids.tables.at(table)))
            dropTable(connection, state, ids.tables.at(table), names);
    const PointNumbers points = pointNumbersOf(library);
    CSaveProgress progress(library.progress(), rows);
    SaveContext context { connection, library, state, ids, names, points, progress };
    for (const auto& [table, what] : work) {
        if (what == TableWork::Whole)
            writeWholeTable(context, *table);
        else if (what == TableWork::Changes)
            writeChanges(context, *table);
    }
    registerLayers(context);
    writeLibraryTables(connection, library, state, ids);
    return state;
}

void save(Library& library)
{
    CGeoPackageStore* opened = storeOf(library);
    if (!opened || opened->hold() != Hold::Write)
        failWith(ErrorCode::ReadOnly, opened ? opened->path() : std::string());
    checkReads(library);
    opened->beginHold();
    FileState state = opened->state();
    const ObjectIds ids = idsFor(library, state, true);
    opened->connection().setActivity(Activity::Writing);
    std::vector<std::pair<gis::CDBTable*, TableWork>> work;
    try {
        for (gis::CDBTable* table : library.tables()) {
            const TableWork what = workFor(opened->connection(), opened->state(), library, *table);
            if (what == TableWork::Whole)
                loadTable(library, *table);
            work.emplace_back(table, what);
        }
        opened->connection().setActivity(Activity::Writing);
        state = writeInPlace(*opened, library, ids, std::move(state), work);
        opened->commitHold();
    } catch (...) {
        opened->rollbackHold();
        throw;
    }
    opened->setState(std::move(state));
    takeIds(library, ids);
    library.markSaved();
}

void loadEverything(Library& library)
{
    if (const auto loaded = library.loadAll(); !loaded)
        throw StoreFailure(loaded.error());
    checkReads(library);
}

struct WrittenFile {
    FileState state;
    ObjectIds ids;
    std::string path;
};

/// Writes the whole library to a file of its own.
WrittenFile writeNewFile(Library& library, const std::string& path)
{
    loadEverything(library);
    CGeoPackageStore* own = storeOf(library);
    const bool isOwn = own && isSameFile(own->path(), path);
    CReplacedFile file(path, isOwn ? Replaced::OwnLibrary : Replaced::Library);
    WrittenFile written;
    written.path = file.path();
    // No number means two things while the library is open: what undo brings back after this has
    // one of the file before.
    if (own)
        written.state.lastId = own->state().lastId;
    written.ids = idsFor(library, written.state, false);
    try {
        Connection connection(file.temporaryPath(), Connection::Access::ReadWrite, PatienceMs);
        connection.setActivity(Activity::Writing);
        // Nobody else knows the file: should the work be cut short, it is thrown away.
        connection.execute("PRAGMA journal_mode = OFF; PRAGMA synchronous = OFF; "
                           "PRAGMA locking_mode = EXCLUSIVE; PRAGMA cache_size = -65536");
        createLibraryFile(connection);
        connection.execute("BEGIN");
        std::int64_t rows = 0;
        for (const gis::CDBTable* table : library.tables())
            rows += table->rowCount();
        const PointNumbers points = pointNumbersOf(library);
        CSaveProgress progress(library.progress(), rows);
        CNameSet names = namesIn(connection);
        SaveContext context { connection, library, written.state, written.ids, names, points,
            progress };
        for (gis::CDBTable* table : library.tables())
            writeWholeTable(context, *table);
        registerLayers(context);
        writeLibraryTables(connection, library, written.state, written.ids);
        connection.execute("COMMIT");
    } catch (const StoreFailure& failure) { // of the file that the user asked for
        Error error = failure.error();
        if (error.subject == file.temporaryPath())
            error.subject = written.path;
        throw StoreFailure(std::move(error));
    }
    file.putInPlace();
    return written;
}

void saveAs(Library& library, const std::string& path)
{
    WrittenFile written = writeNewFile(library, path);
    auto connection
        = std::make_unique<Connection>(written.path, Connection::Access::ReadWrite, PatienceMs);
    auto opened = std::make_shared<CGeoPackageStore>(std::move(connection), Hold::Write);
    // The library lies in the new file already. Should another program hold it at once,
    // the next save tells.
    static_cast<void>(guarded([&] { opened->beginHold(); }));
    opened->setState(std::move(written.state));
    takeIds(library, written.ids);
    library.setStore(std::move(opened));
    library.markSaved();
}

} // namespace
} // namespace store

Result<void> saveLibrary(gis::CLibGis& library)
{
    return store::guarded([&] { store::save(*Library::of(&library)); });
}

Result<void> saveLibraryAs(gis::CLibGis& library, const std::string& path)
{
    return store::guarded([&] { store::saveAs(*Library::of(&library), path); });
}

Result<void> saveLibraryCopy(gis::CLibGis& library, const std::string& path)
{
    return store::guarded([&] { store::writeNewFile(*Library::of(&library), path); });
}

} // namespace embedded
