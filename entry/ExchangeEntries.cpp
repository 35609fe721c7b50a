// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tematica/Dialogs.h"
#include "tematica/GisMerger.h"

#include "entry/DialogFrame.h"
#include "entry/ImportRun.h"
#include "entry/Launchers.h"
#include "kit/MessageBox.h"
#include "kit/WaitCursor.h"

#include <QApplication>

namespace {

void warn(int textId, const orv::String& argument)
{
    FMessageBox(QApplication::activeWindow(), kit::Message { textId, argument });
}

} // namespace

bool FExportEnt(gis::CLibGis* library)
{
    const entry::Frame frame { "FExportEnt", false };
    return entry::runDialog(frame, { library }, [] {
        return false; // the dialog in which themes are chosen is not built yet
    });
}

bool FImportEnt(gis::CLibGis* library, gis::ILinkImportedEnt* link, bool /*reserved*/)
{
    const entry::Frame frame { "FImportEnt", true };
    return entry::runDialog(frame, { library }, [=] {
        entry::ImportChoice choice;
        if (!FRunImportWizard(library, choice.path, choice.options))
            return true;
        const kit::WaitCursor wait;
        gis::CGisMerger merger(library);
        entry::importShapefile(*library, link, merger, choice, warn);
        return true;
    });
}
