// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/shapefile/FileBytes.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <system_error>
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
    case ENOENT:
    case ENOTDIR:
        return ErrorCode::FileNotFound;
    default:
        return ErrorCode::ReadFailed;
    }
}

Error errorOf(int systemError, const std::string& path)
{
    const ErrorCode code = codeOf(systemError);
    return { code, path,
        code == ErrorCode::ReadFailed ? std::generic_category().message(systemError)
                                      : std::string() };
}

/// Reads up to `size` bytes; less where the file was cut meanwhile. False with errno set.
bool readAll(int file, unsigned char* bytes, std::size_t size, std::size_t& done)
{
    constexpr std::size_t most = std::size_t(1) << 30; // one call reads no more than 2 GB
    for (done = 0; done < size;) {
        const auto count = ::read(file, bytes + done, std::min(most, size - done));
        if (count == 0)
            return true;
        if (count > 0)
            done += static_cast<std::size_t>(count);
        else if (errno != EINTR)
            return false;
    }
    return true;
}

} // namespace

FileBytes::FileBytes(FileBytes&& other) noexcept
    : m_data(std::exchange(other.m_data, nullptr))
    , m_size(std::exchange(other.m_size, 0))
    , m_capacity(std::exchange(other.m_capacity, 0))
{
}

FileBytes& FileBytes::operator=(FileBytes&& other) noexcept
{
    std::swap(m_data, other.m_data);
    std::swap(m_size, other.m_size);
    std::swap(m_capacity, other.m_capacity);
    return *this;
}

FileBytes::~FileBytes()
{
    if (m_data)
        ::munmap(m_data, m_capacity);
}

Result<FileBytes> FileBytes::open(const std::string& path)
{
    // Not blocking: a pipe given for a file is refused below instead of waited for.
    const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (file.number() < 0)
        return errorOf(errno, path);
    struct stat about { };
    if (::fstat(file.number(), &about) != 0)
        return errorOf(errno, path);
    if (!S_ISREG(about.st_mode))
        return Error { ErrorCode::NotAFile, path, {} };
    FileBytes result;
    if (about.st_size == 0)
        return result;
    const auto size = static_cast<std::size_t>(about.st_size);
    void* bytes = ::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (bytes == MAP_FAILED)
        return errorOf(errno, path);
    result.m_data = static_cast<unsigned char*>(bytes);
    result.m_capacity = size;
    if (!readAll(file.number(), result.m_data, size, result.m_size))
        return errorOf(errno, path);
    return result;
}

} // namespace embedded
