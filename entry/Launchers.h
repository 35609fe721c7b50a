// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

// Dialogs that only this module opens.

#include "host/gis/Exchange.h"

/// Runs the import wizard; false when it was cancelled, else `path` and `options` are what the
/// user chose.
bool FRunImportWizard(gis::CLibGis* library, orv::String& path, TOpzImportShape& options);
