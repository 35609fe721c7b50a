// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/expr/Expression.h"
#include "host/gis/Types.h"

#include <optional>
#include <vector>

namespace query {

/// False when the host says that the cells of this field could not be read.
[[nodiscard]] bool isReadable(gis::CLibGis& library, gis::CDBTable* table, int fieldIndex);

/// The name of the first field of a filter whose cells could not be read; nothing when all could,
/// and for hosts that do not say.
[[nodiscard]] std::optional<orv::String> unreadableField(
    gis::CLibGis* library, gis::CTheme* theme, CEEExpression& filter);

} // namespace query
