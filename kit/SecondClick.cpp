// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "kit/SecondClick.h"

#include "kit/Progress.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QMouseEvent>
#include <QWindow>

#include <utility>

namespace kit {

namespace {

bool isInput(const QEvent& event)
{
    switch (event.type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::Wheel:
    case QEvent::ContextMenu:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::ShortcutOverride:
    case QEvent::Shortcut:
    case QEvent::InputMethod:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::TabletPress:
    case QEvent::TabletMove:
    case QEvent::TabletRelease:
    case QEvent::NativeGesture:
    case QEvent::DragEnter:
    case QEvent::DragMove:
    case QEvent::Drop:
        return true;
    case QEvent::Close:
        return event.spontaneous(); // the user's; a program may close its windows
    default:
        return false;
    }
}

const QWindow* windowOf(const QWidget& widget)
{
    const QWidget* native = widget.internalWinId() ? &widget : widget.nativeParentWidget();
    return native ? native->windowHandle() : nullptr;
}

} // namespace

CSecondClick::CSecondClick(QAbstractItemView* list)
    : m_list(list)
    , m_row(list ? list->currentIndex() : QModelIndex())
    , m_start(std::chrono::steady_clock::now())
{
}

std::chrono::milliseconds CSecondClick::elapsed() const
{
    return std::chrono::duration_cast<std::chrono::milliseconds>(
        std::chrono::steady_clock::now() - m_start);
}

bool CSecondClick::isAwaited() const
{
    return m_list && elapsed().count() < QApplication::doubleClickInterval();
}

void CSecondClick::letIn()
{
    if (elapsed().count() < ProgressAfterMs)
        return;
    qApp->installEventFilter(this);
    QCoreApplication::processEvents();
    qApp->removeEventFilter(this);
}

bool CSecondClick::eventFilter(QObject* watched, QEvent* event)
{
    if (!isInput(*event) || takesPart(watched, *event))
        return false;
    event->ignore();
    return true;
}

bool CSecondClick::isOnRow(const QPointF& screen) const
{
    const QWidget& viewport = *m_list->viewport();
    const QPoint place = viewport.mapFromGlobal(screen.toPoint());
    return m_row.isValid() && viewport.rect().contains(place) && m_list->indexAt(place) == m_row;
}

/// The toolkit gives the window press, double click and release, and the list the last two.
bool CSecondClick::takesPart(const QObject* watched, const QEvent& event)
{
    const bool isPress = event.type() == QEvent::MouseButtonPress;
    const bool isDouble = event.type() == QEvent::MouseButtonDblClick;
    if (!m_list || (!isPress && !isDouble && event.type() != QEvent::MouseButtonRelease))
        return false;
    const auto& mouse = static_cast<const QMouseEvent&>(event);
    if (mouse.button() != Qt::LeftButton)
        return false;
    const bool isForWindow = watched == windowOf(*m_list->viewport());
    if (!isForWindow && watched != m_list->viewport())
        return false;
    if (!isPress && !isDouble) // wherever: what was pressed is to be let go
        return std::exchange(isForWindow ? m_isPressed : m_isDouble, false);
    if (!isOnRow(mouse.globalPosition()))
        return false;
    if (isForWindow)
        return m_isPressed = true;
    return isDouble && (m_isDouble = true);
}

} // namespace kit
