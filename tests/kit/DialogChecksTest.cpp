// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/support/ui/DialogChecks.h"
#include "tests/support/ui/DialogRegistry.h"
#include "tests/support/ui/ModalDriver.h"

#include "kit/ModalRun.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QTest>

namespace {

class DialogChecksTest : public testing::TestWithParam<ui::DialogEntry> {
protected:
    void TearDown() override { QApplication::setFont(m_font); }

    static void enlargeTexts()
    {
        QFont font = QApplication::font();
        font.setPointSizeF(font.pointSizeF() * 2);
        QApplication::setFont(font);
    }

    /// Shows the dialog in each of its states and hands it to a check.
    static void inEachState(const std::function<void(QDialog&, int)>& check)
    {
        auto made = GetParam().make();
        QDialog& dialog = *made.dialog;
        dialog.show();
        dialog.activateWindow();
        QApplication::processEvents();
        for (int state = 0;; ++state) {
            if (state > 0 && (!GetParam().show || !GetParam().show(dialog, state)))
                break;
            QApplication::processEvents();
            check(dialog, state);
        }
        dialog.close();
    }

    const QFont m_font = QApplication::font();
};

std::string lines(const QStringList& list)
{
    return list.join(QLatin1Char('\n')).toStdString();
}

} // namespace

TEST_P(DialogChecksTest, OpensAndClosesWithoutAWarning)
{
    const ui::WarningCollector collector;

    inEachState([](QDialog&, int) {});

    EXPECT_EQ(lines(collector.warnings()), "");
}

TEST_P(DialogChecksTest, ItsObjectNameIsItsClassName)
{
    inEachState([](QDialog& dialog, int) {
        EXPECT_EQ(dialog.objectName().toStdString(), GetParam().className);
        EXPECT_FALSE(dialog.windowTitle().isEmpty());
    });
}

TEST_P(DialogChecksTest, EveryInputHasAnAccessibleName)
{
    inEachState([](QDialog& dialog, int state) {
        EXPECT_EQ(lines(ui::inputsWithoutName(dialog)), "") << "state " << state;
    });
}

TEST_P(DialogChecksTest, TabReachesEveryControl)
{
    inEachState([](QDialog& dialog, int state) {
        EXPECT_EQ(lines(ui::notReachedByTab(dialog)), "") << "state " << state;
    });
}

TEST_P(DialogChecksTest, NothingIsClipped)
{
    inEachState([](QDialog& dialog, int state) {
        EXPECT_EQ(lines(ui::clippedTexts(dialog)), "") << "state " << state;
        ui::takePicture(dialog,
            QString::fromStdString(GetParam().className) + QStringLiteral("-%1").arg(state));
    });
}

TEST_P(DialogChecksTest, NothingIsClippedWithTextsOfTwiceTheSize)
{
    enlargeTexts();

    inEachState([](QDialog& dialog, int state) {
        EXPECT_EQ(lines(ui::clippedTexts(dialog)), "") << "state " << state;
        ui::takePicture(dialog,
            QString::fromStdString(GetParam().className) + QStringLiteral("-%1-large").arg(state));
    });
}

TEST_P(DialogChecksTest, HasAtMostOneDefaultButtonAndNoAutoDefault)
{
    inEachState([](QDialog& dialog, int) { EXPECT_EQ(lines(ui::wrongDefaults(dialog)), ""); });
}

TEST_P(DialogChecksTest, EscapeCancelsAndNoWidgetIsLeft)
{
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    const auto before = QApplication::allWidgets().size();
    bool wasAccepted = true;
    {
        ui::CModalDriver driver;
        driver.dialog(GetParam().className.c_str(),
            [](QDialog& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
        auto made = GetParam().make();
        wasAccepted = kit::runModal(*made.dialog);
    }
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);

    EXPECT_FALSE(wasAccepted);
    EXPECT_EQ(QApplication::allWidgets().size(), before);
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(DialogChecksTest);
INSTANTIATE_TEST_SUITE_P(All, DialogChecksTest, testing::ValuesIn(ui::registeredDialogs()),
    [](const testing::TestParamInfo<ui::DialogEntry>& entry) { return entry.param.className; });
