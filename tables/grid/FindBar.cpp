// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tables/grid/FindBar.h"

#include "kit/Form.h"
#include "kit/Icons.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QToolButton>

namespace tables {

namespace {

QToolButton* addButton(QHBoxLayout& layout, const char* icon, const QString& name)
{
    auto* button = new QToolButton;
    button->setIcon(kit::icon(icon));
    button->setToolTip(name);
    button->setAccessibleName(name);
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::TabFocus);
    layout.addWidget(button);
    return button;
}

} // namespace

CFindBar::CFindBar(QWidget* parent)
    : QWidget(parent)
    , m_edit(new QLineEdit)
{
    setObjectName(QStringLiteral("CFindBar"));
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* label = new QLabel(QStringLiteral("Trova:"));
    label->setBuddy(m_edit);
    m_edit->setObjectName(QStringLiteral("sought"));
    m_edit->setAccessibleName(QStringLiteral("Trova"));
    kit::addClearButton(*m_edit);
    layout->addWidget(label);
    layout->addWidget(m_edit, 1);
    auto* previous = addButton(*layout, "previous", QStringLiteral("Precedente (Maiusc+F3)"));
    auto* next = addButton(*layout, "next", QStringLiteral("Successiva (F3)"));
    auto* close = addButton(*layout, "close", QStringLiteral("Chiudi (Esc)"));
    connect(previous, &QToolButton::clicked, this, [this] { Q_EMIT findRequested(false); });
    connect(next, &QToolButton::clicked, this, [this] { Q_EMIT findRequested(true); });
    connect(close, &QToolButton::clicked, this, &CFindBar::closed);
    hide();
}

void CFindBar::open()
{
    show();
    m_edit->setFocus();
    m_edit->selectAll();
}

QString CFindBar::sought() const
{
    return m_edit->text();
}

void CFindBar::keyPressEvent(QKeyEvent* event)
{
    // What the edit leaves over; taken here, or Return and Escape would reach the dialog's buttons.
    const bool isForward = !(event->modifiers() & Qt::ShiftModifier);
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (auto* button = qobject_cast<QToolButton*>(focusWidget())) {
            button->click();
            break;
        }
        [[fallthrough]];
    case Qt::Key_F3:
        Q_EMIT findRequested(isForward);
        break;
    case Qt::Key_Escape:
        Q_EMIT closed();
        break;
    default:
        QWidget::keyPressEvent(event);
    }
}

} // namespace tables
