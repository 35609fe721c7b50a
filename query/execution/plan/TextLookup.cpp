// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "query/execution/plan/TextLookup.h"

#include "query/execution/Parallel.h"

#include <atomic>

namespace query::plan {

namespace {

constexpr int MostSoughtSingly = 8;
constexpr std::uint32_t TextsPerTask = 32768;

std::uint32_t seekCode(
    const gis::ColumnView& view, std::string_view text, std::uint32_t begin, std::uint32_t end)
{
    for (std::uint32_t code = begin; code < end; ++code)
        if (view.dictionary[code].length == text.size() && view.dictionary[code].View() == text)
            return code;
    return NoCode;
}

std::uint32_t seekCode(const gis::ColumnView& view, std::string_view text)
{
    if (view.dictionarySize <= TextsPerTask)
        return seekCode(view, text, 0, view.dictionarySize);
    std::atomic<std::uint32_t> found { NoCode };
    forEachRange(view.dictionarySize, TextsPerTask, [&](std::uint32_t first, std::uint32_t end) {
        const std::uint32_t code = seekCode(view, text, first, end);
        if (code != NoCode)
            found.store(code, std::memory_order_relaxed);
    });
    return found.load();
}

std::string keyOf(const TextCondition& condition)
{
    const std::string kind(1, static_cast<char>('A' + condition.code));
    return kind + (condition.isLike() ? condition.like->GetPattern().Bytes() : condition.constant);
}

} // namespace

std::uint32_t TextLookup::codeOf(int column, const gis::ColumnView& view, std::string_view text)
{
    Index& index = m_indexes[column];
    if (++index.soughtCount <= MostSoughtSingly)
        return seekCode(view, text);
    if (index.codes.empty()) {
        index.codes.reserve(view.dictionarySize);
        for (std::uint32_t code = 0; code < view.dictionarySize; ++code)
            index.codes.emplace(view.dictionary[code].View(), code);
    }
    const auto found = index.codes.find(text);
    return found != index.codes.end() ? found->second : NoCode;
}

CodeSet TextLookup::codesOf(int column, const gis::ColumnView& view, const TextCondition& condition)
{
    CodeSet& set = m_sets[{ column, keyOf(condition) }];
    if (!set) {
        set = plan::codesOf(view, condition);
        m_sizeBytes += set->size() * sizeof(std::uint64_t);
    }
    return set;
}

} // namespace query::plan
