// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "bench/data/PointData.h"

#include "embedded/model/Library.h"
#include "host/base/Dates.h"
#include "samples/generator/Random.h"

#include <cmath>
#include <limits>

namespace bench {
namespace {

const char* const Roots[] = { "Roma", "Milano", "Torino", "Città di Castello", "Forlì",
    "Sant'Agata", "Garibaldi", "della Libertà", "Cavour", "dei Mille", "XX Settembre", "Mazzini",
    "Verdi", "dell'Unità d'Italia", "Ravenna", "Rovigo", "Reggio", "Rimini", "Ragusa", "Rieti" };
const char* const Kinds[] = { "Strada", "Piazza", "Viale", "Vicolo", "Corso", "Largo", "Rotatoria",
    "Sentiero", "Ponte", "Galleria", "Parcheggio", "Ciclabile" };
constexpr int NameCount = 200000;

std::vector<std::string> makeNames()
{
    const char* const prefixes[] = { "Via ", "Viale ", "Piazza ", "Vicolo ", "Corso " };
    std::vector<std::string> names;
    names.reserve(NameCount);
    for (int number = 1; static_cast<int>(names.size()) < NameCount; ++number)
        for (const char* prefix : prefixes)
            for (const char* root : Roots)
                names.push_back(prefix + std::string(root) + ' ' + std::to_string(number));
    names.resize(NameCount);
    return names;
}

} // namespace

PointArrays makePoints(int count, std::uint64_t seed)
{
    PointArrays data;
    data.count = count;
    data.names = makeNames();
    data.kinds.assign(std::begin(Kinds), std::end(Kinds));
    const auto size = static_cast<std::size_t>(count);
    data.name.resize(size);
    data.kind.resize(size);
    data.active.resize(size);
    data.lanes.resize(size);
    data.width.resize(size);
    data.surveyDay.resize(size);
    data.x.resize(size);
    data.y.resize(size);
    std::int32_t firstDay = 0;
    orv::DayNumber({ 1, 1, 2010 }, firstDay);
    samples::Random random(seed);
    for (std::size_t i = 0; i < size; ++i) {
        data.name[i] = random.chance(0.02) ? PointArrays::MissingText
                                           : static_cast<std::uint32_t>(random.below(NameCount));
        data.kind[i] = random.chance(0.25) ? 0 : static_cast<std::uint32_t>(1 + random.below(11));
        data.active[i] = random.chance(0.05) ? PointArrays::MissingBoolean
                                             : static_cast<std::uint8_t>(random.below(2));
        data.lanes[i] = random.chance(0.10) ? PointArrays::MissingInteger : 1 + random.below(8);
        data.width[i] = random.chance(0.05) ? std::numeric_limits<double>::quiet_NaN()
                                            : random.below(5001) / 100.0;
        data.surveyDay[i] = firstDay + random.below(3652);
        data.x[i] = 680000.0 + random.fraction() * 20000.0;
        data.y[i] = 4840000.0 + random.fraction() * 20000.0;
    }
    return data;
}

gis::CTheme* fillLibrary(gis::CLibGis& facade, const PointArrays& points)
{
    using embedded::Column;
    using gis::FieldFormat;
    embedded::Library& library = *embedded::Library::of(&facade);
    gis::CDBTable* table = library.createTable(orv::String("Punti"));
    table->addField("Nome", FieldFormat::Text);
    table->addField("Tipo", FieldFormat::Text);
    table->addField("Attivo", FieldFormat::Boolean);
    table->addField("Corsie", FieldFormat::Integer);
    table->addField("Larghezza", FieldFormat::Decimal)->constraints[3] = 2;
    table->addField("Rilievo", FieldFormat::Date);
    table->addRows(points.count);
    Column names(gis::ColumnKind::Dictionary);
    Column kinds(gis::ColumnKind::Dictionary);
    Column active(gis::ColumnKind::Boolean);
    Column lanes(gis::ColumnKind::Integer);
    Column widths(gis::ColumnKind::Decimal);
    Column days(gis::ColumnKind::Date);
    for (Column* column : { &names, &kinds, &active, &lanes, &widths, &days })
        column->reserve(points.count);
    for (std::size_t i = 0; i < static_cast<std::size_t>(points.count); ++i) {
        if (points.name[i] == PointArrays::MissingText)
            names.appendEmpty();
        else
            names.appendText(points.names[points.name[i]]);
        kinds.appendText(points.kinds[points.kind[i]]);
        if (points.active[i] == PointArrays::MissingBoolean)
            active.appendEmpty();
        else
            active.appendBoolean(points.active[i] != 0);
        if (points.lanes[i] == PointArrays::MissingInteger)
            lanes.appendEmpty();
        else
            lanes.appendInteger(points.lanes[i]);
        if (std::isnan(points.width[i]))
            widths.appendEmpty();
        else
            widths.appendDecimal(points.width[i]);
        days.appendInteger(points.surveyDay[i]);
    }
    int index = 0;
    for (Column* column : { &names, &kinds, &active, &lanes, &widths, &days })
        table->setColumn(index++, std::move(*column));
    gis::CTheme* theme
        = library.createTheme(table, "Punti", gis::EntType::Points, gis::EntTypeCoords::XY, 0);
    for (int i = 0; i < points.count; ++i) {
        theme->entities().addEntity(table->row(i));
        double* vertex = theme->entities().addPart(1);
        vertex[0] = points.x[static_cast<std::size_t>(i)];
        vertex[1] = points.y[static_cast<std::size_t>(i)];
    }
    theme->referenceSystem.authority = "EPSG";
    theme->referenceSystem.code = 32632;
    return theme;
}

} // namespace bench
