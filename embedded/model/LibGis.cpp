// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "host/gis/LibGis.h"

#include "embedded/model/Library.h"

#include <algorithm>

// The facade: checks handles and hands on to the implementation, never to its own virtual
// operations.

namespace embedded {

Library* Library::of(gis::CLibGis* facade)
{
    return facade ? facade->m_library.get() : nullptr;
}

} // namespace embedded

namespace gis {

using embedded::EntityStore;
using embedded::Library;

namespace {

template <typename Object> Object* at(const std::vector<Object*>& objects, int index)
{
    return index >= 0 && index < static_cast<int>(objects.size())
        ? objects[static_cast<std::size_t>(index)]
        : nullptr;
}

} // namespace

CLibGis::CLibGis(orv::CChangeTransactionManager* manager, std::int64_t targetDrawing)
    : m_library(std::make_unique<Library>(*this, manager, targetDrawing))
{
}
CLibGis::~CLibGis() = default;

int CLibGis::GetNumTables()
{
    return static_cast<int>(m_library->tables().size());
}
CDBTable* CLibGis::GetTable(int index)
{
    return at(m_library->tables(), index);
}
CDBTable* CLibGis::GetTable(CTheme* theme)
{
    return theme ? theme->table : nullptr;
}
CDBTable* CLibGis::FindTable(const orv::String& name)
{
    return m_library->findTable(name);
}
CDBTable* CLibGis::CreateTable(const orv::String& name)
{
    return m_library->createTable(name);
}
CDBTable* CLibGis::CreateTableAsCopyOf(CDBTable* table)
{
    return m_library->createTableAsCopyOf(table);
}
void CLibGis::DeleteTable(CDBTable* table)
{
    m_library->deleteTable(table);
}
bool CLibGis::IsTableUsedByThemes(CDBTable* table)
{
    return m_library->isUsedByThemes(table);
}
orv::String CLibGis::GetTableName(CDBTable* table)
{
    return table ? table->name() : orv::String();
}
void CLibGis::SetTableName(CDBTable* table, const orv::String& name)
{
    m_library->renameTable(table, name);
}

int CLibGis::GetNumFields(CDBTable* table)
{
    return table ? table->fieldCount() : 0;
}
CField* CLibGis::GetField(CDBTable* table, int index)
{
    return table ? table->field(index) : nullptr;
}
orv::String CLibGis::GetFieldName(CField* field)
{
    return field ? field->name : orv::String();
}
FieldFormat CLibGis::GetFieldFormat(CField* field)
{
    return field ? field->format : FieldFormat::Text;
}
bool CLibGis::IsFieldPredefined(CField* field)
{
    return field && field->isPredefined();
}
bool CLibGis::IsFieldRequested(CField* field)
{
    return field && field->requested;
}
void CLibGis::GetFieldConstraints(CField* field, orv::CPolyValue* constraints)
{
    if (!constraints)
        return;
    for (int i = 0; i < ConstraintCount; ++i)
        constraints[i]
            = field ? field->constraints[static_cast<std::size_t>(i)] : orv::CPolyValue();
}
orv::String CLibGis::GetListElement(CField* field, int index)
{
    const bool isList = field && field->format == FieldFormat::List && index >= 0;
    return isList ? field->constraints[3].GetStringValue(static_cast<unsigned>(index))
                  : orv::String();
}

int CLibGis::GetNumRows(CDBTable* table)
{
    return table ? table->rowCount() : 0;
}
orv::CResultRow* CLibGis::GetRow(CDBTable* table, int index)
{
    return table ? table->row(index) : nullptr;
}
orv::CResultRow* CLibGis::GetRow(CEnt* ent)
{
    return EntityStore::rowOf(ent);
}
void CLibGis::GetRowValue(orv::CResultRow* row, int fieldIndex, orv::CPolyValue& value)
{
    m_library->cell(row, fieldIndex, value);
}
void CLibGis::SetRowValue(orv::CResultRow* row, int fieldIndex, orv::CPolyValue& value)
{
    m_library->setCell(row, fieldIndex, value);
}
void CLibGis::InitializeWithDefVal(CDBTable* table, orv::CResultRow* row)
{
    m_library->initializeWithDefaults(table, row);
}
void CLibGis::RecalcAllPredefValues(CTheme* theme, CEnt* ent)
{
    m_library->recalcPredefined(theme, ent);
}

int CLibGis::GetNumThemes()
{
    return static_cast<int>(m_library->themes().size());
}
CTheme* CLibGis::GetTheme(int index)
{
    return at(m_library->themes(), index);
}
CTheme* CLibGis::GetTheme(CEnt* ent)
{
    return EntityStore::themeOf(ent);
}
CTheme* CLibGis::FindTheme(const orv::String& name)
{
    return m_library->findTheme(name);
}
CTheme* CLibGis::CreateTheme(CDBTable* table, const orv::String& name, EntType type,
    EntTypeCoords coords, std::int64_t targetDrawing)
{
    return m_library->createTheme(table, name, type, coords, targetDrawing);
}
bool CLibGis::DeleteTheme(CTheme* theme)
{
    return m_library->deleteTheme(theme);
}
orv::String CLibGis::GetThemeName(CTheme* theme)
{
    return theme ? theme->name : orv::String();
}
void CLibGis::SetThemeName(CTheme* theme, const orv::String& name)
{
    m_library->renameTheme(theme, name);
}
EntType CLibGis::GetEntType(CTheme* theme)
{
    return theme ? theme->type : EntType {};
}
EntTypeCoords CLibGis::GetEntCoords(CTheme* theme)
{
    return theme ? theme->coords : EntTypeCoords::XY;
}
CTheme* CLibGis::GetThemeActive()
{
    return m_library->activeTheme();
}
void CLibGis::SetThemeActive(CTheme* theme)
{
    if (theme)
        m_library->setActiveTheme(theme);
}
bool CLibGis::IsThemeActive(CTheme* theme)
{
    return theme && theme == m_library->activeTheme();
}
bool CLibGis::GetThemeVisible(CTheme* theme)
{
    return theme && theme->visible;
}
void CLibGis::SetThemeVisible(CTheme* theme, bool visible)
{
    m_library->setThemeVisible(theme, visible);
}
bool CLibGis::GetThemeLocked(CTheme* theme)
{
    return theme && theme->locked;
}
void CLibGis::SetThemeLocked(CTheme* theme, bool locked)
{
    m_library->setThemeLocked(theme, locked);
}
std::int64_t CLibGis::GetTargetDrawing()
{
    return m_library->targetDrawing();
}
std::int64_t CLibGis::GetThemeTargetDrawing(CTheme* theme)
{
    return theme ? theme->targetDrawing : 0;
}
void CLibGis::SetThemeTargetDrawing(CTheme* theme, std::int64_t drawing)
{
    m_library->setThemeTargetDrawing(theme, drawing);
}

TOpzLabel CLibGis::GetThemeOpzLabel(CTheme* theme)
{
    if (!theme)
        return {};
    TOpzLabel label = theme->label;
    if (label.field && theme->table && theme->table->indexOf(label.field) < 0)
        label.field = nullptr; // the field is deleted; taking that back brings the label back too
    return label;
}
void CLibGis::SetThemeOpzLabel(CTheme* theme, TOpzLabel options)
{
    m_library->setThemeLabel(theme, options);
}
void CLibGis::ThemeIsChange(CTheme* theme)
{
    if (theme)
        theme->attributesChanged = true;
}

int CLibGis::GetNoEnts(CTheme* theme)
{
    return theme ? theme->entities().entityCount() : 0;
}
CEnt* CLibGis::GetEnt(CTheme* theme, int index)
{
    return theme ? theme->entities().entity(index) : nullptr;
}
CEnt* CLibGis::GetEnt(orv::CResultRow* row)
{
    return CDBTable::entityOf(row);
}
CEntPart* CLibGis::GetEntPart(CEnt* ent, int index)
{
    CTheme* theme = EntityStore::themeOf(ent);
    return theme ? theme->geometry().partHandle(EntityStore::indexOf(ent), index) : nullptr;
}
CEntVert* CLibGis::GetEntVert(CEntPart* part, int index)
{
    return reinterpret_cast<CEntVert*>(const_cast<double*>(EntityStore::vertexOf(part, index)));
}
CEntVertController* CLibGis::GetController(CEntVert* vertex)
{
    return reinterpret_cast<CEntVertController*>(
        EntityStore::linkedPointAt(reinterpret_cast<const double*>(vertex)));
}

void* CLibGis::Extension(const char* name)
{
    return m_library->extension(name);
}

} // namespace gis
