// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "host/gis/TableEdit.h"

#include "embedded/model/Library.h"
#include "tests/support/LibraryNotation.h"

#include <gtest/gtest.h>

#include <array>

namespace {

using gis::CCtrlDlgTableEdit;
using gis::FieldFormat;
using gis::FieldType;
using support::makeLibrary;
using support::printTable;
using Constraints = std::array<orv::CPolyValue, gis::ConstraintCount>;

constexpr const char* Roads = "table Strade (codice text, larghezza decimal 2, corsie integer);"
                              "rows Strade: ('S1', 3.5, 2), ('S2', -, 1), (-, 7.25, -)";

/// A library of one table with its editor and its record of changes.
struct Edited {
    explicit Edited(const char* notation)
        : library(makeLibrary(notation, &changes))
        , table(library->GetTable(0))
        , edit(std::make_unique<CCtrlDlgTableEdit>(library.get(), table))
    {
    }
    CCtrlDlgTableEdit::CFieldChangeTracker* field(const char* name)
    {
        for (int i = 0; i < edit->GetNoCurFields(); ++i)
            if (edit->GetFieldName(edit->GetCurField(i)) == orv::String(name))
                return edit->GetCurField(i);
        return nullptr;
    }
    [[nodiscard]] std::string rows() const { return support::printRows(*table); }
    [[nodiscard]] const embedded::Report& report() const
    {
        return embedded::Library::of(library.get())->lastReport();
    }

    orv::CChangeTransactionManager changes;
    std::unique_ptr<gis::CLibGis> library;
    gis::CDBTable* table;
    std::unique_ptr<CCtrlDlgTableEdit> edit;
};

Constraints constraintsOf(CCtrlDlgTableEdit& edit, CCtrlDlgTableEdit::CFieldChangeTracker* field)
{
    Constraints values;
    edit.GetFieldConstraints(field, values.data());
    return values;
}

TEST(TableEditTest, BeginsWithTheTablesFields)
{
    Edited edited("table Strade (codice text required, lunghezza decimal 3 from perimeter2d)");
    CCtrlDlgTableEdit& edit = *edited.edit;

    ASSERT_EQ(edit.GetNoCurFields(), 2);
    auto* code = edit.GetCurField(0);
    auto* length = edit.GetCurField(1);
    EXPECT_EQ(edit.GetFieldName(code), orv::String("codice"));
    EXPECT_EQ(edit.GetFieldFormat(code), FieldFormat::Text);
    EXPECT_TRUE(edit.IsFieldRequested(code));
    EXPECT_FALSE(edit.IsFieldPredefined(code));
    EXPECT_EQ(edit.GetFieldType(length), FieldType::Perimeter2D);
    EXPECT_TRUE(edit.IsFieldPredefined(length));
    EXPECT_EQ(constraintsOf(edit, length)[3], orv::CPolyValue(3));
}

TEST(TableEditTest, NothingReachesTheTableBeforeCommit)
{
    Edited edited(Roads);
    const std::string before = printTable(*edited.table);

    edited.edit->SetFieldName(edited.field("codice"), "sigla");
    edited.edit->DeleteField(edited.field("larghezza"));
    edited.edit->AppendField("nota", FieldFormat::Text);
    edited.edit->SetFieldFormat(edited.field("corsie"), FieldFormat::Text);
    edited.edit->SwapOrder(0, 1);

    EXPECT_EQ(printTable(*edited.table), before);
    EXPECT_FALSE(edited.changes.CanUndo());
    EXPECT_FALSE(edited.library->GetModifiedFlag());
}

TEST(TableEditTest, CommitAppliesAllAndCellsFollowTheirField)
{
    Edited edited(Roads);

    edited.edit->SetFieldName(edited.field("codice"), "sigla");
    edited.edit->SetFieldName(edited.field("corsie"), "codice"); // takes over a name that was free
    edited.edit->DeleteField(edited.field("larghezza"));
    edited.edit->SetFieldRequested(edited.edit->AppendField("nota", FieldFormat::Text), true);
    edited.edit->SwapOrder(0, 1);

    EXPECT_TRUE(edited.edit->Commit());
    EXPECT_EQ(printTable(*edited.table),
        "table Strade (codice integer, sigla text, nota text required);\n"
        "rows Strade:\n"
        "(2, 'S1', -)\n"
        "(1, 'S2', -)\n"
        "(-, -, -)\n"
        ";\n");
    EXPECT_TRUE(edited.library->GetModifiedFlag());
}

TEST(TableEditTest, OneStepTakesTheCommitBackAndMakesItAgain)
{
    Edited edited(Roads);
    const std::string before = printTable(*edited.table);
    gis::CField* width = edited.library->GetField(edited.table, 1);
    edited.edit->DeleteField(edited.field("larghezza"));
    edited.edit->SetFieldFormat(edited.field("corsie"), FieldFormat::Decimal);
    edited.edit->SetFieldName(edited.field("codice"), "sigla");
    ASSERT_TRUE(edited.edit->Commit());
    const std::string after = printTable(*edited.table);

    EXPECT_TRUE(edited.changes.Undo());
    EXPECT_EQ(printTable(*edited.table), before);
    EXPECT_EQ(edited.library->GetField(edited.table, 1), width);
    EXPECT_FALSE(edited.changes.CanUndo());
    EXPECT_TRUE(edited.changes.Redo());
    EXPECT_EQ(printTable(*edited.table), after);
}

TEST(TableEditTest, FieldsThatStayKeepTheirHandles)
{
    Edited edited(Roads);
    gis::CField* code = edited.library->GetField(edited.table, 0);

    edited.edit->SetFieldName(edited.field("codice"), "sigla");
    edited.edit->SwapOrder(0, 2);
    ASSERT_TRUE(edited.edit->Commit());

    EXPECT_EQ(edited.library->GetField(edited.table, 2), code);
    EXPECT_EQ(edited.library->GetFieldName(code), orv::String("sigla"));
}

TEST(TableEditTest, ACommitThatChangesNothingLeavesNoStep)
{
    Edited edited(Roads);
    auto* lanes = edited.field("corsie");
    edited.edit->SwapOrder(0, 1);
    edited.edit->SwapOrder(1, 0);
    edited.edit->SetFieldRequested(lanes, true);
    edited.edit->SetFieldRequested(lanes, false);

    EXPECT_TRUE(edited.edit->Commit());

    EXPECT_FALSE(edited.changes.CanUndo());
    EXPECT_TRUE(edited.library->GetModifiedFlag());
}

TEST(TableEditTest, RefusesEmptyNames)
{
    Edited edited(Roads);
    const std::string before = printTable(*edited.table);
    edited.edit->AppendField("", FieldFormat::Text);

    EXPECT_FALSE(edited.edit->Commit());
    EXPECT_EQ(printTable(*edited.table), before);
    EXPECT_FALSE(edited.library->GetModifiedFlag());

    edited.edit->SetFieldName(edited.edit->GetCurField(3), " ");
    EXPECT_TRUE(edited.edit->Commit()) << "blanks are a name";
}

TEST(TableEditTest, RefusesNamesThatAreEqualButForAsciiCase)
{
    Edited edited(Roads);
    auto* added = edited.edit->AppendField("CORSIE", FieldFormat::Text);

    EXPECT_FALSE(edited.edit->Commit());
    edited.edit->SetFieldName(added, "CORSI\xC3\x88");
    EXPECT_TRUE(edited.edit->Commit()) << "only ASCII letters are folded";
}

TEST(TableEditTest, RefusesATableThatIsGone)
{
    Edited edited(Roads);
    edited.edit->SetFieldName(edited.field("codice"), "sigla");

    edited.library->DeleteTable(edited.table);

    EXPECT_FALSE(edited.edit->Commit());
    EXPECT_FALSE(edited.edit->Revert());
}

TEST(TableEditTest, RevertDropsWhatIsPending)
{
    Edited edited(Roads);
    edited.edit->DeleteField(edited.field("codice"));
    edited.edit->AppendField("nota", FieldFormat::Text);

    EXPECT_TRUE(edited.edit->Revert());

    EXPECT_EQ(edited.edit->GetNoCurFields(), 3);
    EXPECT_NE(edited.field("codice"), nullptr);
    EXPECT_EQ(edited.field("nota"), nullptr);
    EXPECT_FALSE(edited.changes.CanUndo());
}

TEST(TableEditTest, EditingMayGoOnAfterACommit)
{
    Edited edited(Roads);
    edited.edit->DeleteField(edited.field("larghezza"));
    ASSERT_TRUE(edited.edit->Commit());

    edited.edit->SetFieldName(edited.field("corsie"), "numero corsie");
    ASSERT_TRUE(edited.edit->Commit());

    EXPECT_EQ(edited.rows(), "('S1', 2)\n('S2', 1)\n(-, -)\n");
    EXPECT_EQ(edited.changes.UndoName(), orv::String("Struttura di Strade"));
}

TEST(TableEditTest, DeletedFieldsMayStillBeWrittenTo)
{
    Edited edited(Roads);
    auto* deleted = edited.field("larghezza");
    edited.edit->DeleteField(deleted);

    edited.edit->SetFieldRequested(deleted, true);
    edited.edit->SetFieldName(deleted, "codice");
    edited.edit->DeleteField(deleted);

    EXPECT_EQ(edited.edit->GetFieldFormat(deleted), FieldFormat::Decimal);
    EXPECT_TRUE(edited.edit->Commit());
    EXPECT_EQ(edited.rows(), "('S1', 2)\n('S2', 1)\n(-, -)\n");
}

TEST(TableEditTest, PositionsOutOfRangeAreNoFields)
{
    Edited edited(Roads);

    EXPECT_EQ(edited.edit->GetCurField(-1), nullptr);
    EXPECT_EQ(edited.edit->GetCurField(3), nullptr);
    edited.edit->SwapOrder(0, 3);
    edited.edit->SwapOrder(-1, 0);

    EXPECT_EQ(edited.edit->GetCurField(0), edited.field("codice"));
}

TEST(TableEditTest, NullsAreHarmless)
{
    Edited edited(Roads);
    CCtrlDlgTableEdit& edit = *edited.edit;

    edit.DeleteField(nullptr);
    edit.SetFieldName(nullptr, "x");
    edit.SetFieldFormat(nullptr, FieldFormat::Date);
    edit.SetFieldConstraints(edit.GetCurField(0), nullptr);
    edit.GetFieldConstraints(nullptr, nullptr);
    EXPECT_EQ(edit.GetFieldName(nullptr), orv::String());
    EXPECT_EQ(edit.GetNoCurFields(), 3);

    CCtrlDlgTableEdit nowhere(nullptr, nullptr);
    EXPECT_EQ(nowhere.GetNoCurFields(), 0);
    EXPECT_FALSE(nowhere.Commit());
    EXPECT_FALSE(nowhere.Revert());
}

TEST(TableEditTest, NewFieldsAndNewFormatsHaveUnsetConstraints)
{
    Edited edited("table T (quota decimal 4 default 1.5 min 0 max 9)");
    CCtrlDlgTableEdit& edit = *edited.edit;
    auto* field = edit.GetCurField(0);

    edit.SetFieldFormat(field, FieldFormat::Decimal);
    EXPECT_EQ(constraintsOf(edit, field)[3], orv::CPolyValue(4)) << "the same format keeps them";

    for (const auto format : { FieldFormat::Text, FieldFormat::Boolean, FieldFormat::Integer,
             FieldFormat::Decimal, FieldFormat::List, FieldFormat::Date }) {
        edit.SetFieldFormat(field, format);
        EXPECT_EQ(constraintsOf(edit, field), support::unsetConstraints(format));
        auto* added = edit.AppendField("nuovo", format);
        EXPECT_EQ(constraintsOf(edit, added), support::unsetConstraints(format));
    }
}

TEST(TableEditTest, ConstraintsAndTypesAreCommitted)
{
    Edited edited("table T (a integer, b decimal 2)");
    CCtrlDlgTableEdit& edit = *edited.edit;
    const Constraints bounds = { orv::CPolyValue(3), orv::CPolyValue(1), orv::CPolyValue(9), {} };

    edit.SetFieldConstraints(edit.GetCurField(0), bounds.data());
    edit.SetFieldType(edit.GetCurField(1), FieldType::Area);
    ASSERT_TRUE(edit.Commit());

    EXPECT_EQ(printTable(*edited.table),
        "table T (a integer default 3 min 1 max 9, b decimal 2 from area);\n");
}

TEST(TableEditTest, ValuesOutsideTheEnumerationsAreIgnored)
{
    Edited edited(Roads);
    auto* field = edited.field("codice");

    edited.edit->SetFieldFormat(field, static_cast<FieldFormat>(6));
    edited.edit->SetFieldType(field, static_cast<FieldType>(15));

    EXPECT_EQ(edited.edit->GetFieldFormat(field), FieldFormat::Text);
    EXPECT_EQ(edited.edit->GetFieldType(field), FieldType::FromUser);
    EXPECT_EQ(
        edited.edit->GetFieldFormat(edited.edit->AppendField("x", static_cast<FieldFormat>(-1))),
        FieldFormat::Text);
}

} // namespace
