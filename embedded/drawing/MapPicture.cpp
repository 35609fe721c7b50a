// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/drawing/MapPicture.h"

#include "embedded/drawing/Legend.h"
#include "embedded/model/Library.h"

namespace embedded {

namespace {

// Qualitative colours that stay apart in normal sight, with red-green weakness and in grey; chosen
// by the largest smallest difference over those sights among saturated mid-tones on white.
constexpr QRgb ThemeColours[] = { 0x1F6FB2, 0xD9821B, 0x3E8E41, 0x8A3FA0, 0xB8322F, 0x2A9D9A,
    0x6B5B2E, 0xC2478D, 0x52606D, 0x93A31D };

} // namespace

QColor themeColour(int themeIndex)
{
    const int count = static_cast<int>(std::size(ThemeColours));
    return QColor(ThemeColours[((themeIndex % count) + count) % count]);
}

std::vector<gis::CTheme*> visibleThemes(gis::CLibGis& library)
{
    std::vector<gis::CTheme*> visible;
    for (gis::CTheme* theme : Library::of(&library)->themes())
        if (theme->visible)
            visible.push_back(theme);
    return visible;
}

MapContent mapContent(gis::CLibGis& library, const std::vector<gis::CTheme*>& themes)
{
    MapContent content;
    const auto& all = Library::of(&library)->themes();
    // Surfaces below, lines above them, points on top, so that nothing hides what is smaller.
    for (const gis::EntType type :
        { gis::EntType::Polygons, gis::EntType::Lines, gis::EntType::Points })
        for (std::size_t i = 0; i < all.size(); ++i) {
            gis::CTheme* theme = all[i];
            if (theme->type != type
                || std::find(themes.begin(), themes.end(), theme) == themes.end())
                continue;
            ThemeLayer layer;
            layer.name = QString::fromUtf8(theme->name.Data(), theme->name.Length());
            layer.type = type;
            layer.symbol.colour = themeColour(static_cast<int>(i));
            layer.entities = theme->geometry().snapshot();
            content.layers.push_back(std::move(layer));
        }
    return content;
}

Box extentOf(const MapContent& content)
{
    Box extent;
    for (const ThemeLayer& layer : content.layers)
        for (int i = 0; i < layer.entities->entityCount(); ++i)
            extent.add(layer.boxOf(i));
    return extent;
}

QImage renderMap(const MapContent& content, const MapView& view, const std::atomic<bool>& cancelled)
{
    QImage image(view.size, QImage::Format_ARGB32_Premultiplied);
    if (image.isNull())
        return image;
    image.fill(content.background);
    for (const auto* layers : { &content.layers, &content.highlighted })
        for (const ThemeLayer& layer : *layers)
            if (!renderLayer(layer, view, image, cancelled))
                return {};
    if (content.legend)
        drawLegend(content, image);
    return image;
}

} // namespace embedded
