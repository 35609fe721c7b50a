// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "query/dialog/LiveCount.h"

#include "embedded/model/Library.h"
#include "tests/query/dialog/ManyRows.h"
#include "tests/support/RecordingLibrary.h"
#include "tests/support/ui/ModalDriver.h"

#include "tematica/QueryExecute.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QSignalSpy>

#include <stdexcept>

using query::CLiveCount;
using support::CRecordingLibrary;

namespace {

class LiveCountTest : public testing::TestWithParam<bool> {
protected:
    LiveCountTest()
    {
        m_library.offerColumns(GetParam());
        m_live.setTheme(m_library.GetTheme(0));
    }
    std::string after(const char* filter)
    {
        m_live.setFilter(QString::fromUtf8(filter));
        ui::waitUntil([&] { return m_spy.count() > m_seen; });
        m_seen = m_spy.count();
        return m_live.state().text.toStdString();
    }

    CRecordingLibrary m_library { "table Strade (Nome text, Corsie integer);"
                                  "rows Strade: ('Via Roma', 2), ('Via Po', -), ('Corso', 4);"
                                  "theme Vie: points 2d on Strade active;"
                                  "ents Vie: 0 [0 0], 1 [1 1], 2 [2 2]" };
    CLiveCount m_live { &m_library };
    QSignalSpy m_spy { &m_live, &CLiveCount::stateChanged };
    qsizetype m_seen = m_spy.count() + 1; // the theme's own notice
};

} // namespace

TEST_P(LiveCountTest, CountsTheEntitiesThatSatisfyTheFilter)
{
    m_seen = m_spy.count();

    EXPECT_EQ(after("Nome LIKE 'Via%'"), "2 entità su 3 soddisfano il filtro");
    EXPECT_EQ(after("Corsie > 3"), "1 entità su 3 soddisfa il filtro");
    EXPECT_FALSE(m_live.state().isWrong);
}

TEST_P(LiveCountTest, SaysWhereTheFilterIsWrongAtOnce)
{
    m_live.setFilter(QStringLiteral("Corsie > "));

    EXPECT_EQ(m_live.state().text.toStdString(), "atteso un valore dopo >");
    EXPECT_TRUE(m_live.state().isWrong);
    EXPECT_EQ(m_live.state().start, 7);
}

TEST_P(LiveCountTest, NamesThatAreNoFieldsAreTold)
{
    m_seen = m_spy.count();

    EXPECT_EQ(after("Corsia > 3"), "0 entità su 3 soddisfano il filtro (nomi sconosciuti: Corsia)");
}

TEST_P(LiveCountTest, TheNextKeystrokeEndsTheCounting)
{
    m_live.setFilter(QStringLiteral("Corsie > 3"));
    m_live.setFilter(QStringLiteral("Corsie > 3 AND"));
    const auto seen = m_spy.count();

    ui::waitUntil([&] { return m_spy.count() > seen; }, 300);

    EXPECT_EQ(m_spy.count(), seen);
    EXPECT_TRUE(m_live.state().isWrong);
}

TEST_P(LiveCountTest, CountingChangesNothingAndDoesNotRunTheQuery)
{
    m_seen = m_spy.count();
    m_library.clearCalls();

    after("Corsie > 3");

    EXPECT_TRUE(m_library.changes().empty());
}

TEST_P(LiveCountTest, WhatWasWrongIsNotSaidOfTheNextText)
{
    m_live.setFilter(QStringLiteral("Corsie > "));
    ASSERT_TRUE(m_live.state().isWrong);

    m_live.setFilter(QStringLiteral("Corsie > 3"));

    EXPECT_FALSE(m_live.state().isWrong);
    EXPECT_EQ(m_live.state().text, QString()) << "not the last error, not a number of another text";
}

TEST_P(LiveCountTest, CountsWhatTheQueryFinds)
{
    for (const char* filter :
        { "Corsie IS NULL", "NOT (Corsie > 2)", "Nome = 'Corso' OR Corsie = 2", "Corsie + 1 = 3",
            "Corsie", "Boh = 1", "Corsie / 0 = 1" }) {
        CLiveCount live(&m_library);
        live.setTheme(m_library.GetTheme(0));
        CQueryExecute execution(&m_library, m_library.GetTheme(0));
        if (!execution.SetQueryFilter(filter))
            continue;
        std::vector<gis::CEnt*> found;
        execution.Execute(found);
        live.setFilter(QString::fromUtf8(filter));
        EXPECT_TRUE(ui::waitUntil([&] { return !live.state().text.isEmpty(); })) << filter;
        EXPECT_EQ(live.state().text.section(QLatin1Char(' '), 0, 0).toStdString(),
            std::to_string(found.size()))
            << filter;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Hosts, LiveCountTest, testing::Bool(), [](const testing::TestParamInfo<bool>& columns) {
        return columns.param ? "WithColumns" : "CellByCell";
    });

/// A host without columns, whose many cells are counted a slice at a time.
TEST(LiveCountOfManyTest, ARunningCountIsGivenUpForTheNextText)
{
    CRecordingLibrary library("table T (n integer)");
    library.offerColumns(false);
    constexpr int rows = 60'000;
    {
        const support::RecordingPause pause(library);
        gis::CDBTable* table = library.GetTable(0);
        gis::CTheme* theme
            = library.CreateTheme(table, "P", gis::EntType::Points, gis::EntTypeCoords::XY, 0);
        table->addRows(rows);
        for (int i = 0; i < rows; ++i) {
            theme->entities().addEntity(table->row(i));
            theme->entities().addPart(1);
            orv::CPolyValue value(i % 10);
            library.SetRowValue(table->row(i), 0, value);
        }
    }
    CLiveCount live(&library);
    live.setTheme(library.GetTheme(0));
    live.setFilter(QStringLiteral("n = 1"));
    ASSERT_TRUE(ui::waitUntil([&] {
        return live.state().text == QStringLiteral("conteggio in corso…");
    })) << live.state().text.toStdString();

    live.setFilter(QStringLiteral("n < 5"));

    ASSERT_TRUE(ui::waitUntil([&] { return live.state().text.contains(QLatin1String("su")); }));
    EXPECT_EQ(live.state().text.toStdString(), "30.000 entità su 60.000 soddisfano il filtro");
}

/// A count over columns runs on another thread; here it is long enough to be seen running.
class LiveCountOverColumnsTest : public testing::Test {
protected:
    using Clock = std::chrono::steady_clock;
    void startCounting()
    {
        rows.asked = 0;
        live->setTheme(library.GetTheme(0));
        live->setFilter(QString::fromLatin1(querytest::SlowFilter));
        ASSERT_TRUE(ui::waitUntil([&] { return rows.asked > 0; }));
        ASSERT_EQ(live->state().text, QString());
    }

    CRecordingLibrary library { "table T (n integer); theme P: points 2d on T active" };
    querytest::CManyRows rows { library };
    std::chrono::milliseconds whole
        = querytest::makeSlow(rows, library, std::chrono::milliseconds(600));
    std::unique_ptr<CLiveCount> live = std::make_unique<CLiveCount>(&library);
};

TEST_F(LiveCountOverColumnsTest, TheNextTextStopsACountThatIsRunning)
{
    startCounting();
    const auto start = Clock::now();

    live->setFilter(QStringLiteral("n = 1"));

    ASSERT_TRUE(ui::waitUntil([&] { return !live->state().text.isEmpty(); }));
    EXPECT_LT(Clock::now() - start, whole) << "else the next one would begin after it";
    EXPECT_EQ(live->state().text.section(QLatin1Char(' '), 0, 0).remove(QLatin1Char('.')),
        QString::number(rows.chunks()))
        << "the number of this text, not of the last";
}

TEST_F(LiveCountOverColumnsTest, TheEndOfTheDialogStopsACountThatIsRunning)
{
    startCounting();
    const auto start = Clock::now();

    live.reset();

    EXPECT_LT(Clock::now() - start, whole * 2 / 3);
}

/// A host that fails while it is asked.
TEST(LiveCountOfFailingHostsTest, AnExceptionOfACellLeavesTheLineEmpty)
{
    CRecordingLibrary library("table T (n integer); rows T: (1), (2), (3);"
                              "theme P: points 2d on T active; ents P: 0 [0 0], 1 [1 1], 2 [2 2]");
    int asked = 0;
    library.answerCells([&](orv::CResultRow*, int, orv::CPolyValue&) -> bool {
        if (++asked % 2 == 0)
            throw std::runtime_error("the disk has gone");
        return false;
    });
    CLiveCount live(&library);
    const QSignalSpy shown(&live, &CLiveCount::stateChanged);
    live.setTheme(library.GetTheme(0));
    const auto before = shown.count();

    live.setFilter(QStringLiteral("n > 1"));

    ASSERT_TRUE(ui::waitUntil([&] { return shown.count() > before; }));
    EXPECT_EQ(asked, 2) << "it is not asked again and again";
    EXPECT_EQ(live.state().text, QString());
    EXPECT_FALSE(live.state().isWrong);
    EXPECT_FALSE(ui::waitUntil([&] { return asked > 2; }, 100));

    library.answerCells(nullptr);
    live.setFilter(QStringLiteral("n > 2"));
    EXPECT_TRUE(ui::waitUntil([&] {
        return live.state().text == QStringLiteral("1 entità su 3 soddisfa il filtro");
    })) << live.state().text.toStdString();
}

TEST(LiveCountOfFailingHostsTest, AnExceptionOfItsColumnsLeavesTheLineEmpty)
{
    struct CFailing final : gis::IColumns {
        int asked = 0;
        bool GetColumn(gis::CDBTable*, int, gis::ColumnView&) override { fail(); }
        bool GetEntityRuns(gis::CTheme*, gis::EntityRunsView&) override { fail(); }
        [[noreturn]] void fail()
        {
            ++asked;
            throw std::runtime_error("the disk has gone");
        }
    } columns;
    CRecordingLibrary library("table T (n integer); theme P: points 2d on T active");
    library.offer(gis::ColumnsExtension, static_cast<gis::IColumns*>(&columns));
    CLiveCount live(&library);
    live.setTheme(library.GetTheme(0));

    live.setFilter(QStringLiteral("n > 1"));

    ASSERT_TRUE(ui::waitUntil([&] { return columns.asked > 0; }));
    QApplication::processEvents();
    EXPECT_EQ(live.state().text, QString());
    EXPECT_FALSE(live.state().isWrong);
}

TEST(LiveCountWithoutAThemeTest, ChecksTheTextAndCountsNothing)
{
    CLiveCount live(nullptr);

    live.setFilter(QStringLiteral("A = 1"));
    EXPECT_EQ(live.state().text, QString());
    live.setFilter(QStringLiteral("A = "));
    EXPECT_TRUE(live.state().isWrong);
}
