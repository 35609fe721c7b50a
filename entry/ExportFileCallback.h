// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/gis/Exchange.h"

/// Asks the user before an existing shapefile is overwritten.
class CExportFileCallback final : public IExportFileCallback {
public:
    bool AskOverwrite(const orv::String& path) override;
};
