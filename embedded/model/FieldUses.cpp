// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/model/FieldUses.h"

#include "embedded/model/ClassLimits.h"
#include "embedded/model/ThemeClasses.h"

namespace embedded {
namespace {

bool isNumber(gis::FieldFormat format)
{
    return format == gis::FieldFormat::Integer || format == gis::FieldFormat::Decimal;
}

ThematicMap noMap()
{
    ThematicMap map;
    map.classes = uniformClasses();
    return map;
}

} // namespace

FieldChange unchangedField(gis::CField& field)
{
    FieldChange change;
    change.field = &field;
    change.name = field.name;
    change.format = field.format;
    change.type = field.type;
    change.requested = field.requested;
    change.constraints = field.constraints;
    return change;
}

bool isSameField(const gis::CField& field, const FieldChange& change)
{
    return change.field == &field && change.name == field.name && change.format == field.format
        && change.type == field.type && change.requested == field.requested
        && change.constraints == field.constraints;
}

void releaseField(Library& library, const gis::CField& field)
{
    for (gis::CTheme* theme : library.themes()) {
        if (theme->label.field == &field) {
            gis::TOpzLabel label = theme->label;
            label.field = nullptr;
            library.setThemeLabel(theme, label);
        }
        if (theme->map.field == &field)
            library.setThemeMap(theme, noMap());
    }
}

void convertClassLimits(
    Library& library, const gis::CField& field, gis::FieldFormat to, const Column& converted)
{
    for (gis::CTheme* theme : library.themes()) {
        if (theme->map.field != &field)
            continue;
        if (theme->map.type == gis::MapType::Interval && !isNumber(to)) {
            library.setThemeMap(theme, noMap());
            continue;
        }
        ThematicMap map = copyOf(theme->map);
        convertClasses(map, field.format, field.decimalDigits(), to, converted.emptyCount() > 0);
        library.setThemeMap(theme, std::move(map));
    }
}

ThematicMap copyOf(const ThematicMap& map)
{
    ThematicMap copy;
    copy.type = map.type;
    copy.field = map.field;
    copy.classCount = map.classCount;
    copy.classes.reserve(map.classes.size());
    for (const auto& one : map.classes)
        copy.classes.push_back(std::make_unique<gis::CFeatureClass>(*one));
    return copy;
}

} // namespace embedded
