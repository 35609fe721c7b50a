// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/drawing/Engine.h"

#include "embedded/base/Palette.h"
#include "embedded/model/Library.h"

#include <numbers>

class CDravoEng::Impl final {
public:
    embedded::Engine engine;
    std::vector<CLineType> lineTypes = embedded::lineTypes();
};

namespace {

constexpr int LayerType = 1;
constexpr double DegreesPerRadian = 180.0 / std::numbers::pi;

embedded::Library* layersOf(const embedded::Engine& engine, int type)
{
    return type == LayerType ? embedded::Library::of(engine.library()) : nullptr;
}

} // namespace

namespace embedded {

Engine& Engine::of(CDravoEng& engine)
{
    return engine.m_impl->engine;
}

const std::vector<CLineType>& lineTypes()
{
    static const std::vector<CLineType> types {
        { "Continuous", "Linea continua", {} },
        { "Dashed", "Tratteggiata __ __ __", { 6, -3 } },
        { "Dotted", "Punteggiata . . . .", { 0.5, -2 } },
        { "DashDot", "Tratto e punto __ . __", { 6, -2, 0.5, -2 } },
        { "Border", "Confine __ __ . __ __ .", { 6, -2, 6, -2, 0.5, -2 } },
    };
    return types;
}

const std::vector<orv::String>& hatchPatterns()
{
    static const std::vector<orv::String> patterns { "Diagonale destra", "Diagonale sinistra",
        "Incrociata diagonale", "Orizzontale", "Verticale", "Incrociata", "Punti fitti",
        "Punti radi" };
    return patterns;
}

const std::vector<orv::String>& textStyles()
{
    static const std::vector<orv::String> styles { "Standard", "Stretto", "Corsivo" };
    return styles;
}

} // namespace embedded

CDravoEng::CDravoEng()
    : m_impl(std::make_unique<Impl>())
{
}
CDravoEng::~CDravoEng() = default;

void CDravoEng::CenterViewAt(std::int64_t, double x, double y, double z)
{
    if (m_impl->engine.hooks().centreView)
        m_impl->engine.hooks().centreView(x, y, z);
}

void CDravoEng::StopExecuteCommand()
{
    m_impl->engine.countStop();
}

void CDravoEng::Notify(int code, int value, void*)
{
    m_impl->engine.addNotice({ code, value });
}

void CDravoEng::GetAllDrawingsNamesForType(int type, std::vector<orv::String>& names)
{
    names.clear();
    if (const embedded::Library* library = layersOf(m_impl->engine, type))
        for (const embedded::Layer& layer : library->layers())
            names.push_back(layer.name);
}

bool CDravoEng::GetDrawingName(std::int64_t drawing, orv::String& name)
{
    name = orv::String();
    if (const embedded::Library* library = layersOf(m_impl->engine, LayerType))
        for (const embedded::Layer& layer : library->layers())
            if (drawing != 0 && layer.id == drawing) {
                name = layer.name;
                return true;
            }
    return false;
}

std::int64_t CDravoEng::GetDrawingFromName(int type, const orv::String& name)
{
    if (const embedded::Library* library = layersOf(m_impl->engine, type))
        for (const embedded::Layer& layer : library->layers())
            if (layer.name == name)
                return layer.id;
    return 0;
}

std::int64_t CDravoEng::AddDrawing(int type, const orv::String& name, bool, bool, bool)
{
    embedded::Library* library = layersOf(m_impl->engine, type);
    return library && name.Length() > 0 ? library->addLayer(name) : 0;
}

bool CDravoEng::DlgInsertNewDrawingName(QWidget* parent, std::vector<orv::String>& pending,
    int type, const orv::String&, const orv::String&, orv::String& name)
{
    const auto& ask = m_impl->engine.hooks().newLayerName;
    return type == LayerType && ask && ask(parent, pending, name);
}

int CDravoEng::GetNoStyles()
{
    return static_cast<int>(embedded::textStyles().size());
}
std::int64_t CDravoEng::GetStyle(int index)
{
    return index >= 0 && index < GetNoStyles() ? index + 1 : 0;
}
orv::String CDravoEng::GetStyleName(std::int64_t style)
{
    const auto& styles = embedded::textStyles();
    return style >= 1 && style <= static_cast<std::int64_t>(styles.size())
        ? styles[static_cast<std::size_t>(style - 1)]
        : orv::String();
}

double CDravoEng::RadiansToUnits(double radians)
{
    return m_impl->engine.isDegrees() ? radians * DegreesPerRadian : radians;
}
double CDravoEng::UnitsToRadians(double units)
{
    return m_impl->engine.isDegrees() ? units / DegreesPerRadian : units;
}

int CDravoEng::GetColorRef(int colour)
{
    return static_cast<int>(embedded::paletteColour(colour));
}

bool CDravoEng::DlgColorChoice(QWidget* parent, short& colour, bool)
{
    const auto& ask = m_impl->engine.hooks().colourChoice;
    return ask && ask(parent, colour);
}

bool CDravoEng::ShowDlgSelHatchType(int& hatchType)
{
    const auto& ask = m_impl->engine.hooks().hatchChoice;
    return ask && ask(hatchType);
}

int CDravoEng::GetNuTotLineType()
{
    return static_cast<int>(m_impl->lineTypes.size());
}
CLineType* CDravoEng::GetLineType(int index)
{
    return index >= 0 && index < GetNuTotLineType()
        ? &m_impl->lineTypes[static_cast<std::size_t>(index)]
        : nullptr;
}
