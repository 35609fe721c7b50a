// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <atomic>
#include <functional>

class QAbstractItemView;
class QWidget;

namespace kit {

/// What work on another thread and the window that waits for it tell each other.
class WorkToken final {
public:
    [[nodiscard]] bool isCancelled() const { return m_isCancelled.load(std::memory_order_relaxed); }
    void cancel() { m_isCancelled.store(true, std::memory_order_relaxed); }
    /// The fraction done, 0 to 1.
    void report(double fraction) { m_fraction.store(fraction, std::memory_order_relaxed); }
    [[nodiscard]] double fraction() const { return m_fraction.load(std::memory_order_relaxed); }

private:
    std::atomic<bool> m_isCancelled = false;
    std::atomic<double> m_fraction = 0.0;
};

/// How long work ended.
enum class WorkEnd {
    Done,
    Stopped, // by the user
    Failed, // it threw (no memory), or no thread was to be had; it may be half done, or not begun
};

/// Runs work on another thread while the caller waits: quick work without any sign, longer work
/// with progress and "Annulla", the window repainting all the while. What the user stopped is to be
/// left as it was; of what failed he knows nothing yet: it is done in another way, or told.
/// The work must only read, must not touch windows, and ends soon after `isCancelled` becomes true.
/// `clicked`: the list by a click on which the user began the work. The progress then waits until
/// that click can no longer be the first of a double click, which the list gets as ever, in the
/// middle of this call; other input is dropped meanwhile, as it is once the progress is shown.
[[nodiscard]] WorkEnd runLongWork(QWidget* parent, const QString& label,
    const std::function<void(WorkToken&)>& work, QAbstractItemView* clicked = nullptr);

} // namespace kit
