// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "embedded/store/Connection.h"

#include <filesystem>
#include <memory>
#include <string>

namespace embedded::store {

/// What stands at the place, or will.
enum class Replaced {
    OwnLibrary, // held by this very library, so no lock is asked for
    Library,
    PlainFile, // no database: neither a lock nor a journal beside it is its own
};

/// The place that a path leads to, links followed, also to a file that is not there yet.
std::filesystem::path placeOf(std::filesystem::path path);

/// A file that is made beside its place and put there at once when it is whole, so that the place
/// never holds half of it. Links are followed; a file that is replaced gives its rights to the new
/// one. Errors: StoreFailure (FolderNotFound, NotAFile, ReadOnly, LockedForWriting, DiskFull,
/// WriteFailed). Without `putInPlace` the new file is removed again.
class CReplacedFile final {
public:
    CReplacedFile(const std::string& path, Replaced kind);
    CReplacedFile(const CReplacedFile&) = delete;
    CReplacedFile& operator=(const CReplacedFile&) = delete;
    ~CReplacedFile();

    [[nodiscard]] const std::string& temporaryPath() const { return m_temporary; }
    /// Makes the new file last and puts it in its place. No connection to it may be open.
    void putInPlace();
    /// The place, links followed.
    [[nodiscard]] const std::string& path() const { return m_path; }

private:
    void makeTemporary();
    void lockPlace();

    std::string m_path;
    Replaced m_kind;
    std::string m_temporary;
    std::unique_ptr<Connection> m_lock; // keeps other writers from the file that is replaced
};

/// True when both paths lead to the same file.
bool isSameFile(const std::string& left, const std::string& right);

} // namespace embedded::store
