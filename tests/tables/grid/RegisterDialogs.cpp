// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/support/ui/DialogRegistry.h"
#include "tests/support/ui/SampleTown.h"

#include "tables/grid/CtrlShowTable.h"
#include "tables/grid/DlgShowTable.h"
#include "tables/grid/GridView.h"

#include <QKeyEvent>
#include <QTest>

namespace {

ui::DialogEntry::Made makeDialog()
{
    auto library = ui::sampleTown();
    auto dialog = std::make_unique<CDlgShowTable>(library.get(), library->FindTable("Strade"));
    return { library, std::move(dialog) };
}

/// Second state: a cell being edited while the line for finding is open and rows are selected.
bool showState(QDialog& dialog, int state)
{
    auto* grid = dialog.findChild<CCtrlShowTable*>();
    if (state != 1 || !grid)
        return false;
    auto& view = grid->view();
    QTest::keyClick(&view, Qt::Key_F, Qt::ControlModifier);
    view.selectRuns({ { 2, 4 }, { 7, 7 } });
    view.makeCurrent(grid->model().index(1, 4));
    grid->model().setData(grid->model().index(1, 4), QStringLiteral("7.5"), Qt::EditRole);
    return true;
}

const ui::RegisterDialog registered({ "CDlgShowTable", makeDialog, showState });

} // namespace
