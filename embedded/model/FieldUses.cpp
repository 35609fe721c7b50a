// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/model/FieldUses.h"

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

void convertClassLimits(Library& library, const gis::CField& field, gis::FieldFormat to)
{
    for (gis::CTheme* theme : library.themes()) {
        if (theme->map.field != &field)
            continue;
        if (theme->map.type == gis::MapType::Interval && !isNumber(to)) {
            library.setThemeMap(theme, noMap());
            continue;
        }
        ThematicMap map;
        map.type = theme->map.type;
        map.field = theme->map.field;
        map.classCount = theme->map.classCount;
        map.classes = copyClasses(theme->map.classes);
        for (auto& one : map.classes) {
            one->low = convertCell(one->low, field.format, to, field.decimalDigits());
            one->high = convertCell(one->high, field.format, to, field.decimalDigits());
        }
        library.setThemeMap(theme, std::move(map));
    }
}

std::vector<std::unique_ptr<gis::CFeatureClass>> copyClasses(
    const std::vector<std::unique_ptr<gis::CFeatureClass>>& classes)
{
    std::vector<std::unique_ptr<gis::CFeatureClass>> copies;
    copies.reserve(classes.size());
    for (const auto& one : classes)
        copies.push_back(std::make_unique<gis::CFeatureClass>(*one));
    return copies;
}

} // namespace embedded
