// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "kit/MessageBox.h"

#include "kit/Form.h"
#include "kit/ModalRun.h"
#include "kit/texts/TextLoader.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>

namespace {

using kit::Answer;
using kit::BoxButtons;

struct ButtonText {
    QMessageBox::StandardButton button;
    QString text;
};

std::vector<ButtonText> buttonsOf(BoxButtons buttons)
{
    const ButtonText ok { QMessageBox::Ok, QStringLiteral("OK") };
    const ButtonText yes { QMessageBox::Yes, QStringLiteral("Sì") };
    const ButtonText no { QMessageBox::No, QStringLiteral("No") };
    const ButtonText cancel { QMessageBox::Cancel, QStringLiteral("Annulla") };
    switch (buttons) {
    case BoxButtons::OkCancel:
        return { ok, cancel };
    case BoxButtons::YesNo:
        return { yes, no };
    case BoxButtons::YesNoCancel:
        return { yes, no, cancel };
    case BoxButtons::Ok:
        break;
    }
    return { ok };
}

QMessageBox::StandardButton escapeOf(BoxButtons buttons)
{
    switch (buttons) {
    case BoxButtons::OkCancel:
    case BoxButtons::YesNoCancel:
        return QMessageBox::Cancel;
    case BoxButtons::YesNo:
        return QMessageBox::No;
    case BoxButtons::Ok:
        break;
    }
    return QMessageBox::Ok;
}

QMessageBox::Icon iconOf(kit::BoxIcon icon)
{
    switch (icon) {
    case kit::BoxIcon::Information:
        return QMessageBox::Information;
    case kit::BoxIcon::Exclamation:
        return QMessageBox::Warning;
    case kit::BoxIcon::Question:
        return QMessageBox::Question;
    case kit::BoxIcon::Stop:
        return QMessageBox::Critical;
    case kit::BoxIcon::None:
        break;
    }
    return QMessageBox::NoIcon;
}

Answer answerOf(int result)
{
    switch (result) {
    case QMessageBox::Ok:
        return Answer::Ok;
    case QMessageBox::Yes:
        return Answer::Yes;
    case QMessageBox::Cancel:
        return Answer::Cancel;
    default:
        return Answer::No;
    }
}

} // namespace

Answer FMessageBox(QWidget* parent, const QString& text, const QString& caption, kit::BoxIcon icon,
    BoxButtons buttons)
{
    QMessageBox box(parent ? parent->window() : QApplication::activeWindow());
    box.setTextFormat(Qt::PlainText);
    box.setIcon(iconOf(icon));
    box.setWindowTitle(caption);
    QString shown = text;
    shown.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    box.setText(shown);
    bool isFirst = true;
    for (const auto& entry : buttonsOf(buttons)) {
        QPushButton* button = box.addButton(entry.button);
        button->setText(entry.text);
        kit::pressWithReturn(*button);
        if (isFirst)
            box.setDefaultButton(button);
        isFirst = false;
    }
    box.setEscapeButton(escapeOf(buttons));
    kit::runModal(box);
    return answerOf(box.result());
}

Answer FMessageBox(QWidget* parent, const kit::Message& message)
{
    const QString text
        = message.argument ? kit::text(message.text, *message.argument) : kit::text(message.text);
    return FMessageBox(parent, text, kit::text(message.caption), message.icon, message.buttons);
}
