// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

// A library for tests of dialogs and controllers: it writes down what it was asked, then does it.

#include "host/gis/LibGis.h"

#include <any>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace support {

/// Records each call of a virtual operation as text (`SetTableName(Strade, 'Vie')`; handles as in
/// Describe.h), then calls the base operation, unless it was told to refuse or to answer otherwise.
/// Offers no columns unless told to, so that every cell read is seen. Static operations and what
/// the controllers do are not seen here: they are checked by their effects.
class CRecordingLibrary : public gis::CLibGis {
public:
    explicit CRecordingLibrary(
        orv::CChangeTransactionManager* manager = nullptr, std::int64_t targetDrawing = 0);
    /// With the tables and themes of a notation (LibraryNotation.h) in it, nothing recorded yet.
    explicit CRecordingLibrary(std::string_view notation,
        orv::CChangeTransactionManager* manager = nullptr, std::int64_t targetDrawing = 0);
    ~CRecordingLibrary() override;

    // What was asked
    [[nodiscard]] const std::vector<std::string>& calls() const { return m_calls; }
    /// Only the calls that change the library.
    [[nodiscard]] const std::vector<std::string>& changes() const { return m_changes; }
    [[nodiscard]] std::vector<std::string> callsOf(std::string_view operation) const;
    [[nodiscard]] int countOf(std::string_view operation) const;
    [[nodiscard]] bool wasCalled(std::string_view call) const;
    void clearCalls();
    void setRecording(bool recording) { m_isRecording = recording; }
    [[nodiscard]] bool isRecording() const { return m_isRecording; }

    // What to answer
    /// The operation does nothing and gives false, 0, null or the empty text; `times` calls long,
    /// or for good when negative.
    void refuse(const std::string& operation, int times = -1);
    /// The operation does nothing and gives `value`, which must be of its result type.
    template <typename R> void answer(const std::string& operation, R value, int times = -1)
    {
        m_answers[operation] = { std::any(std::move(value)), times };
    }
    void restore(const std::string& operation) { m_answers.erase(operation); }
    /// Gives cells instead of the library; false leaves a cell to the library. Null takes it back.
    using CellSource = std::function<bool(orv::CResultRow*, int, orv::CPolyValue&)>;
    void answerCells(CellSource source) { m_cells = std::move(source); }
    /// Offers the base library's columns, as long as cells and entities are the base library's.
    void offerColumns(bool offered = true) { m_offersColumns = offered; }
    /// Offers an extension of the test's own (null: none of that name).
    void offer(const std::string& name, void* extension) { m_extensions[name] = extension; }

    int GetNumTables() override;
    gis::CDBTable* GetTable(int index) override;
    gis::CDBTable* GetTable(gis::CTheme* theme) override;
    gis::CDBTable* FindTable(const orv::String& name) override;
    gis::CDBTable* CreateTable(const orv::String& name) override;
    gis::CDBTable* CreateTableAsCopyOf(gis::CDBTable* table) override;
    void DeleteTable(gis::CDBTable* table) override;
    bool IsTableUsedByThemes(gis::CDBTable* table) override;
    orv::String GetTableName(gis::CDBTable* table) override;
    void SetTableName(gis::CDBTable* table, const orv::String& name) override;

    int GetNumFields(gis::CDBTable* table) override;
    gis::CField* GetField(gis::CDBTable* table, int index) override;
    orv::String GetFieldName(gis::CField* field) override;
    gis::FieldFormat GetFieldFormat(gis::CField* field) override;
    bool IsFieldPredefined(gis::CField* field) override;
    bool IsFieldRequested(gis::CField* field) override;
    void GetFieldConstraints(gis::CField* field, orv::CPolyValue* constraints) override;
    orv::String GetListElement(gis::CField* field, int index) override;

    int GetNumRows(gis::CDBTable* table) override;
    orv::CResultRow* GetRow(gis::CDBTable* table, int index) override;
    orv::CResultRow* GetRow(gis::CEnt* ent) override;
    void GetRowValue(orv::CResultRow* row, int fieldIndex, orv::CPolyValue& value) override;
    void SetRowValue(orv::CResultRow* row, int fieldIndex, orv::CPolyValue& value) override;
    void InitializeWithDefVal(gis::CDBTable* table, orv::CResultRow* row) override;
    void RecalcAllPredefValues(gis::CTheme* theme, gis::CEnt* ent) override;

    int GetNumThemes() override;
    gis::CTheme* GetTheme(int index) override;
    gis::CTheme* FindTheme(const orv::String& name) override;
    gis::CTheme* CreateTheme(gis::CDBTable* table, const orv::String& name, gis::EntType type,
        gis::EntTypeCoords coords, std::int64_t targetDrawing) override;
    bool DeleteTheme(gis::CTheme* theme) override;
    orv::String GetThemeName(gis::CTheme* theme) override;
    void SetThemeName(gis::CTheme* theme, const orv::String& name) override;
    gis::EntTypeCoords GetEntCoords(gis::CTheme* theme) override;
    gis::CTheme* GetThemeActive() override;
    void SetThemeActive(gis::CTheme* theme) override;
    bool IsThemeActive(gis::CTheme* theme) override;
    bool GetThemeVisible(gis::CTheme* theme) override;
    void SetThemeVisible(gis::CTheme* theme, bool visible) override;
    bool GetThemeLocked(gis::CTheme* theme) override;
    void SetThemeLocked(gis::CTheme* theme, bool locked) override;
    std::int64_t GetTargetDrawing() override;
    std::int64_t GetThemeTargetDrawing(gis::CTheme* theme) override;
    void SetThemeTargetDrawing(gis::CTheme* theme, std::int64_t drawing) override;
    gis::TOpzLabel GetThemeOpzLabel(gis::CTheme* theme) override;
    void SetThemeOpzLabel(gis::CTheme* theme, gis::TOpzLabel options) override;
    void ThemeIsChange(gis::CTheme* theme) override;

    int GetNoEnts(gis::CTheme* theme) override;
    gis::CEnt* GetEnt(gis::CTheme* theme, int index) override;
    gis::CEnt* GetEnt(orv::CResultRow* row) override;
    gis::CEntPart* GetEntPart(gis::CEnt* ent, int index) override;
    gis::CEntVert* GetEntVert(gis::CEntPart* part, int index) override;
    bool IsDefaultFeatureClass(gis::CFeatureClass* featureClass) override;
    void SetModifiedFlag(bool modified) override;
    bool GetModifiedFlag() const override;
    void* Extension(const char* name) override;

private:
    struct Answer {
        std::any value;
        int times = -1;
    };
    void record(std::string call, bool isChange) const;
    /// The answer to give instead of the base operation's, used up by this; false when there is
    /// none.
    bool takeAnswer(const char* operation, std::any& value) const;

    template <typename R, typename Base> R answered(const char* operation, Base&& base) const;
    template <typename R, typename Base, typename... Args>
    R query(const char* operation, Base&& base, const Args&... args) const;
    template <typename R, typename Base, typename... Args>
    R change(const char* operation, Base&& base, const Args&... args) const;

    // Mutable: GetModifiedFlag is const and is recorded like any other call.
    mutable std::vector<std::string> m_calls;
    mutable std::vector<std::string> m_changes;
    mutable std::map<std::string, Answer> m_answers;
    std::map<std::string, void*> m_extensions;
    CellSource m_cells;
    bool m_isRecording = true;
    bool m_offersColumns = false;
};

/// Stops the recording for a scope: for what a test asks itself.
class RecordingPause final {
public:
    explicit RecordingPause(CRecordingLibrary& library)
        : m_library(library)
        , m_wasRecording(library.isRecording())
    {
        library.setRecording(false);
    }
    RecordingPause(const RecordingPause&) = delete;
    RecordingPause& operator=(const RecordingPause&) = delete;
    ~RecordingPause() { m_library.setRecording(m_wasRecording); }

private:
    CRecordingLibrary& m_library;
    bool m_wasRecording;
};

} // namespace support
