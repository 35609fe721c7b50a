// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "query/execution/plan/Program.h"

namespace query::plan {

BlockMachine::BlockMachine(const Program& program)
    : m_program(program)
    , m_truths(static_cast<std::size_t>(program.truthCount))
{
    m_numbers.reserve(static_cast<std::size_t>(program.numberCount));
    for (int i = 0; i < program.numberCount; ++i)
        m_numbers.push_back(std::make_unique<NumberBlock>());
}

const Bits& BlockMachine::run(const RowBlock& block)
{
    m_block = block;
    for (m_next = 0; m_next < m_program.steps.size();) {
        const IStep& step = *m_program.steps[m_next++];
        step.run(*this);
    }
    return truth(m_program.resultRegister).yes;
}

} // namespace query::plan
