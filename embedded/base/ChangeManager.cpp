// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "host/base/ChangeManager.h"

#include <utility>
#include <vector>

namespace orv {

IChange::~IChange() = default;

namespace {

struct Step {
    String name;
    std::vector<std::unique_ptr<IChange>> changes;
    std::uint64_t before = 0; // position before and after the step
    std::uint64_t after = 0;

    void undo()
    {
        for (auto change = changes.rbegin(); change != changes.rend(); ++change)
            (*change)->Undo();
    }
    void redo()
    {
        for (auto& change : changes)
            change->Redo();
    }
};

} // namespace

class CChangeTransactionManager::Impl final {
public:
    std::vector<Step> done;
    std::vector<Step> undone;
    Step open;
    int depth = 0;
    bool replaying = false;
    std::uint64_t position = 0;
    std::uint64_t lastPosition = 0; // every state reached by a new step gets a number of its own

    void finish(Step step)
    {
        undone.clear();
        step.before = position;
        position = step.after = ++lastPosition;
        done.push_back(std::move(step));
    }
};

CChangeTransactionManager::CChangeTransactionManager()
    : m_impl(std::make_unique<Impl>())
{
}
CChangeTransactionManager::~CChangeTransactionManager() = default;

void CChangeTransactionManager::BeginStep(const String& name)
{
    if (m_impl->depth++ == 0) {
        m_impl->open = {};
        m_impl->open.name = name;
    }
}

void CChangeTransactionManager::EndStep()
{
    if (m_impl->depth == 0 || --m_impl->depth > 0)
        return;
    if (!m_impl->open.changes.empty())
        m_impl->finish(std::move(m_impl->open));
    m_impl->open = {};
}

void CChangeTransactionManager::CancelStep()
{
    if (m_impl->depth == 0)
        return;
    m_impl->depth = 0;
    m_impl->replaying = true;
    m_impl->open.undo();
    m_impl->replaying = false;
    m_impl->open = {};
}

bool CChangeTransactionManager::IsStepOpen() const
{
    return m_impl->depth > 0;
}

void CChangeTransactionManager::RenameStep(const String& name)
{
    if (m_impl->depth > 0)
        m_impl->open.name = name;
    else if (!m_impl->done.empty())
        m_impl->done.back().name = name;
}

void CChangeTransactionManager::Record(std::unique_ptr<IChange> change)
{
    if (!change || m_impl->replaying)
        return;
    if (m_impl->depth > 0) {
        m_impl->open.changes.push_back(std::move(change));
        return;
    }
    Step step;
    step.changes.push_back(std::move(change));
    m_impl->finish(std::move(step));
}

IChange* CChangeTransactionManager::LastChange() const
{
    return m_impl->depth > 0 && !m_impl->open.changes.empty() ? m_impl->open.changes.back().get()
                                                              : nullptr;
}

bool CChangeTransactionManager::CanUndo() const
{
    return m_impl->depth == 0 && !m_impl->done.empty();
}
bool CChangeTransactionManager::CanRedo() const
{
    return m_impl->depth == 0 && !m_impl->undone.empty();
}
String CChangeTransactionManager::UndoName() const
{
    return m_impl->done.empty() ? String() : m_impl->done.back().name;
}
String CChangeTransactionManager::RedoName() const
{
    return m_impl->undone.empty() ? String() : m_impl->undone.back().name;
}

bool CChangeTransactionManager::Undo()
{
    if (!CanUndo())
        return false;
    Step step = std::move(m_impl->done.back());
    m_impl->done.pop_back();
    m_impl->replaying = true;
    step.undo();
    m_impl->replaying = false;
    m_impl->position = step.before;
    m_impl->undone.push_back(std::move(step));
    return true;
}

bool CChangeTransactionManager::Redo()
{
    if (!CanRedo())
        return false;
    Step step = std::move(m_impl->undone.back());
    m_impl->undone.pop_back();
    m_impl->replaying = true;
    step.redo();
    m_impl->replaying = false;
    m_impl->position = step.after;
    m_impl->done.push_back(std::move(step));
    return true;
}

void CChangeTransactionManager::Clear()
{
    m_impl->done.clear();
    m_impl->undone.clear();
}

std::uint64_t CChangeTransactionManager::Position() const
{
    // While a step is open with changes, the state is none of those that have a number.
    return m_impl->depth > 0 && !m_impl->open.changes.empty() ? UINT64_MAX : m_impl->position;
}

bool CChangeTransactionManager::IsReplaying() const
{
    return m_impl->replaying;
}

} // namespace orv
