// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT

#include "host/base/PolyValue.h"

#include "host/base/Dates.h"
#include "host/base/Numbers.h"

#include <limits>

namespace orv {

namespace {

std::int32_t truncatedToInt32(double value)
{
    constexpr double Least = std::numeric_limits<std::int32_t>::min();
    constexpr double Most = std::numeric_limits<std::int32_t>::max();
    if (!(value == value))
        return 0;
    if (value <= Least)
        return std::numeric_limits<std::int32_t>::min();
    if (value >= Most)
        return std::numeric_limits<std::int32_t>::max();
    return static_cast<std::int32_t>(value);
}

bool isNumberTag(int tag)
{
    return tag == PolyInt32 || tag == PolyDouble;
}

} // namespace

CPolyValue::CPolyValue() noexcept = default;
CPolyValue::~CPolyValue() = default;

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
    : m_type(other.m_type)
    , m_number(other.m_number)
    , m_text(std::move(other.m_text))
    , m_elements(std::move(other.m_elements))
{
    other.SetToEmpty();
}

CPolyValue& CPolyValue::operator=(bool value)
{
    SetToEmpty();
    m_type = PolyBool;
    m_number.asBool = value;
    return *this;
}

CPolyValue& CPolyValue::operator=(double value)
{
    SetToEmpty();
    m_type = PolyDouble;
    m_number.asDouble = value;
    return *this;
}

CPolyValue& CPolyValue::operator=(int value)
{
    SetToEmpty();
    m_type = PolyInt32;
    m_number.asInt32 = value;
    return *this;
}

CPolyValue& CPolyValue::operator=(const String& value)
{
    // The text first: it may be an element of this very value's array.
    m_text = value;
    m_elements.clear();
    m_number.asDate = 0;
    m_type = PolyString;
    return *this;
}

CPolyValue& CPolyValue::operator=(const char* value)
{
    return *this = String(value);
}

CPolyValue& CPolyValue::operator=(const CPolyValue& other)
{
    if (this == &other)
        return *this;
    // Whole vectors and texts are touched only where there are some: cells are mostly numbers.
    if (other.m_type == PolyString || !m_text.View().empty())
        m_text = other.m_text;
    if (other.m_type == PolyArray || !m_elements.empty())
        m_elements = other.m_elements;
    m_number = other.m_number;
    m_type = other.m_type;
    return *this;
}

CPolyValue& CPolyValue::operator=(CPolyValue&& other) noexcept
{
    if (this == &other)
        return *this;
    m_text = std::move(other.m_text);
    m_elements = std::move(other.m_elements);
    m_number = other.m_number;
    m_type = other.m_type;
    other.SetToEmpty();
    return *this;
}

bool CPolyValue::operator!=(const CPolyValue& other) const
{
    if (m_type != other.m_type) {
        const bool areNumbers = isNumberTag(m_type) && isNumberTag(other.m_type);
        return !areNumbers || GetDoubleValue() != other.GetDoubleValue();
    }
    switch (m_type) {
    case PolyBool:
        return m_number.asBool != other.m_number.asBool;
    case PolyInt32:
        return m_number.asInt32 != other.m_number.asInt32;
    case PolyDouble:
        return m_number.asDouble != other.m_number.asDouble;
    case PolyString:
        return m_text != other.m_text;
    case PolyDate:
        return m_number.asDate != other.m_number.asDate;
    case PolyArray:
        return m_elements != other.m_elements;
    default:
        return false;
    }
}

void CPolyValue::SetToEmpty()
{
    m_type = PolyEmpty;
    m_number.asDate = 0;
    if (!m_text.View().empty())
        m_text = "";
    m_elements.clear();
}

bool CPolyValue::GetBoolValue() const
{
    return m_type == PolyBool && m_number.asBool;
}

int CPolyValue::GetInt32Value() const
{
    if (m_type == PolyInt32)
        return m_number.asInt32;
    return m_type == PolyDouble ? truncatedToInt32(m_number.asDouble) : 0;
}

double CPolyValue::GetDoubleValue() const
{
    if (m_type == PolyDouble)
        return m_number.asDouble;
    return m_type == PolyInt32 ? m_number.asInt32 : 0.0;
}

std::int64_t CPolyValue::GetDateValue() const
{
    return m_type == PolyDate ? m_number.asDate : 0;
}

void CPolyValue::SetDateValue(std::int64_t seconds)
{
    SetToEmpty();
    m_type = PolyDate;
    m_number.asDate = seconds;
}

String CPolyValue::GetStringValue() const
{
    switch (m_type) {
    case PolyBool:
        return m_number.asBool ? "Sì" : "No";
    case PolyInt32:
        return String::ValueOf(m_number.asInt32);
    case PolyDouble:
        return String(ShortestText(m_number.asDouble));
    case PolyString:
        return m_text;
    case PolyDate:
        return String(DateText(m_number.asDate));
    default:
        return {};
    }
}

void CPolyValue::CreateArray(unsigned count, unsigned /*type*/)
{
    SetToEmpty();
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
