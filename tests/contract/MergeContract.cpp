// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/contract/Contract.h"

#include "host/gis/Merge.h"

namespace {

using gis::CMergeTable;
using gis::FieldFormat;
using gis::MergeResult;
using gis::ResultCompare;

CONTRACT_SUITE(MergeContract);

TEST_P(MergeContract, TablesAreComparedByNameFormatAndOrder)
{
    gis::CLibGis& library = make("table T (a text, b integer, c date)");
    const struct {
        const char* incoming;
        ResultCompare expected;
    } cases[] = {
        { "table T (a text, b integer, c date)", ResultCompare::Compatible },
        { "table T (A text, c date)", ResultCompare::Compatible },
        { "table T (c date, a text)", ResultCompare::OtherOrder },
        { "table T (a text, n text)", ResultCompare::Conflicts },
        { "table T (a text, b decimal 2)", ResultCompare::Conflicts },
    };
    for (const auto& one : cases) {
        gis::CLibGis& scratch = make(one.incoming);
        CMergeTable merge(&library, library.GetTable(0), &scratch, scratch.GetTable(0));
        EXPECT_EQ(merge.CompareTable(), one.expected) << one.incoming;
        EXPECT_EQ(merge.GetMergeResult(), MergeResult::Undecided);
    }
}

TEST_P(MergeContract, MergingAppendsRowsAndTellsWhereTheFieldsWent)
{
    gis::CLibGis& library = make("table T (a text, b integer); rows T: ('x', 1)");
    gis::CLibGis& scratch
        = make("table T (n text, b integer, a text); rows T: ('nuovo', 2, 'y'), (-, -, -)");
    gis::CDBTable* existing = library.GetTable(0);
    CMergeTable merge(&library, existing, &scratch, scratch.GetTable(0));
    std::vector<int> mapping;

    ASSERT_EQ(merge.CompareTable(), ResultCompare::Conflicts);
    EXPECT_EQ(merge.GetTableNoFields(), 3);
    ASSERT_EQ(merge.GetNoAddField(), 1);
    EXPECT_EQ(merge.GetAddField(0), scratch.GetField(scratch.GetTable(0), 0));
    EXPECT_EQ(merge.GetNoDiffTypeField(), 0);
    merge.SetAddField({ merge.GetAddField(0) });
    merge.Merge(mapping);

    EXPECT_EQ(merge.GetMergeResult(), MergeResult::Merged);
    EXPECT_EQ(mapping, (std::vector<int> { 2, 1, 0 }));
    EXPECT_EQ(fields(library, existing), "a text, b integer, n text");
    EXPECT_EQ(rows(library, existing), "('x', 1, -)('y', 2, 'nuovo')(-, -, -)");
    EXPECT_TRUE(library.GetModifiedFlag());
}

TEST_P(MergeContract, FieldsNotChosenAreLeftOut)
{
    gis::CLibGis& library = make("table T (a text)");
    gis::CLibGis& scratch = make("table T (n text, a text); rows T: ('nuovo', 'y')");
    CMergeTable merge(&library, library.GetTable(0), &scratch, scratch.GetTable(0));
    std::vector<int> mapping;

    merge.CompareTable();
    merge.SetAddField({});
    merge.Merge(mapping);

    EXPECT_EQ(mapping, (std::vector<int> { -1, 0 }));
    EXPECT_EQ(fields(library, library.GetTable(0)), "a text");
    EXPECT_EQ(rows(library, library.GetTable(0)), "('y')");
}

TEST_P(MergeContract, ConflictsBeginAsUnifiedUnderTheExistingFormat)
{
    gis::CLibGis& library = make("table T (a text, b integer)");
    gis::CLibGis& scratch = make("table T (n text, B decimal 2)");
    CMergeTable merge(&library, library.GetTable(0), &scratch, scratch.GetTable(0));
    merge.CompareTable();

    EXPECT_EQ(merge.GetNoDiffTypeField(), 1);
    EXPECT_EQ(merge.GetDiffTypeField(0), nullptr);
    EXPECT_EQ(merge.GetDiffTypeField(2), nullptr);
    gis::CDiffTypeFieldInfo* conflict = merge.GetDiffTypeField(1);
    ASSERT_NE(conflict, nullptr);
    EXPECT_EQ(conflict->GetField(), library.GetField(library.GetTable(0), 1));
    EXPECT_EQ(conflict->GetFieldTmp(), scratch.GetField(scratch.GetTable(0), 1));
    EXPECT_FALSE(conflict->IsFieldRename());
    EXPECT_EQ(conflict->GetNewFormat(), FieldFormat::Integer);
    EXPECT_EQ(conflict->GetNewName(), orv::String("B_1"));
    EXPECT_FALSE(conflict->IsListToCreate());
    EXPECT_FALSE(conflict->GetDiffIsResolved());
    conflict->SetDiffIsResolved(true);
    EXPECT_TRUE(conflict->GetDiffIsResolved());
}

TEST_P(MergeContract, AConflictMayBeRenamed)
{
    gis::CLibGis& library = make("table T (a text, b text); rows T: ('x', 'y')");
    gis::CLibGis& scratch = make("table T (a integer); rows T: (7)");
    CMergeTable merge(&library, library.GetTable(0), &scratch, scratch.GetTable(0));
    std::vector<int> mapping;
    merge.CompareTable();
    gis::CDiffTypeFieldInfo* conflict = merge.GetDiffTypeField(0);

    EXPECT_FALSE(conflict->SetNewFieldName(""));
    EXPECT_FALSE(conflict->SetNewFieldName("B"));
    EXPECT_FALSE(conflict->IsFieldRename());
    EXPECT_TRUE(conflict->SetNewFieldName("numero"));
    EXPECT_TRUE(conflict->IsFieldRename());
    merge.Merge(mapping);

    EXPECT_EQ(mapping, std::vector<int> { 2 });
    EXPECT_EQ(fields(library, library.GetTable(0)), "a text, b text, numero integer");
    EXPECT_EQ(rows(library, library.GetTable(0)), "('x', 'y', -)(-, -, 7)");
}

TEST_P(MergeContract, AConflictMayBeUnifiedWithAListOfBoth)
{
    gis::CLibGis& library = make("table T (a text); rows T: ('pino'), ('abete'), (-)");
    gis::CLibGis& scratch = make("table T (a integer); rows T: (7)");
    CMergeTable merge(&library, library.GetTable(0), &scratch, scratch.GetTable(0));
    std::vector<int> mapping;
    merge.CompareTable();
    gis::CDiffTypeFieldInfo* conflict = merge.GetDiffTypeField(0);

    conflict->SetNewFieldName("altro");
    conflict->SetNewFieldFormat(FieldFormat::List);
    EXPECT_FALSE(conflict->IsFieldRename());
    conflict->SetCreateList(true);
    merge.Merge(mapping);

    gis::CField* field = library.GetField(library.GetTable(0), 0);
    EXPECT_EQ(library.GetFieldFormat(field), FieldFormat::List);
    EXPECT_EQ(library.GetListElement(field, 0), orv::String("7"));
    EXPECT_EQ(library.GetListElement(field, 1), orv::String("abete"));
    EXPECT_EQ(library.GetListElement(field, 2), orv::String("pino"));
    EXPECT_EQ(library.GetListElement(field, 3), orv::String());
    EXPECT_EQ(rows(library, library.GetTable(0)), "('pino')('abete')(-)('7')");
}

TEST_P(MergeContract, RenamingTheTableRefusesEmptyAndUsedNames)
{
    gis::CLibGis& library = make("table T (a text); table Case ()");
    gis::CLibGis& scratch = make("table T (a integer)");
    CMergeTable merge(&library, library.GetTable(0), &scratch, scratch.GetTable(0));

    EXPECT_EQ(merge.GetTableName(), orv::String("T"));
    EXPECT_FALSE(merge.RenameTable(""));
    EXPECT_FALSE(merge.RenameTable("case"));
    EXPECT_EQ(merge.GetMergeResult(), MergeResult::Undecided);
    EXPECT_TRUE(merge.RenameTable("T nuova"));
    EXPECT_EQ(merge.GetMergeResult(), MergeResult::Renamed);
    EXPECT_EQ(scratch.GetTableName(scratch.GetTable(0)), orv::String("T nuova"));
    EXPECT_EQ(library.GetTableName(library.GetTable(0)), orv::String("T"));
}

} // namespace
