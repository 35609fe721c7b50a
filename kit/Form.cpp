// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "kit/Form.h"

#include "kit/Icons.h"

#include <QAction>
#include <QComboBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QPushButton>

namespace kit {

namespace {

constexpr int LeastComboLetters = 8;

class CReturnPresses final : public QObject {
public:
    using QObject::QObject;
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::KeyPress) {
            const auto key = static_cast<QKeyEvent*>(event)->key();
            auto* button = qobject_cast<QPushButton*>(watched);
            if (button && (key == Qt::Key_Return || key == Qt::Key_Enter)) {
                button->click();
                return true;
            }
        }
        return QObject::eventFilter(watched, event);
    }
};

QString plainLabel(QString text)
{
    text.remove(QLatin1Char('&'));
    text = text.trimmed();
    while (text.endsWith(QLatin1Char(':')))
        text.chop(1);
    return text;
}

/// The layout that holds a widget, searched downwards.
QLayout* layoutWith(QLayout* layout, QWidget* widget)
{
    if (!layout)
        return nullptr;
    if (layout->indexOf(widget) >= 0)
        return layout;
    for (int i = 0; i < layout->count(); ++i)
        if (QLayout* found = layoutWith(layout->itemAt(i)->layout(), widget))
            return found;
    return nullptr;
}

} // namespace

QString controlName(int id)
{
    return QStringLiteral("id%1").arg(id);
}

void pressWithReturn(QPushButton& button)
{
    button.setAutoDefault(false);
    button.installEventFilter(new CReturnPresses(&button));
}

void addClearButton(QLineEdit& edit)
{
    edit.setClearButtonEnabled(true);
    if (auto* clear = edit.findChild<QAction*>(QStringLiteral("_q_qlineeditclearaction")))
        clear->setIcon(icon("clear"));
}

void keepFormWidth(QComboBox& combo)
{
    combo.setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    combo.setMinimumContentsLength(LeastComboLetters);
}

void preparePage(QWidget& page, const char* className)
{
    page.setObjectName(QLatin1String(className));
    for (QLabel* label : page.findChildren<QLabel*>()) {
        label->setTextFormat(Qt::PlainText);
        if (QWidget* buddy = label->buddy(); buddy && buddy->accessibleName().isEmpty())
            buddy->setAccessibleName(plainLabel(label->text()));
    }
    for (QPushButton* button : page.findChildren<QPushButton*>()) {
        button->setDefault(false);
        pressWithReturn(*button);
    }
    for (QComboBox* combo : page.findChildren<QComboBox*>())
        keepFormWidth(*combo);
}

void prepareDialog(QDialog& dialog, const char* className, DialogUnits preferred, int defaultId)
{
    preparePage(dialog, className);
    dialog.setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    if (auto* button = control<QPushButton>(dialog, defaultId))
        button->setDefault(true);
    dialog.resize(pixelsOf(dialog, preferred).expandedTo(dialog.minimumSizeHint()));
}

void placeOver(QWidget* placeholder, QWidget* control)
{
    placeholder->hide();
    QWidget* page = placeholder->parentWidget();
    control->setParent(page);
    if (QLayout* layout = layoutWith(page->layout(), placeholder))
        delete layout->replaceWidget(placeholder, control);
    else
        control->setGeometry(placeholder->geometry());
    control->show();
}

} // namespace kit
