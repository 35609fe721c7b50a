// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace embedded {

/// Why something of the embedded host could not be done. Texts are made from it at the edge:
/// English on the command line, Italian in windows; a test finds codes without text.
enum class ErrorCode {
    FileNotFound, // subject: path
    NotAFile, // subject: path (a folder)
    NoPermission, // subject: path
    ReadFailed, // subject: path; detail: the system's reason
    EmptyFile, // subject: path
    NotALibrary, // subject: path; detail: what the file seems to be
    NewerFormat, // subject: path; detail: the file's format version
    DamagedFile, // subject: path; detail: what is wrong
    LockedForWriting, // subject: path: another program has the file open for writing
    BusyReaders, // subject: path: other programs are reading, so nothing can be written now
    ReadOnly, // subject: path
    WriteFailed, // subject: path; detail: the system's reason
    OtherProgramsFile, // subject: path: made by another program, never written to
    DiskFull, // subject: path
    FolderNotFound, // subject: path
    FolderNotAbsolute, // subject: path
    NoShapeHeader, // subject: path
    UnknownShapeType, // subject: path; detail: the type's number
    NoDbf, // subject: path of the .shp
    BadDbf, // subject: path; detail: what is wrong
    UnknownEncoding, // subject: encoding name
    StrictFinding, // subject: path; detail: the first finding
    NameClash, // subject: the table's name
    UnknownTheme, // subject: name
    UnknownField, // subject: name; detail: table
    SeveralThemes, // subject: path
    NoThemes, // subject: path
    Cancelled,
    Internal, // detail: what happened
};

struct Error {
    ErrorCode code = ErrorCode::Internal;
    std::string subject;
    std::string detail;
};

/// A value, or the error that stood in its way.
template <typename T> class [[nodiscard]] Result final {
public:
    Result(T value)
        : m_state(std::in_place_index<0>, std::move(value))
    {
    }
    Result(Error error)
        : m_state(std::in_place_index<1>, std::move(error))
    {
    }
    [[nodiscard]] bool ok() const { return m_state.index() == 0; }
    explicit operator bool() const { return ok(); }
    T& value() { return std::get<0>(m_state); }
    const T& value() const { return std::get<0>(m_state); }
    const Error& error() const { return std::get<1>(m_state); }

private:
    std::variant<T, Error> m_state;
};

template <> class [[nodiscard]] Result<void> final {
public:
    Result() = default;
    Result(Error error)
        : m_error(std::move(error))
    {
    }
    [[nodiscard]] bool ok() const { return !m_error.has_value(); }
    explicit operator bool() const { return ok(); }
    const Error& error() const { return *m_error; }

private:
    std::optional<Error> m_error;
};

/// Asked by long work now and then, from the threads that do it: true once it is to end, with the
/// error Cancelled. An empty one never stops it.
using IsStopped = std::function<bool()>;

} // namespace embedded
