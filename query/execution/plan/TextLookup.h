// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

// Answers about the texts of a column's dictionary while a filter is made into a program.

#include "query/execution/plan/TextSteps.h"

#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace query::plan {

/// A code that no row with a value has.
inline constexpr std::uint32_t NoCode = 0xFFFFFFFFu;

/// Code of a text in a dictionary, and sets of codes, each found once.
/// Lifetime: within one compilation; the columns' views must stay valid.
class TextLookup final {
public:
    /// `NoCode` when the dictionary does not hold the text. The first few texts are sought one by
    /// one; a filter that names many gets an index.
    std::uint32_t codeOf(int column, const gis::ColumnView& view, std::string_view text);
    CodeSet codesOf(int column, const gis::ColumnView& view, const TextCondition& condition);
    /// Memory that the sets take.
    [[nodiscard]] std::size_t sizeBytes() const { return m_sizeBytes; }

private:
    struct Index {
        int soughtCount = 0;
        std::unordered_map<std::string_view, std::uint32_t> codes;
    };
    std::map<int, Index> m_indexes;
    std::map<std::pair<int, std::string>, CodeSet> m_sets;
    std::size_t m_sizeBytes = 0;
};

} // namespace query::plan
