// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "query/execution/plan/EntitySelection.h"

#include "query/execution/Parallel.h"

#include <tbb/enumerable_thread_specific.h>

#include <bit>
#include <memory>

namespace query::plan {

namespace {

/// Entities whose handles one task writes.
constexpr int EntitiesPerSlice = 65536;
/// Blocks that one task evaluates.
constexpr int BlocksPerTask = 8;
/// Up to here other threads would cost more than they bring.
constexpr int MostRowsAlone = 4 * BlockRows;

/// A stretch of the entity order: from an entity of a run on, maybe over the following runs.
struct Slice {
    int firstRun = 0;
    int firstInRun = 0;
    int count = 0;
    std::size_t found = 0; ///< Then: place of its first handle in the result.
};

template <typename Work> void forEachIndex(int count, int grain, bool isAlone, const Work& work)
{
    if (isAlone) {
        for (int i = 0; i < count; ++i)
            work(i);
        return;
    }
    forEachRange(count, grain, [&work](int first, int end) {
        for (int i = first; i < end; ++i)
            work(i);
    });
}

std::vector<Slice> slicesOf(const gis::EntityRunsView& runs)
{
    std::vector<Slice> slices;
    slices.reserve(static_cast<std::size_t>(runs.entityCount / EntitiesPerSlice + 1));
    for (int run = 0; run < runs.runCount; ++run) {
        for (int done = 0; done < runs.runs[run].count;) {
            if (slices.empty() || slices.back().count == EntitiesPerSlice)
                slices.push_back({ run, done, 0, 0 });
            Slice& slice = slices.back();
            const int taken = std::min(EntitiesPerSlice - slice.count, runs.runs[run].count - done);
            slice.count += taken;
            done += taken;
        }
    }
    return slices;
}

/// Bit a row, in the table's order, for the blocks that entities use.
class RowAnswers final {
public:
    RowAnswers(const gis::EntityRunsView& runs, int rowCount)
        : m_rowCount(rowCount)
        , m_blockCount((rowCount + BlockRows - 1) / BlockRows)
        , m_isUsed(static_cast<std::size_t>(m_blockCount), 0)
        , m_words(std::make_unique_for_overwrite<std::uint64_t[]>(
              static_cast<std::size_t>(m_blockCount) * BlockWords))
    {
        for (int run = 0; run < runs.runCount; ++run) {
            const gis::EntityRun& entities = runs.runs[run];
            if (entities.count == 0)
                continue;
            const int last = (entities.firstRow + entities.count - 1) / BlockRows;
            for (int block = entities.firstRow / BlockRows; block <= last; ++block)
                m_isUsed[static_cast<std::size_t>(block)] = 1;
        }
    }

    void compute(const Program& program, const std::atomic<bool>* isStopped = nullptr)
    {
        tbb::enumerable_thread_specific<BlockMachine> machines(
            [&] { return BlockMachine(program); });
        forEachIndex(m_blockCount, BlocksPerTask, m_rowCount <= MostRowsAlone, [&](int block) {
            if (m_isUsed[static_cast<std::size_t>(block)] && !(isStopped && *isStopped))
                computeBlock(machines.local(), block);
        });
    }

    /// Calls `visit(first, bits)` for the answers of rows `first` to `first + 63`, for
    /// `count` rows from `firstRow` on; bits outside these are 0.
    template <typename Visit> void forEachWord(int firstRow, int count, const Visit& visit) const
    {
        const int end = firstRow + count;
        for (int first = firstRow / 64 * 64; first < end; first += 64) {
            std::uint64_t bits = m_words[static_cast<std::size_t>(first / 64)];
            if (first < firstRow)
                bits &= ~std::uint64_t(0) << (firstRow - first);
            if (end - first < 64)
                bits &= (std::uint64_t(1) << (end - first)) - 1;
            visit(first, bits);
        }
    }

private:
    void computeBlock(BlockMachine& machine, int block)
    {
        RowBlock rows;
        rows.firstRow = block * BlockRows;
        rows.rowCount = std::min(BlockRows, m_rowCount - rows.firstRow);
        const Bits& answers = machine.run(rows);
        std::copy(answers.begin(), answers.begin() + rows.wordCount(),
            m_words.get() + static_cast<std::size_t>(block) * BlockWords);
    }

    int m_rowCount;
    int m_blockCount;
    std::vector<std::uint8_t> m_isUsed;
    std::unique_ptr<std::uint64_t[]> m_words;
};

/// Calls `visit(run, firstInRun, count)` for the parts of the runs that a slice covers.
template <typename Visit>
void forEachPart(const gis::EntityRunsView& runs, const Slice& slice, const Visit& visit)
{
    int left = slice.count;
    int first = slice.firstInRun;
    for (int run = slice.firstRun; left > 0; ++run, first = 0) {
        const int count = std::min(left, runs.runs[run].count - first);
        visit(runs.runs[run], first, count);
        left -= count;
    }
}

std::size_t countFound(
    const RowAnswers& answers, const gis::EntityRunsView& runs, const Slice& slice)
{
    std::size_t found = 0;
    forEachPart(runs, slice, [&](const gis::EntityRun& run, int first, int count) {
        answers.forEachWord(run.firstRow + first, count, [&](int, std::uint64_t bits) {
            found += static_cast<std::size_t>(std::popcount(bits));
        });
    });
    return found;
}

void writeFound(
    const RowAnswers& answers, const gis::EntityRunsView& runs, const Slice& slice, gis::CEnt** out)
{
    forEachPart(runs, slice, [&](const gis::EntityRun& run, int first, int count) {
        answers.forEachWord(run.firstRow + first, count, [&](int firstRow, std::uint64_t bits) {
            for (; bits != 0; bits &= bits - 1)
                *out++ = run.At(firstRow + std::countr_zero(bits) - run.firstRow);
        });
    });
}

} // namespace

std::optional<int> usedRowCount(const gis::EntityRunsView& runs)
{
    std::int64_t rows = 0;
    std::int64_t entities = 0;
    for (int run = 0; run < runs.runCount; ++run) {
        if (runs.runs[run].firstRow < 0 || runs.runs[run].count < 0)
            return std::nullopt;
        rows = std::max(rows, std::int64_t(runs.runs[run].firstRow) + runs.runs[run].count);
        entities += runs.runs[run].count;
    }
    constexpr std::int64_t MostRows = std::int64_t(1) << 30;
    if (rows > MostRows || entities != runs.entityCount)
        return std::nullopt;
    return static_cast<int>(rows);
}

void selectEntities(const Program& program, const gis::EntityRunsView& runs, int rowCount,
    std::vector<gis::CEnt*>& result)
{
    const bool isAlone = rowCount <= MostRowsAlone;
    RowAnswers answers(runs, rowCount);
    answers.compute(program);
    std::vector<Slice> slices = slicesOf(runs);
    const int sliceCount = static_cast<int>(slices.size());
    forEachIndex(sliceCount, 1, isAlone, [&](int i) {
        Slice& slice = slices[static_cast<std::size_t>(i)];
        slice.found = countFound(answers, runs, slice);
    });
    std::size_t total = 0;
    for (Slice& slice : slices)
        total += std::exchange(slice.found, total);
    // Not cleared before: what is there already is overwritten rather than written twice.
    result.resize(total);
    forEachIndex(sliceCount, 1, isAlone, [&](int i) {
        const Slice& slice = slices[static_cast<std::size_t>(i)];
        writeFound(answers, runs, slice, result.data() + slice.found);
    });
}

int countEntities(const Program& program, const gis::EntityRunsView& runs, int rowCount,
    const std::atomic<bool>& isStopped)
{
    RowAnswers answers(runs, rowCount);
    answers.compute(program, &isStopped);
    if (isStopped)
        return 0; // some answers were not computed
    std::size_t found = 0;
    for (const Slice& slice : slicesOf(runs))
        found += countFound(answers, runs, slice);
    return static_cast<int>(found);
}

} // namespace query::plan
