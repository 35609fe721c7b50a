// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/model/ClassLimits.h"

#include "embedded/model/Library.h"
#include "embedded/model/ThemeClasses.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace embedded {
namespace {

using Limits = std::numeric_limits<int>;

/// Not so the default class and that of rows without a value, which follows it, nor an interval
/// whose limits the user took away.
bool hasLimits(const gis::CFeatureClass& one)
{
    return !one.low.IsEmpty() || !one.high.IsEmpty();
}

/// Values of one kind, in the order of classes: texts byte by byte, no before yes.
bool isBefore(const orv::CPolyValue& a, const orv::CPolyValue& b)
{
    switch (a.GetType()) {
    case orv::PolyString:
        return a.TextView() < b.TextView();
    case orv::PolyDate:
        return a.GetDateValue() < b.GetDateValue();
    case orv::PolyBool:
        return !a.GetBoolValue() && b.GetBoolValue();
    default:
        return a.GetDoubleValue() < b.GetDoubleValue();
    }
}

void setLimits(gis::CFeatureClass& one, const orv::CPolyValue& low, const orv::CPolyValue& high)
{
    const bool tellsLimits = one.label == limitsText(one.low, one.high);
    one.low = low;
    one.high = high;
    if (tellsLimits)
        one.label = limitsText(low, high);
}

void convertSingleValues(
    Classes& classes, gis::FieldFormat from, int decimalDigits, gis::FieldFormat to)
{
    for (auto& one : classes) {
        if (!hasLimits(*one))
            continue;
        const orv::CPolyValue value = convertCell(one->low, from, to, decimalDigits);
        if (value.IsEmpty())
            one.reset();
        else
            setLimits(*one, value, value);
    }
    std::erase(classes, nullptr);
    const auto first = std::find_if(
        classes.begin(), classes.end(), [](const auto& one) { return hasLimits(*one); });
    std::stable_sort(first, classes.end(),
        [](const auto& a, const auto& b) { return isBefore(a->low, b->low); });
    classes.erase(std::unique(first, classes.end(),
                      [](const auto& a, const auto& b) { return a->low == b->low; }),
        classes.end());
}

/// A limit among whole numbers; one beyond them all is the last of them.
orv::CPolyValue wholeLimit(double limit)
{
    return orv::CPolyValue(
        static_cast<int>(std::clamp(limit, double { Limits::min() }, double { Limits::max() })));
}

/// Whether a value on the border of two intervals of decimals belongs to the later one.
bool meet(const gis::CFeatureClass* before, const gis::CFeatureClass* after)
{
    return before && after && !before->high.IsEmpty() && before->high == after->low;
}

/// The whole numbers of one interval of decimals; false when it had decimals and has no whole
/// number.
bool makeWhole(gis::CFeatureClass& one, bool meetsBefore, bool meetsAfter)
{
    const double oldLow = one.low.GetDoubleValue();
    const double oldHigh = one.high.GetDoubleValue();
    const double low = meetsBefore ? std::ceil(oldLow) : std::round(oldLow);
    const double high = meetsAfter ? std::ceil(oldHigh) - 1 : std::round(oldHigh);
    const bool hasBoth = !one.low.IsEmpty() && !one.high.IsEmpty();
    setLimits(one, one.low.IsEmpty() ? orv::CPolyValue() : wholeLimit(low),
        one.high.IsEmpty() ? orv::CPolyValue() : wholeLimit(high));
    const bool isBeyond = low > Limits::max() || high < Limits::min();
    return !(hasBoth && oldLow <= oldHigh && (low > high || isBeyond));
}

void makeWhole(Classes& classes)
{
    // Each is judged by its neighbours as they were.
    std::vector<bool> meetsBefore(classes.size() + 1);
    for (std::size_t i = 1; i < classes.size(); ++i)
        meetsBefore[i] = meet(classes[i - 1].get(), classes[i].get());
    for (std::size_t i = 0; i < classes.size(); ++i)
        if (hasLimits(*classes[i]) && !makeWhole(*classes[i], meetsBefore[i], meetsBefore[i + 1]))
            classes[i].reset();
    std::erase(classes, nullptr);
}

orv::CPolyValue decimalLimit(const orv::CPolyValue& limit)
{
    return limit.IsEmpty() ? limit : orv::CPolyValue(limit.GetDoubleValue());
}

void makeDecimal(Classes& classes)
{
    for (std::size_t i = 0; i < classes.size(); ++i) {
        gis::CFeatureClass& one = *classes[i];
        orv::CPolyValue high = decimalLimit(one.high);
        if (i + 1 < classes.size() && !one.high.IsEmpty() && !classes[i + 1]->low.IsEmpty()
            && classes[i + 1]->low.GetDoubleValue() == one.high.GetDoubleValue() + 1)
            high = decimalLimit(classes[i + 1]->low);
        if (hasLimits(one))
            setLimits(one, decimalLimit(one.low), high);
    }
}

/// The first interval always has a limit.
bool hasEmptyClass(const Classes& classes)
{
    return classes.size() > 1 && !hasLimits(*classes[1]);
}

} // namespace

void convertClasses(ThematicMap& map, gis::FieldFormat from, int decimalDigits, gis::FieldFormat to,
    bool hasEmptyRows)
{
    if (map.type == gis::MapType::None)
        return;
    Classes& classes = map.classes;
    if (map.type == gis::MapType::SingleValue)
        convertSingleValues(classes, from, decimalDigits, to);
    else if (to == gis::FieldFormat::Integer)
        makeWhole(classes);
    else
        makeDecimal(classes);
    if (hasEmptyRows && !hasEmptyClass(classes))
        classes.insert(classes.begin() + (classes.empty() ? 0 : 1), emptyValuesClass());
    if (map.type == gis::MapType::Interval)
        map.classCount
            = std::max(1, static_cast<int>(classes.size()) - (hasEmptyClass(classes) ? 2 : 1));
}

} // namespace embedded
