// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <atomic>
#include <functional>

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

/// Runs work on another thread while the caller waits: quick work without any sign, longer work
/// with progress and "Annulla", the window repainting all the while. False when it was cancelled or
/// failed with an exception. The work must only read, must not touch windows, and ends soon after
/// `isCancelled` becomes true.
bool runLongWork(
    QWidget* parent, const QString& label, const std::function<void(WorkToken&)>& work);

} // namespace kit
