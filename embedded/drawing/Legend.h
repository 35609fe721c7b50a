// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/gis/Types.h"

class QImage;
class QPainter;
class QRectF;

namespace embedded {

struct MapContent;
struct SimpleSymbol;

/// Draws a box with a line for each layer, topmost first, into the picture's upper left corner.
void drawLegend(const MapContent& content, QImage& image);

/// Draws a sample of a theme's symbol into a rectangle.
void drawSymbolSample(
    QPainter& painter, const QRectF& rectangle, gis::EntType type, const SimpleSymbol& symbol);

} // namespace embedded
