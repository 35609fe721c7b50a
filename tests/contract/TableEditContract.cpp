// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/contract/Contract.h"

#include "host/gis/TableEdit.h"

namespace {

using gis::CCtrlDlgTableEdit;
using gis::FieldFormat;
using gis::FieldType;

CONTRACT_SUITE(TableEditContract);

constexpr const char* Roads = "table Strade (codice text, larghezza decimal 2, corsie integer);"
                              "rows Strade: ('S1', 3.5, 2), ('S2', -, 1)";

TEST_P(TableEditContract, PendingChangesReachTheTableByCommitOnly)
{
    gis::CLibGis& library = make(Roads);
    gis::CDBTable* table = library.GetTable(0);
    CCtrlDlgTableEdit edit(&library, table);
    const std::string before = fields(library, table);

    edit.SetFieldName(edit.GetCurField(0), "sigla");
    edit.DeleteField(edit.GetCurField(1));
    edit.AppendField("nota", FieldFormat::Text);
    EXPECT_EQ(fields(library, table), before);
    EXPECT_FALSE(library.GetModifiedFlag());

    EXPECT_TRUE(edit.Commit());
    EXPECT_EQ(fields(library, table), "sigla text, corsie integer, nota text");
    EXPECT_EQ(rows(library, table), "('S1', 2, -)('S2', 1, -)");
    EXPECT_TRUE(library.GetModifiedFlag());
}

TEST_P(TableEditContract, RevertDropsPendingChanges)
{
    gis::CLibGis& library = make(Roads);
    gis::CDBTable* table = library.GetTable(0);
    const std::string before = fields(library, table);
    {
        CCtrlDlgTableEdit edit(&library, table);
        edit.DeleteField(edit.GetCurField(0));
        EXPECT_TRUE(edit.Revert());
        CCtrlDlgTableEdit dropped(&library, table);
        dropped.DeleteField(dropped.GetCurField(1));
    }
    EXPECT_EQ(fields(library, table), before);
    EXPECT_FALSE(library.GetModifiedFlag());
}

TEST_P(TableEditContract, CellsFollowTheirFieldNotItsNameOrPlace)
{
    gis::CLibGis& library = make("table T (a text, b text); rows T: ('1', '2')");
    gis::CDBTable* table = library.GetTable(0);
    CCtrlDlgTableEdit edit(&library, table);

    edit.SetFieldName(edit.GetCurField(0), "b");
    edit.SetFieldName(edit.GetCurField(1), "a");
    edit.SwapOrder(0, 1);
    ASSERT_TRUE(edit.Commit());

    EXPECT_EQ(fields(library, table), "a text, b text");
    EXPECT_EQ(rows(library, table), "('2', '1')");
}

TEST_P(TableEditContract, CommitRefusesWhatCannotBeATable)
{
    gis::CLibGis& library = make(Roads);
    gis::CDBTable* table = library.GetTable(0);
    const std::string before = fields(library, table) + rows(library, table);
    CCtrlDlgTableEdit edit(&library, table);

    auto* added = edit.AppendField("", FieldFormat::Text);
    EXPECT_FALSE(edit.Commit());
    edit.SetFieldName(added, "CODICE");
    EXPECT_FALSE(edit.Commit());
    EXPECT_EQ(fields(library, table) + rows(library, table), before);
    EXPECT_FALSE(library.GetModifiedFlag());

    library.DeleteTable(table);
    EXPECT_FALSE(edit.Commit());
}

TEST_P(TableEditContract, ChangedFormatsConvertCells)
{
    gis::CLibGis& library = make("table T (a text, b decimal 1, c boolean, d date);"
                                 "rows T: ('12', 2.5, yes, 05/03/2016), ('x', -1, no, -)");
    gis::CDBTable* table = library.GetTable(0);
    CCtrlDlgTableEdit edit(&library, table);
    edit.SetFieldFormat(edit.GetCurField(0), FieldFormat::Integer);
    edit.SetFieldFormat(edit.GetCurField(1), FieldFormat::Text);
    edit.SetFieldFormat(edit.GetCurField(2), FieldFormat::List);
    edit.SetFieldFormat(edit.GetCurField(3), FieldFormat::Text);

    ASSERT_TRUE(edit.Commit());

    EXPECT_EQ(rows(library, table), "(12, '2.5', 'S\xC3\xAC', '05/03/2016')(-, '-1.0', 'No', -)");
}

TEST_P(TableEditContract, NewFieldsAndFormatsHaveUnsetConstraints)
{
    gis::CLibGis& library = make("table T (a integer default 1 min 0 max 9)");
    CCtrlDlgTableEdit edit(&library, library.GetTable(0));
    const FieldFormat formats[] = { FieldFormat::Text, FieldFormat::Boolean, FieldFormat::Integer,
        FieldFormat::Decimal, FieldFormat::List, FieldFormat::Date };

    for (const auto format : formats) {
        orv::CPolyValue changed[gis::ConstraintCount];
        orv::CPolyValue added[gis::ConstraintCount];
        edit.SetFieldFormat(edit.GetCurField(0), format);
        edit.GetFieldConstraints(edit.GetCurField(0), changed);
        edit.GetFieldConstraints(edit.AppendField("n", format), added);
        const auto unset = support::unsetConstraints(format);
        for (std::size_t i = 0; i < unset.size(); ++i) {
            EXPECT_EQ(changed[i], unset[i]) << support::describe(format) << " element " << i;
            EXPECT_EQ(added[i], unset[i]) << support::describe(format) << " element " << i;
        }
    }
}

TEST_P(TableEditContract, FieldPropertiesAreCommitted)
{
    gis::CLibGis& library = make("table T (a decimal 2)");
    gis::CDBTable* table = library.GetTable(0);
    CCtrlDlgTableEdit edit(&library, table);
    auto* field = edit.GetCurField(0);
    const orv::CPolyValue constraintValues[]
        = { orv::CPolyValue(1.5), orv::CPolyValue(0.0), orv::CPolyValue(9.0), orv::CPolyValue(4) };

    edit.SetFieldType(field, FieldType::Area);
    EXPECT_TRUE(edit.IsFieldPredefined(field));
    edit.SetFieldRequested(field, true);
    edit.SetFieldConstraints(field, constraintValues);
    ASSERT_TRUE(edit.Commit());

    gis::CField* committed = library.GetField(table, 0);
    EXPECT_TRUE(library.IsFieldPredefined(committed));
    EXPECT_TRUE(library.IsFieldRequested(committed));
    EXPECT_EQ(constraints(library, committed), "1.5; 0; 9; 4");
    CCtrlDlgTableEdit again(&library, table);
    EXPECT_EQ(again.GetFieldType(again.GetCurField(0)), FieldType::Area);
}

TEST_P(TableEditContract, RecordsOfDeletedFieldsStayUsable)
{
    gis::CLibGis& library = make(Roads);
    CCtrlDlgTableEdit edit(&library, library.GetTable(0));
    auto* deleted = edit.GetCurField(1);
    orv::CPolyValue constraintValues[gis::ConstraintCount];

    edit.DeleteField(deleted);
    edit.SetFieldRequested(deleted, true);
    edit.GetFieldConstraints(deleted, constraintValues);
    edit.SetFieldConstraints(deleted, constraintValues);
    EXPECT_EQ(edit.GetFieldFormat(deleted), FieldFormat::Decimal);
    EXPECT_EQ(edit.GetNoCurFields(), 2);
    EXPECT_TRUE(edit.Commit());
    EXPECT_EQ(fields(library, library.GetTable(0)), "codice text, corsie integer");
}

TEST_P(TableEditContract, PositionsOutOfRangeAndNullsAreHarmless)
{
    gis::CLibGis& library = make(Roads);
    CCtrlDlgTableEdit edit(&library, library.GetTable(0));
    auto* first = edit.GetCurField(0);

    EXPECT_EQ(edit.GetCurField(-1), nullptr);
    EXPECT_EQ(edit.GetCurField(3), nullptr);
    edit.SwapOrder(0, 3);
    edit.SwapOrder(-1, 0);
    EXPECT_EQ(edit.GetCurField(0), first);
    edit.DeleteField(nullptr);
    EXPECT_EQ(edit.GetNoCurFields(), 3);

    CCtrlDlgTableEdit nowhere(nullptr, nullptr);
    EXPECT_EQ(nowhere.GetNoCurFields(), 0);
    EXPECT_FALSE(nowhere.Commit());
}

} // namespace
