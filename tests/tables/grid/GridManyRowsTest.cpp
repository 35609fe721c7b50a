// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/tables/grid/ShowTableTesting.h"

#include "embedded/model/Library.h"

#include <QHeaderView>
#include <QScrollBar>

// More rows than a view shows at once: the first are there at once, the rest soon afterwards, and
// nothing that the user does goes by the first ones only.

namespace {

using tables::CGridModel;

class GridManyRowsTest : public gridtest::ShowTableFixture {
protected:
    static constexpr int Rows = CGridModel::FirstRows + 10;

    GridManyRowsTest()
    {
        const support::RecordingPause pause(m_library);
        m_library.offerColumns();
        gis::CDBTable* table = m_library.GetTable(0);
        table->addRows(Rows - table->rowCount());
        orv::CPolyValue last(orv::String("Zona ultima"));
        m_library.SetRowValue(m_library.GetRow(table, Rows - 1), 0, last);
        gis::CTheme* theme = m_library.GetTheme(0);
        theme->entities().addEntity(table->row(Rows - 1));
        theme->entities().addPart(1);
    }
    /// The grid as it is before anything is painted.
    void fill()
    {
        m_library.offer(gis::FeedbackExtension, static_cast<gis::IFeedback*>(&m_feedback));
        m_grid = std::make_unique<CCtrlShowTable>(&m_engine, 77, &m_library, m_library.GetTable(0));
        m_grid->Fill();
    }
    CGridModel& model() { return m_grid->model(); }
};

} // namespace

TEST_F(GridManyRowsTest, TheRestComesByItselfOnceTheFirstRowsArePainted)
{
    fill();
    EXPECT_EQ(model().rowCount(), CGridModel::FirstRows);
    EXPECT_EQ(label("counts"), "262.154 righe");
    const int width = view().verticalHeader()->width();

    m_grid->resize(760, 300);
    m_grid->show();
    view().scrollToBottom();
    const int firstEnd = view().verticalScrollBar()->maximum();

    EXPECT_TRUE(ui::waitUntil([&] { return model().areAllRowsShown(); }));
    EXPECT_EQ(model().rowCount(), Rows);
    EXPECT_EQ(view().verticalHeader()->count(), Rows);
    EXPECT_EQ(view().verticalHeader()->width(), width) << "made for the greatest number";
    QApplication::processEvents();
    EXPECT_EQ(view().verticalScrollBar()->maximum(), firstEnd + 10);
    EXPECT_EQ(text(Rows - 1, 0), "Zona ultima");
    EXPECT_EQ(label("counts"), "262.154 righe");
}

TEST_F(GridManyRowsTest, EndGoesToTheLastRowAtOnce)
{
    fill();
    view().makeCurrent(cell(0, 0));

    QTest::keyClick(&view(), Qt::Key_End, Qt::ControlModifier);

    EXPECT_EQ(view().currentIndex().row(), Rows - 1);
}

TEST_F(GridManyRowsTest, AllRowsAreSelectedAtOnce)
{
    fill();

    view().selectAll();

    EXPECT_EQ(view().selectedCount(), Rows);
    EXPECT_EQ(label("counts"), "262.154 righe, 262.154 selezionate");
}

TEST_F(GridManyRowsTest, AllRowsAreSorted)
{
    fill();

    model().sort(0, Qt::DescendingOrder);

    EXPECT_EQ(model().rowCount(), Rows);
    EXPECT_EQ(text(0, 0), "Zona ultima");
}

TEST_F(GridManyRowsTest, AllRowsAreLookedThrough)
{
    fill();
    m_grid->show();
    QTest::keyClick(&view(), Qt::Key_F, Qt::ControlModifier);
    auto* sought = m_grid->findChild<QLineEdit*>(QStringLiteral("sought"));
    sought->setText(QStringLiteral("zona ULTIMA"));

    QTest::keyClick(sought, Qt::Key_Return);

    EXPECT_EQ(view().currentIndex().row(), Rows - 1);
    EXPECT_EQ(label("hint"), "");
}

TEST_F(GridManyRowsTest, WhatIsSelectedInTheDrawingIsSelectedInTheRestToo)
{
    m_feedback.selected = { entity(2) };

    fill();

    ASSERT_EQ(view().selectedCount(), 1);
    EXPECT_EQ(view().selectedRuns().front().first, Rows - 1);
}

TEST_F(GridManyRowsTest, FilledAnewBeforeTheRestCameItShowsTheNewRowsOnly)
{
    fill();
    m_grid->show();
    QApplication::processEvents(); // painted, the rest is on its way

    m_grid->Fill(std::vector<orv::CResultRow*> { m_library.GetRow(m_library.GetTable(0), 2) });
    QTest::qWait(50);

    EXPECT_EQ(model().rowCount(), 1);
    EXPECT_EQ(text(0, 0), "Via Po");
}
