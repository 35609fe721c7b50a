// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "kit/Progress.h"

#include "kit/LongWork.h"

#include "tests/support/ui/CancelProgress.h"

#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QLabel>
#include <QPointer>
#include <QProgressBar>
#include <QTest>

#include <atomic>
#include <memory>
#include <thread>

using kit::Progress;
using kit::ProgressKind;
using ui::shownProgress;

namespace {

constexpr auto Nap = std::chrono::milliseconds(5);

/// Advances until the window is there; null where it never comes.
QProgressDialog* showOf(Progress& progress)
{
    QElapsedTimer timer;
    timer.start();
    while (!shownProgress() && timer.elapsed() < ui::PatienceMs) {
        progress.advance(0.25);
        std::this_thread::sleep_for(Nap);
    }
    return shownProgress();
}

/// Advances for a while; false once it is to stop.
bool goesOn(Progress& progress, int milliseconds = 200)
{
    QElapsedTimer timer;
    timer.start();
    bool isGoingOn = true;
    while (timer.elapsed() < milliseconds) {
        isGoingOn = progress.advance(0.5) && isGoingOn;
        std::this_thread::sleep_for(Nap);
    }
    return isGoingOn;
}

std::unique_ptr<QWidget> shownWindow()
{
    auto window = std::make_unique<QWidget>();
    window->resize(300, 200);
    window->show();
    window->activateWindow();
    QApplication::processEvents();
    return window;
}

} // namespace

TEST(ProgressTest, ALabelIsShownAsItIsWrittenNotAsMarkup)
{
    Progress progress(nullptr, QStringLiteral("Lettura di <b>Strade</b> & Vie"));
    QProgressDialog* const dialog = showOf(progress);
    ASSERT_NE(dialog, nullptr);

    EXPECT_EQ(dialog->labelText(), QStringLiteral("Lettura di <b>Strade</b> & Vie"));
    EXPECT_EQ(dialog->findChild<QLabel*>()->textFormat(), Qt::PlainText);
}

TEST(ProgressTest, ALongLabelIsCutAt500Pixels)
{
    Progress progress(nullptr, QString(10'000, QLatin1Char('m')));
    QProgressDialog* const dialog = showOf(progress);
    ASSERT_NE(dialog, nullptr);
    const auto* label = dialog->findChild<QLabel*>();

    EXPECT_LE(label->sizeHint().width(), 500 + 2 * label->margin());
    EXPECT_GT(label->sizeHint().width(), 450) << "no more than needed is cut";
    EXPECT_TRUE(label->text().endsWith(QStringLiteral("…")));
    EXPECT_LT(dialog->width(), 600);
}

TEST(ProgressTest, WhatHasToBeFinishedCannotBeStoppedOrClosed)
{
    auto progress = std::make_unique<Progress>(
        nullptr, QStringLiteral("Aggiornamento"), ProgressKind::Unstoppable);
    QProgressDialog* const dialog = showOf(*progress);
    ASSERT_NE(dialog, nullptr);

    EXPECT_TRUE(dialog->findChildren<QPushButton*>().isEmpty());
    QTest::keyClick(dialog, Qt::Key_Escape);
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_FALSE(dialog->close());
    EXPECT_TRUE(dialog->isVisible());

    EXPECT_TRUE(goesOn(*progress));
    EXPECT_FALSE(progress->isCancelled());
    EXPECT_EQ(shownProgress(), dialog);
    EXPECT_EQ(QApplication::activeModalWidget(), dialog) << "no other window takes input";
    progress.reset();
    EXPECT_EQ(shownProgress(), nullptr);
}

TEST(ProgressTest, EscapeAndTheClosingOfItsWindowStopWhatCanBeStopped)
{
    for (const bool isEscape : { true, false }) {
        SCOPED_TRACE(isEscape ? "Escape" : "closed");
        Progress progress(nullptr, QStringLiteral("Ricerca"));
        QProgressDialog* const dialog = showOf(progress);
        ASSERT_NE(dialog, nullptr);

        if (isEscape)
            QTest::keyClick(dialog, Qt::Key_Escape);
        else
            dialog->close();

        EXPECT_FALSE(goesOn(progress));
        EXPECT_TRUE(progress.isCancelled());
        EXPECT_EQ(QApplication::activeModalWidget(), dialog) << "until the work has ended";
        EXPECT_FALSE(ui::at<QPushButton>(*dialog, 2).isEnabled());
    }
}

TEST(ProgressTest, ItsWindowStandsOverTheWindowOfTheWork)
{
    const auto window = shownWindow();
    auto* inner = new QWidget(window.get());
    Progress progress(inner, QStringLiteral("Ricerca"));

    QProgressDialog* const dialog = showOf(progress);

    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(dialog->parentWidget(), window.get());
    EXPECT_TRUE(dialog->isModal());
    EXPECT_EQ(dialog->findChild<QProgressBar*>()->value(), 250) << "a quarter of the way";
}

TEST(ProgressTest, WorkGoesOnWithoutAWindowWhenTheWindowBelowIsDeletedMeanwhile)
{
    auto window = shownWindow();
    Progress progress(window.get(), QStringLiteral("Ricerca"));
    QPointer<QProgressDialog> dialog(showOf(progress));
    ASSERT_TRUE(dialog);

    window.reset();

    EXPECT_TRUE(dialog.isNull());
    EXPECT_TRUE(goesOn(progress));
    EXPECT_FALSE(progress.isCancelled());
    EXPECT_EQ(shownProgress(), nullptr) << "nothing to stand over any more";
}

TEST(ProgressTest, AWindowDeletedBeforeAnythingWasShownIsNotTouched)
{
    auto window = shownWindow();
    Progress progress(window.get(), QStringLiteral("Ricerca"));
    window.reset();

    QProgressDialog* const dialog = showOf(progress);

    ASSERT_NE(dialog, nullptr) << "the user still sees that there is work";
    EXPECT_EQ(dialog->parentWidget(), nullptr);
    EXPECT_TRUE(goesOn(progress));
}

TEST(ProgressTest, ADialogThatIsNotYetShownIsNoPlaceToStandOver)
{
    const auto window = shownWindow();
    ASSERT_EQ(QApplication::activeWindow(), window.get());
    QWidget hidden;
    Progress progress(&hidden, QStringLiteral("Lettura"));

    QProgressDialog* const dialog = showOf(progress);

    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(dialog->parentWidget(), window.get());
}

TEST(LongWorkAfterCancelTest, WindowsGoOnBeingPaintedUntilTheWorkHasEnded)
{
    const ui::CancelWhenShown cancel;
    std::atomic<bool> isStopping = false;
    int eventsWhileStopping = 0;
    int aboveTheOthers = 0;
    QTimer paints;
    QObject::connect(&paints, &QTimer::timeout, [&] {
        if (!isStopping)
            return;
        ++eventsWhileStopping;
        aboveTheOthers += QApplication::activeModalWidget() ? 1 : 0;
    });
    paints.start(1);

    const auto end = kit::runLongWork(nullptr, QStringLiteral("Conto"), [&](kit::WorkToken& token) {
        token.report(0.3);
        while (!token.isCancelled())
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        isStopping = true;
        for (int i = 0; i < 40; ++i) { // as a large piece that is under way
            token.report(0.3 + i / 100.0);
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        isStopping = false;
    });

    EXPECT_EQ(end, kit::WorkEnd::Stopped);
    EXPECT_GE(eventsWhileStopping, 3);
    EXPECT_EQ(aboveTheOthers, eventsWhileStopping)
        << "the work still reads: other windows must take no input";
    EXPECT_EQ(cancel.seen, 1) << "it is not offered again to be stopped";
    EXPECT_EQ(shownProgress(), nullptr);
}
