// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/store/Connection.h"

#include "embedded/store/Statement.h"

#include <sqlite3.h>

#include <array>
#include <filesystem>
#include <unistd.h>

namespace embedded::store {
namespace {

bool isFolderWritable(const std::string& path)
{
    const auto folder = std::filesystem::path(path).parent_path();
    return ::access(folder.empty() ? "." : folder.c_str(), W_OK) == 0;
}

ErrorCode codeWhenBusy(Activity activity)
{
    return activity == Activity::Writing ? ErrorCode::BusyReaders : ErrorCode::LockedForWriting;
}

ErrorCode codeWhenNotOpened(const std::string& path, Activity activity)
{
    if (activity != Activity::Writing)
        return ::access(path.c_str(), F_OK) == 0 ? ErrorCode::NoPermission
                                                 : ErrorCode::FileNotFound;
    // The journal lies beside the file, so a folder without rights makes it read-only.
    return isFolderWritable(path) ? ErrorCode::WriteFailed : ErrorCode::ReadOnly;
}

// Characters with a meaning in a URI are written as their codes.
std::string frozenUri(const std::string& path)
{
    static constexpr std::string_view Digits = "0123456789ABCDEF";
    std::string uri = "file:";
    for (const char c : path) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '%' || c == '?' || c == '#' || byte < 0x21 || byte > 0x7E) {
            uri += '%';
            uri += Digits[byte >> 4];
            uri += Digits[byte & 15];
        } else {
            uri += c;
        }
    }
    return uri + "?immutable=1";
}

std::string doubled(std::string_view text, char mark)
{
    std::string out(1, mark);
    for (const char c : text) {
        if (c == mark)
            out += mark;
        out += c;
    }
    return out + mark;
}

} // namespace

Error errorOf(int code, const std::string& path, const std::string& detail, Activity activity)
{
    const bool writing = activity == Activity::Writing;
    ErrorCode error = writing ? ErrorCode::WriteFailed : ErrorCode::DamagedFile;
    switch (code & 0xFF) {
    case SQLITE_FULL:
        error = ErrorCode::DiskFull;
        break;
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
    case SQLITE_PROTOCOL:
        error = codeWhenBusy(activity);
        break;
    case SQLITE_READONLY:
        error = writing ? ErrorCode::ReadOnly : ErrorCode::NoPermission;
        break;
    case SQLITE_CANTOPEN:
        error = codeWhenNotOpened(path, activity);
        break;
    case SQLITE_PERM:
    case SQLITE_AUTH:
        error = ErrorCode::NoPermission;
        break;
    case SQLITE_CORRUPT:
        error = ErrorCode::DamagedFile;
        break;
    case SQLITE_NOTADB:
        error = activity == Activity::Opening ? ErrorCode::NotALibrary : ErrorCode::DamagedFile;
        break;
    case SQLITE_INTERRUPT:
        error = ErrorCode::Cancelled;
        break;
    case SQLITE_NOMEM:
    case SQLITE_MISUSE:
        error = ErrorCode::Internal;
        break;
    default:
        break;
    }
    return { error, path, detail };
}

Connection::Connection(std::string path, Access access, int busyTimeoutMs)
    : m_path(std::move(path))
{
    int flags = SQLITE_OPEN_NOMUTEX;
    if (access == Access::ReadWrite)
        flags |= SQLITE_OPEN_READWRITE;
    else if (access == Access::Create)
        flags |= SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE;
    else
        flags |= SQLITE_OPEN_READONLY;
    // A relative path could be taken for a URI ("file:..."), and the working folder may change.
    std::string name = std::filesystem::absolute(m_path).string();
    if (access == Access::ReadFrozen) {
        flags |= SQLITE_OPEN_URI;
        name = frozenUri(name);
    }
    const int opened = sqlite3_open_v2(name.c_str(), &m_handle, flags, nullptr);
    if (opened != SQLITE_OK || !m_handle) {
        const int code = m_handle ? sqlite3_extended_errcode(m_handle) : opened;
        const std::string detail = m_handle ? sqlite3_errmsg(m_handle) : "out of memory";
        sqlite3_close_v2(m_handle);
        throw StoreFailure(errorOf(code, m_path, detail, m_activity));
    }
    sqlite3_extended_result_codes(m_handle, 1);
    sqlite3_busy_timeout(m_handle, busyTimeoutMs);
    sqlite3_db_config(m_handle, SQLITE_DBCONFIG_ENABLE_TRIGGER, 0, nullptr);
    // The schema of a damaged or hostile file must not call functions with effects.
    sqlite3_db_config(m_handle, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
}

Connection::~Connection()
{
    rollback();
    sqlite3_close_v2(m_handle);
}

void Connection::setBusyTimeout(int milliseconds)
{
    sqlite3_busy_timeout(m_handle, milliseconds);
}

void Connection::execute(const std::string& sql)
{
    const int code = sqlite3_exec(m_handle, sql.c_str(), nullptr, nullptr, nullptr);
    if (code != SQLITE_OK)
        fail(code);
}

std::string Connection::textOf(const std::string& sql)
{
    Statement statement(*this, sql);
    return statement.step() ? std::string(statement.text(0)) : std::string();
}

std::int64_t Connection::integerOf(const std::string& sql)
{
    Statement statement(*this, sql);
    return statement.step() ? statement.integer(0) : 0;
}

bool Connection::hasTable(std::string_view name)
{
    Statement statement(*this,
        "SELECT 1 FROM sqlite_master WHERE type IN ('table', 'view') AND lower(name) = lower(?1)");
    statement.bindText(1, name);
    return statement.step();
}

std::string Connection::head()
{
    std::array<char, 100> bytes {};
    sqlite3_file* file = nullptr;
    sqlite3_file_control(m_handle, "main", SQLITE_FCNTL_FILE_POINTER, &file);
    if (!file || !file->pMethods)
        return {};
    const int code = file->pMethods->xRead(file, bytes.data(), bytes.size(), 0);
    if (code != SQLITE_OK && code != SQLITE_IOERR_SHORT_READ)
        return {};
    return { bytes.data(), bytes.size() };
}

bool Connection::isInTransaction() const
{
    return sqlite3_get_autocommit(m_handle) == 0;
}

void Connection::rollback() noexcept
{
    if (isInTransaction())
        sqlite3_exec(m_handle, "ROLLBACK", nullptr, nullptr, nullptr);
}

void Connection::fail(int code) const
{
    throw StoreFailure(errorOf(code, m_path, sqlite3_errmsg(m_handle), m_activity));
}

std::string quoted(std::string_view name)
{
    return doubled(name, '"');
}

std::string literal(std::string_view text)
{
    return doubled(text, '\'');
}

} // namespace embedded::store
