// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/support/RecordingLibrary.h"

#include "tests/support/Describe.h"
#include "tests/support/LibraryNotation.h"

#include "host/gis/Columns.h"

#include <algorithm>
#include <type_traits>

namespace support {
namespace {

template <typename... Args> std::string callText(const char* operation, const Args&... args)
{
    std::string text = operation;
    text += '(';
    [[maybe_unused]] const char* separator = "";
    ((text += separator, text += describe(args), separator = ", "), ...);
    return text + ')';
}

std::string_view operationOf(std::string_view call)
{
    return call.substr(0, call.find('('));
}

} // namespace

CRecordingLibrary::CRecordingLibrary(
    orv::CChangeTransactionManager* manager, std::int64_t targetDrawing)
    : CLibGis(manager, targetDrawing)
{
}

CRecordingLibrary::CRecordingLibrary(
    std::string_view notation, orv::CChangeTransactionManager* manager, std::int64_t targetDrawing)
    : CLibGis(manager, targetDrawing)
{
    fillLibrary(*this, notation);
    clearCalls();
}

CRecordingLibrary::~CRecordingLibrary() = default;

std::vector<std::string> CRecordingLibrary::callsOf(std::string_view operation) const
{
    std::vector<std::string> found;
    std::copy_if(m_calls.begin(), m_calls.end(), std::back_inserter(found),
        [operation](const std::string& call) { return operationOf(call) == operation; });
    return found;
}

int CRecordingLibrary::countOf(std::string_view operation) const
{
    return static_cast<int>(std::count_if(m_calls.begin(), m_calls.end(),
        [operation](const std::string& call) { return operationOf(call) == operation; }));
}

bool CRecordingLibrary::wasCalled(std::string_view call) const
{
    return std::find(m_calls.begin(), m_calls.end(), call) != m_calls.end();
}

void CRecordingLibrary::clearCalls()
{
    m_calls.clear();
    m_changes.clear();
}

void CRecordingLibrary::refuse(const std::string& operation, int times)
{
    m_answers[operation] = { std::any(), times };
}

void CRecordingLibrary::record(std::string call, bool isChange) const
{
    if (!m_isRecording)
        return;
    if (isChange)
        m_changes.push_back(call);
    m_calls.push_back(std::move(call));
}

bool CRecordingLibrary::takeAnswer(const char* operation, std::any& value) const
{
    const auto found = m_answers.find(operation);
    if (found == m_answers.end())
        return false;
    value = found->second.value;
    if (found->second.times > 0 && --found->second.times == 0)
        m_answers.erase(found);
    return true;
}

template <typename R, typename Base>
R CRecordingLibrary::answered(const char* operation, Base&& base) const
{
    std::any value;
    if (!takeAnswer(operation, value))
        return base();
    if constexpr (!std::is_void_v<R>) {
        if (value.has_value())
            return std::any_cast<R>(value);
        return R {};
    }
}

template <typename R, typename Base, typename... Args>
R CRecordingLibrary::query(const char* operation, Base&& base, const Args&... args) const
{
    record(callText(operation, args...), false);
    return answered<R>(operation, base);
}

template <typename R, typename Base, typename... Args>
R CRecordingLibrary::change(const char* operation, Base&& base, const Args&... args) const
{
    record(callText(operation, args...), true);
    return answered<R>(operation, base);
}

int CRecordingLibrary::GetNumTables()
{
    return query<int>("GetNumTables", [&] { return CLibGis::GetNumTables(); });
}

gis::CDBTable* CRecordingLibrary::GetTable(int index)
{
    return query<gis::CDBTable*>(
        "GetTable", [&] { return CLibGis::GetTable(index); }, index);
}

gis::CDBTable* CRecordingLibrary::GetTable(gis::CTheme* theme)
{
    return query<gis::CDBTable*>(
        "GetTable", [&] { return CLibGis::GetTable(theme); }, theme);
}

gis::CDBTable* CRecordingLibrary::FindTable(const orv::String& name)
{
    return query<gis::CDBTable*>(
        "FindTable", [&] { return CLibGis::FindTable(name); }, name);
}

gis::CDBTable* CRecordingLibrary::CreateTable(const orv::String& name)
{
    return change<gis::CDBTable*>(
        "CreateTable", [&] { return CLibGis::CreateTable(name); }, name);
}

gis::CDBTable* CRecordingLibrary::CreateTableAsCopyOf(gis::CDBTable* table)
{
    return change<gis::CDBTable*>(
        "CreateTableAsCopyOf", [&] { return CLibGis::CreateTableAsCopyOf(table); }, table);
}

void CRecordingLibrary::DeleteTable(gis::CDBTable* table)
{
    return change<void>(
        "DeleteTable", [&] { return CLibGis::DeleteTable(table); }, table);
}

bool CRecordingLibrary::IsTableUsedByThemes(gis::CDBTable* table)
{
    return query<bool>(
        "IsTableUsedByThemes", [&] { return CLibGis::IsTableUsedByThemes(table); }, table);
}

orv::String CRecordingLibrary::GetTableName(gis::CDBTable* table)
{
    return query<orv::String>(
        "GetTableName", [&] { return CLibGis::GetTableName(table); }, table);
}

void CRecordingLibrary::SetTableName(gis::CDBTable* table, const orv::String& name)
{
    return change<void>(
        "SetTableName", [&] { return CLibGis::SetTableName(table, name); }, table, name);
}

int CRecordingLibrary::GetNumFields(gis::CDBTable* table)
{
    return query<int>(
        "GetNumFields", [&] { return CLibGis::GetNumFields(table); }, table);
}

gis::CField* CRecordingLibrary::GetField(gis::CDBTable* table, int index)
{
    return query<gis::CField*>(
        "GetField", [&] { return CLibGis::GetField(table, index); }, table, index);
}

orv::String CRecordingLibrary::GetFieldName(gis::CField* field)
{
    return query<orv::String>(
        "GetFieldName", [&] { return CLibGis::GetFieldName(field); }, field);
}

gis::FieldFormat CRecordingLibrary::GetFieldFormat(gis::CField* field)
{
    return query<gis::FieldFormat>(
        "GetFieldFormat", [&] { return CLibGis::GetFieldFormat(field); }, field);
}

bool CRecordingLibrary::IsFieldPredefined(gis::CField* field)
{
    return query<bool>(
        "IsFieldPredefined", [&] { return CLibGis::IsFieldPredefined(field); }, field);
}

bool CRecordingLibrary::IsFieldRequested(gis::CField* field)
{
    return query<bool>(
        "IsFieldRequested", [&] { return CLibGis::IsFieldRequested(field); }, field);
}

void CRecordingLibrary::GetFieldConstraints(gis::CField* field, orv::CPolyValue* constraints)
{
    return query<void>(
        "GetFieldConstraints", [&] { return CLibGis::GetFieldConstraints(field, constraints); },
        field);
}

orv::String CRecordingLibrary::GetListElement(gis::CField* field, int index)
{
    return query<orv::String>(
        "GetListElement", [&] { return CLibGis::GetListElement(field, index); }, field, index);
}

int CRecordingLibrary::GetNumRows(gis::CDBTable* table)
{
    return query<int>(
        "GetNumRows", [&] { return CLibGis::GetNumRows(table); }, table);
}

orv::CResultRow* CRecordingLibrary::GetRow(gis::CDBTable* table, int index)
{
    return query<orv::CResultRow*>(
        "GetRow", [&] { return CLibGis::GetRow(table, index); }, table, index);
}

orv::CResultRow* CRecordingLibrary::GetRow(gis::CEnt* ent)
{
    return query<orv::CResultRow*>(
        "GetRow", [&] { return CLibGis::GetRow(ent); }, ent);
}

void CRecordingLibrary::SetRowValue(orv::CResultRow* row, int fieldIndex, orv::CPolyValue& value)
{
    return change<void>(
        "SetRowValue", [&] { return CLibGis::SetRowValue(row, fieldIndex, value); }, row,
        fieldIndex, value);
}

void CRecordingLibrary::InitializeWithDefVal(gis::CDBTable* table, orv::CResultRow* row)
{
    return change<void>(
        "InitializeWithDefVal", [&] { return CLibGis::InitializeWithDefVal(table, row); }, table,
        row);
}

void CRecordingLibrary::RecalcAllPredefValues(gis::CTheme* theme, gis::CEnt* ent)
{
    return change<void>(
        "RecalcAllPredefValues", [&] { return CLibGis::RecalcAllPredefValues(theme, ent); }, theme,
        ent);
}

int CRecordingLibrary::GetNumThemes()
{
    return query<int>("GetNumThemes", [&] { return CLibGis::GetNumThemes(); });
}

gis::CTheme* CRecordingLibrary::GetTheme(int index)
{
    return query<gis::CTheme*>(
        "GetTheme", [&] { return CLibGis::GetTheme(index); }, index);
}

gis::CTheme* CRecordingLibrary::FindTheme(const orv::String& name)
{
    return query<gis::CTheme*>(
        "FindTheme", [&] { return CLibGis::FindTheme(name); }, name);
}

gis::CTheme* CRecordingLibrary::CreateTheme(gis::CDBTable* table, const orv::String& name,
    gis::EntType type, gis::EntTypeCoords coords, std::int64_t targetDrawing)
{
    return change<gis::CTheme*>(
        "CreateTheme",
        [&] { return CLibGis::CreateTheme(table, name, type, coords, targetDrawing); }, table, name,
        type, coords, targetDrawing);
}

bool CRecordingLibrary::DeleteTheme(gis::CTheme* theme)
{
    return change<bool>(
        "DeleteTheme", [&] { return CLibGis::DeleteTheme(theme); }, theme);
}

orv::String CRecordingLibrary::GetThemeName(gis::CTheme* theme)
{
    return query<orv::String>(
        "GetThemeName", [&] { return CLibGis::GetThemeName(theme); }, theme);
}

void CRecordingLibrary::SetThemeName(gis::CTheme* theme, const orv::String& name)
{
    return change<void>(
        "SetThemeName", [&] { return CLibGis::SetThemeName(theme, name); }, theme, name);
}

gis::EntTypeCoords CRecordingLibrary::GetEntCoords(gis::CTheme* theme)
{
    return query<gis::EntTypeCoords>(
        "GetEntCoords", [&] { return CLibGis::GetEntCoords(theme); }, theme);
}

gis::CTheme* CRecordingLibrary::GetThemeActive()
{
    return query<gis::CTheme*>("GetThemeActive", [&] { return CLibGis::GetThemeActive(); });
}

void CRecordingLibrary::SetThemeActive(gis::CTheme* theme)
{
    return change<void>(
        "SetThemeActive", [&] { return CLibGis::SetThemeActive(theme); }, theme);
}

bool CRecordingLibrary::IsThemeActive(gis::CTheme* theme)
{
    return query<bool>(
        "IsThemeActive", [&] { return CLibGis::IsThemeActive(theme); }, theme);
}

bool CRecordingLibrary::GetThemeVisible(gis::CTheme* theme)
{
    return query<bool>(
        "GetThemeVisible", [&] { return CLibGis::GetThemeVisible(theme); }, theme);
}

void CRecordingLibrary::SetThemeVisible(gis::CTheme* theme, bool visible)
{
    return change<void>(
        "SetThemeVisible", [&] { return CLibGis::SetThemeVisible(theme, visible); }, theme,
        visible);
}

bool CRecordingLibrary::GetThemeLocked(gis::CTheme* theme)
{
    return query<bool>(
        "GetThemeLocked", [&] { return CLibGis::GetThemeLocked(theme); }, theme);
}

void CRecordingLibrary::SetThemeLocked(gis::CTheme* theme, bool locked)
{
    return change<void>(
        "SetThemeLocked", [&] { return CLibGis::SetThemeLocked(theme, locked); }, theme, locked);
}

std::int64_t CRecordingLibrary::GetTargetDrawing()
{
    return query<std::int64_t>("GetTargetDrawing", [&] { return CLibGis::GetTargetDrawing(); });
}

std::int64_t CRecordingLibrary::GetThemeTargetDrawing(gis::CTheme* theme)
{
    return query<std::int64_t>(
        "GetThemeTargetDrawing", [&] { return CLibGis::GetThemeTargetDrawing(theme); }, theme);
}

void CRecordingLibrary::SetThemeTargetDrawing(gis::CTheme* theme, std::int64_t drawing)
{
    return change<void>(
        "SetThemeTargetDrawing", [&] { return CLibGis::SetThemeTargetDrawing(theme, drawing); },
        theme, drawing);
}

gis::TOpzLabel CRecordingLibrary::GetThemeOpzLabel(gis::CTheme* theme)
{
    return query<gis::TOpzLabel>(
        "GetThemeOpzLabel", [&] { return CLibGis::GetThemeOpzLabel(theme); }, theme);
}

void CRecordingLibrary::SetThemeOpzLabel(gis::CTheme* theme, gis::TOpzLabel options)
{
    return change<void>(
        "SetThemeOpzLabel", [&] { return CLibGis::SetThemeOpzLabel(theme, options); }, theme,
        options);
}

void CRecordingLibrary::ThemeIsChange(gis::CTheme* theme)
{
    return change<void>(
        "ThemeIsChange", [&] { return CLibGis::ThemeIsChange(theme); }, theme);
}

int CRecordingLibrary::GetNoEnts(gis::CTheme* theme)
{
    return query<int>(
        "GetNoEnts", [&] { return CLibGis::GetNoEnts(theme); }, theme);
}

gis::CEnt* CRecordingLibrary::GetEnt(gis::CTheme* theme, int index)
{
    return query<gis::CEnt*>(
        "GetEnt", [&] { return CLibGis::GetEnt(theme, index); }, theme, index);
}

gis::CEnt* CRecordingLibrary::GetEnt(orv::CResultRow* row)
{
    return query<gis::CEnt*>(
        "GetEnt", [&] { return CLibGis::GetEnt(row); }, row);
}

gis::CEntPart* CRecordingLibrary::GetEntPart(gis::CEnt* ent, int index)
{
    return query<gis::CEntPart*>(
        "GetEntPart", [&] { return CLibGis::GetEntPart(ent, index); }, ent, index);
}

gis::CEntVert* CRecordingLibrary::GetEntVert(gis::CEntPart* part, int index)
{
    return query<gis::CEntVert*>(
        "GetEntVert", [&] { return CLibGis::GetEntVert(part, index); }, part, index);
}

bool CRecordingLibrary::IsDefaultFeatureClass(gis::CFeatureClass* featureClass)
{
    return query<bool>(
        "IsDefaultFeatureClass", [&] { return CLibGis::IsDefaultFeatureClass(featureClass); },
        featureClass);
}

void CRecordingLibrary::GetRowValue(orv::CResultRow* row, int fieldIndex, orv::CPolyValue& value)
{
    record(callText("GetRowValue", row, fieldIndex), false);
    if (m_cells && m_cells(row, fieldIndex, value))
        return;
    std::any answer;
    if (!takeAnswer("GetRowValue", answer))
        CLibGis::GetRowValue(row, fieldIndex, value);
    else if (answer.has_value())
        value = std::any_cast<orv::CPolyValue>(answer);
    else
        value.SetToEmpty();
}

void CRecordingLibrary::SetModifiedFlag(bool modified)
{
    change<void>(
        "SetModifiedFlag", [&] { CLibGis::SetModifiedFlag(modified); }, modified);
}

bool CRecordingLibrary::GetModifiedFlag() const
{
    return query<bool>("GetModifiedFlag", [&] { return CLibGis::GetModifiedFlag(); });
}

void* CRecordingLibrary::Extension(const char* name)
{
    record(callText("Extension", name), false);
    const std::string_view wanted = name ? name : "";
    const auto own = m_extensions.find(std::string(wanted));
    if (own != m_extensions.end())
        return own->second;
    // Columns would go past the cells and entities that a test gives.
    const bool givesOwnCells
        = m_cells || m_answers.count("GetRowValue") != 0 || m_answers.count("GetEnt") != 0;
    if (wanted == gis::ColumnsExtension && (!m_offersColumns || givesOwnCells))
        return nullptr;
    return CLibGis::Extension(name);
}

} // namespace support
