// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/model/Library.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>

namespace {

using embedded::Library;
using gis::CLibGis;
using gis::EntType;
using gis::EntTypeCoords;
using gis::FieldFormat;
using orv::CPolyValue;
using orv::String;

std::string describe(CLibGis& library)
{
    std::string text = "active=" + library.GetThemeName(library.GetThemeActive()).Bytes() + "\n";
    CPolyValue value;
    for (int t = 0; t < library.GetNumTables(); ++t) {
        gis::CDBTable* table = library.GetTable(t);
        text += "table " + table->name().Bytes() + ":";
        for (int f = 0; f < table->fieldCount(); ++f)
            text += " " + table->field(f)->name.Bytes()
                + std::to_string(static_cast<int>(table->field(f)->format))
                + (table->field(f)->requested ? "!" : "");
        for (int row = 0; row < table->rowCount(); ++row) {
            text += "\n ";
            for (int f = 0; f < table->fieldCount(); ++f) {
                library.GetRowValue(table->row(row), f, value);
                text += "|" + value.GetStringValue().Bytes();
            }
            gis::CEnt* ent = library.GetEnt(table->row(row));
            text += ent ? " ent of " + CLibGis::GetTheme(ent)->name.Bytes() : "";
        }
        text += "\n";
    }
    for (int t = 0; t < library.GetNumThemes(); ++t) {
        gis::CTheme* theme = library.GetTheme(t);
        text += "theme " + theme->name.Bytes() + (theme->visible ? "" : " hidden")
            + (theme->locked ? " locked" : "") + " drawing " + std::to_string(theme->targetDrawing)
            + " label " + theme->label.styleName.Bytes() + " map "
            + std::to_string(static_cast<int>(theme->map.type));
        for (int e = 0; e < theme->entities().entityCount(); ++e) {
            text += " "
                + std::to_string(gis::CDBTable::indexOf(
                    embedded::EntityStore::rowOf(theme->entities().entity(e))));
            for (int p = 0; p < theme->entities().partCount(e); ++p) {
                const auto part = theme->entities().part(e, p);
                for (int i = 0; i < part.count; ++i)
                    text += "," + String::ValueOf(part.x(i), 1).Bytes();
            }
        }
        text += "\n";
    }
    for (const auto& layer : Library::of(&library)->layers())
        text += "layer " + layer.name.Bytes() + "\n";
    return text;
}

/// Random changes through every recorded operation.
class Changer final {
public:
    Changer(CLibGis& library, unsigned seed)
        : m_library(library)
        , m_model(*Library::of(&library))
        , m_random(seed)
    {
    }

    void change()
    {
        switch (below(14)) {
        case 0:
            m_library.CreateTable(name("t"));
            break;
        case 1:
            m_library.CreateTableAsCopyOf(table());
            break;
        case 2:
            m_library.DeleteTable(table());
            break;
        case 3:
            m_library.SetTableName(table(), name("r"));
            break;
        case 4:
            m_library.CreateTheme(
                table(), name("th"), EntType::Points, EntTypeCoords::XY, below(5));
            break;
        case 5:
            if (!m_library.DeleteTheme(theme()) && below(3) == 0)
                m_model.removeTheme(theme());
            break;
        case 6:
            changeTheme();
            break;
        case 7:
            m_model.addLayer(name("l"));
            break;
        case 8:
            replaceFields();
            break;
        case 9:
            addRows();
            break;
        case 10:
            addEntities();
            break;
        default:
            writeCells();
        }
    }

private:
    int below(int end) { return static_cast<int>(m_random() % static_cast<unsigned>(end)); }
    String name(const char* prefix) { return String(prefix) + String::ValueOf(below(30)); }
    gis::CDBTable* table()
    {
        const int count = m_library.GetNumTables();
        return count ? m_library.GetTable(below(count)) : nullptr;
    }
    gis::CTheme* theme()
    {
        const int count = m_library.GetNumThemes();
        return count ? m_library.GetTheme(below(count)) : nullptr;
    }
    void changeTheme()
    {
        gis::CTheme* theme = this->theme();
        gis::TOpzLabel label;
        label.styleName = name("s");
        embedded::ThematicMap map;
        map.type = static_cast<gis::MapType>(below(3));
        switch (below(7)) {
        case 0:
            return m_library.SetThemeName(theme, name("n"));
        case 1:
            return m_library.SetThemeVisible(theme, below(2) == 0);
        case 2:
            return m_library.SetThemeLocked(theme, below(2) == 0);
        case 3:
            return m_library.SetThemeTargetDrawing(theme, below(9));
        case 4:
            return m_library.SetThemeActive(theme);
        case 5:
            return m_model.setThemeMap(theme, std::move(map));
        default:
            return m_library.SetThemeOpzLabel(theme, label);
        }
    }
    void replaceFields()
    {
        gis::CDBTable* table = this->table();
        if (!table)
            return;
        std::vector<embedded::FieldChange> fields;
        for (int f = 0; f < table->fieldCount(); ++f) {
            if (below(5) == 0)
                continue;
            const gis::CField& field = *table->field(f);
            fields.push_back({ table->field(f), below(4) ? field.name : name("f"), field.format,
                field.type, below(2) == 0, field.constraints, {} });
        }
        const auto format = static_cast<FieldFormat>(below(6));
        fields.push_back({ nullptr, name("f"), format, gis::FieldType::FromUser, false,
            embedded::defaultConstraints(format), {} });
        std::shuffle(fields.begin(), fields.end(), m_random);
        m_model.replaceFields(table, std::move(fields));
    }
    void addRows()
    {
        gis::CDBTable* table = this->table();
        if (!table)
            return;
        const orv::ChangeStep step(m_model.changes(), "rows");
        const int first = table->rowCount();
        table->addRows(1 + below(80));
        for (int f = 0; f < table->fieldCount(); ++f)
            for (int row = first; row < table->rowCount(); ++row)
                if (below(3))
                    table->columnForWriting(f).setValue(row, CPolyValue(below(1000)));
        m_model.recordRowsAdded(table, first);
    }
    void addEntities()
    {
        gis::CTheme* theme = this->theme();
        if (!theme)
            return;
        const orv::ChangeStep step(m_model.changes(), "entities");
        const int firstRow = theme->table->rowCount();
        const int first = theme->entities().entityCount();
        theme->table->addRows(5);
        for (int i = 0; i < 5; ++i) {
            theme->entities().addEntity(theme->table->row(firstRow + i));
            for (int p = below(3); p > 0; --p) {
                double* out = theme->entities().addPart(1);
                out[0] = out[1] = below(100);
            }
        }
        m_model.recordRowsAdded(theme->table, firstRow);
        m_model.recordEntitiesAdded(theme, first);
    }
    void writeCells()
    {
        gis::CDBTable* table = this->table();
        if (!table || table->rowCount() == 0 || table->fieldCount() == 0)
            return;
        const orv::ChangeStep step(below(2) ? m_model.changes() : nullptr, "cells");
        for (int i = below(20); i >= 0; --i) {
            CPolyValue value(below(100));
            if (below(4) == 0)
                value.SetToEmpty();
            m_library.SetRowValue(
                table->row(below(table->rowCount())), below(table->fieldCount()), value);
        }
    }

    CLibGis& m_library;
    Library& m_model;
    std::mt19937 m_random;
};

TEST(LibraryUndoTest, EveryStepBackAndForwardGivesTheStateThatWasThere)
{
    for (unsigned seed = 1; seed <= 60; ++seed) {
        SCOPED_TRACE(seed);
        orv::CChangeTransactionManager changes;
        CLibGis library(&changes);
        Library& model = *Library::of(&library);
        Changer changer(library, seed);
        std::mt19937 random(seed + 1000);
        std::vector<std::pair<std::uint64_t, std::string>> states { { changes.Position(),
            describe(library) } };
        for (int i = 0; i < 150; ++i) {
            const auto act = random() % 6;
            if (act == 0 && changes.Undo()) {
            } else if (act == 1 && changes.Redo()) {
            } else {
                changer.change();
            }
            const auto now = std::make_pair(changes.Position(), describe(library));
            const auto known = std::find_if(states.begin(), states.end(),
                [&](const auto& state) { return state.first == now.first; });
            if (known == states.end()) {
                states.push_back(now);
                continue;
            }
            ASSERT_EQ(known->second, now.second) << "position " << now.first;
        }
        while (changes.Undo()) { }
        ASSERT_EQ(describe(library), states.front().second);
        EXPECT_TRUE(model.isSaved());
        while (changes.Redo()) { }
        const auto last = std::find_if(states.begin(), states.end(),
            [&](const auto& state) { return state.first == changes.Position(); });
        if (last != states.end()) {
            EXPECT_EQ(describe(library), last->second);
        }
    }
}

TEST(LibraryUndoTest, HandlesAreTheSameAfterBackAndForward)
{
    orv::CChangeTransactionManager changes;
    CLibGis library(&changes);
    Library& model = *Library::of(&library);
    gis::CDBTable* table = library.CreateTable("T");
    gis::CTheme* theme = library.CreateTheme(table, "a", EntType::Points, EntTypeCoords::XY, 0);
    table->addRows(3);
    model.recordRowsAdded(table, 0);
    theme->entities().addEntity(table->row(1));
    theme->entities().addPart(1)[0] = 2.5;
    model.recordEntitiesAdded(theme, 0);
    orv::CResultRow* row = library.GetRow(table, 1);
    gis::CEnt* ent = library.GetEnt(theme, 0);
    gis::CEntPart* part = library.GetEntPart(ent, 0);

    while (changes.Undo()) { }
    EXPECT_EQ(library.GetNumTables(), 0);
    while (changes.Redo()) { }

    EXPECT_EQ(library.GetTable(0), table);
    EXPECT_EQ(library.GetTheme(0), theme);
    EXPECT_EQ(library.GetRow(table, 1), row);
    EXPECT_EQ(library.GetEnt(row), ent);
    EXPECT_EQ(library.GetRow(ent), row);
    EXPECT_EQ(library.GetEntPart(ent, 0), part);
    EXPECT_EQ(theme->entities().part(0, 0).x(0), 2.5);
}

TEST(LibraryUndoTest, AHandleOfARowThatWasTakenBackReadsAsEmptyAndTakesNothing)
{
    orv::CChangeTransactionManager changes;
    CLibGis library(&changes);
    gis::CDBTable* table = library.CreateTable("T");
    table->addField("n", FieldFormat::Integer)->constraints[0] = 3;
    table->addRows(1);
    Library::of(&library)->recordRowsAdded(table, 0);
    orv::CResultRow* row = table->row(0);
    changes.Undo();

    CPolyValue value(1);
    library.SetRowValue(row, 0, value);
    library.InitializeWithDefVal(table, row);
    library.GetRowValue(row, 0, value);

    EXPECT_TRUE(value.IsEmpty());
    EXPECT_EQ(table->rowCount(), 0);
}

TEST(LibraryUndoTest, RowsComeBackWithWhatWasFilledInAfterTheyWereRecorded)
{
    orv::CChangeTransactionManager changes;
    CLibGis library(&changes);
    gis::CDBTable* table = library.CreateTable("T");
    table->addField("n", FieldFormat::Integer);
    table->addRows(1);
    Library::of(&library)->recordRowsAdded(table, 0);
    table->columnForWriting(0).setInteger(0, 8);

    changes.Undo();
    changes.Redo();

    EXPECT_EQ(table->column(0).integerAt(0), 8);
}

TEST(LibraryUndoTest, TextsWrittenAfterAChangeOfFieldsOrRowsComeBackWithIt)
{
    orv::CChangeTransactionManager changes;
    CLibGis library(&changes);
    Library& model = *Library::of(&library);
    gis::CDBTable* table = library.CreateTable("T");
    gis::CField* field = table->addField("a", FieldFormat::Text);
    table->addRows(1);
    model.recordRowsAdded(table, 0);
    CPolyValue first("first");
    library.SetRowValue(table->row(0), 0, first);
    model.replaceFields(table,
        { { field, "b", FieldFormat::Text, gis::FieldType::FromUser, true, field->constraints,
            {} } });
    CPolyValue second("second");
    library.SetRowValue(table->row(0), 0, second);

    for (int round = 0; round < 2; ++round) {
        while (changes.Undo()) { }
        while (changes.Redo()) { }

        ASSERT_LT(table->column(0).codeAt(0), table->column(0).dictionary().size());
        EXPECT_EQ(table->column(0).textAt(0), "second");
    }
}

TEST(LibraryUndoTest, ARecordOfChangesMayOutliveALibrary)
{
    orv::CChangeTransactionManager changes;
    {
        CLibGis scratch(&changes);
        gis::CDBTable* table = scratch.CreateTable("T");
        table->addField("n", FieldFormat::Integer);
        table->addRows(1);
        CPolyValue value(1);
        scratch.SetRowValue(table->row(0), 0, value);
    }

    while (changes.Undo()) { }
    while (changes.Redo()) { }

    EXPECT_TRUE(changes.CanUndo());
}

TEST(LibraryUndoTest, ManyCellsOfOneStepAreOneChange)
{
    orv::CChangeTransactionManager changes;
    CLibGis library(&changes);
    gis::CDBTable* table = library.CreateTable("T");
    table->addField("n", FieldFormat::Integer);
    table->addRows(1000);
    changes.BeginStep("griglia");
    for (int row = 0; row < 1000; ++row) {
        CPolyValue value(row);
        library.SetRowValue(table->row(row), 0, value);
    }

    EXPECT_EQ(changes.OpenChangeCount(), 1u);
    changes.EndStep();
    changes.Undo();
    EXPECT_EQ(table->column(0).emptyCount(), 1000);
    changes.Redo();
    EXPECT_EQ(table->column(0).integerAt(999), 999);
}

TEST(LibraryUndoTest, ASaveWithinAStepDoesNotCountForLaterSteps)
{
    orv::CChangeTransactionManager changes;
    CLibGis library(&changes);
    Library& model = *Library::of(&library);
    EXPECT_TRUE(model.isSaved());
    changes.BeginStep("a");
    library.CreateTable("T");
    model.markSaved();
    changes.EndStep();
    changes.BeginStep("b");
    library.CreateTable("U");

    EXPECT_FALSE(model.isSaved());
    changes.EndStep();
    model.markSaved();
    EXPECT_TRUE(model.isSaved());
    changes.Undo();
    EXPECT_FALSE(model.isSaved());
    changes.Redo();
    EXPECT_TRUE(model.isSaved());
}

TEST(LibraryUndoTest, SettingWhatIsSetAlreadyIsNoChange)
{
    orv::CChangeTransactionManager changes;
    CLibGis library(&changes);
    gis::CDBTable* table = library.CreateTable("T");
    gis::CTheme* theme = library.CreateTheme(table, "a", EntType::Points, EntTypeCoords::XY, 0);
    const std::uint64_t position = changes.Position();

    library.SetTableName(table, "T");
    library.SetThemeName(theme, "a");
    library.SetThemeVisible(theme, true);
    library.SetThemeActive(theme);

    EXPECT_EQ(changes.Position(), position);
}

} // namespace
