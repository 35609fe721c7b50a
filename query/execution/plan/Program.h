// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

// A filter as a row of steps over a block of rows, and the machine that runs them.

#include "query/execution/plan/Block.h"

#include <cstddef>
#include <memory>
#include <vector>

namespace query::plan {

class BlockMachine;

/// One operation over all rows of a block. Holds no state of a run: programs are shared between
/// threads.
class IStep {
public:
    virtual ~IStep() = default;
    virtual void run(BlockMachine& machine) const = 0;
};

/// Steps in order; registers are numbered from 0, truths and numbers apart.
struct Program {
    std::vector<PlanColumn> columns;
    std::vector<std::unique_ptr<IStep>> steps;
    int truthCount = 0;
    int numberCount = 0;
    int resultRegister = 0; ///< The truth that the filter gives.
};

/// Registers for one block; each thread has its own machine and keeps it from block to block.
class BlockMachine final {
public:
    explicit BlockMachine(const Program& program);

    /// Runs the program and gives the rows for which the filter is true.
    const Bits& run(const RowBlock& block);

    [[nodiscard]] const RowBlock& block() const { return m_block; }
    [[nodiscard]] const PlanColumn& column(int index) const
    {
        return m_program.columns[static_cast<std::size_t>(index)];
    }
    [[nodiscard]] TruthBlock& truth(int index) { return m_truths[static_cast<std::size_t>(index)]; }
    [[nodiscard]] NumberBlock& number(int index)
    {
        return *m_numbers[static_cast<std::size_t>(index)];
    }
    /// The next step to run is this one instead of the one that follows.
    void skipTo(std::size_t step) { m_next = step; }

private:
    const Program& m_program;
    std::vector<TruthBlock> m_truths;
    std::vector<std::unique_ptr<NumberBlock>> m_numbers;
    RowBlock m_block;
    std::size_t m_next = 0;
};

} // namespace query::plan
