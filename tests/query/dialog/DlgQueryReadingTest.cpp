// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/query/dialog/QueryDialogTesting.h"

#include "tests/support/SlowColumns.h"
#include "tests/support/ui/CancelProgress.h"

#include "host/gis/Readings.h"

#include <QLabel>

#include <thread>

// Columns that still lie in a file: reading them never holds up the window.

namespace {

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
