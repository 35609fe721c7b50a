// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "kit/Form.h"
#include "kit/MessageBox.h"

#include <QDialog>
#include <QMessageBox>
#include <QObject>
#include <QString>
#include <QTimer>

#include <deque>
#include <functional>

namespace ui {

/// How long to wait for what must come: more than a busy machine needs under sanitizers.
inline constexpr int PatienceMs = 60'000;

/// Drives the modal dialogs and message boxes that a call under test opens: one step for each
/// window that is expected, in the order in which they appear. A step may itself open the window of
/// the next one (it presses a button and the box of the next step comes up on top). A window that
/// no step expects, a step whose window does not come, and a step that leaves its window open are
/// failures of the test; the windows are then closed so that the test goes on.
class CModalDriver final : public QObject {
    Q_OBJECT

public:
    explicit CModalDriver(int timeoutMs = PatienceMs);
    /// Fails the test for steps whose windows never came.
    ~CModalDriver() override;

    /// A dialog by its class name. The step must end with the dialog closed.
    CModalDriver& dialog(const char* className, std::function<void(QDialog&)> step);
    /// A message box with exactly this text ("\n" for line ends); pressed is the button of the
    /// answer.
    CModalDriver& box(const QString& text, kit::Answer answer);
    /// The same, looked at before it is answered.
    CModalDriver& box(
        const QString& text, kit::Answer answer, std::function<void(QMessageBox&)> look);

    /// How many steps were taken.
    [[nodiscard]] int stepsTaken() const { return m_stepsTaken; }

private:
    struct Step {
        QString className; // empty: a message box
        QString text;
        kit::Answer answer = kit::Answer::Ok;
        std::function<void(QDialog&)> act;
    };
    void lookAgain();
    void look();
    void take(QDialog& window);
    void closeAll();

    QTimer m_limit;
    std::deque<Step> m_steps;
    QList<QDialog*> m_busy; // windows whose steps are running
    int m_stepsTaken = 0;
};

/// The control of a number, which must be there: fails the test and stops it otherwise.
template <typename Widget> Widget& at(const QWidget& page, int id)
{
    auto* found = kit::control<Widget>(page, id);
    if (!found)
        qFatal("no control %d of the wanted type in %s", id, qPrintable(page.objectName()));
    return *found;
}

/// A page or panel by its class name, which must be there.
QWidget& pageOf(const QWidget& dialog, const char* className);

/// Clicks a button with the mouse.
void press(const QWidget& page, int id);

/// Types a text, letters beyond ASCII included, into the widget.
void typeInto(QWidget& widget, const QString& text);

/// Replaces the text of an edit as a user does: select all, type.
void type(const QWidget& page, int id, const QString& text);

/// The picture of a window as a PNG in the folder TEMATICA_PICTURES; nothing where it is not set.
void takePicture(QWidget& window, const QString& name);

/// Lets the events run until a condition holds; false after the limit.
bool waitUntil(const std::function<bool()>& condition, int timeoutMs = PatienceMs);

} // namespace ui
