// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/model/ThemeClasses.h"

#include "embedded/base/Palette.h"

#include "host/base/Dates.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <type_traits>

namespace embedded {
namespace {

constexpr const char* DefaultText = "Default";
constexpr const char* EverythingText = "Tutti";
constexpr const char* EmptyText = "Vuoto";

/// Calls `visit(value)` for each row with a value, chunk by chunk.
template <typename T, typename Visit> void forEachValue(const gis::ColumnView& view, Visit&& visit)
{
    for (int c = 0; c < view.chunkCount; ++c) {
        const gis::ColumnChunk& chunk = view.chunks[c];
        const T* values = static_cast<const T*>(chunk.values);
        if (!chunk.validity) {
            for (int i = 0; i < chunk.rowCount; ++i)
                visit(values[i]);
            continue;
        }
        for (int word = 0; word * 64 < chunk.rowCount; ++word) {
            std::uint64_t bits = chunk.validity[word];
            const int left = chunk.rowCount - word * 64;
            if (left < 64)
                bits &= (std::uint64_t { 1 } << left) - 1;
            for (; bits != 0; bits &= bits - 1)
                visit(values[word * 64 + std::countr_zero(bits)]);
        }
    }
}

/// Numbers that can be put in order: not-a-number has no place among them.
template <typename T, typename Visit>
void forEachOrdered(const gis::ColumnView& view, Visit&& visit)
{
    forEachValue<T>(view, [&visit](T value) {
        if constexpr (std::is_floating_point_v<T>)
            if (std::isnan(value))
                return;
        visit(value);
    });
}

template <typename T, typename Make>
void findRange(const gis::ColumnView& view, ColumnRange& range, Make&& make)
{
    bool isFirst = true;
    T low {};
    T high {};
    forEachOrdered<T>(view, [&](T value) {
        low = isFirst || value < low ? value : low;
        high = isFirst || high < value ? value : high;
        isFirst = false;
    });
    if (isFirst)
        return;
    range.minimum = make(low);
    range.maximum = make(high);
}

template <typename T> std::vector<T> sortedDistinct(const gis::ColumnView& view, int limit)
{
    std::vector<T> values;
    values.reserve(static_cast<std::size_t>(view.rowCount));
    forEachOrdered<T>(view, [&values](T value) { values.push_back(value); });
    std::sort(values.begin(), values.end());
    values.erase(std::unique(values.begin(), values.end()), values.end());
    if (values.size() > static_cast<std::size_t>(limit))
        values.resize(static_cast<std::size_t>(limit));
    return values;
}

/// Texts that at least one row has: a dictionary may hold others.
std::vector<std::string_view> usedTexts(const gis::ColumnView& view)
{
    std::vector<bool> isUsed(view.dictionarySize);
    forEachValue<std::uint32_t>(view, [&isUsed](std::uint32_t code) { isUsed[code] = true; });
    std::vector<std::string_view> texts;
    for (std::uint32_t code = 0; code < view.dictionarySize; ++code)
        if (isUsed[code])
            texts.push_back(view.dictionary[code].View());
    return texts;
}

orv::CPolyValue dateValue(std::int32_t day)
{
    orv::CPolyValue value;
    value.SetDateValue(orv::LocalMidnightOfDay(day));
    return value;
}

orv::CPolyValue textValue(std::string_view text)
{
    return orv::CPolyValue(orv::String(text));
}

template <typename T, typename Make>
std::vector<orv::CPolyValue> valuesFrom(const std::vector<T>& sorted, Make&& make)
{
    std::vector<orv::CPolyValue> values;
    values.reserve(sorted.size());
    for (const T& one : sorted)
        values.push_back(make(one));
    return values;
}

void addClass(Classes& classes, const orv::CPolyValue& low, const orv::CPolyValue& high,
    const orv::String& label, int colour)
{
    auto added = std::make_unique<gis::CFeatureClass>();
    added->low = low;
    added->high = high;
    added->label = label;
    added->colour = colour;
    classes.push_back(std::move(added));
}

void addInterval(
    Classes& classes, int order, const orv::CPolyValue& low, const orv::CPolyValue& high)
{
    addClass(classes, low, high, limitsText(low, high), classColour(order));
}

void addIntegerIntervals(Classes& classes, int minimum, int maximum, int count)
{
    const std::int64_t numbers = std::int64_t { maximum } - minimum + 1;
    const std::int64_t intervals = std::min<std::int64_t>(count, numbers);
    std::int64_t low = minimum;
    for (std::int64_t i = 0; i < intervals; ++i) {
        const std::int64_t next = minimum + (i + 1) * numbers / intervals;
        addInterval(classes, static_cast<int>(i), orv::CPolyValue(static_cast<int>(low)),
            orv::CPolyValue(static_cast<int>(next - 1)));
        low = next;
    }
}

void addDecimalIntervals(Classes& classes, double minimum, double maximum, int count)
{
    double low = minimum;
    for (int i = 0; i < count; ++i) {
        const double high = i + 1 == count
            ? maximum
            : std::lerp(minimum, maximum, static_cast<double>(i + 1) / count);
        addInterval(classes, i, orv::CPolyValue(low), orv::CPolyValue(high));
        low = high;
    }
}

} // namespace

ColumnRange rangeOf(const Column& column)
{
    ColumnRange range;
    range.hasEmptyRows = column.emptyCount() > 0;
    const gis::ColumnView view = column.view();
    switch (view.kind) {
    case gis::ColumnKind::Boolean:
        findRange<std::uint8_t>(
            view, range, [](std::uint8_t value) { return orv::CPolyValue(value != 0); });
        break;
    case gis::ColumnKind::Integer:
        findRange<std::int32_t>(
            view, range, [](std::int32_t value) { return orv::CPolyValue(value); });
        break;
    case gis::ColumnKind::Decimal:
        findRange<double>(view, range, [](double value) { return orv::CPolyValue(value); });
        break;
    case gis::ColumnKind::Date:
        findRange<std::int32_t>(view, range, dateValue);
        break;
    case gis::ColumnKind::Dictionary: {
        const auto texts = usedTexts(view);
        const auto [low, high] = std::minmax_element(texts.begin(), texts.end());
        if (!texts.empty()) {
            range.minimum = textValue(*low);
            range.maximum = textValue(*high);
        }
        break;
    }
    }
    return range;
}

std::vector<orv::CPolyValue> distinctValues(const Column& column, int limit)
{
    const gis::ColumnView view = column.view();
    switch (view.kind) {
    case gis::ColumnKind::Boolean:
        return valuesFrom(sortedDistinct<std::uint8_t>(view, limit),
            [](std::uint8_t value) { return orv::CPolyValue(value != 0); });
    case gis::ColumnKind::Integer:
        return valuesFrom(sortedDistinct<std::int32_t>(view, limit),
            [](std::int32_t value) { return orv::CPolyValue(value); });
    case gis::ColumnKind::Decimal:
        return valuesFrom(sortedDistinct<double>(view, limit),
            [](double value) { return orv::CPolyValue(value); });
    case gis::ColumnKind::Date:
        return valuesFrom(sortedDistinct<std::int32_t>(view, limit), dateValue);
    case gis::ColumnKind::Dictionary:
        break;
    }
    auto texts = usedTexts(view);
    const auto wanted = std::min(texts.size(), static_cast<std::size_t>(limit));
    std::partial_sort(
        texts.begin(), texts.begin() + static_cast<std::ptrdiff_t>(wanted), texts.end());
    texts.resize(wanted);
    return valuesFrom(texts, textValue);
}

orv::String limitsText(const orv::CPolyValue& low, const orv::CPolyValue& high)
{
    const orv::String from = low.IsEmpty() ? EmptyText : low.GetStringValue();
    const orv::String to = high.IsEmpty() ? EmptyText : high.GetStringValue();
    return from == to ? from : from + " - " + to;
}

std::unique_ptr<gis::CFeatureClass> emptyValuesClass()
{
    auto made = std::make_unique<gis::CFeatureClass>();
    made->label = EmptyText;
    made->colour = ForegroundColour;
    return made;
}

Classes defaultClassOnly()
{
    Classes classes;
    addClass(classes, {}, {}, DefaultText, ForegroundColour);
    classes.front()->isDefault = true;
    return classes;
}

Classes uniformClasses()
{
    Classes classes = defaultClassOnly();
    addClass(classes, {}, {}, EverythingText, classColour(0));
    return classes;
}

Classes singleValueClasses(const Column& column)
{
    Classes classes = defaultClassOnly();
    if (column.emptyCount() > 0)
        classes.push_back(emptyValuesClass());
    int order = 0;
    for (const auto& value : distinctValues(column, MaxSingleValueClasses))
        addClass(classes, value, value, limitsText(value, value), classColour(order++));
    return classes;
}

Classes intervalClasses(const Column& column, int count)
{
    Classes classes = defaultClassOnly();
    const bool isInteger = column.kind() == gis::ColumnKind::Integer;
    if (!isInteger && column.kind() != gis::ColumnKind::Decimal)
        return classes;
    const ColumnRange range = rangeOf(column);
    if (range.hasEmptyRows)
        classes.push_back(emptyValuesClass());
    if (range.minimum.IsEmpty())
        return classes;
    if (isInteger)
        addIntegerIntervals(
            classes, range.minimum.GetInt32Value(), range.maximum.GetInt32Value(), count);
    else
        addDecimalIntervals(
            classes, range.minimum.GetDoubleValue(), range.maximum.GetDoubleValue(), count);
    return classes;
}

} // namespace embedded
