// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/model/FieldUses.h"

#include "embedded/model/ThemeClasses.h"

#include <algorithm>
#include <limits>
#include <string>
#include <unordered_set>

namespace embedded {
namespace {

bool isNumber(gis::FieldFormat format)
{
    return format == gis::FieldFormat::Integer || format == gis::FieldFormat::Decimal;
}

/// Limits that follow each other as they do in new intervals: whole numbers begin one after the end
/// of the class before, decimals where it ends. A class that no whole number is left for goes.
void joinIntervals(Classes& classes, gis::FieldFormat format)
{
    const gis::CFeatureClass* before = nullptr;
    for (auto& one : classes) {
        if (one->low.IsEmpty())
            continue; // the default class, and that of rows without a value
        bool isLeft = true;
        if (before && format == gis::FieldFormat::Integer) {
            isLeft = before->high.GetInt32Value() < std::numeric_limits<int>::max();
            if (isLeft)
                one->low = before->high.GetInt32Value() + 1;
        } else if (before)
            one->low = before->high;
        isLeft = isLeft && one->low.GetDoubleValue() <= one->high.GetDoubleValue();
        if (isLeft)
            before = one.get();
        else
            one.reset();
    }
    std::erase(classes, nullptr);
}

/// A limit among whole numbers; one beyond them all is the last of them.
orv::CPolyValue wholeLimit(const orv::CPolyValue& limit)
{
    using Limits = std::numeric_limits<int>;
    if (limit.GetType() != orv::PolyDouble)
        return limit;
    return orv::CPolyValue(
        std::clamp(limit.GetDoubleValue(), double { Limits::min() }, double { Limits::max() }));
}

/// Of classes whose values have become one, the first is kept.
void uniteEqualValues(Classes& classes)
{
    std::unordered_set<std::string> seen; // of one kind, so told apart by their texts
    std::erase_if(classes, [&seen](const auto& one) {
        return !one->low.IsEmpty() && !seen.insert(one->low.GetStringValue().Bytes()).second;
    });
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
            const bool hadLimits = !one->low.IsEmpty();
            if (map.type == gis::MapType::Interval && to == gis::FieldFormat::Integer) {
                one->low = wholeLimit(one->low);
                one->high = wholeLimit(one->high);
            }
            one->low = convertCell(one->low, field.format, to, field.decimalDigits());
            one->high = convertCell(one->high, field.format, to, field.decimalDigits());
            if (hadLimits && one->low.IsEmpty())
                one.reset(); // no row has its value any more
        }
        std::erase(map.classes, nullptr);
        if (map.type == gis::MapType::SingleValue)
            uniteEqualValues(map.classes);
        if (map.type == gis::MapType::Interval)
            joinIntervals(map.classes, to);
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
