// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/support/ui/DialogRegistry.h"
#include "tests/support/ui/SampleTown.h"

#include "tables/list/DlgInputNameTable.h"
#include "tables/list/DlgTableList.h"

#include "kit/Form.h"

#include <QListView>

namespace {

ui::DialogEntry::Made makeList()
{
    auto library = ui::sampleTown();
    auto dialog = std::make_unique<CDlgTableList>();
    dialog->SetLibGis(library.get());
    return { library, std::move(dialog) };
}

bool selectTable(QDialog& dialog, int state)
{
    auto* list = kit::control<QListView>(dialog, 2000);
    if (state != 1 || !list)
        return false;
    list->setCurrentIndex(list->model()->index(1, 0));
    return true;
}

ui::DialogEntry::Made makeName()
{
    auto library = ui::sampleTown();
    auto dialog = std::make_unique<CDlgInputNameTable>();
    dialog->Init(library.get(), "Catasto 2024");
    return { library, std::move(dialog) };
}

const ui::RegisterDialog registeredList({ "CDlgTableList", makeList, selectTable });
const ui::RegisterDialog registeredName(
    { "CDlgInputNameTable", makeName, [](QDialog&, int) { return false; } });

} // namespace
