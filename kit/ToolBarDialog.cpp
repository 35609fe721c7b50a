// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "kit/ToolBarDialog.h"

#include "kit/Form.h"
#include "kit/Icons.h"
#include "kit/texts/QtText.h"

#include <QAction>
#include <QBoxLayout>
#include <QToolBar>
#include <QToolButton>

namespace kit {

namespace {
const QString CommandPrefix = QStringLiteral("command");
}

CToolBarDialog::CToolBarDialog(QWidget* parent)
    : QDialog(parent)
{
}

CToolBarDialog::~CToolBarDialog() = default;

void CToolBarDialog::makeToolBar(const QList<Button>& buttons)
{
    m_bar = new QToolBar(this);
    m_bar->setIconSize(QSize(16, 16));
    for (int position = 0; position < buttons.size(); ++position) {
        const Button& button = buttons[position];
        QAction* action = m_bar->addAction(kit::icon(button.icon), QString());
        action->setObjectName(CommandPrefix + QString::number(button.command));
        action->setData(button.command);
        orv::String text;
        if (GetToolTipText(position, button.command, text))
            action->setText(toQt(text)); // the tool tip, and the name for assistive technology
        connect(action, &QAction::triggered, this,
            [this, command = button.command] { runCommand(command); });
        // Reached with Tab as well: a bar of a dialog is often its only way to a command.
        if (auto* tool = qobject_cast<QToolButton*>(m_bar->widgetForAction(action))) {
            tool->setObjectName(controlName(button.command));
            tool->setFocusPolicy(Qt::TabFocus);
        }
    }
    if (auto* box = qobject_cast<QBoxLayout*>(layout()))
        box->insertWidget(0, m_bar);
    updateCommands();
}

void CToolBarDialog::offerCommandsIn(QWidget& list)
{
    list.addActions(m_bar->actions());
    list.setContextMenuPolicy(Qt::ActionsContextMenu);
}

QAction* CToolBarDialog::command(int command) const
{
    return findChild<QAction*>(CommandPrefix + QString::number(command));
}

void CToolBarDialog::updateCommands()
{
    for (QAction* action : m_bar->actions())
        action->setEnabled(isCommandEnabled(action->data().toInt()));
}

} // namespace kit
