// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "samples/generator/Town.h"

#include "embedded/model/Library.h"
#include "host/base/Dates.h"
#include "samples/generator/Random.h"

#include <cmath>
#include <string>
#include <vector>

namespace samples {
namespace {

using embedded::Column;
using embedded::Library;
using gis::FieldFormat;

constexpr double OriginEast = 682400.0;
constexpr double OriginNorth = 4849300.0;
constexpr int BlocksEast = 14;
constexpr int BlocksNorth = 11;
constexpr double BlockWidth = 92.0;
constexpr double BlockHeight = 74.0;

const char* const StreetNames[] = { "Garibaldi", "Mazzini", "Cavour", "della Libertà",
    "XX Settembre", "Dante Alighieri", "dei Mille", "San Lorenzo", "dell'Unità d'Italia",
    "Galileo Galilei", "Leopardi", "delle Rose", "del Mulino", "IV Novembre", "Verdi",
    "della Repubblica", "Sant'Agata", "Marconi", "dei Caduti", "Boccaccio", "del Mercato",
    "Petrarca", "Nenni", "della Stazione", "dell'Olmo" };
const char* const StreetKinds[] = { "Via", "Via", "Via", "Viale", "Vicolo", "Corso" };
const char* const BuildingUses[] = { "Residenziale", "Residenziale", "Residenziale", "Commerciale",
    "Uffici", "Artigianale", "Scolastico", "Religioso", "Agricolo" };
const char* const LampKinds[] = { "LED", "LED", "Sodio", "Ioduri" };
const char* const TreeSpecies[]
    = { "Tilia cordata", "Quercus ilex", "Platanus × acerifolia", "Pinus pinea",
          "Cupressus sempervirens", "Acer campestre", "Olea europaea", "Celtis australis" };
const char* const TreeStates[] = { "Buono", "Buono", "Discreto", "Da potare", "Da abbattere" };

struct Point {
    double x = 0;
    double y = 0;
};

/// A crossing of the street grid, bent so that the town does not look ruled.
Point crossing(int column, int row)
{
    const double bend = 26.0;
    return { OriginEast + column * BlockWidth + bend * std::sin(row * 0.55)
            + 9.0 * std::sin(column * 1.7),
        OriginNorth + row * BlockHeight + bend * std::cos(column * 0.4)
            + 7.0 * std::cos(row * 1.3) };
}

Point mix(const Point& a, const Point& b, double t)
{
    return { a.x + (b.x - a.x) * t, a.y + (b.y - a.y) * t };
}

/// The point at (u, v) of a block, both from 0 to 1.
Point inBlock(int column, int row, double u, double v)
{
    return mix(mix(crossing(column, row), crossing(column + 1, row), u),
        mix(crossing(column, row + 1), crossing(column + 1, row + 1), u), v);
}

int day(int dayOfMonth, int month, int year)
{
    std::int32_t number = 0;
    orv::DayNumber({ dayOfMonth, month, year }, number);
    return number;
}

int randomDay(Random& random, int firstYear, int lastYear)
{
    return day(random.between(1, 28), random.between(1, 12), random.between(firstYear, lastYear));
}

/// Ground height above sea level: a gentle hill in the north-east.
double groundHeight(const Point& p)
{
    const double east = (p.x - OriginEast) / 1300.0;
    const double north = (p.y - OriginNorth) / 820.0;
    return 186.0 + 21.0 * east * east + 34.0 * north * north;
}

/// A theme with its table under construction: entities with rows, values in column order.
class Layer final {
public:
    Layer(Library& library, const char* name, gis::EntType type, gis::EntTypeCoords coords)
        : m_table(library.createTable(orv::String(name)))
    {
        m_type = type;
        m_coords = coords;
        m_name = orv::String(name);
        m_library = &library;
    }
    gis::CField* field(const char* name, FieldFormat format, int digits = 0)
    {
        gis::CField* added = m_table->addField(orv::String(name), format);
        if (format == FieldFormat::Decimal)
            added->constraints[3] = digits;
        m_columns.emplace_back(embedded::columnKindOf(format));
        return added;
    }
    void list(const char* name, std::vector<const char*> values)
    {
        gis::CField* added = field(name, FieldFormat::List);
        orv::CPolyValue elements;
        elements.CreateArray(static_cast<unsigned>(values.size()), orv::PolyString);
        for (unsigned i = 0; i < values.size(); ++i)
            elements.SetStringValue(i, orv::String(values[i]));
        added->constraints[3] = elements;
    }
    void predefined(const char* name, gis::FieldType type, int digits)
    {
        field(name,
            type <= gis::FieldType::PointDescription ? FieldFormat::Text : FieldFormat::Decimal,
            digits)
            ->type
            = type;
    }
    Column& column(int index) { return m_columns[static_cast<std::size_t>(index)]; }
    int newRow() { return m_rows++; }
    /// Rings or lines of the next entity; one entity a row, in row order.
    void shape(std::vector<std::vector<Point>> parts) { m_shapes.push_back(std::move(parts)); }

    gis::CTheme* finish()
    {
        m_table->addRows(m_rows);
        for (std::size_t i = 0; i < m_columns.size(); ++i) {
            if (m_columns[i].rowCount() < m_rows)
                m_columns[i].appendEmpty(m_rows - m_columns[i].rowCount());
            m_table->setColumn(static_cast<int>(i), std::move(m_columns[i]));
        }
        gis::CTheme* theme = m_library->createTheme(
            m_table, m_name, m_type, m_coords, m_library->addLayer(m_name));
        theme->referenceSystem.authority = "EPSG";
        theme->referenceSystem.code = 32632;
        const bool solid = m_coords == gis::EntTypeCoords::XYZ;
        for (int row = 0; row < m_rows; ++row) {
            theme->entities().addEntity(m_table->row(row));
            for (const auto& part : m_shapes[static_cast<std::size_t>(row)]) {
                double* out = theme->entities().addPart(static_cast<int>(part.size()));
                for (const Point& p : part) {
                    *out++ = p.x;
                    *out++ = p.y;
                    if (solid)
                        *out++ = groundHeight(p);
                }
            }
        }
        return theme;
    }
    void recalculate(gis::CTheme* theme)
    {
        for (int i = 0; i < m_rows; ++i)
            m_library->recalcPredefined(theme, theme->entities().entity(i));
    }

private:
    Library* m_library = nullptr;
    gis::CDBTable* m_table;
    gis::EntType m_type {};
    gis::EntTypeCoords m_coords {};
    orv::String m_name;
    std::vector<Column> m_columns;
    std::vector<std::vector<std::vector<Point>>> m_shapes;
    int m_rows = 0;
};

std::string numbered(const char* prefix, int number)
{
    std::string digits = std::to_string(number);
    return prefix + std::string(digits.size() < 4 ? 4 - digits.size() : 0, '0') + digits;
}

void buildStreets(Library& library, Random& random)
{
    Layer layer(library, "Strade", gis::EntType::Lines, gis::EntTypeCoords::XY);
    layer.field("Codice", FieldFormat::Text);
    layer.field("Nome", FieldFormat::Text);
    layer.list("Tipo", { "Via", "Viale", "Vicolo", "Corso", "Piazza" });
    layer.field("Larghezza", FieldFormat::Decimal, 2);
    layer.field("Corsie", FieldFormat::Integer);
    layer.field("Asfaltata", FieldFormat::Boolean);
    layer.field("Rilievo", FieldFormat::Date);
    layer.predefined("Lunghezza", gis::FieldType::Perimeter2D, 1);
    const auto add = [&](const std::vector<Point>& line, int nameIndex, bool wide) {
        const int row = layer.newRow();
        const char* kind = wide ? "Viale" : StreetKinds[static_cast<std::size_t>(nameIndex) % 6];
        layer.column(0).appendText(numbered("S", row + 1));
        layer.column(1).appendText(std::string(kind) + ' ' + StreetNames[nameIndex % 25]);
        layer.column(2).appendText(kind);
        layer.column(3).appendDecimal(
            std::round(random.between(wide ? 7.0 : 3.2, wide ? 11.0 : 6.5) * 100) / 100);
        random.chance(0.06) ? layer.column(4).appendEmpty()
                            : layer.column(4).appendInteger(wide ? 4 : random.between(1, 2));
        layer.column(5).appendBoolean(wide || !random.chance(0.12));
        random.chance(0.1) ? layer.column(6).appendEmpty()
                           : layer.column(6).appendInteger(randomDay(random, 2010, 2019));
        layer.shape({ line });
    };
    for (int row = 0; row <= BlocksNorth; ++row)
        for (int column = 0; column < BlocksEast; ++column)
            add({ crossing(column, row), mix(crossing(column, row), crossing(column + 1, row), 0.5),
                    crossing(column + 1, row) },
                row, row == 5);
    for (int column = 0; column <= BlocksEast; ++column)
        for (int row = 0; row < BlocksNorth; ++row)
            add({ crossing(column, row), crossing(column, row + 1) }, 12 + column, column == 7);
    layer.recalculate(layer.finish());
}

/// A clockwise rectangle of the block at (u, v) with the given size in block fractions.
std::vector<Point> plot(int column, int row, double u, double v, double w, double h, bool hole)
{
    std::vector<Point> ring { inBlock(column, row, u, v), inBlock(column, row, u, v + h),
        inBlock(column, row, u + w, v + h), inBlock(column, row, u + w, v),
        inBlock(column, row, u, v) };
    if (hole)
        std::swap(ring[1], ring[3]);
    return ring;
}

void buildBuildings(Library& library, Random& random)
{
    Layer layer(library, "Edifici", gis::EntType::Polygons, gis::EntTypeCoords::XY);
    layer.field("Particella", FieldFormat::Text);
    layer.field("Foglio", FieldFormat::Integer);
    layer.list("Uso",
        { "Residenziale", "Commerciale", "Uffici", "Artigianale", "Scolastico", "Religioso",
            "Agricolo" });
    layer.field("Piani", FieldFormat::Integer);
    layer.field("Altezza", FieldFormat::Decimal, 1);
    layer.field("Vincolato", FieldFormat::Boolean);
    layer.field("Costruito", FieldFormat::Date);
    layer.field("Indirizzo", FieldFormat::Text);
    layer.predefined("Superficie", gis::FieldType::Area, 1);
    for (int row = 0; row < BlocksNorth; ++row)
        for (int column = 0; column < BlocksEast; ++column) {
            const bool park = (row * 7 + column * 3) % 17 == 0;
            for (int place = 0; !park && place < 8; ++place) {
                if (random.chance(0.14))
                    continue;
                const double u = 0.08 + 0.215 * (place % 4);
                const double v = place < 4 ? 0.1 : 0.56;
                const double w = random.between(0.12, 0.19);
                const double h = random.between(0.2, 0.33);
                const int number = layer.newRow();
                const int floors = random.between(1, 6);
                layer.column(0).appendText(std::to_string(100 + number));
                layer.column(1).appendInteger(1 + row / 3);
                layer.column(2).appendText(random.pick(BuildingUses));
                layer.column(3).appendInteger(floors);
                layer.column(4).appendDecimal(
                    std::round((floors * 3.1 + random.fraction() * 2) * 10) / 10);
                layer.column(5).appendBoolean(random.chance(0.07));
                random.chance(0.2) ? layer.column(6).appendEmpty()
                                   : layer.column(6).appendInteger(randomDay(random, 1880, 2018));
                layer.column(7).appendText("Via " + std::string(StreetNames[row % 25]) + ' '
                    + std::to_string(2 * place + 1 + 16 * column));
                std::vector<std::vector<Point>> rings { plot(column, row, u, v, w, h, false) };
                if (w > 0.165 && h > 0.27) // a courtyard
                    rings.push_back(
                        plot(column, row, u + w * 0.35, v + h * 0.35, w * 0.3, h * 0.3, true));
                if (random.chance(0.04)) // a second body of the same parcel
                    rings.push_back(plot(column, row, u, v + h + 0.02, w * 0.5, 0.05, false));
                layer.shape(std::move(rings));
            }
        }
    layer.recalculate(layer.finish());
}

void buildLamps(Library& library, Random& random)
{
    Layer layer(library, "Lampioni", gis::EntType::Points, gis::EntTypeCoords::XY);
    layer.field("Palo", FieldFormat::Text);
    layer.list("Lampada", { "LED", "Sodio", "Ioduri" });
    layer.field("Potenza", FieldFormat::Integer);
    layer.field("Altezza", FieldFormat::Decimal, 2);
    layer.field("Funzionante", FieldFormat::Boolean);
    layer.field("Installato", FieldFormat::Date);
    for (int row = 0; row <= BlocksNorth; ++row)
        for (int column = 0; column < BlocksEast; ++column)
            for (int k = 0; k < 3; ++k) {
                const int number = layer.newRow();
                layer.column(0).appendText(numbered("P", number + 1));
                layer.column(1).appendText(random.pick(LampKinds));
                layer.column(2).appendInteger(10 * random.between(4, 15));
                layer.column(3).appendDecimal(std::round(random.between(4.0, 9.5) * 20) / 20);
                random.chance(0.05) ? layer.column(4).appendEmpty()
                                    : layer.column(4).appendBoolean(!random.chance(0.08));
                layer.column(5).appendInteger(randomDay(random, 1998, 2019));
                const Point p
                    = mix(crossing(column, row), crossing(column + 1, row), 0.17 + 0.33 * k);
                layer.shape({ { { p.x, p.y + 3.5 } } });
            }
    layer.finish();
}

void buildTrees(Library& library, Random& random)
{
    Layer layer(library, "Alberi", gis::EntType::Points, gis::EntTypeCoords::XY);
    layer.field("Cartellino", FieldFormat::Integer);
    layer.field("Specie", FieldFormat::Text);
    layer.field("Diametro", FieldFormat::Decimal, 1);
    layer.field("Altezza", FieldFormat::Decimal, 1);
    layer.list("Stato", { "Buono", "Discreto", "Da potare", "Da abbattere" });
    layer.field("Piantato", FieldFormat::Date);
    layer.field("Note", FieldFormat::Text);
    for (int row = 0; row < BlocksNorth; ++row)
        for (int column = 0; column < BlocksEast; ++column) {
            const bool park = (row * 7 + column * 3) % 17 == 0;
            const int count = park ? 42 : random.between(0, 5);
            for (int k = 0; k < count; ++k) {
                const int number = layer.newRow();
                layer.column(0).appendInteger(number + 1);
                layer.column(1).appendText(random.pick(TreeSpecies));
                layer.column(2).appendDecimal(std::round(random.between(8.0, 95.0) * 10) / 10);
                random.chance(0.05) ? layer.column(3).appendEmpty()
                                    : layer.column(3).appendDecimal(
                                        std::round(random.between(2.5, 24.0) * 10) / 10);
                layer.column(4).appendText(random.pick(TreeStates));
                random.chance(0.3) ? layer.column(5).appendEmpty()
                                   : layer.column(5).appendInteger(randomDay(random, 1935, 2019));
                random.chance(0.9) ? layer.column(6).appendEmpty()
                                   : layer.column(6).appendText("Verificare la stabilità");
                layer.shape({ { inBlock(column, row, random.between(0.06, 0.94),
                    park ? random.between(0.06, 0.94) : 0.5 + random.between(-0.03, 0.03)) } });
            }
        }
    layer.finish();
}

void buildSurveyPoints(Library& library, Random& random)
{
    Layer layer(library, "Caposaldi", gis::EntType::Points, gis::EntTypeCoords::XYZ);
    layer.predefined("Nome", gis::FieldType::PointName, 0);
    layer.predefined("Descrizione", gis::FieldType::PointDescription, 0);
    layer.predefined("Quota", gis::FieldType::CentroidZ, 3);
    layer.field("Rilevatore", FieldFormat::Text);
    layer.field("Rilevato", FieldFormat::Date);
    layer.field("Precisione", FieldFormat::Decimal, 3);
    const char* const surveyors[] = { "geom. Bianchi", "geom. Rossi", "arch. Esposito" };
    for (int row = 0; row <= BlocksNorth; row += 2)
        for (int column = 0; column <= BlocksEast; column += 2) {
            layer.newRow();
            layer.column(3).appendText(random.pick(surveyors));
            layer.column(4).appendInteger(randomDay(random, 2012, 2019));
            layer.column(5).appendDecimal(std::round(random.between(0.004, 0.03) * 1000) / 1000);
            const Point p = crossing(column, row);
            layer.shape({ { { p.x + 4.0, p.y - 4.0 } } });
        }
    gis::CTheme* theme = layer.finish();
    for (int i = 0; i < theme->entities().entityCount(); ++i) {
        embedded::LinkedPoint* point = library.addLinkedPoint();
        point->name = orv::String(numbered("CS", i + 1));
        point->description = i % 3 == 0 ? "Chiodo su cordolo" : "Borchia su marciapiede";
        theme->entities().linkPoint(i, 0, 0, point);
    }
    layer.recalculate(theme);
}

} // namespace

void buildTown(gis::CLibGis& facade, std::uint64_t seed)
{
    Library& library = *Library::of(&facade);
    Random random(seed);
    buildStreets(library, random);
    buildBuildings(library, random);
    buildLamps(library, random);
    buildTrees(library, random);
    buildSurveyPoints(library, random);
    library.setActiveTheme(library.findTheme(orv::String("Edifici")));
}

} // namespace samples
