// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "app/Marks.h"

#include "app/Document.h"

#include <algorithm>

namespace app {

namespace {

struct MarkStyle {
    QRgb colour;
    double pointSizePixels;
    double lineWidthPixels;
};
constexpr MarkStyle FoundStyle { 0xF08C00, 8, 2.6 };
constexpr MarkStyle SelectedStyle { 0x00B8D4, 8, 3.0 };
constexpr MarkStyle CurrentStyle { 0xD50000, 12, 4.0 };
// Behind each mark, so that it is told from symbols of its colour.
constexpr QRgb HaloColour = 0x202020;
constexpr double HaloPixels = 2;

void addMarks(const embedded::MapContent& content, const std::vector<gis::CEnt*>& entities,
    const MarkStyle& style, embedded::MapContent& marks)
{
    if (entities.empty())
        return;
    for (const embedded::ThemeLayer& layer : content.layers) {
        auto only = std::make_shared<std::vector<int>>();
        for (const gis::CEnt* entity : entities) {
            const int index = embedded::EntityStore::indexOf(entity);
            if (index >= 0 && index < layer.entities->entityCount()
                && layer.entities->entity(index) == entity)
                only->push_back(index);
        }
        if (only->empty())
            continue;
        std::sort(only->begin(), only->end());
        embedded::ThemeLayer mark = layer;
        mark.only = std::move(only);
        mark.symbol = { QColor(HaloColour), style.pointSizePixels + HaloPixels,
            style.lineWidthPixels + HaloPixels };
        mark.isOutline = true;
        mark.hasDarkerEdge = false;
        marks.layers.push_back(mark);
        mark.isOutline = false;
        mark.symbol = { QColor(style.colour), style.pointSizePixels, style.lineWidthPixels };
        marks.layers.push_back(std::move(mark));
    }
}

} // namespace

embedded::MapContent lastingMarks(const embedded::MapContent& content, const Highlight& highlight)
{
    embedded::MapContent marks;
    marks.background = Qt::transparent;
    addMarks(content, highlight.found, FoundStyle, marks);
    addMarks(content, highlight.selected, SelectedStyle, marks);
    return marks;
}

embedded::MapContent withCurrentMark(
    embedded::MapContent marks, const embedded::MapContent& content, gis::CEnt* current)
{
    if (current)
        addMarks(content, { current }, CurrentStyle, marks);
    return marks;
}

} // namespace app
