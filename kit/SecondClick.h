// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QPersistentModelIndex>
#include <QPointer>

#include <chrono>

class QAbstractItemView;

namespace kit {

/// The second click of a double click on a list whose first click has begun work that still runs: a
/// window shown meanwhile would take it away, and the list would know of one click only.
/// Thread: the user interface's.
class CSecondClick final : public QObject {
public:
    /// Of a click that the list has just told; null: none is awaited.
    explicit CSecondClick(QAbstractItemView* list);

    /// False once the user's second click would be one of its own.
    [[nodiscard]] bool isAwaited() const;
    /// Runs the waiting events, of the user's input nothing but a second click on the list's
    /// current row. Quick work is left alone: the click may wait until it is done.
    void letIn();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    [[nodiscard]] std::chrono::milliseconds elapsed() const;
    [[nodiscard]] bool isOnRow(const QPointF& screen) const;
    bool takesPart(const QObject* watched, const QEvent& event);

    QPointer<QAbstractItemView> m_list;
    QPersistentModelIndex m_row;
    std::chrono::steady_clock::time_point m_start;
    bool m_isPressed = false; // as the list's window knows it
    bool m_isDouble = false; // as the list knows it
};

} // namespace kit
