// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/base/LibGen.h"
#include "host/gis/Types.h"

#include <memory>

namespace embedded {
class Library;
}

namespace gis {

/// The GIS model of one drawing and the facade for every query and change of it.
///
/// The order of the virtual operations is the binary contract with hosts; `Extension` is the last
/// and nothing is ever appended. Indexes count from 0. Units: drawing units, radians, seconds since
/// 1970-01-01 00:00 UTC. Errors: null handles are harmless (counts are 0, texts empty, look-ups
/// null, setters do nothing); indexes out of range give null or the empty text. No operation
/// throws. Owner, thread: the host owns the library and every handle; call on the library's thread.
class TEMATICA_HOST_API CLibGis : public CLibGen {
public:
    /// `manager` records changes and may be null (a scratch library without undo); must outlive the
    /// library.
    explicit CLibGis(
        orv::CChangeTransactionManager* manager = nullptr, std::int64_t targetDrawing = 0);
    ~CLibGis() override;

    // Tables
    virtual int GetNumTables();
    virtual CDBTable* GetTable(int index);
    virtual CDBTable* GetTable(CTheme* theme);
    /// ASCII case ignored; an exact match wins, else the first in order.
    virtual CDBTable* FindTable(const orv::String& name);
    /// Never refuses: an empty or used name is taken as it is.
    virtual CDBTable* CreateTable(const orv::String& name);
    /// Structure, constraints and rows; a taken name gets " (2)", " (3)" and so on. The source may
    /// be of another library. Errors: null, and no table, when cells of the source cannot be read.
    virtual CDBTable* CreateTableAsCopyOf(CDBTable* table);
    /// Does nothing while a theme uses the table.
    virtual void DeleteTable(CDBTable* table);
    virtual bool IsTableUsedByThemes(CDBTable* table);
    virtual orv::String GetTableName(CDBTable* table);
    virtual void SetTableName(CDBTable* table, const orv::String& name);

    // Fields
    virtual int GetNumFields(CDBTable* table);
    virtual CField* GetField(CDBTable* table, int index);
    virtual orv::String GetFieldName(CField* field);
    virtual FieldFormat GetFieldFormat(CField* field);
    virtual bool IsFieldPredefined(CField* field);
    virtual bool IsFieldRequested(CField* field);
    /// Fills `constraints[0]` to `constraints[3]` (`ConstraintCount`).
    virtual void GetFieldConstraints(CField* field, orv::CPolyValue* constraints);
    /// Texts of a list field; the empty text for any other index, -1 included.
    virtual orv::String GetListElement(CField* field, int index);

    // Rows
    virtual int GetNumRows(CDBTable* table);
    virtual orv::CResultRow* GetRow(CDBTable* table, int index);
    virtual orv::CResultRow* GetRow(CEnt* ent);
    virtual void GetRowValue(orv::CResultRow* row, int fieldIndex, orv::CPolyValue& value);
    virtual void SetRowValue(orv::CResultRow* row, int fieldIndex, orv::CPolyValue& value);
    /// Writes the fields' default values into the row's empty cells.
    virtual void InitializeWithDefVal(CDBTable* table, orv::CResultRow* row);
    virtual void RecalcAllPredefValues(CTheme* theme, CEnt* ent);

    // Themes
    virtual int GetNumThemes();
    virtual CTheme* GetTheme(int index);
    static CTheme* GetTheme(CEnt* ent);
    /// As `FindTable`.
    virtual CTheme* FindTheme(const orv::String& name);
    /// Null without a table. Becomes the active theme when there is none.
    virtual CTheme* CreateTheme(CDBTable* table, const orv::String& name, EntType type,
        EntTypeCoords coords, std::int64_t targetDrawing);
    /// False for the active theme, a theme with entities, and null.
    virtual bool DeleteTheme(CTheme* theme);
    virtual orv::String GetThemeName(CTheme* theme);
    virtual void SetThemeName(CTheme* theme, const orv::String& name);
    static EntType GetEntType(CTheme* theme);
    virtual EntTypeCoords GetEntCoords(CTheme* theme);
    virtual CTheme* GetThemeActive();
    virtual void SetThemeActive(CTheme* theme);
    virtual bool IsThemeActive(CTheme* theme);
    virtual bool GetThemeVisible(CTheme* theme);
    virtual void SetThemeVisible(CTheme* theme, bool visible);
    virtual bool GetThemeLocked(CTheme* theme);
    virtual void SetThemeLocked(CTheme* theme, bool locked);
    virtual std::int64_t GetTargetDrawing();
    virtual std::int64_t GetThemeTargetDrawing(CTheme* theme);
    virtual void SetThemeTargetDrawing(CTheme* theme, std::int64_t drawing);
    virtual TOpzLabel GetThemeOpzLabel(CTheme* theme);
    virtual void SetThemeOpzLabel(CTheme* theme, TOpzLabel options);
    /// Tells the library that the theme changed.
    virtual void ThemeIsChange(CTheme* theme);

    // Entities
    virtual int GetNoEnts(CTheme* theme);
    virtual CEnt* GetEnt(CTheme* theme, int index);
    virtual CEnt* GetEnt(orv::CResultRow* row);
    virtual CEntPart* GetEntPart(CEnt* ent, int index);
    virtual CEntVert* GetEntVert(CEntPart* part, int index);
    /// The linked point of a vertex, or null.
    static CEntVertController* GetController(CEntVert* vertex);

    // Classes of a thematic map
    static int GetColor(CFeatureClass* featureClass);
    static void SetColor(CFeatureClass* featureClass, int colour);
    static int GetColorOutLine(CFeatureClass* featureClass);
    static void SetColorOutLine(CFeatureClass* featureClass, int colour);
    static int GetHatchType(CFeatureClass* featureClass);
    static void SetHatchType(CFeatureClass* featureClass, int hatchType);
    static int GetWidth(CFeatureClass* featureClass);
    static void SetWidth(CFeatureClass* featureClass, int width);
    static int GetSymbol(CFeatureClass* featureClass);
    static void SetSymbol(CFeatureClass* featureClass, int symbol);
    static double GetScala(CFeatureClass* featureClass);
    static void SetScala(CFeatureClass* featureClass, double scale);
    static double GetRotate(CFeatureClass* featureClass);
    static void SetRotate(CFeatureClass* featureClass, double rotationRadians);
    static orv::String GetLtypeName(CFeatureClass* featureClass);
    static void SetLtypeName(CFeatureClass* featureClass, const orv::String& name);
    static orv::String GetLabel(CFeatureClass* featureClass);
    static void SetLabel(CFeatureClass* featureClass, const orv::String& label);
    static void GetLimitValue(
        CFeatureClass* featureClass, orv::CPolyValue& low, orv::CPolyValue& high);
    static void SetLimitValue(
        CFeatureClass* featureClass, const orv::CPolyValue& low, const orv::CPolyValue& high);
    virtual bool IsDefaultFeatureClass(CFeatureClass* featureClass);

    /// What the host offers beyond this interface, by name ("columns/1", "feedback/1",
    /// "readings/1"); null where it does not. The pointer is to the extension's interface and lives
    /// as long as the library. Always the last operation.
    virtual void* Extension(const char* name);

private:
    friend class embedded::Library;
    std::unique_ptr<embedded::Library> m_library;
};

/// Centroid of an entity, as the predefined fields give it. Drawing units; 0 for null.
TEMATICA_HOST_API double FCalcXCentPredef(CEnt* ent);
TEMATICA_HOST_API double FCalcYCentPredef(CEnt* ent);
TEMATICA_HOST_API double FCalcZCentPredef(CEnt* ent);

} // namespace gis
