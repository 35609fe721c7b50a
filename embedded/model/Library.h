// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "embedded/base/Report.h"
#include "embedded/base/Result.h"
#include "embedded/model/Store.h"
#include "embedded/model/Table.h"
#include "embedded/model/Theme.h"

#include "host/base/ChangeManager.h"
#include "host/gis/Columns.h"
#include "host/gis/LibGis.h"
#include "host/gis/Readings.h"

#include <array>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace embedded {

/// A graphic layer ("strato") of the drawing that the library belongs to.
struct Layer {
    std::int64_t id = 0; // from 1
    orv::String name;
};

/// A field of a table's new structure: a field that the table has, or a new one, with what it is to
/// be from now on.
struct FieldChange {
    gis::CField* field = nullptr; // null: a new field
    orv::String name;
    gis::FieldFormat format = gis::FieldFormat::Text;
    gis::FieldType type = gis::FieldType::FromUser;
    bool requested = false;
    std::array<orv::CPolyValue, gis::ConstraintCount> constraints;
    /// The cells, `rowCount()` of the format's kind; absent: those that the field has, or none for
    /// a new field. Must be there when the kind of column changes.
    std::optional<Column> column;
};

/// The implementation behind `gis::CLibGis`. Its operations never call the facade's virtual ones,
/// so that a double that derives from the facade sees only what the dialogs ask. Owner, thread:
/// owned by its facade; one thread, except for snapshots.
class TEMATICA_HOST_API Library final : public gis::IColumns, public gis::IReadings {
public:
    Library(
        gis::CLibGis& facade, orv::CChangeTransactionManager* changes, std::int64_t targetDrawing);
    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;
    ~Library();

    /// The implementation of a facade of this host; null for null.
    static Library* of(gis::CLibGis* facade);
    [[nodiscard]] gis::CLibGis& facade() const;
    [[nodiscard]] orv::CChangeTransactionManager* changes() const;
    void markModified();

    // Tables and themes, recorded
    [[nodiscard]] const std::vector<gis::CDBTable*>& tables() const;
    [[nodiscard]] const std::vector<gis::CTheme*>& themes() const;
    [[nodiscard]] gis::CDBTable* findTable(const orv::String& name) const;
    [[nodiscard]] gis::CTheme* findTheme(const orv::String& name) const;
    gis::CDBTable* createTable(const orv::String& name);
    gis::CDBTable* createTableAsCopyOf(gis::CDBTable* source);
    void deleteTable(gis::CDBTable* table);
    [[nodiscard]] bool isUsedByThemes(const gis::CDBTable* table) const;
    gis::CTheme* createTheme(gis::CDBTable* table, const orv::String& name, gis::EntType type,
        gis::EntTypeCoords coords, std::int64_t drawing, bool hasM = false);
    bool deleteTheme(gis::CTheme* theme);
    /// Removes a theme with its entities (their rows stay): for an import that is taken back.
    void removeTheme(gis::CTheme* theme);
    /// Another field list with its cells in one recorded change; kept fields keep their handles.
    void replaceStructure(gis::CDBTable* table, std::vector<FieldState> structure);
    void renameTable(gis::CDBTable* table, const orv::String& name);
    void renameTheme(gis::CTheme* theme, const orv::String& name);
    [[nodiscard]] gis::CTheme* activeTheme() const;
    void setActiveTheme(gis::CTheme* theme);
    void setThemeVisible(gis::CTheme* theme, bool visible);
    void setThemeLocked(gis::CTheme* theme, bool locked);
    void setThemeTargetDrawing(gis::CTheme* theme, std::int64_t drawing);
    void setThemeLabel(gis::CTheme* theme, const gis::TOpzLabel& label);
    void setThemeMap(gis::CTheme* theme, ThematicMap map);

    /// A free name: `wanted`, or with " (2)", " (3)" ... (ASCII case ignored).
    [[nodiscard]] orv::String freeTableName(const orv::String& wanted) const;
    [[nodiscard]] orv::String freeThemeName(const orv::String& wanted) const;

    // Cells, recorded
    void cell(orv::CResultRow* row, int fieldIndex, orv::CPolyValue& value);
    void setCell(orv::CResultRow* row, int fieldIndex, const orv::CPolyValue& value);
    void initializeWithDefaults(gis::CDBTable* table, orv::CResultRow* row);
    void recalcPredefined(gis::CTheme* theme, gis::CEnt* ent);

    /// Gives a table these fields in this order, as one recorded change. Fields that stay keep
    /// their handles, those left out come back with theirs by undo. Labels and maps that use a
    /// field that is left out are the caller's to change first.
    void replaceFields(gis::CDBTable* table, std::vector<FieldChange> fields);

    /// Records rows `firstRow` and later of a table, or entities `firstEntity` and later of a
    /// theme, as added now.
    void recordRowsAdded(gis::CDBTable* table, int firstRow);
    void recordEntitiesAdded(gis::CTheme* theme, int firstEntity);

    // Linked points
    LinkedPoint* addLinkedPoint();
    void removeLinkedPointsFrom(std::size_t count);
    /// Brings back points that were removed last (none was added since).
    void restoreLinkedPointCount(std::size_t count);
    /// How many of `linkedPoints()`, from the first, are in use.
    [[nodiscard]] std::size_t linkedPointCount() const;
    [[nodiscard]] const std::deque<LinkedPoint>& linkedPoints() const;
    /// Recorded; predefined values of the entities linked to the point follow.
    void setLinkedPoint(LinkedPoint* point, const LinkedPoint& value);

    // Drawing
    [[nodiscard]] const std::vector<Layer>& layers() const;
    std::int64_t addLayer(const orv::String& name); // the existing one of that name, else a new one
    void restoreLayers(std::vector<Layer> layers);
    [[nodiscard]] std::int64_t targetDrawing() const;
    void setTargetDrawing(std::int64_t drawing);

    // Store
    void setStore(std::shared_ptr<IStore> store);
    [[nodiscard]] IStore* store() const;
    /// Held while a column is read for the first time: one is read at a time, and others that are
    /// there already are given meanwhile.
    [[nodiscard]] std::mutex& readingMutex() const;
    /// Reads everything that is still only in the store, also what could not be read before (before
    /// saving elsewhere or when the file must be let go). Errors: those of the store's reading.
    Result<void> loadAll();
    /// Why a field or theme that the library has could not be read; null while all that was asked
    /// for could. One that was deleted stands in nobody's way.
    [[nodiscard]] const Error* failedRead() const;
    /// Builders: adds an object as it is, not recorded.
    gis::CDBTable* adoptTable(std::unique_ptr<gis::CDBTable> table);
    gis::CTheme* adoptTheme(std::unique_ptr<gis::CTheme> theme);
    void restoreActiveTheme(gis::CTheme* theme);
    /// Tables and themes deleted since the last save, by store id (undo brings them back out of
    /// these lists).
    [[nodiscard]] std::vector<std::int64_t> deletedTableStoreIds() const;
    [[nodiscard]] std::vector<std::int64_t> deletedThemeStoreIds() const;
    void markSaved();
    /// True when the change manager stands where it stood at the last save (or nothing changed
    /// without a manager).
    [[nodiscard]] bool isSaved() const;

    // Reports and progress
    /// The report of the last import, export or structure change; kept until the next one.
    [[nodiscard]] const Report& lastReport() const;
    Report& beginReport();
    /// The last report, for work that adds to what another began.
    Report& report();
    /// Why the last import through the host's function failed, which itself gives a code only.
    [[nodiscard]] const Error& lastFailure() const;
    void noteFailure(const Error& error);
    void setProgress(IProgress* progress); // null: none
    [[nodiscard]] IProgress* progress() const;

    /// Recorded generic change: calls `redo` later, not now.
    void record(std::function<void()> undo, std::function<void()> redo);

    // gis::IColumns
    bool GetColumn(gis::CDBTable* table, int fieldIndex, gis::ColumnView& view) override;
    bool GetEntityRuns(gis::CTheme* theme, gis::EntityRunsView& view) override;

    // gis::IReadings
    bool IsReadable(gis::CDBTable* table, int fieldIndex) override;
    bool Read(gis::CDBTable* table, int fieldIndex, gis::IReadingStop* stop) override;

    /// Extensions that other parts of the host offer through `gis::CLibGis::Extension`. Null
    /// removes.
    void setExtension(const std::string& name, void* extension);
    void* extension(const char* name);

    /// For work that takes itself back whole: whether there was unsaved work before.
    struct UnsavedWork {
        std::uint64_t changeCount = 0;
        bool isModified = false;
    };
    [[nodiscard]] UnsavedWork unsavedWork() const;
    void restoreUnsavedWork(const UnsavedWork& before);
    /// Another record of changes from now on; null: none.
    void setChanges(orv::CChangeTransactionManager* changes);

    /// Lives as long as the library: for records of changes that may outlive it.
    struct Life;

private:
    struct Data;
    std::unique_ptr<Data> m_data;
    void retryFailedReads();
    void insertTable(std::shared_ptr<gis::CDBTable> table, std::size_t position);
    void eraseTable(const gis::CDBTable* table);
    void insertTheme(std::shared_ptr<gis::CTheme> theme, std::size_t position);
    void eraseTheme(gis::CTheme* theme);
    template <typename Member, typename Value>
    void setThemeMember(gis::CTheme* theme, Member member, const Value& value);
};

/// Converts a cell to another format by the rule of a format change; empty where the value has no
/// counterpart. `oldDigits`: digits with which decimals become text.
TEMATICA_HOST_API orv::CPolyValue convertCell(
    const orv::CPolyValue& value, gis::FieldFormat from, gis::FieldFormat to, int oldDigits);
/// As `convertCell` for a whole column, once per distinct text. Counts what became of the cells
/// with a value.
struct ConversionCount {
    std::int64_t converted = 0;
    std::int64_t emptied = 0;
    std::int64_t unchanged = 0;
};
class Column;
TEMATICA_HOST_API Column convertColumn(const Column& column, gis::FieldFormat from,
    gis::FieldFormat to, int oldDigits, ConversionCount& count, IProgress* progress = nullptr);

/// Predefined values of an entity: docs/predefined-fields.md.
TEMATICA_HOST_API orv::CPolyValue predefinedValue(
    gis::FieldType type, gis::CTheme& theme, int entityIndex);

} // namespace embedded
