// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "kit/DialogUnits.h"

#include <QFontMetricsF>
#include <QWidget>

#include <cmath>

namespace kit {

QSize pixelsOf(const QWidget& widget, DialogUnits units)
{
    // The average over all letters, not QFontMetrics::averageCharWidth: fonts that state none give
    // 0.
    static const QString letters
        = QStringLiteral("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz");
    const QFontMetricsF metrics(widget.font());
    const double averageWidth
        = metrics.horizontalAdvance(letters) / static_cast<double>(letters.size());
    return { static_cast<int>(std::lround(units.width * averageWidth / 4.0)),
        static_cast<int>(std::lround(units.height * metrics.height() / 8.0)) };
}

} // namespace kit
