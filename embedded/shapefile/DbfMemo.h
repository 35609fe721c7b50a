// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "embedded/shapefile/FileBytes.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace embedded {

/// The texts of memo columns, which lie in a file beside the .dbf: .dbt (dBASE III and IV) or .fpt
/// (FoxPro).
class DbfMemo final {
public:
    /// `version`: the .dbf's first byte. A memo file that is missing or unreadable gives an object
    /// that is not open.
    DbfMemo() = default;
    DbfMemo(const std::string& dbfPath, std::uint8_t version);

    [[nodiscard]] bool isOpen() const { return m_file.size() > 0; }
    [[nodiscard]] std::size_t sizeBytes() const { return m_file.size(); }
    /// The text that a cell points to; empty view where the cell is blank, nullopt where it points
    /// to nothing readable. Bytes are in the table's encoding.
    [[nodiscard]] std::optional<std::string_view> text(std::string_view cell) const;

private:
    enum class Kind { DBase3, DBase4, FoxPro };
    [[nodiscard]] static std::uint64_t blockOf(std::string_view cell, bool& isBlank);

    FileBytes m_file;
    Kind m_kind = Kind::DBase3;
    std::size_t m_blockBytes = 512;
};

} // namespace embedded
