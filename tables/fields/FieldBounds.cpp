// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tables/fields/FieldBounds.h"

#include "host/base/Numbers.h"
#include "kit/texts/TextIds.h"

#include <algorithm>

namespace tables {

namespace {

constexpr int MostDigits = 10;

std::int32_t unset(std::int32_t)
{
    return orv::UnsetInteger;
}
double unset(double)
{
    return orv::UnsetDecimal;
}

bool read(const std::string& text, std::int32_t& value)
{
    value = orv_atoi(text);
    return orv::String::ValueOf(value).Bytes() == text;
}

bool read(const std::string& text, double& value)
{
    value = orv_atof(text);
    const std::size_t point = text.find('.');
    const std::size_t digits = point == std::string::npos ? 0 : text.size() - point - 1;
    // No number has more digits than this; a longer text is a number only if it ends in zeros.
    constexpr std::size_t Longest = 1100;
    return digits <= Longest && StringDaDouble(value, 0, static_cast<int>(digits)) == text;
}

template <typename Number> bool isSet(Number value)
{
    return value != unset(value);
}

/// Bounds of integers may not even be equal, decimal ones neither: a field with one possible value
/// is taken for a slip.
template <typename Number> bool areCongruent(Number minimum, Number maximum)
{
    return !isSet(minimum) || !isSet(maximum) || minimum < maximum;
}

template <typename Number> class Taking final {
public:
    explicit Taking(FieldBounds<Number>& bounds)
        : m_bounds(bounds)
    {
    }

    std::vector<int> take(const BoundTexts& texts)
    {
        const Number standard = readOne(texts.standard, m_bounds.standard, texts::DefaultInvalid);
        const Number minimum = readOne(texts.minimum, m_bounds.minimum, texts::MinimumInvalid);
        const Number maximum = readOne(texts.maximum, m_bounds.maximum, texts::MaximumInvalid);
        takeRange(minimum, maximum);
        if (isSet(standard))
            takeStandard(standard, minimum, maximum);
        return m_messages;
    }

private:
    /// The number just typed, "not set" where there is none. An empty text clears the bound at
    /// once.
    Number readOne(const std::string& text, Number& bound, int message)
    {
        Number value {};
        if (text.empty()) {
            bound = unset(value);
            return bound;
        }
        if (read(text, value)) {
            if (!isSet(value))
                bound = value; // the mark itself was typed
            return value;
        }
        m_messages.push_back(message);
        return unset(value);
    }

    void takeRange(Number minimum, Number maximum)
    {
        if (!areCongruent(minimum, maximum)) {
            m_messages.push_back(texts::RangeIncongruent);
            return;
        }
        const Number newMinimum = isSet(minimum) ? minimum : m_bounds.minimum;
        const Number newMaximum = isSet(maximum) ? maximum : m_bounds.maximum;
        // A new bound that does not fit one that was kept: its own message was shown already.
        if (!areCongruent(newMinimum, newMaximum))
            return;
        m_bounds.minimum = newMinimum;
        m_bounds.maximum = newMaximum;
    }

    void takeStandard(Number standard, Number minimum, Number maximum)
    {
        const bool isInside
            = (!isSet(minimum) || standard >= minimum) && (!isSet(maximum) || standard <= maximum);
        if (!isInside)
            m_messages.push_back(texts::DefaultOutsideRange);
        m_bounds.standard = isInside ? standard : unset(standard);
    }

    FieldBounds<Number>& m_bounds;
    std::vector<int> m_messages;
};

} // namespace

std::vector<int> takeBounds(const BoundTexts& texts, IntegerBounds& bounds)
{
    return Taking<std::int32_t>(bounds).take(texts);
}

std::vector<int> takeBounds(const BoundTexts& texts, DecimalBounds& bounds)
{
    return Taking<double>(bounds).take(texts);
}

bool takeDigits(std::string_view text, int& digits)
{
    const double wanted = orv_atof(text);
    digits = static_cast<int>(std::clamp(wanted, 0.0, static_cast<double>(MostDigits)));
    return wanted >= MostDigits + 1;
}

orv::String boundText(std::int32_t value)
{
    return isSet(value) ? orv::String::ValueOf(value) : orv::String();
}

orv::String boundText(double value, int digits)
{
    return isSet(value)
        ? orv::String::ValueOf(value, static_cast<unsigned>(std::clamp(digits, 0, MostDigits)))
        : orv::String();
}

} // namespace tables
