// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/store/Foreign.h"
#include "embedded/store/GeoPackage.h"
#include "embedded/store/GeoPackageStore.h"
#include "embedded/store/LibraryTables.h"

#include "host/base/Numbers.h"

#include <array>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

namespace embedded {
namespace store {
namespace {

// A save of another program may be going on; one that stays is told at once.
constexpr int OpeningPatienceMs = 1000;
constexpr std::string_view DatabaseMark("SQLite format 3\0", 16);

void checkFile(const std::string& path)
{
    struct stat status { };
    if (::stat(path.c_str(), &status) != 0)
        failWith(errno == EACCES ? ErrorCode::NoPermission : ErrorCode::FileNotFound, path);
    if (!S_ISREG(status.st_mode))
        failWith(ErrorCode::NotAFile, path);
    if (::access(path.c_str(), R_OK) != 0)
        failWith(ErrorCode::NoPermission, path);
    if (status.st_size == 0)
        failWith(ErrorCode::EmptyFile, path);
}

std::string seemsToBe(std::string_view bytes)
{
    struct Mark {
        std::string_view bytes;
        const char* what;
    };
    static constexpr std::array<Mark, 7> Marks = { {
        { std::string_view("\0\0\x27\x0A", 4), "a shapefile" },
        { "PK\x03\x04", "a zip archive" },
        { "%PDF", "a PDF document" },
        { "\x89PNG", "a picture" },
        { "\x1F\x8B", "a compressed file" },
        { "<?xml", "an XML document" },
        { "{", "a JSON document" },
    } };
    for (const Mark& mark : Marks)
        if (bytes.starts_with(mark.bytes))
            return mark.what;
    return "not a database";
}

bool isWritable(const std::string& path)
{
    return ::access(path.c_str(), W_OK) == 0;
}

std::unique_ptr<Connection> connect(const std::string& path, bool forWriting)
{
    using Access = Connection::Access;
    auto connection = std::make_unique<Connection>(
        path, forWriting ? Access::ReadWrite : Access::Read, PatienceMs);
    if (const std::string bytes = connection->head(); !bytes.starts_with(DatabaseMark))
        failWith(ErrorCode::NotALibrary, path, seemsToBe(bytes));
    return connection;
}

// What a program that ended in the middle of a save left beside the file: the file's old state,
// without which the file holds half of each.
bool hasJournal(const std::string& path)
{
    struct stat status { };
    return ::stat((path + "-journal").c_str(), &status) == 0 && status.st_size > 0;
}

// Who only reads cannot take back an interrupted save, so that is done by a connection of its own.
void takeBackInterruptedSave(const std::string& path)
{
    Connection writing(path, Connection::Access::ReadWrite, PatienceMs);
    static_cast<void>(writing.hasTable("gpkg_contents"));
}

// A file with a write-ahead log in a folder without rights cannot be opened the usual way,
// since its lock lies in a file beside it; nobody can write it there either.
void makeReadable(std::unique_ptr<Connection>& connection)
{
    using Access = Connection::Access;
    try {
        static_cast<void>(connection->hasTable("gpkg_contents"));
    } catch (const StoreFailure& failure) {
        if (failure.error().code != ErrorCode::NoPermission)
            throw;
        const std::string path = connection->path();
        const bool isInterrupted = hasJournal(path);
        if (isInterrupted)
            takeBackInterruptedSave(path);
        connection = std::make_unique<Connection>(
            path, isInterrupted ? Access::Read : Access::ReadFrozen, PatienceMs);
    }
}

enum class Maker { Ours, Others };

Maker makerOf(Connection& connection)
{
    if (!connection.hasTable("gpkg_contents"))
        failWith(ErrorCode::NotALibrary, connection.path(), "a database, no GeoPackage");
    if (!connection.hasTable("tematica_library"))
        return Maker::Others;
    const int format = libraryFormatOf(connection);
    if (format > LibraryFormatVersion)
        failWith(ErrorCode::NewerFormat, connection.path(), std::to_string(format));
    if (format <= 0)
        failWith(ErrorCode::DamagedFile, connection.path(), "no format version");
    return Maker::Ours;
}

// A write-ahead log, which other programs may have left on, would let them write while this
// library is being read; where they have the file open it stays on, with its own rules.
void prepareForWriting(Connection& connection)
{
    connection.execute("PRAGMA secure_delete = OFF; PRAGMA cache_size = -65536");
    connection.setBusyTimeout(0);
    if (orv::FoldAsciiCase(connection.textOf("PRAGMA journal_mode")) == "wal")
        static_cast<void>(
            guarded([&] { return connection.textOf("PRAGMA journal_mode = DELETE"); }));
}

std::shared_ptr<CGeoPackageStore> storeFor(const std::string& path, OpenMode mode)
{
    const bool mayWrite = mode == OpenMode::Write && isWritable(path);
    auto connection = connect(path, mayWrite);
    makeReadable(connection);
    const Maker maker = makerOf(*connection);
    Hold hold = maker == Maker::Others ? Hold::Foreign : Hold::Read;
    if (maker == Maker::Ours && mayWrite) {
        hold = Hold::Write;
        prepareForWriting(*connection);
    }
    connection->setBusyTimeout(hold == Hold::Write ? OpeningPatienceMs : PatienceMs);
    auto opened = std::make_shared<CGeoPackageStore>(std::move(connection), hold);
    opened->beginHold();
    opened->connection().setBusyTimeout(PatienceMs);
    return opened;
}

std::unique_ptr<gis::CLibGis> open(
    const std::string& path, OpenMode mode, orv::CChangeTransactionManager* changes, Report& report)
{
    checkFile(path);
    auto opened = storeFor(path, mode);
    auto facade = std::make_unique<gis::CLibGis>(changes, 0);
    Library& library = *Library::of(facade.get());
    FileState state;
    if (opened->hold() == Hold::Foreign)
        readForeignTables(opened->connection(), library, state, report);
    else
        readLibraryTables(opened->connection(), library, state, report);
    opened->setState(std::move(state));
    opened->connection().setActivity(Activity::Reading);
    library.setStore(opened);
    library.markSaved();
    return facade;
}

} // namespace
} // namespace store

Result<std::unique_ptr<gis::CLibGis>> openLibrary(
    const std::string& path, OpenMode mode, orv::CChangeTransactionManager* changes, Report& report)
{
    return store::guarded([&] { return store::open(path, mode, changes, report); });
}

std::string libraryPath(gis::CLibGis& library)
{
    auto* opened = dynamic_cast<store::CGeoPackageStore*>(Library::of(&library)->store());
    return opened && opened->hold() != store::Hold::Foreign ? opened->path() : std::string();
}

bool isGeoPackage(const std::string& path)
{
    const auto answer = store::guarded([&] {
        store::checkFile(path);
        const auto connection = store::connect(path, false);
        const std::string bytes = connection->head();
        // The application's mark in the file's head: GPKG, or GP10 and GP11 of the first versions.
        const std::string_view mark = std::string_view(bytes).substr(68, 4);
        return mark == "GPKG" || mark == "GP10" || mark == "GP11"
            || connection->hasTable("gpkg_contents");
    });
    return answer && answer.value();
}

} // namespace embedded
