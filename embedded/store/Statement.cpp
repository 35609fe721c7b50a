// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/store/Statement.h"

#include <sqlite3.h>

#include <cmath>
#include <limits>

namespace embedded::store {

Statement::Statement(Connection& connection, std::string_view sql)
    : m_connection(connection)
{
    check(sqlite3_prepare_v2(
        m_connection.handle(), sql.data(), static_cast<int>(sql.size()), &m_handle, nullptr));
}

Statement::~Statement()
{
    sqlite3_finalize(m_handle);
}

void Statement::check(int code) const
{
    if (code != SQLITE_OK)
        m_connection.fail(code);
}

void Statement::bindNull(int parameter)
{
    check(sqlite3_bind_null(m_handle, parameter));
}

void Statement::bindInteger(int parameter, std::int64_t value)
{
    check(sqlite3_bind_int64(m_handle, parameter, value));
}

void Statement::bindReal(int parameter, double value)
{
    if (std::isnan(value))
        bindText(parameter, "nan");
    else
        check(sqlite3_bind_double(m_handle, parameter, value));
}

void Statement::bindText(int parameter, std::string_view text)
{
    // A null pointer would bind NULL; an empty text is a value.
    check(sqlite3_bind_text64(m_handle, parameter, text.data() ? text.data() : "", text.size(),
        SQLITE_STATIC, SQLITE_UTF8));
}

void Statement::bindBlob(int parameter, std::string_view bytes)
{
    check(sqlite3_bind_blob64(
        m_handle, parameter, bytes.data() ? bytes.data() : "", bytes.size(), SQLITE_STATIC));
}

void Statement::bindPointer(int parameter, void* pointer, const char* type)
{
    check(sqlite3_bind_pointer(m_handle, parameter, pointer, type, nullptr));
}

bool Statement::step()
{
    const int code = sqlite3_step(m_handle);
    if (code == SQLITE_ROW)
        return true;
    if (code != SQLITE_DONE)
        m_connection.fail(code);
    return false;
}

void Statement::reset()
{
    sqlite3_reset(m_handle);
}

void Statement::run()
{
    const int code = sqlite3_step(m_handle);
    if (code != SQLITE_DONE && code != SQLITE_ROW)
        m_connection.fail(code);
    check(sqlite3_reset(m_handle));
}

int Statement::columnCount() const
{
    return sqlite3_column_count(m_handle);
}

Statement::Type Statement::type(int column) const
{
    switch (sqlite3_column_type(m_handle, column)) {
    case SQLITE_INTEGER:
        return Type::Integer;
    case SQLITE_FLOAT:
        return Type::Real;
    case SQLITE_TEXT:
        return Type::Text;
    case SQLITE_BLOB:
        return Type::Blob;
    default:
        return Type::Null;
    }
}

std::int64_t Statement::integer(int column) const
{
    return sqlite3_column_int64(m_handle, column);
}

double Statement::real(int column) const
{
    if (sqlite3_column_type(m_handle, column) == SQLITE_TEXT && text(column) == "nan")
        return std::numeric_limits<double>::quiet_NaN();
    return sqlite3_column_double(m_handle, column);
}

std::string_view Statement::text(int column) const
{
    const auto* bytes = sqlite3_column_text(m_handle, column);
    if (!bytes)
        return {};
    return { reinterpret_cast<const char*>(bytes),
        static_cast<std::size_t>(sqlite3_column_bytes(m_handle, column)) };
}

std::string_view Statement::blob(int column) const
{
    const void* bytes = sqlite3_column_blob(m_handle, column);
    if (!bytes)
        return {};
    return { static_cast<const char*>(bytes),
        static_cast<std::size_t>(sqlite3_column_bytes(m_handle, column)) };
}

} // namespace embedded::store
