// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/support/ui/DialogRegistry.h"
#include "tests/support/ui/SampleTown.h"

#include "tables/structure/DlgTableEdit.h"

#include "kit/Form.h"

#include <QTableView>

namespace {

ui::DialogEntry::Made makeDialog()
{
    auto library = ui::sampleTown();
    auto dialog = std::make_unique<CDlgTableEdit>(library.get(), library->FindTable("Strade"));
    return { library, std::move(dialog) };
}

/// One state for each of the six pages: the town's streets have a field of every format.
bool showState(QDialog& dialog, int state)
{
    auto* grid = kit::control<QTableView>(dialog, kit::IdGrid);
    if (state < 1 || state > 6 || !grid)
        return false;
    grid->selectRow(state - 1);
    grid->setCurrentIndex(grid->model()->index(state - 1, 0));
    grid->selectRow(state - 1);
    return true;
}

const ui::RegisterDialog registered({ "CDlgTableEdit", makeDialog, showState });

} // namespace
