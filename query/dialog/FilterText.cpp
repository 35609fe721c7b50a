// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "query/dialog/FilterText.h"

#include "kit/YesNo.h"

namespace query {

namespace {

QString quoted(const QString& value)
{
    return QLatin1Char('\'') + value + QLatin1Char('\'');
}

/// dd/mm/yyyy as Date(dd,mm,yyyy), its parts as they stand.
QString dateCall(const QString& value)
{
    const auto first = value.indexOf(QLatin1Char('/'));
    const auto second = first < 0 ? -1 : value.indexOf(QLatin1Char('/'), first + 1);
    if (second < 0)
        return value;
    const QString day = value.left(first);
    const QString month = value.mid(first + 1, second - first - 1);
    const QString year = value.mid(second + 1);
    if (day.isEmpty() || month.isEmpty() || year.isEmpty())
        return value;
    return QStringLiteral("Date(") + day + QLatin1Char(',') + month + QLatin1Char(',') + year
        + QLatin1Char(')');
}

} // namespace

FilterInsertion insertIntoFilter(const QString& text, int start, int end, const QString& inserted)
{
    FilterInsertion result { text, 0 };
    if (start == end)
        result.text.insert(start, inserted);
    else
        result.text.replace(text.mid(start, end - start), inserted, Qt::CaseSensitive);
    const auto caret = end + inserted.size();
    result.caret = static_cast<int>(qMin(caret, result.text.size()));
    return result;
}

QString filterLiteral(const QString& value, gis::FieldFormat format)
{
    switch (format) {
    case gis::FieldFormat::Text:
    case gis::FieldFormat::List:
        return quoted(value);
    case gis::FieldFormat::Boolean:
        return value == QString::fromUtf8(kit::YesText) ? QStringLiteral("true")
                                                        : QStringLiteral("false");
    case gis::FieldFormat::Date:
        return dateCall(value);
    default:
        return value;
    }
}

} // namespace query
