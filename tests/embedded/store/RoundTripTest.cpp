// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/embedded/store/LibraryImage.h"
#include "tests/embedded/store/RandomLibrary.h"
#include "tests/embedded/store/StoreTesting.h"
#include "tests/support/LibraryNotation.h"
#include "tests/support/TimeZoneScope.h"

#include "host/base/Dates.h"
#include "host/gis/TableEdit.h"

#include <gtest/gtest.h>

using namespace storetest;
using embedded::OpenMode;

namespace {

constexpr unsigned Seeds = 20;

// Every layer's index must be what SQLite itself calls sound.
void expectSoundIndexes(const std::string& path)
{
    const std::string bad = sqlAnswer(path,
        "SELECT name, rtreecheck(name) FROM sqlite_master WHERE sql LIKE "
        "'CREATE VIRTUAL TABLE%' AND rtreecheck(name) <> 'ok'");
    EXPECT_EQ(bad, "");
    EXPECT_EQ(sqlAnswer(path, "PRAGMA integrity_check"), "ok");
}

} // namespace

TEST(RoundTripTest, AnyLibraryComesBackAsItWasSaved)
{
    for (unsigned seed = 1; seed <= Seeds; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        const CTemporaryFolder folder;
        gis::CLibGis library;
        CRandomLibrary(seed).fill(library);
        const std::string before = imageOf(library);

        ASSERT_TRUE(embedded::saveLibraryAs(library, folder.file("a.gpkg")).ok());

        expectSoundIndexes(folder.file("a.gpkg"));
        const auto again = opened(folder.file("a.gpkg"));
        ASSERT_TRUE(again);
        EXPECT_EQ(imageOf(*again), before);
    }
}

TEST(RoundTripTest, AnyChangesAreThereAfterTheNextSave)
{
    for (unsigned seed = 1; seed <= Seeds; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        const CTemporaryFolder folder;
        const std::string path = folder.file("a.gpkg");
        CRandomLibrary random(seed + 1000);
        {
            gis::CLibGis library;
            random.fill(library);
            ASSERT_TRUE(embedded::saveLibraryAs(library, path).ok());
        }
        for (int round = 0; round < 4; ++round) {
            SCOPED_TRACE("round " + std::to_string(round));
            auto library = opened(path, OpenMode::Write);
            ASSERT_TRUE(library);
            for (int saves = 0; saves < 2; ++saves) {
                for (int changes = 0; changes < 3; ++changes)
                    random.change(*library);
                const auto saved = embedded::saveLibrary(*library);
                ASSERT_TRUE(saved.ok()) << saved.error().detail;
            }
            const std::string before = imageOf(*library);
            library.reset();

            expectSoundIndexes(path);
            const auto again = opened(path);
            ASSERT_TRUE(again);
            ASSERT_EQ(imageOf(*again), before);
        }
    }
}

TEST(RoundTripTest, UndoAndRedoAcrossSavesAreSavedAsTheyStand)
{
    for (unsigned seed = 1; seed <= 6; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        const CTemporaryFolder folder;
        const std::string path = folder.file("a.gpkg");
        CRandomLibrary random(seed + 5000);
        orv::CChangeTransactionManager changes;
        gis::CLibGis library(&changes);
        random.fill(library);
        ASSERT_TRUE(embedded::saveLibraryAs(library, path).ok());
        auto& model = *embedded::Library::of(&library);
        for (int round = 0; round < 5; ++round) {
            gis::CDBTable* extra = model.createTable("Altra");
            extra->addField("a", gis::FieldFormat::Integer);
            const int first = extra->rowCount();
            extra->addRows(3);
            model.recordRowsAdded(extra, first);
            ASSERT_TRUE(embedded::saveLibrary(library).ok());
            changes.Undo();
            if (round % 2 == 0) {
                ASSERT_TRUE(embedded::saveLibrary(library).ok());
            }
            changes.Undo();
            ASSERT_TRUE(embedded::saveLibrary(library).ok());
            changes.Redo();
            if (round % 3 == 0)
                changes.Redo();
            const auto saved = embedded::saveLibrary(library);
            ASSERT_TRUE(saved.ok()) << saved.error().detail;
            const auto again = opened(path);
            ASSERT_TRUE(again);
            ASSERT_EQ(imageOf(*again), imageOf(library)) << "round " << round;
        }
    }
}

namespace {

/// Structures, deleted themes and tables: what the plain changes do not do.
void changeStructure(gis::CLibGis& library, int round)
{
    gis::CDBTable* table = library.GetTable(round % library.GetNumTables());
    switch (round % 4) {
    case 0: {
        gis::CCtrlDlgTableEdit edit(&library, table);
        const int count = library.GetNumFields(table);
        if (count > 0)
            edit.SetFieldName(
                edit.GetCurField(0), orv::String(("Rinominato " + std::to_string(round)).c_str()));
        if (count > 1) {
            edit.SwapOrder(0, count - 1);
            edit.SetFieldFormat(edit.GetCurField(count / 2), gis::FieldFormat::Text);
        }
        if (count > 2)
            edit.DeleteField(edit.GetCurField(1));
        edit.Commit(); // refused, and nothing changed, where the names clash from the beginning
        break;
    }
    case 1:
        if (library.GetNumThemes() > 0)
            library.DeleteTheme(library.GetTheme(library.GetNumThemes() - 1));
        break;
    case 2:
        if (!library.IsTableUsedByThemes(table))
            library.DeleteTable(table);
        break;
    default:
        library.CreateTheme(table, orv::String(("Tema " + std::to_string(round)).c_str()),
            gis::EntType::Lines, gis::EntTypeCoords::XYZ, 0);
        break;
    }
}

} // namespace

TEST(RoundTripTest, UndoneStructuresAndDeletionsAreSavedAsTheyStand)
{
    int stepsUndone = 0;
    for (unsigned seed = 1; seed <= 8; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        const CTemporaryFolder folder;
        const std::string path = folder.file("a.gpkg");
        CRandomLibrary random(seed + 9000);
        orv::CChangeTransactionManager changes;
        gis::CLibGis library(&changes);
        random.fill(library);
        ASSERT_TRUE(embedded::saveLibraryAs(library, path).ok());
        const auto expectSaved = [&](const char* when, int round) {
            const auto saved = embedded::saveLibrary(library);
            ASSERT_TRUE(saved.ok()) << when << round << saved.error().detail;
            const auto again = opened(path);
            ASSERT_TRUE(again);
            ASSERT_EQ(imageOf(*again), imageOf(library)) << when << round;
        };
        for (int round = 0; round < 8; ++round) {
            const std::string before = imageOf(library);
            {
                const orv::ChangeStep step(&changes, "Passo");
                changeStructure(library, round);
            }
            if (!changes.CanUndo())
                continue;
            const std::string after = imageOf(library);
            if (round % 2 == 0)
                expectSaved("changed, round ", round);
            if (after == before)
                continue; // this kind found nothing to change
            ASSERT_TRUE(changes.Undo());
            ++stepsUndone;
            ASSERT_EQ(imageOf(library), before) << round;
            expectSaved("undone, round ", round);
            ASSERT_TRUE(changes.Redo());
            ASSERT_EQ(imageOf(library), after) << round;
            expectSaved("redone, round ", round);
        }
    }
    EXPECT_GT(stepsUndone, 30);
}

TEST(RoundTripTest, WhatUndoBringsBackAfterSavingElsewhereTakesNobodysPlace)
{
    const CTemporaryFolder folder;
    const std::string path = folder.file("b.gpkg");
    orv::CChangeTransactionManager changes;
    const auto library = support::makeLibrary(
        "table A (a text); rows A: ('a'); table B (b text, n integer); rows B: ('x', 1), ('y', 2);"
        "table C (c text); rows C: ('c');"
        "theme TB: points 2d on B; ents TB: 0 [2 2], 1 [3 3]",
        &changes);
    ASSERT_TRUE(embedded::saveLibraryAs(*library, folder.file("a.gpkg")).ok());
    changes.Clear();
    const std::string before = imageOf(*library);
    {
        const orv::ChangeStep step(&changes, "Cancella");
        embedded::Library& model = *embedded::Library::of(library.get());
        model.deleteTable(library->GetTable(0));
        model.deleteTable(library->GetTable(1));
    }
    ASSERT_NE(imageOf(*library), before);
    ASSERT_TRUE(embedded::saveLibraryAs(*library, path).ok());

    ASSERT_TRUE(changes.Undo());
    ASSERT_EQ(imageOf(*library), before);
    ASSERT_TRUE(embedded::saveLibrary(*library).ok());

    const auto again = opened(path);
    ASSERT_TRUE(again);
    EXPECT_EQ(imageOf(*again), before);
}

TEST(RoundTripTest, ADayStaysTheSameDayInEveryTimeZone)
{
    const CTemporaryFolder folder;
    const std::string path = folder.file("a.gpkg");
    const auto dayImage = [](gis::CLibGis& library) {
        gis::CDBTable* table = library.GetTable(0);
        std::string days;
        orv::CPolyValue value;
        for (int row = 0; row < library.GetNumRows(table); ++row) {
            library.GetRowValue(library.GetRow(table, row), 0, value);
            days += value.GetStringValue().Bytes() + " ";
        }
        const auto& field = *embedded::Library::of(&library)->tables()[0]->field(0);
        return days + field.constraints[0].GetStringValue().Bytes();
    };
    std::string before;
    {
        const support::TimeZoneScope rome("Europe/Rome");
        gis::CLibGis library;
        gis::CDBTable* table = embedded::Library::of(&library)->createTable("Rilievi");
        gis::CField* field = table->addField("quando", gis::FieldFormat::Date);
        std::int64_t midnight = 0;
        ASSERT_TRUE(orv::ParseDateText("29/2/2016", midnight));
        field->constraints[0].SetDateValue(midnight);
        table->addRows(5);
        for (const char* day :
            { "1/1/1970", "27/3/2016", "30/10/2016", "31/12/1899", "15/8/2024" }) {
            static int row = 0;
            ASSERT_TRUE(orv::ParseDateText(day, midnight));
            orv::CPolyValue value;
            value.SetDateValue(midnight);
            table->columnForWriting(0).setValue(row++, value);
        }
        before = dayImage(library);
        ASSERT_TRUE(embedded::saveLibraryAs(library, path).ok());
    }
    for (const char* zone : { "UTC", "America/New_York", "Asia/Tokyo" }) {
        const support::TimeZoneScope scope(zone);
        const auto library = opened(path);
        ASSERT_TRUE(library);
        EXPECT_EQ(dayImage(*library), before) << zone;
    }
}
