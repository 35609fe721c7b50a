// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/base/String.h"

#include <cstdint>
#include <vector>

namespace orv {

/// Tags of `CPolyValue::GetType`; 5 and 6 are not used.
enum PolyValueType : int {
    PolyEmpty = 0,
    PolyBool = 1,
    PolyInt32 = 2,
    PolyDouble = 3,
    PolyString = 4,
    PolyDate = 7,
    PolyArray = 8,
};

/// The marks that field constraints use for "not set"; they stay at the host boundary.
inline constexpr int UnsetInteger = 2147483647;
inline constexpr double UnsetDecimal = 1.7e200;

/// The value of a cell: empty, boolean, 32-bit integer, double, text, date or array of texts.
/// Units: dates in seconds since 1970-01-01 00:00 UTC.
/// Errors: reading as another kind converts between integer and double (truncated, clamped) and
/// else gives 0, 0.0, false or date 0; indexes outside an array give the empty text.
/// Owner, thread: a value. The layout is part of the host contract.
class TEMATICA_HOST_API CPolyValue final {
public:
    CPolyValue() noexcept;
    explicit CPolyValue(bool value);
    explicit CPolyValue(double value);
    explicit CPolyValue(int value);
    explicit CPolyValue(const String& value);
    explicit CPolyValue(const char* value);
    CPolyValue(const CPolyValue& other);
    CPolyValue(CPolyValue&& other) noexcept;
    ~CPolyValue();
    CPolyValue& operator=(bool value);
    CPolyValue& operator=(double value);
    CPolyValue& operator=(int value);
    CPolyValue& operator=(const String& value);
    CPolyValue& operator=(const char* value);
    CPolyValue& operator=(const CPolyValue& other);
    CPolyValue& operator=(CPolyValue&& other) noexcept;

    /// Equal kinds by value, integer and double as numbers, two empties are equal; other pairs
    /// differ.
    bool operator!=(const CPolyValue& other) const;
    bool operator==(const CPolyValue& other) const { return !(*this != other); }

    [[nodiscard]] int GetType() const noexcept { return m_type; }
    [[nodiscard]] bool IsEmpty() const noexcept { return m_type == PolyEmpty; }
    void SetToEmpty();

    [[nodiscard]] bool GetBoolValue() const;
    [[nodiscard]] int GetInt32Value() const;
    [[nodiscard]] double GetDoubleValue() const;
    [[nodiscard]] std::int64_t GetDateValue() const;
    void SetDateValue(std::int64_t seconds);
    /// The value as text: "", "Sì"/"No", decimal digits, the shortest digits that read back,
    /// dd/mm/yyyy local.
    [[nodiscard]] String GetStringValue() const;

    /// Makes this an array of `count` empty texts; `type` is the elements' tag (4).
    void CreateArray(unsigned count, unsigned type);
    [[nodiscard]] unsigned GetNoArrayElements() const;
    [[nodiscard]] String GetStringValue(unsigned index) const;
    void SetStringValue(unsigned index, const String& value);

    /// The text itself without a copy; empty unless the tag is `PolyString`. Valid until this value
    /// changes.
    [[nodiscard]] std::string_view TextView() const noexcept
    {
        return m_type == PolyString ? m_text.View() : std::string_view();
    }

private:
    std::int32_t m_type = PolyEmpty;
    union {
        bool asBool;
        std::int32_t asInt32;
        double asDouble;
        std::int64_t asDate;
    } m_number {};
    String m_text;
    std::vector<String> m_elements;
};

} // namespace orv
