// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "embedded/base/Result.h"
#include "embedded/shapefile/FileBytes.h"
#include "embedded/shapefile/ShpFormat.h"

#include <cstdint>
#include <string>
#include <vector>

namespace embedded {

/// What is known of one record of a .shp before its shape is read.
enum class ShpRecordState : std::uint8_t {
    Readable,
    LengthWrong, // readable by the shape's own counts
    Impossible, // its header leaves no room for a shape, or the next record could only be guessed
    Cut, // the file ends before it does
};

struct ShpRecord {
    std::uint64_t offset = 0; // of the content, in bytes
    std::uint32_t sizeBytes = 0; // of the content
    std::int32_t number = 0; // as the record's header says, normally from 1
    ShpRecordState state = ShpRecordState::Readable;
};

/// How a .shx agrees with the records found in the .shp.
struct ShxComparison {
    bool isMissing = false;
    std::string difference; // empty: none
    int entryCount = 0;
};

/// The records of a .shp, found from front to back in the .shp itself, so that a damaged index
/// harms nothing. A record whose header is impossible is left behind as such, and the reading goes
/// on where the next one is found.
class ShpFile final {
public:
    /// Errors: FileNotFound, NotAFile, NoPermission, EmptyFile, NoShapeHeader, UnknownShapeType.
    [[nodiscard]] static Result<ShpFile> open(const std::string& shpPath);

    /// Finds the records. `shxPath` may be empty. A .shx that lists records of the .shp by their
    /// numbers, each once, gives their order (programs append a shape that grew at the file's end
    /// and leave the old one behind).
    void findRecords(const std::string& shxPath);

    [[nodiscard]] std::int32_t shapeType() const { return m_type; }
    [[nodiscard]] const std::vector<ShpRecord>& records() const { return m_records; }
    [[nodiscard]] const ShxComparison& index() const { return m_index; }
    /// True when the file is shorter than its length field says.
    [[nodiscard]] bool isCut() const { return m_declaredBytes > m_size; }
    /// How the length field, the records and the file differ; empty: not at all.
    [[nodiscard]] std::string sizeDifference() const;
    [[nodiscard]] const unsigned char* content(const ShpRecord& record) const
    {
        return m_file.data() + record.offset;
    }

private:
    struct Header {
        std::int32_t number = 0;
        std::int64_t sizeBytes = 0;
    };
    [[nodiscard]] Header headerAt(std::size_t offset) const;
    [[nodiscard]] bool fits(std::size_t offset, std::int64_t sizeBytes) const;
    [[nodiscard]] bool goesOnAt(std::size_t offset, std::int32_t number) const;
    [[nodiscard]] bool isRecordAt(
        std::size_t offset, std::int32_t lowest, std::int32_t highest) const;
    [[nodiscard]] std::int64_t ownSizeLeadingOn(std::size_t offset) const;
    [[nodiscard]] std::size_t searchRecord(std::size_t from, std::int32_t previousNumber) const;
    bool readDamaged(std::size_t& offset, std::int32_t& previousNumber);
    void readIndex(const std::string& shxPath);
    void compareIndex();
    [[nodiscard]] bool takeIndexOrder();
    void add(std::size_t offset, std::int64_t sizeBytes, std::int32_t number, ShpRecordState state);

    struct IndexEntry {
        std::int64_t offset = 0; // of the record's header, in bytes
        std::int64_t sizeBytes = 0;
    };

    FileBytes m_file;
    std::size_t m_size = 0; // of the file, as far as a .shp can reach
    std::int32_t m_type = 0;
    std::uint64_t m_declaredBytes = 0;
    std::size_t m_recordsEnd = shp::HeaderBytes;
    std::vector<ShpRecord> m_records;
    std::vector<IndexEntry> m_indexEntries;
    bool m_indexIsCut = false;
    ShxComparison m_index;
};

/// Content bytes that a shape of a type needs by the counts it states.
struct ShapeSize {
    std::int64_t smallest = 0; // -1: the counts are impossible
    std::int64_t withMeasures = 0;
};
ShapeSize statedShapeSize(const unsigned char* content, std::uint64_t available);

} // namespace embedded
