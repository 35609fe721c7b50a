// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/shapefile/OutputFiles.h"

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <system_error>
#include <unistd.h>

namespace embedded {

namespace {

constexpr std::size_t BufferBytes = 1 << 20;

/// A name that no other running export takes.
std::string passingName(const char* kind)
{
    static std::atomic<unsigned> counter { 0 };
    return ".tematica-" + std::to_string(::getpid()) + "-" + std::to_string(counter++) + kind;
}

Error errorOf(int systemError, const std::string& path)
{
    if (systemError == ENOSPC || systemError == EDQUOT)
        return { ErrorCode::DiskFull, path, {} };
    return { ErrorCode::WriteFailed, path, std::generic_category().message(systemError) };
}

} // namespace

std::string pathIn(const std::string& folder, const std::string& name)
{
    return folder.ends_with('/') ? folder + name : folder + "/" + name;
}

OutputFile::~OutputFile()
{
    if (m_descriptor >= 0)
        ::close(m_descriptor);
}

void OutputFile::open(const std::string& path, const std::string& finalPath)
{
    m_finalPath = finalPath;
    m_buffer.reserve(BufferBytes + 4096);
    m_descriptor = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (m_descriptor < 0)
        failBySystem(errno);
}

void OutputFile::failBySystem(int systemError)
{
    if (m_state)
        m_state = errorOf(systemError, m_finalPath);
}

void OutputFile::fail(std::string detail)
{
    if (m_state)
        m_state = Error { ErrorCode::WriteFailed, m_finalPath, std::move(detail) };
}

void OutputFile::write(std::string_view bytes)
{
    if (!m_state)
        return;
    m_buffer += bytes;
    if (m_buffer.size() >= BufferBytes)
        flush();
}

void OutputFile::flush()
{
    put(m_buffer, static_cast<std::int64_t>(m_written));
    m_written += m_buffer.size();
    m_buffer.clear();
}

void OutputFile::put(std::string_view bytes, std::int64_t offset)
{
    while (m_state && !bytes.empty()) {
        const ssize_t count = ::pwrite(m_descriptor, bytes.data(), bytes.size(), offset);
        if (count < 0) {
            if (errno != EINTR)
                failBySystem(errno);
            continue;
        }
        bytes.remove_prefix(static_cast<std::size_t>(count));
        offset += count;
    }
}

void OutputFile::patchStart(std::string_view bytes)
{
    flush();
    put(bytes, 0);
}

void OutputFile::close()
{
    flush();
    if (m_descriptor < 0)
        return;
    // Some file systems tell only now that the disk is full.
    if (::close(m_descriptor) != 0)
        failBySystem(errno);
    m_descriptor = -1;
}

OutputSet::OutputSet(std::string folder)
    : m_folder(std::move(folder))
{
}

OutputSet::~OutputSet()
{
    for (const Entry& entry : m_entries) {
        if (!entry.isInPlace)
            ::unlink(entry.passingPath.c_str());
        if (!entry.backupPath.empty())
            ::unlink(entry.backupPath.c_str());
    }
}

std::string OutputSet::finalPath(const Entry& entry) const
{
    return pathIn(m_folder, entry.name);
}

void OutputSet::add(OutputFile& file, const std::string& name)
{
    Entry entry;
    entry.name = name;
    entry.passingPath = pathIn(m_folder, passingName(".part"));
    file.open(entry.passingPath, finalPath(entry));
    m_entries.push_back(std::move(entry));
}

Result<void> OutputSet::commit(std::string& failedName)
{
    for (Entry& entry : m_entries) {
        const std::string place = finalPath(entry);
        const std::string backup = pathIn(m_folder, passingName(".old"));
        if (::link(place.c_str(), backup.c_str()) == 0)
            entry.backupPath = backup;
        if (::rename(entry.passingPath.c_str(), place.c_str()) != 0) {
            const int systemError = errno;
            failedName = entry.name;
            takeBack();
            return errorOf(systemError, place);
        }
        entry.isInPlace = true;
    }
    return {};
}

void OutputSet::takeBack()
{
    for (Entry& entry : m_entries) {
        if (!entry.isInPlace)
            continue;
        const std::string place = finalPath(entry);
        if (entry.backupPath.empty())
            ::unlink(place.c_str());
        else if (::rename(entry.backupPath.c_str(), place.c_str()) == 0)
            entry.backupPath.clear();
    }
}

} // namespace embedded
