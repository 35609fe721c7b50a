// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/query/dialog/QueryDialogTesting.h"

#include "tests/support/SlowColumns.h"
#include "tests/support/ui/CancelProgress.h"

#include "host/gis/Readings.h"

#include <QLabel>
#include <QPushButton>
#include <QTimer>
#include <QWindow>

#include <functional>

#include <thread>

// Columns that still lie in a file: reading them never holds up the window.

namespace {

/// How long after a click a second one makes a double click, for a scope.
class DoubleClickScope final {
public:
    explicit DoubleClickScope(int milliseconds)
    {
        QApplication::setDoubleClickInterval(milliseconds);
    }
    DoubleClickScope(const DoubleClickScope&) = delete;
    DoubleClickScope& operator=(const DoubleClickScope&) = delete;
    ~DoubleClickScope() { QApplication::setDoubleClickInterval(m_before); }

private:
    int m_before = QApplication::doubleClickInterval();
};

class DlgQueryReadingTest : public querytest::DlgQueryFixture {
protected:
    ~DlgQueryReadingTest() override { m_dialog.reset(); } // before the columns that it reads
    void openOverColumns(int milliseconds)
    {
        m_library.offerColumns();
        columns.emplace(
            static_cast<gis::IColumns*>(m_library.Extension(gis::ColumnsExtension)), milliseconds);
        m_library.offer(gis::ColumnsExtension, static_cast<gis::IColumns*>(&*columns));
        open();
    }
    /// A place of the dialog's window, where the platform's mouse clicks.
    QPoint placeOf(QListView& list, int row)
    {
        return list.viewport()->mapTo(
            m_dialog.get(), list.visualRect(list.model()->index(row, 0)).center());
    }
    /// Clicks a field as the platform does, and does more while its column is being read.
    void clickAndMeanwhile(int row, const std::function<void(QWindow*)>& more)
    {
        QWindow* const window = m_dialog->windowHandle();
        bool isDone = false;
        QTest::mousePress(window, Qt::LeftButton, {}, placeOf(fields(), row));
        QTimer::singleShot(0, m_dialog.get(), [&, window] {
            more(window);
            isDone = true;
        });
        QTest::mouseRelease(window, Qt::LeftButton, {}, placeOf(fields(), row));
        EXPECT_TRUE(isDone) << "the column was there before anything could be done";
    }
    QString line() { return m_dialog->findChild<QLabel*>(QStringLiteral("liveLine"))->text(); }

    std::optional<support::CSlowColumns> columns;
};

TEST_F(DlgQueryReadingTest, AClickOnAFieldReadsItAsideAndListsItsValues)
{
    openOverColumns(30);

    click(fields(), 2);

    EXPECT_EQ(joined(rows(values())), "9, 10, 100");
    EXPECT_EQ(columns->asked, 2) << "read aside, then gathered";
    EXPECT_EQ(columns->askedHere, 1);
}

TEST_F(DlgQueryReadingTest, AStoppedClickHasNotHappened)
{
    const DoubleClickScope quick(200);
    openOverColumns(400);
    click(fields(), 0);
    ASSERT_EQ(joined(rows(values())), "Via Po, Via Roma");
    {
        const ui::CancelWhenShown cancel;
        click(fields(), 2);
        EXPECT_GE(cancel.seen, 1);
        EXPECT_EQ(cancel.label, QStringLiteral("Lettura dei campi…"));
        EXPECT_FALSE(cancel.hadWaitCursor);
    }
    EXPECT_EQ(joined(rows(values())), "Via Po, Via Roma");
    EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);

    click(fields(), 2);
    EXPECT_EQ(joined(rows(values())), "9, 10, 100") << "it can be clicked again";
}

TEST_F(DlgQueryReadingTest, ADoubleClickOnAFieldThatIsStillBeingReadInsertsItsName)
{
    const DoubleClickScope slow(5000);
    openOverColumns(400);

    clickAndMeanwhile(2, [&](QWindow* window) {
        QTest::mousePress(window, Qt::LeftButton, {}, placeOf(fields(), 2));
        QTest::mouseRelease(window, Qt::LeftButton, {}, placeOf(fields(), 2));
        EXPECT_EQ(filter().text(), QStringLiteral("Corsie")) << "at once";
        EXPECT_TRUE(rows(values()).isEmpty());
    });

    EXPECT_EQ(filter().text(), QStringLiteral("Corsie"));
    EXPECT_EQ(joined(rows(values())), "9, 10, 100");
    EXPECT_EQ(columns->asked, 2) << "read once, then gathered";
    EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
}

TEST_F(DlgQueryReadingTest, OtherInputIsDroppedWhileADoubleClickIsAwaited)
{
    const DoubleClickScope slow(5000);
    openOverColumns(400);
    filter().setText(QStringLiteral("Attiva = TRUE"));
    const QPoint run
        = ui::at<QPushButton>(*m_dialog, 2081)
              .mapTo(m_dialog.get(), ui::at<QPushButton>(*m_dialog, 2081).rect().center());

    clickAndMeanwhile(2, [&](QWindow* window) {
        QTest::mouseClick(window, Qt::LeftButton, {}, placeOf(fields(), 0));
        QTest::mouseClick(window, Qt::RightButton, {}, placeOf(fields(), 2));
        QTest::mouseClick(window, Qt::LeftButton, {}, run);
        QTest::keyClick(window, Qt::Key_Return);
        QTest::keyClick(&filter(), Qt::Key_X);
        QTest::keyClick(window, Qt::Key_Escape);
        window->close();
    });

    EXPECT_TRUE(m_dialog->isVisible());
    EXPECT_EQ(fields().currentIndex().row(), 2);
    EXPECT_EQ(joined(rows(values())), "9, 10, 100");
    EXPECT_EQ(filter().text(), QStringLiteral("Attiva = TRUE"));
    EXPECT_EQ(grid(), nullptr);
    click(fields(), 0); // the mouse is nobody's any more
    EXPECT_EQ(joined(rows(values())), "Via Po, Via Roma");
}

TEST_F(DlgQueryReadingTest, AClickWithTheKeysAwaitsNoSecondOne)
{
    const DoubleClickScope slow(5000);
    openOverColumns(400);
    fields().setFocus();
    fields().setCurrentIndex(fields().model()->index(2, 0));
    const ui::CancelWhenShown cancel;

    QTest::keyClick(&fields(), Qt::Key_Space);

    EXPECT_GE(cancel.seen, 1);
    EXPECT_TRUE(rows(values()).isEmpty());
}

TEST_F(DlgQueryReadingTest, WhatCannotBeReadAsideIsReadHere)
{
    openOverColumns(0);
    columns->throwsAside = true;

    click(fields(), 2);
    EXPECT_EQ(joined(rows(values())), "9, 10, 100");
    run("Corsie = 9");
    ASSERT_NE(grid(), nullptr);
    EXPECT_EQ(grid()->model()->rowCount(), 2);
}

TEST_F(DlgQueryReadingTest, AStoppedRunLeavesTheResultBefore)
{
    openOverColumns(250);
    run("Nome = 'Via Roma'");
    ASSERT_EQ(grid()->model()->rowCount(), 1);
    {
        const ui::CancelWhenShown cancel;
        run("Corsie = 9");
        EXPECT_GE(cancel.seen, 1);
    }
    ASSERT_NE(grid(), nullptr);
    EXPECT_EQ(grid()->model()->rowCount(), 1);
    EXPECT_EQ(m_feedback.found, (std::vector<std::size_t> { 1 }));
}

TEST_F(DlgQueryReadingTest, WhatIsTypedIsCountedOnceItsFieldsAreRead)
{
    openOverColumns(60);
    filter().setText(QStringLiteral("Corsie = 9 AND Larghezza > 1"));

    EXPECT_TRUE(ui::waitUntil([&] {
        return line() == QStringLiteral("2 entità su 4 soddisfano il filtro");
    })) << line().toStdString();
    EXPECT_GE(columns->asked - columns->askedHere, 2) << "both fields aside";
}

TEST_F(DlgQueryReadingTest, TheLastOfSeveralTextsIsCountedThoughTheFirstIsStillBeingRead)
{
    openOverColumns(200);
    filter().setText(QStringLiteral("Corsie = 9"));
    ASSERT_TRUE(ui::waitUntil([&] { return columns->asked > 0; }));
    filter().setText(QStringLiteral("Corsie ="));
    EXPECT_TRUE(line().startsWith(QStringLiteral("atteso"))) << line().toStdString();
    filter().setText(QStringLiteral("Nome = 'Via Roma'"));

    EXPECT_TRUE(ui::waitUntil([&] {
        return line() == QStringLiteral("1 entità su 4 soddisfa il filtro");
    })) << line().toStdString();
}

TEST_F(DlgQueryReadingTest, ClosingWhileFieldsAreReadWaitsForTheColumnOnly)
{
    openOverColumns(100);
    filter().setText(
        QStringLiteral("Corsie = 9 AND Larghezza > 1 AND Nome <> '' AND Attiva = TRUE"));
    ASSERT_TRUE(ui::waitUntil([&] { return columns->asked > 0; }));

    m_dialog.reset();

    EXPECT_LT(columns->asked, 4);
}

/// A host that reads a field for as long as it is let.
class CEndlessReadings final : public gis::IReadings {
public:
    bool IsReadable(gis::CDBTable*, int) override { return true; }
    bool Read(gis::CDBTable*, int, gis::IReadingStop* stop) override
    {
        ++begun;
        for (int i = 0; i < 6000; ++i) { // a minute
            if (stop && stop->IsStopped()) {
                ++stopped;
                return false;
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        return true;
    }
    std::atomic<int> begun = 0;
    std::atomic<int> stopped = 0;
};

TEST_F(DlgQueryReadingTest, ClosingOrTypingEndsTheReadingOfAField)
{
    CEndlessReadings readings;
    m_library.offerColumns();
    m_library.offer(gis::ReadingsExtension, static_cast<gis::IReadings*>(&readings));
    open();
    filter().setText(QStringLiteral("Corsie = 9"));
    ASSERT_TRUE(ui::waitUntil([&] { return readings.begun == 1; }));

    filter().setText(QStringLiteral("Corsie = 10"));
    ASSERT_TRUE(ui::waitUntil([&] { return readings.begun == 2; })) << "the next one begins";
    EXPECT_EQ(readings.stopped, 1);

    m_dialog.reset();

    EXPECT_EQ(readings.stopped, 2);
}

} // namespace
