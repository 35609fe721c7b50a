// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "embedded/base/Result.h"
#include "embedded/shapefile/FileBytes.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace embedded {

/// One column of a .dbf as its header describes it.
struct DbfField {
    std::string name; // bytes as in the file
    char type = 'C';
    int widthBytes = 0;
    int decimals = 0;
    std::uint32_t offset = 0; // in a record
    bool isWidthGuessed = false; // the header says 0, the records have room for more
};

/// Which programs' binary column types a table has.
enum class DbfDialect { DBase3, DBase7, FoxPro };

/// The records of a .dbf as bytes; all sizes are checked against the file's.
class DbfFile final {
public:
    /// Errors: those of `FileBytes`, and BadDbf with what is wrong.
    [[nodiscard]] static Result<DbfFile> open(const std::string& path);

    [[nodiscard]] const std::string& path() const { return m_path; }
    [[nodiscard]] DbfDialect dialect() const { return m_dialect; }
    [[nodiscard]] std::uint8_t version() const { return m_version; }
    [[nodiscard]] std::uint8_t languageByte() const { return m_languageByte; }
    [[nodiscard]] const std::vector<DbfField>& fields() const { return m_fields; }
    /// Records as the header says, and whole ones that the file has room for.
    [[nodiscard]] std::uint32_t declaredCount() const { return m_declaredCount; }
    [[nodiscard]] std::uint64_t storedCount() const { return m_storedCount; }
    /// The smaller of both: the records that can be read.
    [[nodiscard]] std::uint32_t recordCount() const;
    [[nodiscard]] bool isDeleted(std::uint32_t record) const { return *recordAt(record) == '*'; }
    [[nodiscard]] std::string_view cell(std::uint32_t record, const DbfField& field) const
    {
        return { recordAt(record) + field.offset, static_cast<std::size_t>(field.widthBytes) };
    }

private:
    [[nodiscard]] const char* recordAt(std::uint32_t record) const
    {
        return reinterpret_cast<const char*>(m_file.data()) + m_headerBytes
            + std::size_t { record } * m_recordBytes;
    }
    [[nodiscard]] std::string readHeader();
    void readFields(std::size_t first, std::size_t descriptorBytes);
    [[nodiscard]] std::string placeFields();
    void guessMissingWidth(std::size_t bytesLeft);

    FileBytes m_file;
    std::string m_path;
    std::uint8_t m_version = 0;
    std::uint8_t m_languageByte = 0;
    DbfDialect m_dialect = DbfDialect::DBase3;
    std::uint32_t m_declaredCount = 0;
    std::uint64_t m_storedCount = 0;
    std::size_t m_headerBytes = 0;
    std::size_t m_recordBytes = 0;
    std::vector<DbfField> m_fields;
};

} // namespace embedded
