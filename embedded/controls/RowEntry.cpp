// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/controls/RowEntry.h"

#include "kit/YesNo.h"
#include "kit/texts/QtText.h"

#include "host/base/Dates.h"
#include "host/base/Numbers.h"

#include <QRegularExpression>

#include <algorithm>
#include <cmath>
#include <limits>

namespace embedded {

namespace {

constexpr double LeastUndefined = 8.5e199; // from here up a number means "none"

bool isSet(const orv::CPolyValue& bound)
{
    switch (bound.GetType()) {
    case orv::PolyInt32:
        return bound.GetInt32Value() != orv::UnsetInteger;
    case orv::PolyDouble:
        return bound.GetDoubleValue() != orv::UnsetDecimal;
    default:
        return false;
    }
}

} // namespace

RowEntry::RowEntry(
    gis::CLibGis& library, gis::CDBTable* table, orv::CResultRow* row, int fieldIndex)
    : m_fieldIndex(fieldIndex)
{
    gis::CField* const field = library.GetField(table, fieldIndex);
    m_name = library.GetFieldName(field);
    m_format = library.GetFieldFormat(field);
    m_isPredefined = library.IsFieldPredefined(field);
    m_isRequired = library.IsFieldRequested(field);
    library.GetFieldConstraints(field, m_constraints);
    library.GetRowValue(row, fieldIndex, m_stored);
    m_storedText = textOf(m_stored);
    makeChoices(library, field);
}

void RowEntry::makeChoices(gis::CLibGis& library, gis::CField* field)
{
    if (m_format == gis::FieldFormat::Boolean) {
        m_choices = { QString(), kit::toQt(kit::YesText), kit::toQt(kit::NoText) };
    } else if (m_format == gis::FieldFormat::List) {
        const int count = static_cast<int>(m_constraints[3].GetNoArrayElements());
        for (int i = -1; i < count; ++i)
            m_choices.append(kit::toQt(library.GetListElement(field, i)));
        if (!m_choices.contains(m_storedText))
            m_choices.append(m_storedText);
    }
}

QString RowEntry::textOf(const orv::CPolyValue& value) const
{
    switch (value.GetType()) {
    case orv::PolyBool:
        return kit::toQt(value.GetBoolValue() ? kit::YesText : kit::NoText);
    case orv::PolyDouble:
        return kit::toQt(orv::String::ValueOf(value.GetDoubleValue(),
            static_cast<unsigned>(
                std::clamp(m_constraints[3].GetInt32Value(), 0, gis::MaxDecimalDigits))));
    default:
        return kit::toQt(value.GetStringValue());
    }
}

bool RowEntry::isInside(double value) const
{
    return (!isSet(m_constraints[1]) || value >= m_constraints[1].GetDoubleValue())
        && (!isSet(m_constraints[2]) || value <= m_constraints[2].GetDoubleValue());
}

// A whole text that is a number, with a point or, as one writes by hand, a comma. Of a whole number
// only digits: "3.000" is three thousand to who writes it, and must not become 3.
std::optional<orv::CPolyValue> RowEntry::numberOf(const QString& text) const
{
    static const QRegularExpression digits(QStringLiteral("^\\s*[+-]?[0-9]+\\s*$"));
    if (m_format == gis::FieldFormat::Integer && !digits.match(text).hasMatch())
        return std::nullopt;
    const double number = DoubleDaString(text.toStdString());
    if (number >= LeastUndefined || !std::isfinite(number) || !isInside(number))
        return std::nullopt;
    if (m_format == gis::FieldFormat::Decimal)
        return orv::CPolyValue(number);
    if (std::trunc(number) != number || number < std::numeric_limits<int>::min()
        || number > std::numeric_limits<int>::max())
        return std::nullopt;
    return orv::CPolyValue(static_cast<int>(number));
}

void RowEntry::setStored(const orv::CPolyValue& value, const QString& text)
{
    m_stored = value;
    m_storedText = text;
}

std::optional<orv::CPolyValue> RowEntry::valueOf(const QString& text) const
{
    if (text == m_storedText)
        return m_stored;
    if (text.isEmpty())
        return orv::CPolyValue();
    switch (m_format) {
    case gis::FieldFormat::Text:
    case gis::FieldFormat::List:
        return orv::CPolyValue(kit::fromQt(text));
    case gis::FieldFormat::Boolean:
        return orv::CPolyValue(text == kit::toQt(kit::YesText));
    case gis::FieldFormat::Integer:
    case gis::FieldFormat::Decimal:
        return numberOf(text);
    case gis::FieldFormat::Date:
        break;
    }
    std::int64_t midnight = 0;
    if (!orv::ParseDateText(text.toStdString(), midnight))
        return std::nullopt;
    orv::CPolyValue date;
    date.SetDateValue(midnight);
    return date;
}

} // namespace embedded
