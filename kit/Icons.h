// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QIcon>

namespace kit {

/// The icon of a bitmap or toolbar command by its number (14000, 32771, ...); empty for one that
/// has none.
[[nodiscard]] QIcon icon(int number);
/// An icon by the name of its file in res/icons ("find").
[[nodiscard]] QIcon icon(const char* name);

} // namespace kit
