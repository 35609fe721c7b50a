// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QRgb>

namespace kit {

/// Behind what is computed and cannot be edited.
inline constexpr QRgb PredefinedBackground = qRgb(223, 255, 210);

} // namespace kit
