// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/store/ReplacedFile.h"

#include "host/base/Numbers.h"

#include <atomic>
#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace embedded::store {
namespace {

namespace fs = std::filesystem;

// A link that leads round in a circle, or too deep.
constexpr int MostLinks = 32;

std::string reason(int error)
{
    return std::error_code(error, std::generic_category()).message();
}

[[noreturn]] void failForSystem(int error, const std::string& path)
{
    const ErrorCode code = error == ENOSPC || error == EDQUOT ? ErrorCode::DiskFull
        : error == EACCES || error == EPERM || error == EROFS ? ErrorCode::ReadOnly
                                                              : ErrorCode::WriteFailed;
    failWith(code, path, reason(error));
}

void syncPath(const std::string& path, int flags, const std::string& subject)
{
    const int file = ::open(path.c_str(), flags | O_CLOEXEC);
    if (file < 0)
        failForSystem(errno, subject);
    const int synced = ::fsync(file);
    const int error = errno;
    ::close(file);
    // Some file systems cannot sync a folder; the rename is then as safe as they make it.
    if (synced != 0 && error != EINVAL && error != EROFS)
        failForSystem(error, subject);
}

} // namespace

fs::path placeOf(fs::path path)
{
    std::error_code problem;
    for (int i = 0; i < MostLinks && fs::is_symlink(path, problem); ++i) {
        const fs::path target = fs::read_symlink(path, problem);
        if (problem)
            break;
        path = target.is_absolute() ? target : path.parent_path() / target;
    }
    const fs::path whole = fs::absolute(path, problem);
    return (problem ? path : whole).lexically_normal();
}

CReplacedFile::CReplacedFile(const std::string& path, Replaced kind)
    : m_path(placeOf(path).string())
    , m_kind(kind)
{
    const fs::path place(m_path);
    std::error_code problem;
    if (!fs::is_directory(place.parent_path(), problem))
        failWith(ErrorCode::FolderNotFound, place.parent_path().string());
    if (fs::exists(place, problem)) {
        if (!fs::is_regular_file(place, problem))
            failWith(ErrorCode::NotAFile, m_path);
        if (::access(m_path.c_str(), W_OK) != 0)
            failWith(ErrorCode::ReadOnly, m_path);
        if (m_kind == Replaced::Library)
            lockPlace();
    }
    makeTemporary();
}

CReplacedFile::~CReplacedFile()
{
    if (m_temporary.empty())
        return;
    ::unlink(m_temporary.c_str());
    ::unlink((m_temporary + "-journal").c_str());
}

void CReplacedFile::makeTemporary()
{
    static std::atomic<unsigned> counter { 0 };
    const fs::path place(m_path);
    for (;;) {
        const std::string name
            = ".tematica-" + std::to_string(::getpid()) + "-" + std::to_string(counter++) + ".tmp";
        const std::string candidate = (place.parent_path() / name).string();
        // Mode 0666 less what the user masks: the rights that any new file gets.
        const int file = ::open(candidate.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (file < 0 && errno == EEXIST)
            continue;
        if (file < 0)
            failForSystem(errno, m_path);
        m_temporary = candidate;
        struct stat old { };
        if (::stat(m_path.c_str(), &old) == 0) {
            // Only an administrator may give files away; for others the file becomes their own.
            if (::fchown(file, old.st_uid, old.st_gid) != 0)
                errno = 0;
            static_cast<void>(::fchmod(file, old.st_mode & 07777));
        }
        ::close(file);
        return;
    }
}

void CReplacedFile::lockPlace()
{
    const bool isDatabase = guarded([&] {
        Connection probe(m_path, Connection::Access::Read, 0);
        return probe.integerOf("PRAGMA schema_version");
    }).ok();
    if (!isDatabase)
        return; // whatever it is, the user chose to replace it
    m_lock = std::make_unique<Connection>(m_path, Connection::Access::ReadWrite, 1000);
    // What a crash left beside the old file would be taken for the new one's: opening for writing
    // uses it up.
    if (orv::FoldAsciiCase(m_lock->textOf("PRAGMA journal_mode")) == "wal")
        m_lock->execute("PRAGMA journal_mode = DELETE");
    m_lock->execute("BEGIN IMMEDIATE");
}

void CReplacedFile::putInPlace()
{
    syncPath(m_temporary, O_RDONLY, m_path);
    if (!m_lock && m_kind != Replaced::PlainFile)
        for (const char* tail : { "-journal", "-wal", "-shm" })
            ::unlink((m_path + tail).c_str());
    if (::rename(m_temporary.c_str(), m_path.c_str()) != 0)
        failForSystem(errno, m_path);
    m_temporary.clear();
    syncPath(fs::path(m_path).parent_path().string(), O_RDONLY | O_DIRECTORY, m_path);
}

bool isSameFile(const std::string& left, const std::string& right)
{
    std::error_code problem;
    return !left.empty() && !right.empty() && fs::equivalent(left, right, problem);
}

} // namespace embedded::store
