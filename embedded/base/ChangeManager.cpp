// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT

#include "host/base/ChangeManager.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace orv {

namespace {

struct Step {
    String name;
    std::vector<std::unique_ptr<IChange>> changes;
    std::uint64_t state = 0; // names the state that the step leads to
};

} // namespace

IChange::~IChange() = default;

class CChangeTransactionManager::Impl {
public:
    std::vector<Step> done;
    std::vector<Step> undone; // the next to be made again is last
    Step open;
    int depth = 0;
    bool isReplaying = false;
    std::uint64_t clearedState = 0; // the state before the first step that can be taken back
    std::uint64_t lastState = 0; // never given twice, so that a number means one state

    /// For the step that is opened, so that no memory is needed to close it.
    void makeRoom()
    {
        constexpr std::size_t Least = 16;
        if (done.size() == done.capacity())
            done.reserve(std::max(Least, done.size() * 2));
    }
    void close()
    {
        depth = 0;
        if (open.changes.empty()) {
            open = Step();
            return;
        }
        // A change that grew since it was recorded has led to another state than its record did.
        open.state = ++lastState;
        done.push_back(std::move(open));
        open = Step();
    }

    template <typename Play> void replay(Step& step, Play play)
    {
        struct Guard {
            bool& flag;
            ~Guard() { flag = false; }
        } guard { isReplaying };
        isReplaying = true;
        play(step);
    }
    void takeBack(Step& step)
    {
        replay(step, [](Step& which) {
            for (auto change = which.changes.rbegin(); change != which.changes.rend(); ++change)
                (*change)->Undo();
        });
    }
    void makeAgain(Step& step)
    {
        replay(step, [](Step& which) {
            for (auto& change : which.changes)
                change->Redo();
        });
    }
};

CChangeTransactionManager::CChangeTransactionManager()
    : m_impl(std::make_unique<Impl>())
{
}

CChangeTransactionManager::~CChangeTransactionManager() = default;

void CChangeTransactionManager::BeginStep(const String& name)
{
    if (m_impl->depth == 0) {
        m_impl->makeRoom();
        m_impl->open.name = name;
    }
    ++m_impl->depth;
}

void CChangeTransactionManager::EndStep()
{
    // A scope may end after the step that it belongs to was cancelled.
    if (m_impl->depth > 0 && --m_impl->depth == 0)
        m_impl->close();
}

void CChangeTransactionManager::CancelStep()
{
    if (m_impl->depth == 0)
        return;
    m_impl->depth = 0;
    Step step = std::exchange(m_impl->open, Step());
    m_impl->takeBack(step);
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
    if (!change || m_impl->isReplaying)
        return;
    m_impl->undone.clear();
    m_impl->open.changes.push_back(std::move(change));
    m_impl->open.state = ++m_impl->lastState;
    if (m_impl->depth == 0)
        m_impl->close();
}

IChange* CChangeTransactionManager::LastChange() const
{
    if (m_impl->depth == 0 || m_impl->open.changes.empty())
        return nullptr;
    return m_impl->open.changes.back().get();
}

std::size_t CChangeTransactionManager::OpenChangeCount() const
{
    return m_impl->depth > 0 ? m_impl->open.changes.size() : 0;
}

void CChangeTransactionManager::TakeBackTo(std::size_t count)
{
    if (m_impl->depth == 0)
        return;
    auto& changes = m_impl->open.changes;
    if (changes.size() <= count)
        return;
    m_impl->replay(m_impl->open, [count](Step& step) {
        for (; step.changes.size() > count; step.changes.pop_back())
            step.changes.back()->Undo();
    });
    m_impl->open.state = ++m_impl->lastState;
}

bool CChangeTransactionManager::CanUndo() const
{
    return m_impl->depth == 0 && !m_impl->isReplaying && !m_impl->done.empty();
}

bool CChangeTransactionManager::CanRedo() const
{
    return m_impl->depth == 0 && !m_impl->isReplaying && !m_impl->undone.empty();
}

String CChangeTransactionManager::UndoName() const
{
    return CanUndo() ? m_impl->done.back().name : String();
}

String CChangeTransactionManager::RedoName() const
{
    return CanRedo() ? m_impl->undone.back().name : String();
}

bool CChangeTransactionManager::Undo()
{
    if (!CanUndo())
        return false;
    m_impl->takeBack(m_impl->done.back());
    m_impl->undone.push_back(std::move(m_impl->done.back()));
    m_impl->done.pop_back();
    return true;
}

bool CChangeTransactionManager::Redo()
{
    if (!CanRedo())
        return false;
    m_impl->makeAgain(m_impl->undone.back());
    m_impl->done.push_back(std::move(m_impl->undone.back()));
    m_impl->undone.pop_back();
    return true;
}

void CChangeTransactionManager::Clear()
{
    m_impl->clearedState = Position();
    m_impl->done.clear();
    m_impl->undone.clear();
    m_impl->open.changes.clear();
}

std::uint64_t CChangeTransactionManager::Position() const
{
    if (!m_impl->open.changes.empty())
        return m_impl->open.state;
    return m_impl->done.empty() ? m_impl->clearedState : m_impl->done.back().state;
}

bool CChangeTransactionManager::IsReplaying() const
{
    return m_impl->isReplaying;
}

} // namespace orv
