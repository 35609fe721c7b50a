// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "embedded/base/Result.h"
#include "embedded/model/EntityStore.h"

#include "host/gis/Types.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace embedded {
class Library;
}

namespace gis {

/// A class of a thematic map.
class CFeatureClass final {
public:
    int colour = 7;
    int colourOutLine = 7;
    int hatchType = -1; // -2 none, -1 solid, else a pattern's index
    int width = 29; // 29 default, 30 by layer, 31 by block, else an index of the width list
    int symbol = 0;
    double scale = 1.0;
    double rotationRadians = 0.0;
    orv::String ltypeName = "Continuous";
    orv::String label;
    orv::CPolyValue low;
    orv::CPolyValue high;
    bool isDefault = false;
};

} // namespace gis

namespace embedded {

/// A theme's thematic map as it stands.
struct ThematicMap {
    gis::MapType type = gis::MapType::None;
    gis::CField* field = nullptr;
    int classCount = 1;
    std::vector<std::unique_ptr<gis::CFeatureClass>> classes; // index 0: the default class
};

/// The reference system of a theme's coordinates, as its source gave it.
struct ReferenceSystem {
    std::string definition; // WKT (a .prj's text byte for byte); empty: unknown
    std::string authority; // "EPSG", or empty
    int code = 0;
    friend bool operator==(const ReferenceSystem&, const ReferenceSystem&) = default;
};

} // namespace embedded

namespace gis {

/// A theme of the embedded model. Members are changed through the library, which records; builders
/// fill them directly.
class CTheme final {
public:
    CTheme(embedded::Library& library, CDBTable* owner, const orv::String& themeName,
        EntType entType, EntTypeCoords entCoords, bool hasM);
    CTheme(const CTheme&) = delete;
    CTheme& operator=(const CTheme&) = delete;
    ~CTheme();

    [[nodiscard]] embedded::Library& library() const { return m_library; }
    /// The entities; handles always, parts and vertices read from the store on first use of
    /// `geometry()`.
    [[nodiscard]] embedded::EntityStore& entities() const { return *m_entities; }
    [[nodiscard]] embedded::EntityStore& geometry();
    /// Gives a theme's vertices room for measures; false (nothing done) once there are entities.
    bool addMeasures();
    void removeMeasures(); // takes that back, while there are no entities
    /// Why the geometry could not be read, so that the entities are without shapes; null when it
    /// could, and while nobody asked for it. Until it is read again.
    [[nodiscard]] const embedded::Error* geometryFailure() const;
    /// Geometry that could not be read is read again when it is asked for next.
    void forgetFailedGeometry();
    [[nodiscard]] bool isGeometryLoaded() const { return m_geometryLoaded; }
    void setGeometryPending() { m_geometryLoaded = false; } // the store will give it
    /// Extent, from the store where the geometry was not read yet.
    [[nodiscard]] embedded::Box extent();

    CDBTable* table = nullptr;
    orv::String name;
    EntType type = EntType::Points;
    EntTypeCoords coords = EntTypeCoords::XY;
    std::int64_t targetDrawing = 0;
    bool visible = true;
    bool locked = false;
    TOpzLabel label;
    embedded::ThematicMap map;
    embedded::ReferenceSystem referenceSystem;

    std::int64_t storeId = 0;
    int storedEntityCount = 0; // entities that the store holds
    bool attributesChanged = true; // anything but entities changed since the last save

private:
    embedded::Library& m_library;
    std::unique_ptr<embedded::EntityStore> m_entities;
    std::optional<embedded::Error> m_failure; // of reading the geometry
    bool m_geometryLoaded = true;
};

} // namespace gis
