// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/embedded/store/FaultyDisk.h"

#include <sqlite3.h>

#include <limits>
#include <new>

namespace storetest {
namespace {

constexpr int Never = std::numeric_limits<int>::max();

struct Plan {
    int operation = 0;
    int failing = Never;
    CFaultyDisk::Fault fault = CFaultyDisk::Fault::Once;
    bool hasFailed = false;
    bool isWorking = true;
};
Plan plan;
sqlite3_vfs* real = nullptr;
sqlite3_vfs shim {};

struct ShimFile {
    sqlite3_file base;
    sqlite3_file* file;
};

sqlite3_file* fileOf(sqlite3_file* file)
{
    return reinterpret_cast<ShimFile*>(file)->file;
}

// The answer for an operation: what it fails with, or SQLITE_OK to let it through.
int verdict(int failure, bool grows)
{
    if (plan.isWorking)
        return SQLITE_OK;
    const bool isNow = ++plan.operation == plan.failing;
    plan.hasFailed = plan.hasFailed || isNow;
    switch (plan.fault) {
    case CFaultyDisk::Fault::Once:
        return isNow ? failure : SQLITE_OK;
    case CFaultyDisk::Fault::ForGood:
        return plan.hasFailed ? failure : SQLITE_OK;
    case CFaultyDisk::Fault::Full:
        return plan.hasFailed && grows ? SQLITE_FULL : SQLITE_OK;
    }
    return SQLITE_OK;
}

int closeFile(sqlite3_file* file)
{
    const int code = fileOf(file)->pMethods ? fileOf(file)->pMethods->xClose(fileOf(file)) : 0;
    ::operator delete(fileOf(file));
    return code;
}
int readFile(sqlite3_file* file, void* out, int count, sqlite3_int64 at)
{
    return fileOf(file)->pMethods->xRead(fileOf(file), out, count, at);
}
int writeFile(sqlite3_file* file, const void* bytes, int count, sqlite3_int64 at)
{
    sqlite3_int64 size = 0;
    fileOf(file)->pMethods->xFileSize(fileOf(file), &size);
    const int code = verdict(SQLITE_IOERR_WRITE, at + count > size);
    return code ? code : fileOf(file)->pMethods->xWrite(fileOf(file), bytes, count, at);
}
int truncateFile(sqlite3_file* file, sqlite3_int64 size)
{
    const int code = verdict(SQLITE_IOERR_TRUNCATE, false);
    return code ? code : fileOf(file)->pMethods->xTruncate(fileOf(file), size);
}
int syncFile(sqlite3_file* file, int flags)
{
    const int code = verdict(SQLITE_IOERR_FSYNC, false);
    return code ? code : fileOf(file)->pMethods->xSync(fileOf(file), flags);
}
int fileSize(sqlite3_file* file, sqlite3_int64* size)
{
    return fileOf(file)->pMethods->xFileSize(fileOf(file), size);
}
int lockFile(sqlite3_file* file, int level)
{
    return fileOf(file)->pMethods->xLock(fileOf(file), level);
}
int unlockFile(sqlite3_file* file, int level)
{
    return fileOf(file)->pMethods->xUnlock(fileOf(file), level);
}
int checkReserved(sqlite3_file* file, int* answer)
{
    return fileOf(file)->pMethods->xCheckReservedLock(fileOf(file), answer);
}
int control(sqlite3_file* file, int what, void* argument)
{
    return fileOf(file)->pMethods->xFileControl(fileOf(file), what, argument);
}
int sectorSize(sqlite3_file* file)
{
    return fileOf(file)->pMethods->xSectorSize(fileOf(file));
}
int characteristics(sqlite3_file* file)
{
    return fileOf(file)->pMethods->xDeviceCharacteristics(fileOf(file));
}

const sqlite3_io_methods Methods { 1, closeFile, readFile, writeFile, truncateFile, syncFile,
    fileSize, lockFile, unlockFile, checkReserved, control, sectorSize, characteristics, nullptr,
    nullptr, nullptr, nullptr, nullptr, nullptr };

int openFile(sqlite3_vfs*, const char* name, sqlite3_file* file, int flags, int* outFlags)
{
    auto* shimFile = reinterpret_cast<ShimFile*>(file);
    const auto size = static_cast<std::size_t>(real->szOsFile);
    shimFile->file = static_cast<sqlite3_file*>(::operator new(size));
    shimFile->file->pMethods = nullptr;
    const int code = real->xOpen(real, name, shimFile->file, flags, outFlags);
    if (code != SQLITE_OK) {
        file->pMethods = nullptr;
        ::operator delete(shimFile->file);
        return code;
    }
    file->pMethods = &Methods;
    return SQLITE_OK;
}

int deleteFile(sqlite3_vfs*, const char* name, int syncFolder)
{
    const int code = verdict(SQLITE_IOERR_DELETE, false);
    return code ? code : real->xDelete(real, name, syncFolder);
}

} // namespace

CFaultyDisk::CFaultyDisk()
{
    real = sqlite3_vfs_find(nullptr);
    shim = *real;
    shim.zName = "faulty";
    shim.szOsFile = static_cast<int>(sizeof(ShimFile));
    shim.pNext = nullptr;
    shim.xOpen = &openFile;
    shim.xDelete = &deleteFile;
    plan = {};
    sqlite3_vfs_register(&shim, 1);
}

CFaultyDisk::~CFaultyDisk()
{
    sqlite3_vfs_unregister(&shim);
    sqlite3_vfs_register(real, 1);
}

void CFaultyDisk::failAt(int operation, Fault fault)
{
    plan = { 0, operation, fault, false, false };
}

void CFaultyDisk::work()
{
    plan.isWorking = true;
}

bool CFaultyDisk::hasFailed() const
{
    return plan.hasFailed;
}

} // namespace storetest
