// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

namespace storetest {

/// While it lives, everything that SQLite writes goes through a layer that can fail like a disk.
/// One at a time.
class CFaultyDisk final {
public:
    enum class Fault {
        Once, // one operation fails, the disk goes on
        ForGood, // everything from that operation on fails, as when the machine stops
        Full, // from that operation on nothing more can be written, but everything else works
    };

    CFaultyDisk();
    CFaultyDisk(const CFaultyDisk&) = delete;
    CFaultyDisk& operator=(const CFaultyDisk&) = delete;
    ~CFaultyDisk();

    /// The `operation`-th write, sync, truncation or deletion from now on fails (from 1).
    void failAt(int operation, Fault fault);
    void work();
    /// True when the operation that was to fail was reached.
    [[nodiscard]] bool hasFailed() const;
};

} // namespace storetest
