// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "query/dialog/FilterHistory.h"

#include "kit/texts/QtText.h"

#include "host/base/IniFile.h"

namespace query {

namespace {

const orv::String Section("UltimeInterrogazioni");

/// Percent-encoded but for letters, digits, "-" and "_": names and filters hold what an ini file
/// gives a meaning of its own ("=", ";", points, blanks at the ends).
QByteArray encoded(const QByteArray& bytes)
{
    return bytes.toPercentEncoding(QByteArray(), QByteArray(".~"));
}

orv::String keyOf(const orv::String& themeName)
{
    return orv::String(encoded(QByteArray(themeName.Data(), themeName.Length())).constData());
}

} // namespace

QStringList CFilterHistory::filtersOf(const orv::String& themeName) const
{
    QStringList filters;
    if (themeName.Length() == 0)
        return filters;
    const orv::String stored = CIniFile().GetString(Section, keyOf(themeName), orv::String());
    for (const QByteArray& filter : QByteArray(stored.Data(), stored.Length()).split(','))
        if (!filter.isEmpty())
            filters.append(QString::fromUtf8(QByteArray::fromPercentEncoding(filter)));
    return filters;
}

void CFilterHistory::remember(const orv::String& themeName, const QString& filter)
{
    if (themeName.Length() == 0 || filter.trimmed().isEmpty())
        return;
    QStringList filters = filtersOf(themeName);
    filters.removeAll(filter);
    filters.prepend(filter);
    QByteArray stored;
    for (const QString& entry : filters.mid(0, MostFilters)) {
        if (!stored.isEmpty())
            stored += ',';
        stored += encoded(entry.toUtf8());
    }
    CIniFile().WriteString(Section, keyOf(themeName), orv::String(stored.constData()));
}

} // namespace query
