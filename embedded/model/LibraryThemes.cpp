// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/model/LibraryData.h"

namespace embedded {

/// Sets one member of a theme as a recorded change; a value that is set already changes nothing.
template <typename Member, typename Value>
void Library::setThemeMember(gis::CTheme* theme, Member member, const Value& value)
{
    if (!theme)
        return;
    markModified();
    const Value old = theme->*member;
    if (old == value)
        return;
    const auto set = [theme, member](const Value& to) {
        theme->*member = to;
        theme->attributesChanged = true;
    };
    set(value);
    record([set, old] { set(old); }, [set, value] { set(value); });
}

void Library::renameTheme(gis::CTheme* theme, const orv::String& name)
{
    setThemeMember(theme, &gis::CTheme::name, name);
}

gis::CTheme* Library::activeTheme() const
{
    return m_data->active;
}

void Library::setActiveTheme(gis::CTheme* theme)
{
    gis::CTheme* const old = m_data->active;
    if (old == theme || (theme && &theme->library() != this))
        return;
    const auto set = [this](gis::CTheme* active) {
        for (gis::CTheme* touched : { m_data->active, active })
            if (touched)
                touched->attributesChanged = true;
        m_data->active = active;
    };
    set(theme);
    record([set, old] { set(old); }, [set, theme] { set(theme); });
    markModified();
}

void Library::setThemeVisible(gis::CTheme* theme, bool visible)
{
    setThemeMember(theme, &gis::CTheme::visible, visible);
}
void Library::setThemeLocked(gis::CTheme* theme, bool locked)
{
    setThemeMember(theme, &gis::CTheme::locked, locked);
}
void Library::setThemeTargetDrawing(gis::CTheme* theme, std::int64_t drawing)
{
    setThemeMember(theme, &gis::CTheme::targetDrawing, drawing);
}
void Library::setThemeLabel(gis::CTheme* theme, const gis::TOpzLabel& label)
{
    setThemeMember(theme, &gis::CTheme::label, label);
}

void Library::setThemeMap(gis::CTheme* theme, ThematicMap map)
{
    if (!theme)
        return;
    // Class handles stay alive with the change; a map is swapped whole.
    auto other = std::make_shared<ThematicMap>(std::move(map));
    const auto swap = [theme, other] {
        std::swap(theme->map, *other);
        theme->attributesChanged = true;
    };
    swap();
    record(swap, swap);
    markModified();
}

} // namespace embedded
