// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/embedded/store/RandomLibrary.h"

#include "host/base/Dates.h"

#include <array>
#include <cmath>
#include <limits>

namespace storetest {

using embedded::Library;

double CRandomLibrary::real()
{
    switch (upTo(9)) {
    case 0:
        return 0;
    case 1:
        return std::uniform_real_distribution<double>(-1e300, 1e300)(m_random);
    case 2:
        return std::numeric_limits<double>::infinity();
    case 3:
        return std::numeric_limits<double>::quiet_NaN();
    case 4:
        return upTo(1000000);
    default:
        return std::uniform_real_distribution<double>(-1e6, 1e6)(m_random);
    }
}

std::string CRandomLibrary::name()
{
    static const std::array<std::string, 22> Names = { "Strade", "strade", "STRADE", "fid", "FID",
        "geom", "Geom", "gpkg_contents", "rtree_a_geom", "sqlite_x", "tematica_library", "select",
        "Città d'Arte", "a\"b", "a'b", "", "rowid", "punto;virgola", "due\nrighe",
        std::string("nul\0byte", 8), "\xFF\xFEkaputt", "Nome con spazi" };
    return Names[static_cast<std::size_t>(upTo(static_cast<int>(Names.size()) - 1))];
}

orv::String CRandomLibrary::textValue()
{
    static const std::array<std::string, 9> Texts = { "Via Roma 12", "Sì", "è già qui", "'", "",
        std::string("a\0b", 3), "\xC0\xFF", "nan", "2020-01-01" };
    if (chance(30))
        return orv::String(std::string_view(
            Texts[static_cast<std::size_t>(upTo(static_cast<int>(Texts.size()) - 1))]));
    return orv::String(std::string_view("testo " + std::to_string(upTo(40))));
}

orv::CPolyValue CRandomLibrary::value(gis::FieldFormat format)
{
    orv::CPolyValue result;
    switch (format) {
    case gis::FieldFormat::Text:
    case gis::FieldFormat::List:
        return orv::CPolyValue(textValue());
    case gis::FieldFormat::Boolean:
        return orv::CPolyValue(chance(50));
    case gis::FieldFormat::Integer:
        return orv::CPolyValue(chance(10) ? std::numeric_limits<int>::min() : upTo(100000) - 50000);
    case gis::FieldFormat::Decimal:
        return orv::CPolyValue(real());
    case gis::FieldFormat::Date:
        result.SetDateValue(orv::LocalMidnightOfDay(upTo(40000) - 20000));
        break;
    }
    return result;
}

void CRandomLibrary::addField(gis::CDBTable& table)
{
    const auto format = static_cast<gis::FieldFormat>(upTo(5));
    const std::string wanted = name() + (chance(60) ? std::to_string(upTo(5)) : "");
    gis::CField* field = table.addField(orv::String(std::string_view(wanted)), format);
    field->requested = chance(20);
    if (chance(10))
        field->type = static_cast<gis::FieldType>(upTo(14));
    for (auto& constraint : field->constraints)
        if (chance(20))
            constraint = value(static_cast<gis::FieldFormat>(upTo(5)));
    if (format == gis::FieldFormat::Decimal)
        field->constraints[3] = orv::CPolyValue(upTo(10));
    if (format == gis::FieldFormat::List) {
        field->constraints[3].CreateArray(static_cast<unsigned>(upTo(4)), orv::PolyString);
        for (unsigned i = 0; i < field->constraints[3].GetNoArrayElements(); ++i)
            field->constraints[3].SetStringValue(i, textValue());
    }
}

void CRandomLibrary::setCell(gis::CDBTable& table, int row, int field)
{
    const gis::FieldFormat format = table.field(field)->format;
    embedded::Column& column = table.columnForWriting(field);
    if (chance(20))
        column.setEmpty(row);
    else
        column.setValue(row, value(format));
}

void CRandomLibrary::addRows(gis::CDBTable& table, int count)
{
    const int first = table.rowCount();
    table.addRows(count);
    for (int row = first; row < table.rowCount(); ++row)
        for (int field = 0; field < table.fieldCount(); ++field)
            setCell(table, row, field);
}

void CRandomLibrary::addTable(Library& library)
{
    gis::CDBTable* table = library.createTable(orv::String(std::string_view(name())));
    for (int i = upTo(6); i > 0; --i)
        addField(*table);
    addRows(*table, upTo(20));
}

void CRandomLibrary::addRing(
    gis::CTheme& theme, int entity, double x, double y, double size, bool isHole)
{
    const std::array<std::array<double, 2>, 5> corners
        = { { { 0, 0 }, { 0, 1 }, { 1, 1 }, { 1, 0 }, { 0, 0 } } };
    embedded::EntityStore& entities = theme.entities();
    double* out = entities.addPartTo(entity, 5);
    for (std::size_t i = 0; i < corners.size(); ++i) {
        const auto& corner = corners[isHole ? corners.size() - 1 - i : i];
        *out++ = x + size * corner[0];
        *out++ = y + size * corner[1];
        for (int more = 2; more < entities.stride(); ++more)
            *out++ = real();
    }
}

void CRandomLibrary::addShape(Library& library, gis::CTheme& theme, int entity)
{
    embedded::EntityStore& entities = theme.entities();
    const int parts = chance(15) ? 0 : chance(60) ? 1 : 1 + upTo(4);
    for (int p = 0; p < parts; ++p) {
        if (theme.type == gis::EntType::Polygons) {
            // Holes may come before their outer ring, in any of them, or in none.
            addRing(theme, entity, upTo(3) * 20.0, upTo(3) * 20.0, 1 + upTo(18), chance(40));
            continue;
        }
        const int vertices
            = theme.type == gis::EntType::Points ? (chance(90) ? 1 : upTo(3)) : upTo(6);
        double* out = entities.addPartTo(entity, vertices);
        for (int i = 0; i < vertices * entities.stride(); ++i)
            out[i] = i % entities.stride() < 2 ? upTo(100000) / 7.0 : real();
    }
    if (!chance(20) || library.linkedPointCount() == 0)
        return;
    for (int p = 0; p < entities.partCount(entity); ++p)
        for (int v = 0; v < entities.part(entity, p).count; ++v)
            if (chance(50))
                entities.linkPoint(entity, p, v,
                    const_cast<embedded::LinkedPoint*>(
                        &library.linkedPoints()[static_cast<std::size_t>(
                            upTo(static_cast<int>(library.linkedPointCount()) - 1))]));
}

// Entities of some of the rows, in the rows' order or in another one.
void CRandomLibrary::addEntities(Library& library, gis::CTheme& theme, int firstRow)
{
    std::vector<int> rows;
    for (int row = firstRow; row < theme.table->rowCount(); ++row)
        if (!gis::CDBTable::entityOf(theme.table->row(row)) && chance(80))
            rows.push_back(row);
    if (chance(30))
        std::shuffle(rows.begin(), rows.end(), m_random);
    static_cast<void>(theme.geometry());
    for (const int row : rows) {
        gis::CDBTable::setEntity(
            theme.table->row(row), theme.entities().addEntity(theme.table->row(row)));
        addShape(library, theme, theme.entities().entityCount() - 1);
    }
}

void CRandomLibrary::addClasses(gis::CTheme& theme)
{
    theme.map.type = static_cast<gis::MapType>(upTo(2));
    theme.map.field = theme.table->field(upTo(6));
    theme.map.classCount = upTo(5);
    for (int i = upTo(4); i > 0; --i) {
        auto entry = std::make_unique<gis::CFeatureClass>();
        entry->colour = upTo(255);
        entry->hatchType = upTo(5) - 2;
        entry->symbol = upTo(9);
        entry->scale = real();
        entry->rotationRadians = real();
        entry->ltypeName = textValue();
        entry->label = textValue();
        entry->low = value(static_cast<gis::FieldFormat>(upTo(5)));
        entry->high = value(static_cast<gis::FieldFormat>(upTo(5)));
        theme.map.classes.push_back(std::move(entry));
    }
}

void CRandomLibrary::setAttributes(Library& library, gis::CTheme& theme)
{
    theme.visible = chance(70);
    theme.locked = chance(30);
    theme.targetDrawing = chance(20) ? std::numeric_limits<std::int64_t>::min() : upTo(5);
    theme.label.field = theme.table->field(upTo(6));
    theme.label.styleName = textValue();
    theme.label.heightDrawingUnits = chance(30) ? orv::UnsetDecimal : real();
    theme.label.rotationRadians = real();
    theme.label.horizontalOffset = real();
    theme.label.verticalOffset = chance(30) ? orv::UnsetDecimal : real();
    theme.label.aligned = chance(50);
    addClasses(theme);
    if (chance(20))
        library.setActiveTheme(&theme);
}

void CRandomLibrary::addTheme(Library& library, gis::CDBTable& table)
{
    static constexpr std::array Types
        = { gis::EntType::Points, gis::EntType::Lines, gis::EntType::Polygons };
    gis::CTheme* theme = library.createTheme(&table, orv::String(std::string_view(name())),
        Types[static_cast<std::size_t>(upTo(2))], static_cast<gis::EntTypeCoords>(upTo(2)), upTo(3),
        chance(30));
    switch (upTo(3)) {
    case 0:
        theme->referenceSystem = { "PROJCS[\"Monte Mario\"]\r\n", "EPSG", 3003 };
        break;
    case 1:
        theme->referenceSystem = { "PROJCS[\"Rete del catasto\"]", "", 0 };
        break;
    case 2:
        theme->referenceSystem = { "", "EPSG", 4326 };
        break;
    default:
        break;
    }
    setAttributes(library, *theme);
    addEntities(library, *theme, chance(70) ? 0 : table.rowCount() / 2);
}

void CRandomLibrary::fill(gis::CLibGis& facade)
{
    Library& library = *Library::of(&facade);
    library.setTargetDrawing(upTo(9));
    for (int i = upTo(3); i > 0; --i)
        library.addLayer(orv::String(std::string_view(name())));
    for (int i = upTo(4); i > 0; --i) {
        embedded::LinkedPoint* point = library.addLinkedPoint();
        point->name = textValue();
        point->description = textValue();
        point->sketch = textValue();
        for (auto& photo : point->photos)
            photo = textValue();
    }
    for (int i = upTo(3); i >= 0; --i)
        addTable(library);
    for (int i = upTo(4); i >= 0; --i)
        addTheme(library, *anyTable(library));
}

gis::CDBTable* CRandomLibrary::anyTable(Library& library)
{
    const auto& tables = library.tables();
    return tables[static_cast<std::size_t>(upTo(static_cast<int>(tables.size()) - 1))];
}

gis::CTheme* CRandomLibrary::anyTheme(Library& library)
{
    const auto& themes = library.themes();
    if (themes.empty())
        return nullptr;
    return themes[static_cast<std::size_t>(upTo(static_cast<int>(themes.size()) - 1))];
}

void CRandomLibrary::change(gis::CLibGis& facade)
{
    Library& library = *Library::of(&facade);
    gis::CDBTable* table = anyTable(library);
    gis::CTheme* theme = anyTheme(library);
    switch (upTo(11)) {
    case 0:
        addTable(library);
        break;
    case 1:
        addTheme(library, *table);
        break;
    case 2:
        library.deleteTable(table);
        if (library.tables().empty())
            addTable(library);
        break;
    case 3:
        if (theme)
            library.removeTheme(theme);
        break;
    case 4:
        library.renameTable(table, orv::String(std::string_view(name())));
        break;
    case 5:
        if (theme)
            library.renameTheme(theme, orv::String(std::string_view(name())));
        break;
    case 6:
        if (theme)
            setAttributes(library, *theme);
        break;
    case 7:
        addField(*table);
        break;
    case 8:
        addRows(*table, upTo(4));
        break;
    case 9:
        if (theme) {
            const int first = theme->table->rowCount();
            addRows(*theme->table, upTo(5));
            addEntities(library, *theme, chance(80) ? first : 0);
        }
        break;
    default:
        for (int i = upTo(8); i > 0 && table->rowCount() > 0 && table->fieldCount() > 0; --i) {
            const int row = upTo(table->rowCount() - 1), field = upTo(table->fieldCount() - 1);
            library.setCell(table->row(row), field, value(table->field(field)->format));
        }
    }
}

} // namespace storetest
