// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT

// What is made of a whole table, and what the library says, when a field cannot be read.
#include "host/gis/Merge.h"
#include "host/gis/Readings.h"

#include "tests/embedded/model/PartlyReadableStore.h"
#include "tests/support/LibraryNotation.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

using embedded::Library;
using gis::CMergeTable;
using gis::MergeResult;
using model_testing::intoFile;
using support::makeLibrary;
using support::printTable;

constexpr const char* Roads
    = "table Strade (codice text, corsie integer); rows Strade: ('S1', 2), ('S2', -)";
constexpr const char* RoadsAsText = "table Strade (codice text, corsie integer);\n"
                                    "rows Strade:\n('S1', 2)\n('S2', -)\n;\n";

TEST(UnreadableTableTest, ATableIsNotCopiedWithoutItsCells)
{
    orv::CChangeTransactionManager changes;
    const auto library = makeLibrary(Roads, &changes);
    const auto store = intoFile(*library);
    store->unreadable = { "corsie" };

    EXPECT_EQ(library->CreateTableAsCopyOf(library->GetTable(0)), nullptr);
    EXPECT_EQ(Library::of(library.get())->createTableAsCopyOf(library->GetTable(0)), nullptr);

    EXPECT_EQ(library->GetNumTables(), 1);
    EXPECT_FALSE(changes.CanUndo());
    EXPECT_FALSE(changes.IsStepOpen());
    EXPECT_FALSE(library->GetModifiedFlag());

    store->unreadable.clear();
    gis::CDBTable* copy = library->CreateTableAsCopyOf(library->GetTable(0));
    ASSERT_NE(copy, nullptr) << "what failed before is read again";
    EXPECT_EQ(support::printRows(*copy), "('S1', 2)\n('S2', -)\n");
    EXPECT_EQ(printTable(*library->GetTable(0)), RoadsAsText);
}

/// A library and one with rows to take over; one of the two lies in a file.
struct Merging {
    explicit Merging(bool isIncomingInFile)
        : library(makeLibrary(Roads, &changes))
        , scratch(makeLibrary(
              "table Strade (corsie integer, nota text); rows Strade: (4, 'larga'), (1, -)"))
        , store(intoFile(isIncomingInFile ? *scratch : *library))
        , merge(library.get(), library->GetTable(0), scratch.get(), scratch->GetTable(0))
    {
        store->unreadable = { "corsie" };
    }
    orv::CChangeTransactionManager changes;
    std::unique_ptr<gis::CLibGis> library;
    std::unique_ptr<gis::CLibGis> scratch;
    std::shared_ptr<model_testing::CPartlyReadableStore> store;
    CMergeTable merge;
    std::vector<int> mapping { 7 };
};

class MergeOfUnreadableTest : public testing::TestWithParam<bool> { };

TEST_P(MergeOfUnreadableTest, RowsAreMergedOnlyWhenAllOfThemAreKnown)
{
    Merging merging(GetParam());

    merging.merge.Merge(merging.mapping);

    EXPECT_EQ(merging.merge.GetMergeResult(), MergeResult::Undecided);
    EXPECT_EQ(merging.mapping, std::vector<int> { 7 });
    EXPECT_EQ(merging.library->GetNumFields(merging.library->GetTable(0)), 2);
    EXPECT_EQ(merging.library->GetNumRows(merging.library->GetTable(0)), 2);
    EXPECT_FALSE(merging.changes.CanUndo());
    EXPECT_FALSE(merging.library->GetModifiedFlag());

    merging.store->unreadable.clear();
    merging.merge.Merge(merging.mapping);

    EXPECT_EQ(merging.merge.GetMergeResult(), MergeResult::Merged) << "what failed is read again";
    EXPECT_EQ(printTable(*merging.library->GetTable(0)),
        "table Strade (codice text, corsie integer, nota text);\n"
        "rows Strade:\n('S1', 2, -)\n('S2', -, -)\n(-, 4, 'larga')\n(-, 1, -)\n;\n");
}

INSTANTIATE_TEST_SUITE_P(EitherTable, MergeOfUnreadableTest, testing::Bool());

gis::IReadings* readingsOf(gis::CLibGis& library)
{
    return static_cast<gis::IReadings*>(library.Extension(gis::ReadingsExtension));
}

TEST(ReadingsTest, FieldsThatAreInMemoryCanBeRead)
{
    const auto library = makeLibrary(Roads);
    gis::IReadings* readings = readingsOf(*library);
    ASSERT_NE(readings, nullptr);

    EXPECT_TRUE(readings->IsReadable(library->GetTable(0), 0));
    EXPECT_TRUE(readings->IsReadable(library->GetTable(0), 1));
}

TEST(ReadingsTest, AFieldThatFailsOnceIsToldUntilItIsReadAgain)
{
    const auto library = makeLibrary(Roads);
    gis::CDBTable* table = library->GetTable(0);
    const auto store = intoFile(*library);
    store->unreadable = { "corsie" };
    gis::IReadings* readings = readingsOf(*library);
    ASSERT_NE(readings, nullptr);

    EXPECT_TRUE(readings->IsReadable(table, 0)) << "read now";
    EXPECT_EQ(store->readings["codice"], 1);
    EXPECT_FALSE(readings->IsReadable(table, 1)) << "failed now";
    store->unreadable.clear();
    EXPECT_FALSE(readings->IsReadable(table, 1)) << "failed before: the cells are still missing";
    EXPECT_EQ(store->readings["corsie"], 1);

    EXPECT_TRUE(Library::of(library.get())->loadAll().ok());
    EXPECT_TRUE(readings->IsReadable(table, 1));
    orv::CPolyValue value;
    library->GetRowValue(library->GetRow(table, 0), 1, value);
    EXPECT_EQ(value, orv::CPolyValue(2));
}

TEST(ReadingsTest, WhatIsNoFieldOfTheLibraryHasNothingThatCouldFail)
{
    const auto library = makeLibrary(Roads);
    const auto other = makeLibrary(Roads);
    intoFile(*other)->unreadable = { "codice", "corsie" };
    gis::IReadings* readings = readingsOf(*library);
    ASSERT_NE(readings, nullptr);

    EXPECT_TRUE(readings->IsReadable(other->GetTable(0), 0));
    EXPECT_FALSE(other->GetTable(0)->isColumnLoaded(0)) << "not asked either";
    EXPECT_TRUE(readings->IsReadable(nullptr, 0));
    EXPECT_TRUE(readings->Read(other->GetTable(0), 0, nullptr));
    EXPECT_TRUE(readings->Read(nullptr, 0, nullptr));
    for (const int field : { -1, 2, std::numeric_limits<int>::max() }) {
        EXPECT_TRUE(readings->IsReadable(library->GetTable(0), field)) << field;
        EXPECT_TRUE(readings->Read(library->GetTable(0), field, nullptr)) << field;
    }
    EXPECT_FALSE(other->GetTable(0)->isColumnLoaded(0));
}

struct CStopAtOnce final : gis::IReadingStop {
    bool IsStopped() override { return true; }
};

TEST(ReadingsTest, AReadingThatIsStoppedHasNotHappened)
{
    const auto library = makeLibrary(Roads);
    gis::CDBTable* table = library->GetTable(0);
    intoFile(*library);
    gis::IReadings* readings = readingsOf(*library);
    ASSERT_NE(readings, nullptr);
    CStopAtOnce stop;

    EXPECT_FALSE(readings->Read(table, 1, &stop));
    EXPECT_FALSE(table->isColumnLoaded(1));
    EXPECT_EQ(Library::of(library.get())->failedRead(), nullptr) << "nothing is broken";

    EXPECT_TRUE(readings->Read(table, 1, nullptr));
    EXPECT_TRUE(table->isColumnLoaded(1));
    EXPECT_TRUE(readings->Read(table, 1, &stop)) << "there is nothing left to be stopped";
    EXPECT_TRUE(readings->IsReadable(table, 1));
}

TEST(ReadingsTest, AFieldThatCannotBeReadIsNoStoppedReading)
{
    const auto library = makeLibrary(Roads);
    intoFile(*library)->unreadable = { "corsie" };
    gis::IReadings* readings = readingsOf(*library);
    ASSERT_NE(readings, nullptr);

    EXPECT_TRUE(readings->Read(library->GetTable(0), 1, nullptr));
    EXPECT_FALSE(readings->IsReadable(library->GetTable(0), 1));
}

} // namespace
