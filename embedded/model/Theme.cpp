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
        m_failure.reset();
        if (embedded::IStore* store = m_library.store())
            if (const auto read = store->readGeometry(*this, *m_entities); !read)
                m_failure = read.error();
    }
    return *m_entities;
}

void CTheme::forgetFailedGeometry()
{
    if (m_failure && m_entities->totalPartCount() == 0
        && m_entities->entityCount() == storedEntityCount)
        m_geometryLoaded = false;
}

const embedded::Error* CTheme::geometryFailure() const
{
    return m_failure ? &*m_failure : nullptr;
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
