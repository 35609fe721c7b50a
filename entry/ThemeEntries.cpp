// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tematica/Dialogs.h"

#include "entry/DialogFrame.h"

bool FDlgThemeListGIS(CDravoEng* /*engine*/, CDocSymbolManager* /*symbols*/, gis::CLibGis* library,
    CLibCmp* /*unused*/, CLibGps* /*unused*/, CLibPnt* /*unused*/)
{
    const entry::Frame frame { "FDlgThemeListGIS", false };
    return entry::runDialog(frame, { library }, [] { return false; });
}
