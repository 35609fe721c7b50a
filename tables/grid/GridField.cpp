// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tables/grid/GridField.h"

#include "kit/YesNo.h"

#include "host/base/Dates.h"
#include "host/base/Numbers.h"

#include <algorithm>
#include <array>

namespace tables {

namespace {

using Constraints = std::array<orv::CPolyValue, gis::ConstraintCount>;

Constraints constraintsOf(gis::CLibGis& library, gis::CField* field)
{
    Constraints constraints;
    library.GetFieldConstraints(field, constraints.data());
    return constraints;
}

bool isSetInteger(const orv::CPolyValue& bound)
{
    return !bound.IsEmpty() && bound.GetInt32Value() != orv::UnsetInteger;
}

bool isSetDecimal(const orv::CPolyValue& bound)
{
    return !bound.IsEmpty() && bound.GetDoubleValue() != orv::UnsetDecimal;
}

bool acceptInteger(const Constraints& constraints, orv::String& text)
{
    const int value = orv_atoi(text.View());
    if (isSetInteger(constraints[1]) && value < constraints[1].GetInt32Value())
        return false;
    if (isSetInteger(constraints[2]) && value > constraints[2].GetInt32Value())
        return false;
    text = orv::String::ValueOf(value);
    return true;
}

bool acceptDecimal(const Constraints& constraints, int digits, orv::String& text)
{
    const double value = orv_atof(text.View());
    if (isSetDecimal(constraints[1]) && value < constraints[1].GetDoubleValue())
        return false;
    if (isSetDecimal(constraints[2]) && value > constraints[2].GetDoubleValue())
        return false;
    text = orv::String::ValueOf(value, static_cast<unsigned>(digits));
    return true;
}

} // namespace

std::vector<GridField> gridFields(gis::CLibGis* library, gis::CDBTable* table)
{
    std::vector<GridField> fields;
    const int count = library && table ? library->GetNumFields(table) : 0;
    for (int i = 0; i < count; ++i) {
        gis::CField* field = library->GetField(table, i);
        const auto constraints = constraintsOf(*library, field);
        fields.push_back({ field, library->GetFieldName(field), library->GetFieldFormat(field),
            library->IsFieldPredefined(field), library->IsFieldRequested(field),
            std::clamp(constraints[3].GetInt32Value(), 0, gis::MaxDecimalDigits) });
    }
    return fields;
}

orv::String cellText(const orv::CPolyValue& value, int decimalDigits)
{
    switch (value.GetType()) {
    case orv::PolyBool:
        return value.GetBoolValue() ? kit::YesText : kit::NoText;
    case orv::PolyInt32:
    case orv::PolyString:
        return value.GetStringValue();
    case orv::PolyDouble:
        return orv::String::ValueOf(value.GetDoubleValue(), static_cast<unsigned>(decimalDigits));
    case orv::PolyDate:
        return value.GetDateValue() == 0 ? orv::String()
                                         : orv::String(orv::DateText(value.GetDateValue()));
    default:
        return {};
    }
}

orv::CPolyValue valueOfCellText(const orv::String& text, gis::FieldFormat format)
{
    orv::CPolyValue value;
    if (text.Length() == 0)
        return value;
    switch (format) {
    case gis::FieldFormat::Text:
    case gis::FieldFormat::List:
        value = text;
        break;
    case gis::FieldFormat::Boolean:
        value = text == orv::String(kit::YesText);
        break;
    case gis::FieldFormat::Integer:
        value = orv_atoi(text.View());
        break;
    case gis::FieldFormat::Decimal:
        value = orv_atof(text.View());
        break;
    case gis::FieldFormat::Date: {
        std::int64_t midnight = 0;
        if (orv::ParseDateText(text.View(), midnight) && midnight != 0)
            value.SetDateValue(midnight);
        break;
    }
    }
    return value;
}

std::vector<orv::String> cellChoices(gis::CLibGis& library, const GridField& field)
{
    std::vector<orv::String> choices;
    if (field.format == gis::FieldFormat::Boolean)
        choices = { kit::NoText, kit::YesText, orv::String() };
    if (field.format == gis::FieldFormat::List) {
        const auto constraints = constraintsOf(library, field.field);
        const int count = static_cast<int>(constraints[3].GetNoArrayElements());
        for (int i = -1; i < count; ++i)
            choices.push_back(library.GetListElement(field.field, i));
    }
    return choices;
}

bool acceptCellText(gis::CLibGis& library, const GridField& field, orv::String& text)
{
    if (text.Length() == 0)
        return true;
    switch (field.format) {
    case gis::FieldFormat::Integer:
        return acceptInteger(constraintsOf(library, field.field), text);
    case gis::FieldFormat::Decimal:
        return acceptDecimal(constraintsOf(library, field.field), field.decimalDigits, text);
    case gis::FieldFormat::Date: {
        // What is no real day would be saved as no value: shown at once, not after saving. A year
        // before 1000 stays as typed: shown with fewer digits it is no date.
        const orv::CPolyValue day = valueOfCellText(text, field.format);
        const orv::String shown = cellText(day, 0);
        if (valueOfCellText(shown, field.format) == day)
            text = shown;
        return true;
    }
    default:
        return true;
    }
}

} // namespace tables
