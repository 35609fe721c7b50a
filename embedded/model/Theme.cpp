// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/model/Theme.h"

#include "embedded/model/Library.h"
#include "embedded/model/ThemeClasses.h"

namespace gis {

CTheme::CTheme(embedded::Library& library, CDBTable* owner, const orv::String& themeName,
    EntType entType, EntTypeCoords entCoords, bool hasM)
    : table(owner)
    , name(themeName)
    , type(entType)
    , coords(entCoords)
    , m_library(library)
    , m_entities(std::make_unique<embedded::EntityStore>(
          *this, entCoords == EntTypeCoords::XYZ, hasM || entCoords == EntTypeCoords::XYM))
{
    map.classes = embedded::uniformClasses();
}
CTheme::~CTheme() = default;

embedded::EntityStore& CTheme::geometry()
{
    if (!m_geometryLoaded) {
        m_geometryLoaded = true; // also when reading fails: the entities are then without shape
        if (embedded::IStore* store = m_library.store())
            m_hasFailed = !store->readGeometry(*this, *m_entities);
    }
    return *m_entities;
}

void CTheme::forgetFailedGeometry()
{
    if (m_hasFailed && m_entities->totalPartCount() == 0
        && m_entities->entityCount() == storedEntityCount) {
        m_hasFailed = false;
        m_geometryLoaded = false;
    }
}

bool CTheme::addMeasures()
{
    return m_entities->addMeasures();
}

void CTheme::removeMeasures()
{
    m_entities->removeMeasures();
}

embedded::Box CTheme::extent()
{
    if (!m_geometryLoaded && m_library.store()) {
        const embedded::Box box = m_library.store()->extentOf(*this);
        if (!box.isEmpty())
            return box;
    }
    return geometry().box();
}

} // namespace gis
