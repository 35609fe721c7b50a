// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "host/gis/ThemeMapEdit.h"

#include "embedded/model/FieldUses.h"
#include "embedded/model/ThemeClasses.h"

#include <algorithm>

using embedded::copyOf;
using embedded::Library;
using embedded::ThematicMap;

namespace gis {
namespace {

/// The column of a field of the theme's table; null for any other field.
const embedded::Column* columnOf(CTheme* theme, const CField* field)
{
    if (!theme || !theme->table || !field)
        return nullptr;
    const int index = theme->table->indexOf(field);
    return index < 0 ? nullptr : &theme->table->column(index);
}

bool isSameClass(const CFeatureClass& a, const CFeatureClass& b)
{
    return a.colour == b.colour && a.colourOutLine == b.colourOutLine && a.hatchType == b.hatchType
        && a.width == b.width && a.symbol == b.symbol && a.scale == b.scale
        && a.rotationRadians == b.rotationRadians && a.ltypeName == b.ltypeName
        && a.label == b.label && a.low == b.low && a.high == b.high && a.isDefault == b.isDefault;
}

bool isSameMap(const ThematicMap& a, const ThematicMap& b)
{
    return a.type == b.type && a.field == b.field && a.classCount == b.classCount
        && std::equal(a.classes.begin(), a.classes.end(), b.classes.begin(), b.classes.end(),
            [](const auto& x, const auto& y) { return isSameClass(*x, *y); });
}

} // namespace

class CCtrlThemeMapEdit::Impl {
public:
    explicit Impl(CTheme* edited)
        : theme(edited)
        , library(edited ? &edited->library() : nullptr)
    {
        map = current();
    }

    /// The theme's map as it stands. A theme that nobody edited has no classes yet.
    [[nodiscard]] ThematicMap current() const
    {
        ThematicMap now = theme ? copyOf(theme->map) : ThematicMap {};
        if (now.classes.empty())
            now.classes = classesFor(now);
        return now;
    }

    [[nodiscard]] embedded::Classes classesFor(const ThematicMap& wanted) const
    {
        if (wanted.type == MapType::None)
            return embedded::uniformClasses();
        const embedded::Column* column = columnOf(theme, wanted.field);
        if (!column)
            return embedded::defaultClassOnly();
        return wanted.type == MapType::SingleValue
            ? embedded::singleValueClasses(*column)
            : embedded::intervalClasses(*column, wanted.classCount);
    }
    void rebuild() { map.classes = classesFor(map); }

    CTheme* theme;
    Library* library; // asked whether the theme is still there
    ThematicMap map;
};

CCtrlThemeMapEdit::CCtrlThemeMapEdit(CTheme* theme)
    : m_impl(std::make_unique<Impl>(theme))
{
}

CCtrlThemeMapEdit::~CCtrlThemeMapEdit() = default;

MapType CCtrlThemeMapEdit::GetMapType()
{
    return m_impl->map.type;
}

void CCtrlThemeMapEdit::SetMapType(MapType type)
{
    if (type < MapType::None || type > MapType::Interval)
        return;
    m_impl->map.type = type;
    m_impl->rebuild();
}

CField* CCtrlThemeMapEdit::GetField()
{
    return m_impl->map.field;
}

void CCtrlThemeMapEdit::SetField(CField* field)
{
    m_impl->map.field = columnOf(m_impl->theme, field) ? field : nullptr;
    m_impl->rebuild();
}

int CCtrlThemeMapEdit::GetNumClasses()
{
    return m_impl->map.classCount;
}

void CCtrlThemeMapEdit::SetNumClasses(int count)
{
    m_impl->map.classCount = std::clamp(count, 1, embedded::MaxSingleValueClasses);
    m_impl->rebuild();
}

int CCtrlThemeMapEdit::GetNumFeatureClasses()
{
    return static_cast<int>(m_impl->map.classes.size());
}

CFeatureClass* CCtrlThemeMapEdit::GetFeatureClass(int index)
{
    if (index < 0 || index >= GetNumFeatureClasses())
        return nullptr;
    return m_impl->map.classes[static_cast<std::size_t>(index)].get();
}

void CCtrlThemeMapEdit::FindMinMaxValuesInTable(
    CTheme* theme, CField* field, orv::CPolyValue& minimum, orv::CPolyValue& maximum, bool& found)
{
    embedded::ColumnRange range;
    if (const embedded::Column* column = columnOf(theme, field))
        range = embedded::rangeOf(*column);
    minimum = range.minimum;
    maximum = range.maximum;
    found = range.hasEmptyRows;
}

bool CCtrlThemeMapEdit::Commit(CDocSymbolManager* /*symbols*/)
{
    CTheme* theme = m_impl->theme;
    if (!theme)
        return false;
    Library& library = *m_impl->library;
    const auto& themes = library.themes();
    if (std::find(themes.begin(), themes.end(), theme) == themes.end())
        return false;
    if (!isSameMap(m_impl->current(), m_impl->map)) {
        const orv::ChangeStep step(library.changes(), "Mappa tematica di " + theme->name);
        library.setThemeMap(theme, copyOf(m_impl->map));
    }
    library.markModified();
    return true;
}

} // namespace gis
