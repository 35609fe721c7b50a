// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/support/ui/DialogChecks.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QSet>
#include <QTabBar>
#include <QTest>

namespace ui {

namespace {

QString describe(const QWidget& widget)
{
    QString text = QString::fromLatin1(widget.metaObject()->className()) + QLatin1Char(' ')
        + widget.objectName();
    if (const auto* label = qobject_cast<const QLabel*>(&widget))
        text += QStringLiteral(" \"") + label->text() + QLatin1Char('"');
    if (const auto* button = qobject_cast<const QAbstractButton*>(&widget))
        text += QStringLiteral(" \"") + button->text() + QLatin1Char('"');
    return text;
}

bool isPartOfAnother(const QWidget& widget)
{
    const QWidget* parent = widget.parentWidget();
    for (; parent && !parent->isWindow(); parent = parent->parentWidget())
        if (qobject_cast<const QComboBox*>(parent) || qobject_cast<const QAbstractItemView*>(parent)
            || parent->inherits("QAbstractSpinBox") || qobject_cast<const QLineEdit*>(parent)
            || qobject_cast<const QTabBar*>(parent))
            return true;
    return false;
}

bool isInput(const QWidget& widget)
{
    if (const auto* button = qobject_cast<const QAbstractButton*>(&widget))
        return button->text().isEmpty();
    return qobject_cast<const QLineEdit*>(&widget) || qobject_cast<const QComboBox*>(&widget)
        || qobject_cast<const QAbstractItemView*>(&widget)
        || qobject_cast<const QPlainTextEdit*>(&widget) || widget.inherits("QAbstractSpinBox")
        || widget.inherits("QAbstractSlider");
}

QList<QWidget*> visibleWidgets(const QDialog& dialog)
{
    QList<QWidget*> found;
    for (QWidget* widget : dialog.findChildren<QWidget*>())
        if (widget->isVisible() && widget->window() == &dialog && !isPartOfAnother(*widget))
            found.append(widget);
    return found;
}

QStringList* collected = nullptr;
QtMessageHandler previousHandler = nullptr;

void collect(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    // Said by the offscreen platform itself for every window with a least size.
    if (text.startsWith(QLatin1String("This plugin does not support propagateSizeHints")))
        return;
    if (collected && (type == QtWarningMsg || type == QtCriticalMsg))
        collected->append(text);
    else if (previousHandler)
        previousHandler(type, context, text);
}

} // namespace

QStringList inputsWithoutName(const QDialog& dialog)
{
    QStringList wrong;
    for (const QWidget* widget : visibleWidgets(dialog))
        if (isInput(*widget) && !qobject_cast<const QScrollBar*>(widget)
            && widget->accessibleName().isEmpty())
            wrong.append(describe(*widget));
    return wrong;
}

QStringList notReachedByTab(QDialog& dialog)
{
    QStringList wrong;
    QSet<QWidget*> wanted;
    for (QWidget* widget : visibleWidgets(dialog))
        if ((widget->focusPolicy() & Qt::TabFocus) && widget->isEnabled() && !widget->focusProxy()
            && !qobject_cast<QScrollBar*>(widget))
            wanted.insert(widget);
    const auto rounds = 2 * wanted.size() + 4;
    for (qsizetype i = 0; i < rounds && !wanted.isEmpty(); ++i) {
        QTest::keyClick(
            QApplication::focusWidget() ? QApplication::focusWidget() : &dialog, Qt::Key_Tab);
        for (QWidget* at = QApplication::focusWidget(); at && at != &dialog;
             at = at->parentWidget())
            wanted.remove(at);
    }
    for (const QWidget* widget : wanted)
        wrong.append(describe(*widget));
    return wrong;
}

QStringList clippedTexts(const QDialog& dialog)
{
    QStringList wrong;
    for (const QWidget* widget : visibleWidgets(dialog)) {
        QSize needed;
        const auto* label = qobject_cast<const QLabel*>(widget);
        if (label && !label->wordWrap())
            needed = label->sizeHint();
        else if (label)
            needed = QSize(0, label->heightForWidth(label->width()));
        else if (qobject_cast<const QAbstractButton*>(widget)
            || qobject_cast<const QGroupBox*>(widget))
            needed = widget->minimumSizeHint();
        else if (qobject_cast<const QLineEdit*>(widget) || qobject_cast<const QComboBox*>(widget))
            needed = QSize(0, widget->minimumSizeHint().height());
        else
            continue;
        const bool fitsParent = !widget->parentWidget()
            || widget->parentWidget()->rect().adjusted(-1, -1, 1, 1).contains(widget->geometry());
        if (widget->width() < needed.width() || widget->height() < needed.height() || !fitsParent)
            wrong.append(describe(*widget));
    }
    return wrong;
}

QStringList wrongDefaults(const QDialog& dialog)
{
    QStringList wrong;
    int defaults = 0;
    for (const auto* button : dialog.findChildren<QPushButton*>()) {
        if (button->autoDefault())
            wrong.append(QStringLiteral("auto-default ") + describe(*button));
        if (button->isDefault() && ++defaults > 1)
            wrong.append(QStringLiteral("second default ") + describe(*button));
    }
    return wrong;
}

WarningCollector::WarningCollector()
{
    collected = new QStringList;
    previousHandler = qInstallMessageHandler(collect);
}

WarningCollector::~WarningCollector()
{
    qInstallMessageHandler(previousHandler);
    delete collected;
    collected = nullptr;
}

QStringList WarningCollector::warnings() const
{
    return *collected;
}

} // namespace ui
