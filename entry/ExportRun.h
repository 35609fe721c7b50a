// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

// The export of chosen themes, apart from the dialog in which they are chosen.

#include "host/base/String.h"
#include "host/gis/Exchange.h"

#include <functional>
#include <vector>

namespace entry {

/// What the export dialog gives.
struct ExportChoice {
    orv::String folder;
    std::vector<gis::CTheme*> themes; // in the order in which they are exported
    int maxTextBytes = 100;
    int coordinates = 0; // 0 as the theme, 1 2D, 2 3D
};

/// Shows a text of the table, with its argument, as a warning.
using Warn = std::function<void(int textId, const orv::String& argument)>;

using ExportFunction = decltype(&FExportFileShape);

/// Exports each theme in turn by the host's function; one that fails is warned of and never stops
/// the others.
void exportThemes(gis::CLibGis& library, const ExportChoice& choice, IExportFileCallback& overwrite,
    const Warn& warn, ExportFunction exportOne = &FExportFileShape);

/// The folder with a separator at its end, in the folder's own style; an empty one stays empty.
[[nodiscard]] orv::String withSeparator(const orv::String& folder);

} // namespace entry
