// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/support/ui/DialogRegistry.h"
#include "tests/support/ui/SampleTown.h"

#include "tables/form/DlgCompileTable.h"

namespace {

ui::DialogEntry::Made makeDialog()
{
    auto library = ui::sampleTown();
    gis::CTheme* theme = library->FindTheme("Strade");
    auto dialog = std::make_unique<CDlgCompileTable>(
        library.get(), theme, library->GetRow(library->GetEnt(theme, 0)));
    return { library, std::move(dialog) };
}

const ui::RegisterDialog registered(
    { "CDlgCompileTable", makeDialog, [](QDialog&, int) { return false; } });

} // namespace
