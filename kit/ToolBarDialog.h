// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/base/String.h"

#include <QDialog>
#include <QList>

class QAction;
class QToolBar;

namespace kit {

/// A dialog with a bar of buttons above its contents. Each button is a command with a number; its
/// tool tip is asked for by position, and whether it may be used is asked whenever that may have
/// changed (`updateCommands`).
class CToolBarDialog : public QDialog {
    Q_OBJECT

public:
    explicit CToolBarDialog(QWidget* parent = nullptr);
    ~CToolBarDialog() override;

    /// The tool tip of a button; false, `text` as it was, where there is none.
    virtual bool GetToolTipText(int position, int command, orv::String& text) = 0;
    /// A command's action by its number; null for others.
    [[nodiscard]] QAction* command(int command) const;

protected:
    struct Button {
        int command;
        const char* icon;
    };
    /// Puts the bar at the top of the dialog's layout; to be called once the form is set up.
    void makeToolBar(const QList<Button>& buttons);
    virtual void runCommand(int command) = 0;
    [[nodiscard]] virtual bool isCommandEnabled(int command) const = 0;
    void updateCommands();
    /// The commands also as the menu of a list, which the Menu key opens.
    void offerCommandsIn(QWidget& list);

private:
    QToolBar* m_bar = nullptr;
};

} // namespace kit
