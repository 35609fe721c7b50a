// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tematica/Dialogs.h"

#include "entry/DialogFrame.h"
#include "kit/ModalRun.h"
#include "tables/form/DlgCompileTable.h"
#include "tables/grid/DlgShowTable.h"
#include "tables/list/DlgTableList.h"
#include "tables/structure/DlgTableEdit.h"

// The dialogs of tables.

bool FDlgTableListGIS(gis::CLibGis* library)
{
    const entry::Frame frame { "FDlgTableListGIS", false };
    return entry::runDialog(frame, { library }, [=] {
        CDlgTableList dialog;
        dialog.SetLibGis(library);
        return kit::runModal(dialog);
    });
}

bool FDlgTableEditGIS(gis::CLibGis* library, gis::CDBTable* table)
{
    const entry::Frame frame { "FDlgTableEditGIS", false };
    return entry::runDialog(frame, { library, table }, [=] {
        CDlgTableEdit dialog(library, table);
        return kit::runModal(dialog);
    });
}

bool FDlgCompileTableGIS(gis::CLibGis* library, gis::CTheme* theme, orv::CResultRow* row)
{
    const entry::Frame frame { "FDlgCompileTableGIS", false };
    return entry::runDialog(frame, { library, theme, row }, [=] {
        CDlgCompileTable dialog(library, theme, row);
        return kit::runModal(dialog);
    });
}

bool FDlgShowTableGIS(gis::CLibGis* library, gis::CDBTable* table)
{
    const entry::Frame frame { "FDlgShowTableGIS", true };
    return entry::runDialog(frame, { library, table }, [=] {
        CDlgShowTable dialog(library, table);
        kit::runModal(dialog);
        return true;
    });
}
