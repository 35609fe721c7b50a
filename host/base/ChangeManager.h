// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/base/String.h"

#include <cstddef>
#include <cstdint>
#include <memory>

namespace orv {

/// One recorded change that can be taken back and made again.
class TEMATICA_HOST_API IChange {
public:
    virtual ~IChange();
    virtual void Undo() = 0;
    virtual void Redo() = 0;
};

/// The record of what changed, in steps that a user takes back and makes again.
/// A step is opened by name and holds all changes until it is closed; an empty step leaves no
/// trace. Steps nest: only the outermost counts. A change outside any step is a step of its own.
/// Owner, thread: the application's; used on the library's thread. Must outlive the libraries that
/// record in it.
class TEMATICA_HOST_API CChangeTransactionManager final {
public:
    CChangeTransactionManager();
    CChangeTransactionManager(const CChangeTransactionManager&) = delete;
    CChangeTransactionManager& operator=(const CChangeTransactionManager&) = delete;
    ~CChangeTransactionManager();

    void BeginStep(const String& name);
    void EndStep();
    /// Closes the outermost step and takes back what it recorded.
    void CancelStep();
    [[nodiscard]] bool IsStepOpen() const;
    /// Another name for the step that is open, or else for the last one made.
    void RenameStep(const String& name);

    /// Records a change that has been made. Forgets the steps that could be made again.
    void Record(std::unique_ptr<IChange> change);
    /// The last change of the open step, for changes that grow (a run of cells); null outside a
    /// step.
    [[nodiscard]] IChange* LastChange() const;
    /// Changes that the open step holds, and taking back those after so many: for work that fails
    /// inside a step that others opened.
    [[nodiscard]] std::size_t OpenChangeCount() const;
    void TakeBackTo(std::size_t count);

    [[nodiscard]] bool CanUndo() const;
    [[nodiscard]] bool CanRedo() const;
    [[nodiscard]] String UndoName() const;
    [[nodiscard]] String RedoName() const;
    bool Undo();
    bool Redo();
    void Clear();

    /// Grows with each step, goes back with undo, and returns to the same number only in the same
    /// state: compared with the position of the last save it tells whether work is unsaved.
    [[nodiscard]] std::uint64_t Position() const;
    /// True while Undo or Redo runs: what changes now must not be recorded.
    [[nodiscard]] bool IsReplaying() const;

private:
    class Impl;
    std::unique_ptr<Impl> m_impl;
};

/// Opens a step for a scope.
class ChangeStep final {
public:
    ChangeStep(CChangeTransactionManager* manager, const String& name)
        : m_manager(manager)
    {
        if (m_manager)
            m_manager->BeginStep(name);
    }
    ChangeStep(const ChangeStep&) = delete;
    ChangeStep& operator=(const ChangeStep&) = delete;
    ~ChangeStep()
    {
        if (m_manager)
            m_manager->EndStep();
    }

private:
    CChangeTransactionManager* m_manager;
};

} // namespace orv
