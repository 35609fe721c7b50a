// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tematica/Dialogs.h"

#include "entry/DialogFrame.h"
#include "kit/ModalRun.h"
#include "query/dialog/DlgQuery.h"

bool FDlgQuery(std::int64_t drawing, CDravoEng* engine, gis::CLibGis* library)
{
    const entry::Frame frame { "FDlgQuery", true };
    return entry::runDialog(frame, { library }, [=] {
        CDlgQuery dialog(drawing, engine, library);
        kit::runModal(dialog);
        return true;
    });
}
