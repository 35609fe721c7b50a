// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/model/Clone.h"

#include "embedded/model/Library.h"
#include "embedded/model/TableData.h"

#include <cstring>
#include <unordered_map>

namespace embedded {

namespace {

using TableMap = std::unordered_map<const gis::CDBTable*, gis::CDBTable*>;
using PointMap = std::unordered_map<const LinkedPoint*, LinkedPoint*>;

gis::CField* counterpart(const gis::CTheme& from, const gis::CTheme& to, const gis::CField* field)
{
    return field ? to.table->field(from.table->indexOf(field)) : nullptr;
}

void copyTable(gis::CDBTable& from, gis::CDBTable& to)
{
    to.addRows(from.rowCount());
    Structure structure = from.structure();
    for (FieldState& field : structure)
        field.handle = nullptr;
    to.applyStructure(structure);
}

void copyLinks(const EntityStore& from, EntityStore& to, const PointMap& points)
{
    for (int i = 0; i < from.entityCount(); ++i)
        for (int p = 0; p < from.partCount(i); ++p)
            for (int v = 0; v < from.part(i, p).count; ++v)
                if (const LinkedPoint* point = from.linkedPoint(i, p, v))
                    to.linkPoint(i, p, v, points.at(point));
}

void copyEntities(gis::CTheme& from, gis::CTheme& to, const PointMap& points)
{
    const EntityStore& source = from.geometry();
    EntityStore& target = to.entities();
    for (int i = 0; i < source.entityCount(); ++i) {
        target.addEntity(
            to.table->row(gis::CDBTable::indexOf(EntityStore::rowOf(source.entity(i)))));
        for (int p = 0; p < source.partCount(i); ++p) {
            const PartView part = source.part(i, p);
            std::memcpy(target.addPart(part.count), part.coordinates,
                static_cast<std::size_t>(part.count) * static_cast<std::size_t>(part.stride)
                    * sizeof(double));
        }
    }
    if (source.hasLinkedPoints())
        copyLinks(source, target, points);
}

ThematicMap copyMap(const gis::CTheme& from, const gis::CTheme& to)
{
    ThematicMap map;
    map.type = from.map.type;
    map.field = counterpart(from, to, from.map.field);
    map.classCount = from.map.classCount;
    for (const auto& featureClass : from.map.classes)
        map.classes.push_back(std::make_unique<gis::CFeatureClass>(*featureClass));
    return map;
}

} // namespace

std::unique_ptr<gis::CLibGis> cloneLibrary(Library& library)
{
    if (!library.loadAll())
        return nullptr;
    auto facade = std::make_unique<gis::CLibGis>(nullptr, library.targetDrawing());
    Library& copy = *Library::of(facade.get());
    TableMap tables;
    for (gis::CDBTable* table : library.tables()) {
        gis::CDBTable* target
            = copy.adoptTable(std::make_unique<gis::CDBTable>(copy, table->name()));
        copyTable(*table, *target);
        tables.emplace(table, target);
    }
    PointMap points;
    for (std::size_t i = 0; i < library.linkedPointCount(); ++i) {
        LinkedPoint* point = copy.addLinkedPoint();
        *point = library.linkedPoints()[i];
        points.emplace(&library.linkedPoints()[i], point);
    }
    for (gis::CTheme* theme : library.themes()) {
        gis::CTheme* target
            = copy.adoptTheme(std::make_unique<gis::CTheme>(copy, tables.at(theme->table),
                theme->name, theme->type, theme->coords, theme->entities().hasM()));
        target->targetDrawing = theme->targetDrawing;
        target->visible = theme->visible;
        target->locked = theme->locked;
        target->label = theme->label;
        target->label.field = counterpart(*theme, *target, theme->label.field);
        target->map = copyMap(*theme, *target);
        target->referenceSystem = theme->referenceSystem;
        copyEntities(*theme, *target, points);
        if (theme == library.activeTheme())
            copy.restoreActiveTheme(target);
    }
    copy.restoreLayers(library.layers());
    return facade;
}

} // namespace embedded
