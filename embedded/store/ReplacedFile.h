// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "embedded/store/Connection.h"

#include <memory>
#include <string>

namespace embedded::store {

/// A file that is made beside its place and put there at once when it is whole, so that the place
/// never holds half of it. Links are followed; a file that is replaced gives its rights to the new
/// one. Errors: StoreFailure (FolderNotFound, NotAFile, ReadOnly, LockedForWriting, DiskFull,
/// WriteFailed). Without `putInPlace` the new file is removed again.
class CReplacedFile final {
public:
    /// `isOwnFile`: the place is held by this very library, so no lock is asked for.
    CReplacedFile(const std::string& path, bool isOwnFile);
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
    std::string m_temporary;
    std::unique_ptr<Connection> m_lock; // keeps other writers from the file that is replaced
};

/// True when both paths lead to the same file.
bool isSameFile(const std::string& left, const std::string& right);

} // namespace embedded::store
