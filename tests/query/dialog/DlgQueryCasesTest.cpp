// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/query/dialog/QueryDialogTesting.h"

#include "query/dialog/FilterHistory.h"

#include "tests/support/TimeZoneScope.h"

#include <QGuiApplication>
#include <QMenu>
#include <QTimer>

#include <limits>

// What hosts may answer that the embedded one never does, and what users see while they wait.

namespace {

class DlgQueryCasesTest : public querytest::DlgQueryFixture {
protected:
    /// The cells of one field, entity by entity; the others stay the library's.
    void answer(int fieldIndex, std::vector<orv::CPolyValue> cells)
    {
        m_library.answerCells(
            [this, fieldIndex, cells](orv::CResultRow* row, int field, orv::CPolyValue& value) {
                const support::RecordingPause pause(m_library);
                gis::CTheme* theme = m_library.FindTheme("Strade");
                for (std::size_t i = 0; i < cells.size() && field == fieldIndex; ++i)
                    if (m_library.GetRow(m_library.GetEnt(theme, static_cast<int>(i))) == row) {
                        value = cells[i];
                        return true;
                    }
                return false;
            });
    }
    static orv::CPolyValue date(std::int64_t moment)
    {
        orv::CPolyValue value;
        value.SetDateValue(moment);
        return value;
    }
};

bool isWaitCursorShown()
{
    const QCursor* cursor = QGuiApplication::overrideCursor();
    return cursor && cursor->shape() == Qt::WaitCursor;
}

} // namespace

TEST_F(DlgQueryCasesTest, TheWaitCursorShowsWhileValuesAreGatheredAndGoesWhenTheListIsFilled)
{
    open();
    int read = 0;
    int readWaiting = 0;
    m_library.answerCells([&](orv::CResultRow*, int, orv::CPolyValue&) {
        ++read;
        readWaiting += isWaitCursorShown() ? 1 : 0;
        return false;
    });

    click(fields(), 0);

    EXPECT_EQ(read, 4);
    EXPECT_EQ(readWaiting, read);
    EXPECT_FALSE(isWaitCursorShown());
}

TEST_F(DlgQueryCasesTest, TheWaitCursorShowsWhileAFilterRunsAndNotUnderItsMessage)
{
    open();
    int readWaiting = 0;
    m_library.answerCells([&](orv::CResultRow*, int, orv::CPolyValue&) {
        readWaiting += isWaitCursorShown() ? 1 : 0;
        return false;
    });

    run("Corsie > 9");

    EXPECT_GE(readWaiting, 4);
    EXPECT_FALSE(isWaitCursorShown());
    ui::CModalDriver driver;
    driver.box(QStringLiteral("Errore di sintassi!"), kit::Answer::Ok,
        [](QMessageBox&) { EXPECT_FALSE(isWaitCursorShown()); });
    run("Corsie >");
}

TEST_F(DlgQueryCasesTest, TheFirstMomentOf1970IsADayLikeAnother)
{
    const support::TimeZoneScope utc("UTC");
    open();
    answer(4, { date(0), date(86400), date(-86400), {} });

    click(fields(), 4);

    EXPECT_EQ(joined(rows(values())), "31/12/1969, 01/01/1970, 02/01/1970");
}

TEST_F(DlgQueryCasesTest, ADateBeyondTheCalendarIsAnEmptyRow)
{
    const support::TimeZoneScope utc("UTC");
    open();
    answer(4, { date(std::numeric_limits<std::int64_t>::max()), date(86400), {}, {} });

    click(fields(), 4);

    EXPECT_EQ(rows(values()), (QStringList { QStringLiteral("02/01/1970"), QString() }));
    filter().setText(QString());
    doubleClick(values(), 1);
    EXPECT_EQ(filter().text(), QString()) << "an empty text has no day to write";
}

TEST_F(DlgQueryCasesTest, ValuesOfOtherKindsThanTheirNeighboursGoByTheirTexts)
{
    open();
    // As texts "10" < "9" < "abc": the integer 9 and the text "9" are one value.
    answer(0,
        { orv::CPolyValue(orv::String("abc")), orv::CPolyValue(9),
            orv::CPolyValue(orv::String("9")), orv::CPolyValue(orv::String("10")) });

    click(fields(), 0);

    EXPECT_EQ(joined(rows(values())), "10, 9, abc");
}

TEST_F(DlgQueryCasesTest, EqualTextsAreOneRowOnlyWhereTheyFollowEachOther)
{
    open();
    answer(3,
        { orv::CPolyValue(1.001), orv::CPolyValue(orv::String("1.002")), orv::CPolyValue(1.004),
            orv::CPolyValue(1.003) });

    click(fields(), 3);

    EXPECT_EQ(joined(rows(values())), "1.00, 1.002, 1.00");
}

TEST_F(DlgQueryCasesTest, ALongFilterIsOfferedShortenedAndTakenWhole)
{
    QString filterText = QStringLiteral("Nome = 'Ponte & figli'");
    for (int i = 0; i < 20; ++i)
        filterText += QStringLiteral(" OR Corsie = %1").arg(100 + i);
    query::CFilterHistory().remember("Strade", filterText);
    open();
    filter().setText(QStringLiteral("Corsie = 1"));
    filter().setFocus();

    QString offered;
    QTimer::singleShot(0, [&] {
        auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        if (!menu)
            return;
        offered = menu->actions().constFirst()->text();
        menu->actions().constFirst()->trigger();
        menu->close();
    });
    QTest::keyClick(&filter(), Qt::Key_Down, Qt::AltModifier);

    EXPECT_LE(offered.size(), 102);
    EXPECT_TRUE(offered.startsWith(QStringLiteral("Nome = 'Ponte && figli'")))
        << "an ampersand is no access key";
    EXPECT_EQ(filter().text(), filterText);
    filter().undo();
    EXPECT_EQ(filter().text(), QStringLiteral("Corsie = 1")) << "what was typed comes back";
}
