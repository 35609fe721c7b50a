// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "host/base/PolyValue.h"

#include "host/base/Dates.h"
#include "host/base/Numbers.h"

#include <cmath>
#include <limits>
#include <utility>

namespace orv {

CPolyValue::CPolyValue() noexcept = default;
CPolyValue::CPolyValue(bool value)
    : m_type(PolyBool)
{
    m_number.asBool = value;
}
CPolyValue::CPolyValue(double value)
    : m_type(PolyDouble)
{
    m_number.asDouble = value;
}
CPolyValue::CPolyValue(int value)
    : m_type(PolyInt32)
{
    m_number.asInt32 = value;
}
CPolyValue::CPolyValue(const String& value)
    : m_type(PolyString)
    , m_text(value)
{
}
CPolyValue::CPolyValue(const char* value)
    : m_type(PolyString)
    , m_text(value)
{
}
CPolyValue::CPolyValue(const CPolyValue& other) = default;
CPolyValue::CPolyValue(CPolyValue&& other) noexcept
    : m_type(std::exchange(other.m_type, static_cast<std::int32_t>(PolyEmpty)))
    , m_number(other.m_number)
    , m_text(std::move(other.m_text))
    , m_elements(std::move(other.m_elements))
{
}
CPolyValue::~CPolyValue() = default;

CPolyValue& CPolyValue::operator=(const CPolyValue& other)
{
    if (this == &other)
        return *this;
    m_type = other.m_type;
    m_number = other.m_number;
    if (m_type == PolyString)
        m_text = other.m_text;
    if (m_type == PolyArray)
        m_elements = other.m_elements;
    return *this;
}
CPolyValue& CPolyValue::operator=(CPolyValue&& other) noexcept
{
    if (this == &other)
        return *this;
    m_type = std::exchange(other.m_type, static_cast<std::int32_t>(PolyEmpty));
    m_number = other.m_number;
    if (m_type == PolyString)
        m_text = std::move(other.m_text);
    if (m_type == PolyArray)
        m_elements = std::move(other.m_elements);
    return *this;
}
CPolyValue& CPolyValue::operator=(bool value)
{
    m_type = PolyBool;
    m_number.asBool = value;
    return *this;
}
CPolyValue& CPolyValue::operator=(double value)
{
    m_type = PolyDouble;
    m_number.asDouble = value;
    return *this;
}
CPolyValue& CPolyValue::operator=(int value)
{
    m_type = PolyInt32;
    m_number.asInt32 = value;
    return *this;
}
CPolyValue& CPolyValue::operator=(const String& value)
{
    m_text = value;
    m_type = PolyString;
    return *this;
}
CPolyValue& CPolyValue::operator=(const char* value)
{
    m_text = value;
    m_type = PolyString;
    return *this;
}

bool CPolyValue::operator!=(const CPolyValue& other) const
{
    const auto isNumber = [](int type) { return type == PolyInt32 || type == PolyDouble; };
    if (m_type != other.m_type)
        return !(isNumber(m_type) && isNumber(other.m_type))
            || GetDoubleValue() != other.GetDoubleValue();
    switch (m_type) {
    case PolyBool:
        return m_number.asBool != other.m_number.asBool;
    case PolyInt32:
        return m_number.asInt32 != other.m_number.asInt32;
    case PolyDouble:
        return m_number.asDouble != other.m_number.asDouble;
    case PolyDate:
        return m_number.asDate != other.m_number.asDate;
    case PolyString:
        return m_text != other.m_text;
    case PolyArray:
        return m_elements != other.m_elements;
    default:
        return false;
    }
}

void CPolyValue::SetToEmpty()
{
    m_type = PolyEmpty;
}

bool CPolyValue::GetBoolValue() const
{
    return m_type == PolyBool && m_number.asBool;
}

int CPolyValue::GetInt32Value() const
{
    if (m_type == PolyInt32)
        return m_number.asInt32;
    if (m_type != PolyDouble || std::isnan(m_number.asDouble))
        return 0;
    if (m_number.asDouble >= std::numeric_limits<int>::max())
        return std::numeric_limits<int>::max();
    if (m_number.asDouble <= std::numeric_limits<int>::min())
        return std::numeric_limits<int>::min();
    return static_cast<int>(m_number.asDouble);
}

double CPolyValue::GetDoubleValue() const
{
    return m_type == PolyDouble ? m_number.asDouble : m_type == PolyInt32 ? m_number.asInt32 : 0.0;
}

std::int64_t CPolyValue::GetDateValue() const
{
    return m_type == PolyDate ? m_number.asDate : 0;
}

void CPolyValue::SetDateValue(std::int64_t seconds)
{
    m_type = PolyDate;
    m_number.asDate = seconds;
}

String CPolyValue::GetStringValue() const
{
    switch (m_type) {
    case PolyBool:
        return m_number.asBool ? "S\xC3\xAC" : "No";
    case PolyInt32:
        return String::ValueOf(m_number.asInt32);
    case PolyDouble:
        return String(std::string_view(ShortestText(m_number.asDouble)));
    case PolyString:
        return m_text;
    case PolyDate:
        return String(std::string_view(DateText(m_number.asDate)));
    default:
        return {};
    }
}

void CPolyValue::CreateArray(unsigned count, unsigned)
{
    m_elements.assign(count, String());
    m_type = PolyArray;
}

unsigned CPolyValue::GetNoArrayElements() const
{
    return m_type == PolyArray ? static_cast<unsigned>(m_elements.size()) : 0;
}

String CPolyValue::GetStringValue(unsigned index) const
{
    return index < GetNoArrayElements() ? m_elements[index] : String();
}

void CPolyValue::SetStringValue(unsigned index, const String& value)
{
    if (index < GetNoArrayElements())
        m_elements[index] = value;
}

} // namespace orv
