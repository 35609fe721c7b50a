// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/gis/Types.h"

#include <memory>

class CDocSymbolManager;

namespace gis {

/// A theme's thematic map as it is being edited; nothing reaches the theme before `Commit`.
/// Every setter rebuilds the classes, also with the value that is set already: the default class
/// first, then, when rows without a value exist, the class of those, then the value classes
/// ascending. Owner, thread: the caller owns the controller, the controller its pending classes;
/// the theme must outlive it.
class TEMATICA_HOST_API CCtrlThemeMapEdit {
public:
    explicit CCtrlThemeMapEdit(CTheme* theme);
    CCtrlThemeMapEdit(const CCtrlThemeMapEdit&) = delete;
    CCtrlThemeMapEdit& operator=(const CCtrlThemeMapEdit&) = delete;
    virtual ~CCtrlThemeMapEdit();

    MapType GetMapType();
    void SetMapType(MapType type);
    CField* GetField();
    void SetField(CField* field);
    int GetNumClasses();
    void SetNumClasses(int count);
    int GetNumFeatureClasses();
    CFeatureClass* GetFeatureClass(int index);
    /// Smallest and largest value of the field over all rows of the theme's table, empty when there
    /// is none; `found` tells that at least one row has no value.
    void FindMinMaxValuesInTable(CTheme* theme, CField* field, orv::CPolyValue& minimum,
        orv::CPolyValue& maximum, bool& found);
    bool Commit(CDocSymbolManager* symbols);

private:
    class Impl;
    std::unique_ptr<Impl> m_impl;
};

} // namespace gis
