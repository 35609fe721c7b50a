// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

namespace kit {

/// How grids and value lists show the two values of a yes/no field, and what they compare with when
/// reading them back: one spelling, precomposed UTF-8 (53 C3 AC). A decomposed "ì" would look the
/// same and turn every Yes into No.
inline constexpr const char* YesText = "S\xC3\xAC";
inline constexpr const char* NoText = "No";

} // namespace kit
