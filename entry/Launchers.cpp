// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "entry/Launchers.h"

bool FRunImportWizard(
    gis::CLibGis* /*library*/, orv::String& /*path*/, TOpzImportShape& /*options*/)
{
    return false; // the wizard is not built yet, so nothing can be chosen
}
