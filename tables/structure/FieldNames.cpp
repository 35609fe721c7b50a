// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tables/structure/FieldNames.h"

#include "kit/texts/TextIds.h"
#include "kit/texts/TextLoader.h"

#include <array>

namespace tables {

namespace {

constexpr int TypeCount = texts::FieldTypePhoto5 - texts::FieldTypeFromUser + 1;

struct FormatText {
    gis::FieldFormat format;
    int text;
};
constexpr std::array<FormatText, 6> Formats = { {
    { gis::FieldFormat::Text, texts::FormatText },
    { gis::FieldFormat::Integer, texts::FormatInteger },
    { gis::FieldFormat::Decimal, texts::FormatDecimal },
    { gis::FieldFormat::List, texts::FormatList },
    { gis::FieldFormat::Boolean, texts::FormatBoolean },
    { gis::FieldFormat::Date, texts::FormatDate },
} };

} // namespace

QString typeName(gis::FieldType type)
{
    const int value = static_cast<int>(type);
    return value >= 0 && value < TypeCount ? kit::text(texts::FieldTypeFromUser + value)
                                           : QString();
}

QString formatName(gis::FieldFormat format)
{
    for (const FormatText& each : Formats)
        if (each.format == format)
            return kit::text(each.text);
    return {};
}

gis::FieldType typeOf(const QString& name)
{
    for (int value = 0; value < TypeCount; ++value)
        if (kit::text(texts::FieldTypeFromUser + value) == name)
            return static_cast<gis::FieldType>(value);
    return gis::FieldType::FromUser;
}

gis::FieldFormat formatOf(const QString& name)
{
    for (const FormatText& each : Formats)
        if (kit::text(each.text) == name)
            return each.format;
    return gis::FieldFormat::Text;
}

QStringList typeChoices()
{
    QStringList names;
    for (int value = 0; value < TypeCount; ++value)
        names.append(kit::text(texts::FieldTypeFromUser + value));
    return names;
}

QStringList formatChoices()
{
    QStringList names;
    for (const FormatText& each : Formats)
        names.append(kit::text(each.text));
    return names;
}

} // namespace tables
