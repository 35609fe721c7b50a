// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT

// The structure of a table of which one field cannot be read from its file any more.
#include "host/gis/TableEdit.h"

#include "tests/embedded/model/PartlyReadableStore.h"
#include "tests/support/LibraryNotation.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace {

using embedded::ErrorCode;
using embedded::Library;
using gis::CCtrlDlgTableEdit;
using gis::FieldFormat;
using model_testing::CPartlyReadableStore;

constexpr const char* Roads = "table Strade (codice text, larghezza decimal 1, corsie integer);"
                              "rows Strade: ('S1', 3.5, 2), ('S2', -, 1), (-, 7, -)";

/// Keeps what it was told, in order.
class CToldProgress final : public embedded::IProgress {
public:
    bool advance(double fraction) override
    {
        fractions.push_back(fraction);
        return !isCancelled;
    }
    void finish() override { order += "finished "; }
    void failed(const embedded::Error& error) override
    {
        order += "failed ";
        errors.push_back(error);
    }
    bool isCancelled = false;
    std::vector<double> fractions;
    std::vector<embedded::Error> errors;
    std::string order;
};

class TableEditUnreadableTest : public testing::Test {
protected:
    TableEditUnreadableTest()
        : library(support::makeLibrary(Roads, &changes))
        , table(library->GetTable(0))
        , store(model_testing::intoFile(*library))
    {
        Library::of(library.get())->setProgress(&progress);
        store->unreadable = { "larghezza" };
    }
    ~TableEditUnreadableTest() override { Library::of(library.get())->setProgress(nullptr); }

    /// The fields without their cells, which would be read by asking for them.
    std::string structure()
    {
        std::string text;
        for (int i = 0; i < table->fieldCount(); ++i)
            text += table->field(i)->name.Bytes() + ":"
                + std::to_string(static_cast<int>(table->field(i)->format)) + " ";
        return text;
    }
    /// As a grid does that shows the field.
    void show(int field)
    {
        orv::CPolyValue value;
        library->GetRowValue(library->GetRow(table, 0), field, value);
    }
    void expectSoundFractions()
    {
        EXPECT_TRUE(std::is_sorted(progress.fractions.begin(), progress.fractions.end()));
        for (const double fraction : progress.fractions) {
            EXPECT_TRUE(std::isfinite(fraction));
            EXPECT_GE(fraction, 0.0);
            EXPECT_LE(fraction, 1.0);
        }
        progress.fractions.clear();
    }

    orv::CChangeTransactionManager changes;
    std::unique_ptr<gis::CLibGis> library;
    gis::CDBTable* table;
    std::shared_ptr<CPartlyReadableStore> store;
    CToldProgress progress;
};

TEST_F(TableEditUnreadableTest, ACommitIsRefusedWithTheReasonAndNothingChanges)
{
    const std::string before = structure();
    CCtrlDlgTableEdit edit(library.get(), table);
    edit.SetFieldName(edit.GetCurField(0), "sigla");
    edit.SetFieldFormat(edit.GetCurField(2), FieldFormat::Text);

    EXPECT_FALSE(edit.Commit());

    ASSERT_EQ(progress.errors.size(), 1U);
    EXPECT_EQ(progress.errors[0].code, ErrorCode::DamagedFile);
    EXPECT_EQ(progress.order, "finished failed ") << "a box over a window of progress is no good";
    expectSoundFractions();
    EXPECT_EQ(structure(), before);
    EXPECT_FALSE(changes.CanUndo());
    EXPECT_FALSE(library->GetModifiedFlag());
    EXPECT_EQ(edit.GetFieldName(edit.GetCurField(0)), orv::String("sigla")) << "still pending";
}

TEST_F(TableEditUnreadableTest, EachRefusedCommitTellsTheReasonOnce)
{
    CCtrlDlgTableEdit edit(library.get(), table);
    edit.SwapOrder(0, 2);

    EXPECT_FALSE(edit.Commit());
    EXPECT_FALSE(edit.Commit());

    EXPECT_EQ(progress.errors.size(), 2U);
    EXPECT_EQ(store->readings["larghezza"], 2) << "the reason may have gone";
    expectSoundFractions();
}

TEST_F(TableEditUnreadableTest, AFieldThatIsDeletedNeedNotBeRead)
{
    CCtrlDlgTableEdit edit(library.get(), table);
    edit.DeleteField(edit.GetCurField(1));
    edit.SetFieldFormat(edit.GetCurField(1), FieldFormat::Text);

    EXPECT_TRUE(edit.Commit());

    EXPECT_EQ(support::printTable(*table),
        "table Strade (codice text, corsie text);\n"
        "rows Strade:\n('S1', '2')\n('S2', '1')\n(-, -)\n;\n");
    EXPECT_TRUE(progress.errors.empty());
    EXPECT_TRUE(changes.CanUndo());
    expectSoundFractions();
}

TEST_F(TableEditUnreadableTest, ADeletedFieldIsInNoSavesWayAndIsSoAgainWhenItComesBack)
{
    show(1);
    Library& model = *Library::of(library.get());
    ASSERT_NE(model.failedRead(), nullptr);
    ASSERT_FALSE(model.loadAll().ok());
    CCtrlDlgTableEdit edit(library.get(), table);
    edit.DeleteField(edit.GetCurField(1));
    ASSERT_TRUE(edit.Commit());

    EXPECT_EQ(model.failedRead(), nullptr);
    EXPECT_TRUE(model.loadAll().ok());

    ASSERT_TRUE(changes.Undo());
    EXPECT_NE(model.failedRead(), nullptr);
    EXPECT_FALSE(model.loadAll().ok());
}

TEST_F(TableEditUnreadableTest, ADeletedFieldThatComesBackByUndoStillPassesForUnreadable)
{
    CCtrlDlgTableEdit edit(library.get(), table);
    edit.DeleteField(edit.GetCurField(1));
    ASSERT_TRUE(edit.Commit());

    ASSERT_TRUE(changes.Undo());

    EXPECT_NE(table->columnFailure(1), nullptr);
    CCtrlDlgTableEdit again(library.get(), table);
    again.SwapOrder(0, 1);
    EXPECT_FALSE(again.Commit()) << "its cells are not empty, they are not known";

    store->unreadable.clear();
    EXPECT_TRUE(again.Commit());
    EXPECT_EQ(support::printRows(*table), "(3.5, 'S1', 2)\n(-, 'S2', 1)\n(7, -, -)\n");
}

TEST_F(TableEditUnreadableTest, WhenReadingWorksAgainTheCommitHasTheCells)
{
    CCtrlDlgTableEdit edit(library.get(), table);
    edit.SetFieldFormat(edit.GetCurField(1), FieldFormat::Text);
    ASSERT_FALSE(edit.Commit());

    store->unreadable.clear();

    EXPECT_TRUE(edit.Commit());
    EXPECT_EQ(support::printTable(*table),
        "table Strade (codice text, larghezza text, corsie integer);\n"
        "rows Strade:\n('S1', '3.5', 2)\n('S2', -, 1)\n(-, '7.0', -)\n;\n");
    EXPECT_EQ(progress.errors.size(), 1U);
    expectSoundFractions();
}

TEST_F(TableEditUnreadableTest, AColumnShownAsEmptyIsReadAgainBeforeTheCommit)
{
    for (int i = 0; i < 3; ++i)
        show(i); // all are in memory, one of them as a failure
    CCtrlDlgTableEdit edit(library.get(), table);
    edit.SwapOrder(0, 2);

    EXPECT_FALSE(edit.Commit());
    EXPECT_EQ(progress.errors.size(), 1U);
    expectSoundFractions();

    store->unreadable.clear();
    EXPECT_TRUE(edit.Commit());
    EXPECT_EQ(support::printRows(*table), "(2, 3.5, 'S1')\n(1, -, 'S2')\n(-, 7, -)\n");
    EXPECT_FALSE(progress.fractions.empty());
    expectSoundFractions();
}

TEST_F(TableEditUnreadableTest, ProgressStaysWithinTheWholeWhenAWrittenFieldWithoutItsCellsGoes)
{
    show(1);
    orv::CPolyValue value(9.0);
    library->SetRowValue(library->GetRow(table, 0), 1, value);
    CCtrlDlgTableEdit edit(library.get(), table);
    edit.SwapOrder(0, 1);
    EXPECT_FALSE(edit.Commit()) << "the cells that were not written to are not known";
    EXPECT_EQ(progress.errors.size(), 1U);
    expectSoundFractions();

    edit.DeleteField(edit.GetCurField(0)); // the same field, now first
    EXPECT_TRUE(edit.Commit());

    EXPECT_EQ(support::printRows(*table), "('S1', 2)\n('S2', 1)\n(-, -)\n");
    EXPECT_FALSE(progress.fractions.empty());
    expectSoundFractions();
}

TEST_F(TableEditUnreadableTest, AFileThatLacksRowsIsAFailureThatNamesTheField)
{
    store->unreadable.clear();
    store->missingRows = 1;
    CCtrlDlgTableEdit edit(library.get(), table);
    edit.SwapOrder(0, 2);

    EXPECT_FALSE(edit.Commit());

    ASSERT_EQ(progress.errors.size(), 1U);
    EXPECT_EQ(progress.errors[0].code, ErrorCode::ReadFailed);
    EXPECT_EQ(progress.errors[0].subject, "codice");
    EXPECT_FALSE(changes.CanUndo());
    show(2);
    EXPECT_FALSE(Library::of(library.get())->loadAll().ok()) << "nor are they saved as empty";
}

TEST_F(TableEditUnreadableTest, AUserWhoStopsTheReadingIsToldOfNoFailure)
{
    store->unreadable.clear();
    progress.isCancelled = true;
    CCtrlDlgTableEdit edit(library.get(), table);
    edit.SwapOrder(0, 2);

    EXPECT_FALSE(edit.Commit());

    EXPECT_EQ(progress.order, "finished ");
    EXPECT_FALSE(changes.CanUndo());
}

TEST_F(TableEditUnreadableTest, WithoutAProgressTheCommitIsRefusedInSilence)
{
    Library::of(library.get())->setProgress(nullptr);
    CCtrlDlgTableEdit edit(library.get(), table);
    edit.SwapOrder(0, 2);

    EXPECT_FALSE(edit.Commit());

    EXPECT_FALSE(changes.CanUndo());
}

} // namespace
