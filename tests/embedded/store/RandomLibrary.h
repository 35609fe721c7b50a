// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "embedded/model/Library.h"

#include <random>
#include <string>

namespace storetest {

/// Fills libraries with everything that one may hold, and changes them, by a seed.
class CRandomLibrary final {
public:
    explicit CRandomLibrary(unsigned seed)
        : m_random(seed)
    {
    }

    /// Tables, themes, layers, points: names that need care among them, all formats, all kinds of
    /// shapes, labels with invalid numbers, classes with limits of every kind.
    void fill(gis::CLibGis& library);
    /// One change of the kinds that a save must be able to write.
    void change(gis::CLibGis& library);

private:
    int upTo(int most) { return std::uniform_int_distribution<int>(0, most)(m_random); }
    bool chance(int percent) { return upTo(99) < percent; }
    double real();
    std::string name();
    orv::String textValue();
    orv::CPolyValue value(gis::FieldFormat format);
    void addTable(embedded::Library& library);
    void addField(gis::CDBTable& table);
    void addRows(gis::CDBTable& table, int count);
    void setCell(gis::CDBTable& table, int row, int field);
    void addTheme(embedded::Library& library, gis::CDBTable& table);
    void addEntities(embedded::Library& library, gis::CTheme& theme, int firstRow);
    void addShape(embedded::Library& library, gis::CTheme& theme, int entity);
    void addRing(gis::CTheme& theme, int entity, double x, double y, double size, bool isHole);
    void setAttributes(embedded::Library& library, gis::CTheme& theme);
    void addClasses(gis::CTheme& theme);
    gis::CDBTable* anyTable(embedded::Library& library);
    gis::CTheme* anyTheme(embedded::Library& library);

    std::mt19937 m_random;
};

} // namespace storetest
