// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "embedded/store/Connection.h"

#include <cstdint>
#include <string_view>

struct sqlite3_stmt;

namespace embedded::store {

/// A prepared statement. Parameters count from 1, columns from 0. Bound texts and blobs are not
/// copied: they must live until the next `step`, `reset` or `run` has ended. Errors: StoreFailure.
/// Owner, thread: must end before its connection, used on the connection's thread.
class Statement final {
public:
    enum class Type { Integer, Real, Text, Blob, Null };

    Statement(Connection& connection, std::string_view sql);
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;
    ~Statement();

    void bindNull(int parameter);
    void bindInteger(int parameter, std::int64_t value);
    /// A NaN, which SQLite would make NULL, is stored as the text "nan".
    void bindReal(int parameter, double value);
    void bindText(int parameter, std::string_view text);
    void bindBlob(int parameter, std::string_view bytes);

    /// For functions of ours only: no SQL can read it. `type` is a literal.
    void bindPointer(int parameter, void* pointer, const char* type);

    /// True when there is a row.
    bool step();
    void reset();
    /// Steps to the end and resets, for statements without rows.
    void run();

    [[nodiscard]] int columnCount() const;
    [[nodiscard]] Type type(int column) const;
    [[nodiscard]] bool isNull(int column) const { return type(column) == Type::Null; }
    [[nodiscard]] std::int64_t integer(int column) const;
    [[nodiscard]] double real(int column) const; // the text "nan" is NaN
    /// Valid until the next step.
    [[nodiscard]] std::string_view text(int column) const;
    [[nodiscard]] std::string_view blob(int column) const;
    [[nodiscard]] sqlite3_stmt* handle() const { return m_handle; }

private:
    void check(int code) const;

    Connection& m_connection;
    sqlite3_stmt* m_handle = nullptr;
};

} // namespace embedded::store
