// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "kit/MessageBox.h"

#include "host/gis/LibGis.h"

#include <optional>

namespace tables {

/// Why a table cannot be called so; nothing when it can. A change of the old name's letter case is
/// always allowed; names are not trimmed, so blanks are a name.
[[nodiscard]] std::optional<kit::Message> refusalOfTableName(
    gis::CLibGis& library, const orv::String& oldName, const orv::String& newName);

} // namespace tables
