// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/support/ui/ModalDriver.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QMessageBox>
#include <QTest>

namespace ui {

namespace {

QMessageBox::StandardButton buttonOf(kit::Answer answer)
{
    switch (answer) {
    case kit::Answer::Yes:
        return QMessageBox::Yes;
    case kit::Answer::No:
        return QMessageBox::No;
    case kit::Answer::Cancel:
        return QMessageBox::Cancel;
    case kit::Answer::Ok:
        break;
    }
    return QMessageBox::Ok;
}

} // namespace

CModalDriver::CModalDriver(int timeoutMs)
{
    lookAgain();
    m_limit.setSingleShot(true);
    connect(&m_limit, &QTimer::timeout, this, [this] {
        ADD_FAILURE() << "a modal window was still open, or did not come, at the time limit";
        closeAll();
    });
    m_limit.start(timeoutMs);
}

CModalDriver::~CModalDriver()
{
    for (const auto& step : m_steps)
        ADD_FAILURE() << "never came: " << qPrintable(step.className) << " "
                      << qPrintable(step.text);
}

CModalDriver& CModalDriver::dialog(const char* className, std::function<void(QDialog&)> step)
{
    m_steps.push_back({ QLatin1String(className), {}, {}, std::move(step) });
    return *this;
}

CModalDriver& CModalDriver::box(const QString& text, kit::Answer answer)
{
    return box(text, answer, nullptr);
}

CModalDriver& CModalDriver::box(
    const QString& text, kit::Answer answer, std::function<void(QMessageBox&)> look)
{
    auto act = [look = std::move(look)](QDialog& window) {
        if (look)
            look(static_cast<QMessageBox&>(window));
    };
    m_steps.push_back({ {}, text, answer, std::move(act) });
    return *this;
}

void CModalDriver::lookAgain()
{
    // A new timer each time: one whose slot is still running (a step that opened the next window)
    // does not fire again.
    QTimer::singleShot(2, this, [this] {
        lookAgain();
        look();
    });
}

void CModalDriver::look()
{
    auto* window = qobject_cast<QDialog*>(QApplication::activeModalWidget());
    if (!window || !window->isVisible() || m_busy.contains(window)
        || window->objectName() == QLatin1String("CProgress"))
        return;
    take(*window);
}

void CModalDriver::take(QDialog& window)
{
    auto* box = qobject_cast<QMessageBox*>(&window);
    if (m_steps.empty()) {
        ADD_FAILURE() << "unexpected window " << qPrintable(window.objectName()) << ": "
                      << qPrintable(box ? box->text() : window.windowTitle());
        closeAll();
        return;
    }
    const Step step = m_steps.front();
    m_steps.pop_front();
    ++m_stepsTaken;
    const QPointer<QDialog> alive(&window);
    m_busy.append(&window);
    if (box) {
        EXPECT_TRUE(step.className.isEmpty())
            << "a message box came instead of " << qPrintable(step.className);
        EXPECT_EQ(box->text().toStdString(), step.text.toStdString());
        step.act(window);
        QAbstractButton* button = box->button(buttonOf(step.answer));
        EXPECT_NE(button, nullptr) << "the box has no such button";
        if (button)
            button->click();
        else
            box->reject();
    } else {
        EXPECT_EQ(window.objectName().toStdString(), step.className.toStdString());
        step.act(window);
        if (alive && alive->isVisible()) {
            ADD_FAILURE() << "left open: " << qPrintable(window.objectName());
            window.reject();
        }
    }
    m_busy.removeAll(&window);
}

void CModalDriver::closeAll()
{
    m_steps.clear();
    while (auto* window = qobject_cast<QDialog*>(QApplication::activeModalWidget())) {
        window->reject();
        if (QApplication::activeModalWidget() == window)
            break;
    }
}

QWidget& pageOf(const QWidget& dialog, const char* className)
{
    auto* found = dialog.findChild<QWidget*>(QLatin1String(className));
    if (!found)
        qFatal("no page %s in %s", className, qPrintable(dialog.objectName()));
    return *found;
}

void press(const QWidget& page, int id)
{
    QTest::mouseClick(&at<QAbstractButton>(page, id), Qt::LeftButton);
}

void typeInto(QWidget& widget, const QString& text)
{
    // QTest::keyClicks knows no letter beyond ASCII.
    for (const QChar c : text)
        QTest::sendKeyEvent(QTest::Click, &widget,
            c.unicode() < 0x80 ? QTest::asciiToKey(static_cast<char>(c.unicode()))
                               : Qt::Key_unknown,
            QString(c), Qt::NoModifier);
}

void type(const QWidget& page, int id, const QString& text)
{
    auto& edit = at<QLineEdit>(page, id);
    edit.setFocus();
    edit.selectAll();
    QTest::keyClick(&edit, Qt::Key_Delete);
    typeInto(edit, text);
}

void takePicture(QWidget& window, const QString& name)
{
    const QString folder = qEnvironmentVariable("TEMATICA_PICTURES");
    if (folder.isEmpty())
        return;
    QDir().mkpath(folder);
    QApplication::processEvents();
    EXPECT_TRUE(window.grab().save(QDir(folder).filePath(name + QStringLiteral(".png"))));
}

bool waitUntil(const std::function<bool()>& condition, int timeoutMs)
{
    QElapsedTimer timer;
    timer.start();
    while (!condition()) {
        if (timer.elapsed() > timeoutMs)
            return false;
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 5);
        QTest::qWait(1);
    }
    return true;
}

} // namespace ui
