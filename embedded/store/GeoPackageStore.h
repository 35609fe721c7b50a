// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "embedded/model/Store.h"
#include "embedded/store/FileState.h"
#include "embedded/store/ReadingPair.h"

#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace embedded::store {

/// How a store holds its file.
enum class Hold {
    Write, // this process alone may write: an open write transaction keeps others out
    Read, // a read transaction, until everything has been read
    Foreign, // as Read; another program's file, never written
};

/// How long a save waits for other programs that read, and a read for one that saves.
inline constexpr int PatienceMs = 5000;

/// A GeoPackage as the place where a library's data lies. What was not read yet cannot change: the
/// open transaction keeps other programs from it. Thread: reads may come from several threads, one
/// goes on at a time.
class CGeoPackageStore final : public IStore {
public:
    CGeoPackageStore(std::unique_ptr<Connection> connection, Hold hold);
    ~CGeoPackageStore() override;

    Result<void> readColumn(const gis::CDBTable& table, const gis::CField& field, Column& column,
        const IsStopped& isStopped) override;
    Result<void> readGeometry(gis::CTheme& theme, EntityStore& entities) override;
    Box extentOf(const gis::CTheme& theme) override;
    bool entitiesIn(
        const gis::CTheme& theme, const Box& box, std::vector<int>& entityIndexes) override;

    [[nodiscard]] Connection& connection() { return m_reading.main(); }
    [[nodiscard]] const std::string& path() { return connection().path(); }
    [[nodiscard]] Hold hold() const { return m_hold; }
    [[nodiscard]] FileState& state() { return m_state; }
    void setState(FileState state) { m_state = std::move(state); }

    /// Begins the transaction that keeps others out. Errors: LockedForWriting; WriteFailed when
    /// another program wrote since the last hold ended.
    void beginHold();
    /// Makes what was written in the held transaction last, and holds the file again. Errors:
    /// BusyReaders and those of writing.
    void commitHold();
    /// Takes back what was written since the hold began, and holds the file again if it can.
    void rollbackHold() noexcept;

private:
    Box storedExtent(const StoredTheme& stored);
    void noteRead(const void* what);

    std::mutex m_mutex;
    ReadingPair m_reading;
    Hold m_hold;
    FileState m_state;
    std::int64_t m_fileVersion = 0; // differs after another program's write
    std::string m_changeCounter; // of the file, when it was held last
    std::set<const void*> m_readThings; // fields and themes read, while the hold depends on it
};

} // namespace embedded::store
