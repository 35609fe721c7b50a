// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/shapefile/FileMapping.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace embedded {

namespace {

/// Closes a file descriptor at the end of a scope.
class Descriptor final {
public:
    explicit Descriptor(int number)
        : m_number(number)
    {
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor()
    {
        if (m_number >= 0)
            ::close(m_number);
    }
    [[nodiscard]] int number() const { return m_number; }

private:
    int m_number;
};

ErrorCode codeOf(int systemError)
{
    switch (systemError) {
    case EACCES:
    case EPERM:
        return ErrorCode::NoPermission;
    case EISDIR:
        return ErrorCode::NotAFile;
    default:
        return ErrorCode::FileNotFound;
    }
}

} // namespace

FileMapping::FileMapping(FileMapping&& other) noexcept
    : m_data(std::exchange(other.m_data, nullptr))
    , m_size(std::exchange(other.m_size, 0))
{
}

FileMapping& FileMapping::operator=(FileMapping&& other) noexcept
{
    std::swap(m_data, other.m_data);
    std::swap(m_size, other.m_size);
    return *this;
}

FileMapping::~FileMapping()
{
    if (m_data)
        ::munmap(const_cast<unsigned char*>(m_data), m_size);
}

Result<FileMapping> FileMapping::open(const std::string& path)
{
    // Not blocking: a pipe given for a file is refused below instead of waited for.
    const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (file.number() < 0)
        return Error { codeOf(errno), path, {} };
    struct stat about { };
    if (::fstat(file.number(), &about) != 0)
        return Error { codeOf(errno), path, {} };
    if (!S_ISREG(about.st_mode))
        return Error { ErrorCode::NotAFile, path, {} };
    FileMapping mapping;
    if (about.st_size == 0)
        return mapping;
    const auto size = static_cast<std::size_t>(about.st_size);
    void* bytes = ::mmap(nullptr, size, PROT_READ, MAP_PRIVATE, file.number(), 0);
    if (bytes == MAP_FAILED)
        return Error { codeOf(errno), path, {} };
    mapping.m_data = static_cast<const unsigned char*>(bytes);
    mapping.m_size = size;
    return mapping;
}

void FileMapping::willReadInOrder() const
{
    if (m_data)
        ::madvise(const_cast<unsigned char*>(m_data), m_size, MADV_SEQUENTIAL);
}

} // namespace embedded
