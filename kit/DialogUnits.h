// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QSize>

class QWidget;

namespace kit {

/// A size in dialog units: a quarter of the font's average width by an eighth of its height, so
/// that a dialog grows with the user's font.
struct DialogUnits {
    int width = 0;
    int height = 0;
};

/// The size in pixels for the widget's font.
[[nodiscard]] QSize pixelsOf(const QWidget& widget, DialogUnits units);

} // namespace kit
