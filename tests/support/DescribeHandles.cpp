// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/support/Describe.h"

#include "embedded/model/EntityStore.h"
#include "embedded/model/Table.h"
#include "embedded/model/Theme.h"

namespace support {
namespace {

std::string nameOrQuotes(const orv::String& name)
{
    return name.Length() == 0 ? "\"\"" : name.Bytes();
}

} // namespace

std::string describe(gis::CDBTable* table)
{
    return table ? nameOrQuotes(table->name()) : "null";
}

std::string describe(gis::CField* field)
{
    return field ? describe(field->table) + "." + nameOrQuotes(field->name) : "null";
}

std::string describe(gis::CTheme* theme)
{
    return theme ? nameOrQuotes(theme->name) : "null";
}

std::string describe(gis::CEnt* ent)
{
    if (!ent)
        return "null";
    return describe(embedded::EntityStore::themeOf(ent)) + "#"
        + std::to_string(embedded::EntityStore::indexOf(ent));
}

std::string describe(gis::CEntPart* part)
{
    return part ? "part" : "null";
}

std::string describe(gis::CFeatureClass* featureClass)
{
    if (!featureClass)
        return "null";
    return featureClass->isDefault ? "default class" : "class " + describe(featureClass->label);
}

std::string describe(orv::CResultRow* row)
{
    if (!row)
        return "null";
    return describe(gis::CDBTable::tableOf(row)) + "[" + std::to_string(gis::CDBTable::indexOf(row))
        + "]";
}

std::string describe(const gis::TOpzLabel& label)
{
    return "label(" + describe(label.field) + ", " + describe(label.styleName) + ", "
        + describe(label.colour) + ", " + describe(label.heightDrawingUnits) + ", "
        + describe(label.rotationRadians) + ", " + describe(label.horizontalOffset) + ", "
        + describe(label.verticalOffset) + ", " + describe(label.aligned) + ")";
}

} // namespace support
