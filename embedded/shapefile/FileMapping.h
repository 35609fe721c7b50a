// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "embedded/base/Result.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace embedded {

/// A whole file as bytes, mapped for reading. Errors: FileNotFound, NotAFile (folders, devices),
/// NoPermission; an empty file is no error and gives no bytes. Owner, thread: the mapping lasts as
/// long as this object; any thread may read.
class FileMapping final {
public:
    FileMapping() = default;
    FileMapping(const FileMapping&) = delete;
    FileMapping& operator=(const FileMapping&) = delete;
    FileMapping(FileMapping&& other) noexcept;
    FileMapping& operator=(FileMapping&& other) noexcept;
    ~FileMapping();

    [[nodiscard]] static Result<FileMapping> open(const std::string& path);

    [[nodiscard]] const unsigned char* data() const { return m_data; }
    [[nodiscard]] std::size_t size() const { return m_size; }
    [[nodiscard]] std::string_view bytes() const
    {
        return { reinterpret_cast<const char*>(m_data), m_size };
    }
    /// Tells the system that the bytes will be read from front to back.
    void willReadInOrder() const;

private:
    const unsigned char* m_data = nullptr;
    std::size_t m_size = 0;
};

} // namespace embedded
