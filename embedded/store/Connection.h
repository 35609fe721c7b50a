// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "embedded/store/Failure.h"

#include <cstdint>
#include <string>
#include <string_view>

struct sqlite3;

namespace embedded::store {

/// What a connection is doing: the same answer of SQLite means another error while opening (another
/// program writes), while reading, while writing (other programs read).
enum class Activity { Opening, Reading, Writing };

/// The error for an answer of SQLite. `code` is an extended result code.
Error errorOf(int code, const std::string& path, const std::string& detail, Activity activity);

/// One open database. Triggers never run on it: they serve other programs, and what they would do
/// here the writer does itself, in bulk. Errors: every operation throws StoreFailure. Thread: one
/// at a time.
class Connection final {
public:
    enum class Access {
        Read,
        ReadWrite,
        Create, // a file that is not there yet
        ReadFrozen, // a file nobody can change: no lock, no files beside it
    };

    Connection(std::string path, Access access, int busyTimeoutMs);
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;
    ~Connection();

    [[nodiscard]] sqlite3* handle() const { return m_handle; }
    [[nodiscard]] const std::string& path() const { return m_path; }
    void setActivity(Activity activity) { m_activity = activity; }
    void setBusyTimeout(int milliseconds);
    void execute(const std::string& sql);
    /// The first column of the first row; empty text or 0 without one.
    [[nodiscard]] std::string textOf(const std::string& sql);
    [[nodiscard]] std::int64_t integerOf(const std::string& sql);
    /// Table, view or virtual table of this name (ASCII case ignored).
    [[nodiscard]] bool hasTable(std::string_view name);
    /// The file's first 100 bytes as they are on the disk; empty where they cannot be read. Read
    /// through SQLite's own handle: opening and closing the file beside it would give up every lock
    /// that this process has on it (POSIX).
    [[nodiscard]] std::string head();
    [[nodiscard]] bool isInTransaction() const;
    /// Never throws: what cannot be rolled back was rolled back by SQLite itself.
    void rollback() noexcept;
    [[noreturn]] void fail(int code) const;
    /// False until set: SQLite cannot replace a function while any statement runs, so whoever adds
    /// one to the connection does it once.
    [[nodiscard]] bool& hasCellFunction() { return m_hasCellFunction; }

private:
    std::string m_path;
    sqlite3* m_handle = nullptr;
    Activity m_activity = Activity::Opening;
    bool m_hasCellFunction = false;
};

/// "name" with quotes doubled, for SQL.
std::string quoted(std::string_view name);
/// 'text' with quotes doubled, for SQL.
std::string literal(std::string_view text);

} // namespace embedded::store
