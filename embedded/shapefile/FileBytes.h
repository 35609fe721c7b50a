// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "embedded/base/Result.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace embedded {

/// A whole file as bytes, read into memory: a mapped one would end the process were the file cut,
/// or its disk or network gone, while it is looked at. Errors: FileNotFound, NotAFile (folders,
/// devices), NoPermission, ReadFailed; an empty file is no error and gives no bytes. Owner, thread:
/// the bytes last as long as this object; any thread may read.
class FileBytes final {
public:
    FileBytes() = default;
    FileBytes(const FileBytes&) = delete;
    FileBytes& operator=(const FileBytes&) = delete;
    FileBytes(FileBytes&& other) noexcept;
    FileBytes& operator=(FileBytes&& other) noexcept;
    ~FileBytes();

    [[nodiscard]] static Result<FileBytes> open(const std::string& path);

    [[nodiscard]] const unsigned char* data() const { return m_data; }
    [[nodiscard]] std::size_t size() const { return m_size; }
    [[nodiscard]] std::string_view bytes() const
    {
        return { reinterpret_cast<const char*>(m_data), m_size };
    }

private:
    unsigned char* m_data = nullptr;
    std::size_t m_size = 0;
    std::size_t m_capacity = 0; // of the memory, at least the size
};

} // namespace embedded
