// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "query/dialog/CtrlDlgQuery.h"

#include "query/execution/DistinctValues.h"
#include "query/execution/Readings.h"
#include "query/language/FilterParser.h"

#include "kit/YesNo.h"

#include "host/base/Dates.h"
#include "host/gis/Feedback.h"

#include <algorithm>
#include <array>

namespace query {

namespace {

int decimalDigits(gis::CLibGis& library, gis::CField* field)
{
    std::array<orv::CPolyValue, gis::ConstraintCount> constraints;
    library.GetFieldConstraints(field, constraints.data());
    return std::clamp(constraints[3].GetInt32Value(), 0, gis::MaxDecimalDigits);
}

std::string displayText(const orv::CPolyValue& value, int digits)
{
    switch (value.GetType()) {
    case orv::PolyDate:
        return orv::DateText(value.GetDateValue());
    case orv::PolyBool:
        return value.GetBoolValue() ? kit::YesText : kit::NoText;
    case orv::PolyDouble:
        return orv::String::ValueOf(value.GetDoubleValue(), static_cast<unsigned>(digits)).Bytes();
    case orv::PolyString:
        return std::string(value.TextView());
    default:
        return value.GetStringValue().Bytes();
    }
}

} // namespace

GatheredValues gatherValues(gis::CLibGis& library, gis::CTheme* theme, int fieldIndex)
{
    GatheredValues gathered;
    gis::CField* field = library.GetField(library.GetTable(theme), fieldIndex);
    gathered.format = library.GetFieldFormat(field);
    const auto distinct = distinctValues(library, theme, fieldIndex);
    gathered.isReadable = isReadable(library, library.GetTable(theme), fieldIndex);
    if (!distinct || !gathered.isReadable)
        return gathered;
    const int digits = decimalDigits(library, field);
    gathered.texts.reserve(distinct->values.size());
    for (const auto& entry : distinct->values) {
        std::string text = displayText(entry.value, digits);
        if (gathered.texts.empty() || text != gathered.texts.back())
            gathered.texts.push_back(std::move(text));
    }
    return gathered;
}

CCtrlDlgQuery::CCtrlDlgQuery(std::int64_t drawing, gis::CLibGis* library)
    : m_drawing(drawing)
    , m_library(library)
{
}

CCtrlDlgQuery::~CCtrlDlgQuery() = default;

std::vector<CCtrlDlgQuery::Named> CCtrlDlgQuery::themes() const
{
    std::vector<Named> themes;
    for (int i = 0; m_library && i < m_library->GetNumThemes(); ++i) {
        gis::CTheme* theme = m_library->GetTheme(i);
        themes.push_back({ m_library->GetThemeName(theme), theme });
    }
    return themes;
}

int CCtrlDlgQuery::activeTheme() const
{
    gis::CTheme* active = m_library ? m_library->GetThemeActive() : nullptr;
    for (int i = 0; active && i < m_library->GetNumThemes(); ++i)
        if (m_library->GetTheme(i) == active)
            return i;
    return -1;
}

void CCtrlDlgQuery::selectTheme(int row)
{
    m_theme = m_library ? m_library->GetTheme(row) : nullptr;
    m_field = -1;
}

orv::String CCtrlDlgQuery::themeName() const
{
    return m_theme ? m_library->GetThemeName(m_theme) : orv::String();
}

std::vector<CCtrlDlgQuery::Named> CCtrlDlgQuery::fields() const
{
    std::vector<Named> fields;
    gis::CDBTable* table = m_theme ? m_library->GetTable(m_theme) : nullptr;
    for (int i = 0; table && i < m_library->GetNumFields(table); ++i) {
        gis::CField* field = m_library->GetField(table, i);
        fields.push_back({ m_library->GetFieldName(field), field });
    }
    return fields;
}

std::optional<GatheredValues> CCtrlDlgQuery::clickField(int row)
{
    if (!m_theme || row < 0 || row == m_field)
        return std::nullopt;
    GatheredValues gathered = gatherValues(*m_library, m_theme, row);
    m_field = gathered.isReadable ? row : -1;
    return gathered;
}

gis::CDBTable* CCtrlDlgQuery::table() const
{
    return m_theme ? m_library->GetTable(m_theme) : nullptr;
}

ColumnSource CCtrlDlgQuery::columnSource() const
{
    return ColumnSource(m_library);
}

std::vector<int> CCtrlDlgQuery::fieldsOfClick(int row) const
{
    return !m_theme || row < 0 || row == m_field ? std::vector<int>() : std::vector<int> { row };
}

std::vector<int> CCtrlDlgQuery::fieldsOfFilter(const orv::String& filter) const
{
    const auto root = parseFilter(filter.View(), ErrorReport::Silent).root;
    return root ? fieldsOf(m_library, m_theme, *root) : std::vector<int>();
}

std::optional<kit::Message> CCtrlDlgQuery::run(
    const orv::String& filter, const std::vector<int>& fields)
{
    m_executor = std::make_unique<CQueryExecute>(m_library, m_theme);
    const bool isRight = m_executor->SetQueryFilter(filter);
    m_found.clear();
    if (isRight)
        m_executor->Execute(m_found);
    m_unreadable.reset();
    for (std::size_t i = 0; m_found.empty() && !m_unreadable && i < fields.size(); ++i)
        if (!isReadable(*m_library, table(), fields[i]))
            m_unreadable = m_library->GetFieldName(m_library->GetField(table(), fields[i]));
    if (m_library)
        if (void* extension = m_library->Extension(gis::FeedbackExtension))
            static_cast<gis::IFeedback*>(extension)->ShowFound(m_drawing, m_found);
    if (isRight)
        return std::nullopt;
    return kit::Message { .text = texts::FilterSyntaxError };
}

} // namespace query
