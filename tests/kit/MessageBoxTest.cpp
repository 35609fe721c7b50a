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

Answer escapeOn(BoxButtons buttons)
{
    QTimer escape;
    QObject::connect(&escape, &QTimer::timeout, [] {
        if (auto* box = QApplication::activeModalWidget())
            QTest::keyClick(box, Qt::Key_Escape);
    });
    escape.start(1);
    return ask(QStringLiteral("Procedere?"), buttons);
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
