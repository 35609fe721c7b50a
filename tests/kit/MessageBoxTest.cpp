// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "kit/MessageBox.h"

#include "kit/WaitCursor.h"

#include "tests/support/ui/ModalDriver.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>

using kit::Answer;
using kit::BoxButtons;
using kit::BoxIcon;

namespace {

Answer ask(const QString& text, BoxButtons buttons)
{
    return FMessageBox(nullptr, text, QStringLiteral("Titolo"), BoxIcon::Exclamation, buttons);
}

/// What a box answers to keys, once it has them; `press` may come again while the box is open.
template <typename Press> Answer answerTo(BoxButtons buttons, const Press& press)
{
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] {
        if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget()))
            if (box->isActiveWindow())
                press(*box);
    });
    timer.start(1);
    return ask(QStringLiteral("Procedere?"), buttons);
}

Answer escapeOn(BoxButtons buttons)
{
    return answerTo(buttons, [](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Escape); });
}

/// Tab up to a button, and there the key.
Answer keyOnButton(
    BoxButtons buttons, QMessageBox::StandardButton wanted, Qt::Key key, Qt::KeyboardModifier held)
{
    return answerTo(buttons, [&](QMessageBox& box) {
        QWidget* button = box.button(wanted);
        for (int tabs = 0; tabs < 3 && !button->hasFocus(); ++tabs)
            QTest::keyClick(box.focusWidget(), Qt::Key_Tab);
        EXPECT_TRUE(button->hasFocus());
        QTest::keyClick(box.focusWidget(), key, held);
    });
}

} // namespace

TEST(MessageBoxTest, ShowsCaptionIconAndPlainTextWithLineEnds)
{
    ui::CModalDriver driver;
    driver.box(QStringLiteral("Tema <b>x</b>\n100%s & altro"), Answer::Ok, [](QMessageBox& box) {
        EXPECT_EQ(box.windowTitle(), QStringLiteral("Titolo"));
        EXPECT_EQ(box.icon(), QMessageBox::Warning);
        EXPECT_EQ(box.textFormat(), Qt::PlainText);
        EXPECT_EQ(box.buttons().size(), 1);
        EXPECT_EQ(box.button(QMessageBox::Ok)->text(), QStringLiteral("OK"));
    });

    EXPECT_EQ(ask(QStringLiteral("Tema <b>x</b>\r\n100%s & altro"), BoxButtons::Ok), Answer::Ok);
}

TEST(MessageBoxTest, YesNoButtonsAreItalianAndTheFirstIsTheDefault)
{
    ui::CModalDriver driver;
    driver.box(QStringLiteral("Procedere?"), Answer::Yes, [](QMessageBox& box) {
        EXPECT_EQ(box.button(QMessageBox::Yes)->text(), QStringLiteral("Sì"));
        EXPECT_EQ(box.button(QMessageBox::No)->text(), QStringLiteral("No"));
        EXPECT_EQ(box.defaultButton(), box.button(QMessageBox::Yes));
        EXPECT_EQ(box.escapeButton(), box.button(QMessageBox::No));
    });

    EXPECT_EQ(ask(QStringLiteral("Procedere?"), BoxButtons::YesNo), Answer::Yes);
}

TEST(MessageBoxTest, TheAnswerIsTheButtonThatWasPressed)
{
    for (const Answer answer : { Answer::Yes, Answer::No, Answer::Cancel }) {
        ui::CModalDriver driver;
        driver.box(QStringLiteral("Procedere?"), answer);
        EXPECT_EQ(ask(QStringLiteral("Procedere?"), BoxButtons::YesNoCancel), answer);
    }
}

TEST(MessageBoxTest, EscapeIsTheMostHarmlessAnswer)
{
    EXPECT_EQ(escapeOn(BoxButtons::YesNo), Answer::No);
    EXPECT_EQ(escapeOn(BoxButtons::YesNoCancel), Answer::Cancel);
    EXPECT_EQ(escapeOn(BoxButtons::Ok), Answer::Ok);
}

TEST(MessageBoxTest, ReturnOnAButtonThatTabReachedIsThatButton)
{
    const std::pair<Qt::Key, Qt::KeyboardModifier> keys[]
        = { { Qt::Key_Return, Qt::NoModifier }, { Qt::Key_Enter, Qt::KeypadModifier } };
    for (const auto& [key, held] : keys) {
        const auto answer = [&, key = key, held = held](auto buttons, auto button) {
            return keyOnButton(buttons, button, key, held);
        };
        EXPECT_EQ(answer(BoxButtons::YesNo, QMessageBox::No), Answer::No);
        EXPECT_EQ(answer(BoxButtons::YesNoCancel, QMessageBox::No), Answer::No);
        EXPECT_EQ(answer(BoxButtons::YesNoCancel, QMessageBox::Cancel), Answer::Cancel);
        EXPECT_EQ(answer(BoxButtons::OkCancel, QMessageBox::Cancel), Answer::Cancel);
        EXPECT_EQ(answer(BoxButtons::YesNo, QMessageBox::Yes), Answer::Yes) << "without a Tab";
    }
}

TEST(MessageBoxTest, AMessageIsShownByItsNumberWithItsArgument)
{
    ui::CModalDriver driver;
    driver.box(QStringLiteral("Il campo \"%1\" è obbligatorio!"), Answer::Ok, [](QMessageBox& box) {
        EXPECT_EQ(box.windowTitle(), QStringLiteral("Attenzione!"));
        EXPECT_EQ(box.icon(), QMessageBox::Warning);
    });
    kit::Message message { .text = texts::FieldRequired };
    message.argument = orv::String("%1");

    EXPECT_EQ(FMessageBox(nullptr, message), Answer::Ok);
}

TEST(MessageBoxTest, TheWaitCursorStepsAsideWhileItIsShown)
{
    const kit::WaitCursor wait;
    ui::CModalDriver driver;
    driver.box(QStringLiteral("Fatto"), Answer::Ok,
        [](QMessageBox&) { EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr); });

    ask(QStringLiteral("Fatto"), BoxButtons::Ok);

    ASSERT_NE(QGuiApplication::overrideCursor(), nullptr);
    EXPECT_EQ(QGuiApplication::overrideCursor()->shape(), Qt::WaitCursor);
}
