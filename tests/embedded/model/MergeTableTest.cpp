// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "host/gis/Merge.h"

#include "embedded/model/Library.h"
#include "host/gis/TableEdit.h"
#include "tests/support/Describe.h"
#include "tests/support/LibraryNotation.h"

#include <gtest/gtest.h>

namespace {

using gis::CMergeTable;
using gis::FieldFormat;
using gis::MergeResult;
using gis::ResultCompare;
using support::makeLibrary;
using support::printTable;

struct Merged {
    Merged(const char* existingNotation, const char* incomingNotation)
        : library(makeLibrary(existingNotation, &changes))
        , scratch(makeLibrary(incomingNotation))
        , existing(library->GetTable(0))
        , incoming(scratch->GetTable(0))
        , merge(library.get(), existing, scratch.get(), incoming)
    {
    }
    orv::CChangeTransactionManager changes;
    std::unique_ptr<gis::CLibGis> library;
    std::unique_ptr<gis::CLibGis> scratch;
    gis::CDBTable* existing;
    gis::CDBTable* incoming;
    CMergeTable merge;
    std::vector<int> mapping;
};

struct CompareCase {
    const char* existing;
    const char* incoming;
    ResultCompare result;
};

class MergeTableCompareTest : public testing::TestWithParam<CompareCase> { };

TEST_P(MergeTableCompareTest, TablesAreComparedByNamesFormatsAndOrder)
{
    Merged merged(GetParam().existing, GetParam().incoming);

    EXPECT_EQ(merged.merge.CompareTable(), GetParam().result);
}

INSTANTIATE_TEST_SUITE_P(Comparisons, MergeTableCompareTest,
    testing::Values(CompareCase { "table T (a text, b integer)", "table T (a text, b integer)",
                        ResultCompare::Compatible },
        CompareCase {
            "table T (a text, b integer)", "table T (B integer)", ResultCompare::Compatible },
        CompareCase { "table T (a text, b integer, c date)", "table T (A text, C date)",
            ResultCompare::Compatible },
        CompareCase {
            "table T (a decimal 2)", "table T (a decimal 5 required)", ResultCompare::Compatible },
        CompareCase { "table T (a text)", "table T ()", ResultCompare::Compatible },
        CompareCase { "table T (a text, b integer)", "table T (b integer, a text)",
            ResultCompare::OtherOrder },
        CompareCase { "table T (a text, b integer, c date)", "table T (c date, a text)",
            ResultCompare::OtherOrder },
        CompareCase { "table T (a text)", "table T (a text, b text)", ResultCompare::Conflicts },
        CompareCase { "table T (a text)", "table T (a integer)", ResultCompare::Conflicts },
        CompareCase { "table T (a text)", "table T (a list)", ResultCompare::Conflicts },
        CompareCase {
            "table T (a text, b text)", "table T (b text, a integer)", ResultCompare::Conflicts }));

TEST(MergeTableTest, NewFieldsAndConflictsAreListed)
{
    Merged merged("table T (a text, b integer)", "table T (n date, B decimal 2, a text, m text)");
    CMergeTable& merge = merged.merge;

    EXPECT_EQ(merge.GetMergeResult(), MergeResult::Undecided);
    EXPECT_EQ(merge.GetTableName(), orv::String("T"));
    EXPECT_EQ(merge.GetTableNoFields(), 4);
    ASSERT_EQ(merge.GetNoAddField(), 2);
    EXPECT_EQ(merge.GetAddField(0), merged.scratch->GetField(merged.incoming, 0));
    EXPECT_EQ(merge.GetAddField(1), merged.scratch->GetField(merged.incoming, 3));
    EXPECT_EQ(merge.GetAddField(2), nullptr);
    EXPECT_EQ(merge.GetAddField(-1), nullptr);
    EXPECT_EQ(merge.GetNoDiffTypeField(), 1);
    EXPECT_EQ(merge.GetDiffTypeField(0), nullptr);
    EXPECT_EQ(merge.GetDiffTypeField(2), nullptr);
    EXPECT_EQ(merge.GetDiffTypeField(4), nullptr);
    ASSERT_NE(merge.GetDiffTypeField(1), nullptr);
    EXPECT_EQ(merge.GetDiffTypeField(1)->GetField(), merged.library->GetField(merged.existing, 1));
    EXPECT_EQ(
        merge.GetDiffTypeField(1)->GetFieldTmp(), merged.scratch->GetField(merged.incoming, 1));
}

TEST(MergeTableTest, AConflictBeginsAsUnifiedUnderTheExistingFormatAndUnresolved)
{
    Merged merged("table T (a text, a_1 text)", "table T (A integer, A_2 text)");
    gis::CDiffTypeFieldInfo* conflict = merged.merge.GetDiffTypeField(0);

    ASSERT_NE(conflict, nullptr);
    EXPECT_FALSE(conflict->IsFieldRename());
    EXPECT_EQ(conflict->GetNewFormat(), FieldFormat::Text);
    EXPECT_EQ(conflict->GetNewName(), orv::String("A_3"));
    EXPECT_FALSE(conflict->IsListToCreate());
    EXPECT_FALSE(conflict->GetDiffIsResolved());
}

TEST(MergeTableTest, NewNamesMustBeFreeAndChoosingAFormatEndsTheRename)
{
    Merged merged("table T (a text, b text)", "table T (a integer, b integer, n text)");
    gis::CDiffTypeFieldInfo* first = merged.merge.GetDiffTypeField(0);
    gis::CDiffTypeFieldInfo* second = merged.merge.GetDiffTypeField(1);

    EXPECT_FALSE(first->SetNewFieldName(""));
    EXPECT_FALSE(first->SetNewFieldName("B"));
    EXPECT_FALSE(first->SetNewFieldName("N"));
    EXPECT_FALSE(first->IsFieldRename());
    EXPECT_TRUE(first->SetNewFieldName("quota"));
    EXPECT_TRUE(first->SetNewFieldName("quota")) << "its own name is free for it";
    EXPECT_TRUE(first->IsFieldRename());
    EXPECT_FALSE(second->SetNewFieldName("QUOTA"));

    first->SetNewFieldFormat(FieldFormat::Decimal);
    EXPECT_FALSE(first->IsFieldRename());
    EXPECT_EQ(first->GetNewFormat(), FieldFormat::Decimal);
    first->SetDiffIsResolved(true);
    first->SetCreateList(true);
    EXPECT_TRUE(first->GetDiffIsResolved());
    EXPECT_TRUE(first->IsListToCreate());
    EXPECT_FALSE(second->GetDiffIsResolved());
}

TEST(MergeTableTest, MergeAppendsTheRowsByName)
{
    Merged merged("table T (a text, b integer, c text); rows T: ('x', 1, 'y')",
        "table T (B integer, a text); rows T: (2, 'z'), (-, 'w')");

    merged.merge.Merge(merged.mapping);

    EXPECT_EQ(merged.merge.GetMergeResult(), MergeResult::Merged);
    EXPECT_EQ(merged.mapping, (std::vector<int> { 1, 0 }));
    EXPECT_EQ(printTable(*merged.existing),
        "table T (a text, b integer, c text);\n"
        "rows T:\n('x', 1, 'y')\n('z', 2, -)\n('w', -, -)\n;\n");
    EXPECT_TRUE(merged.library->GetModifiedFlag());
}

TEST(MergeTableTest, OneStepTakesTheMergeBackAndMakesItAgain)
{
    Merged merged("table T (a text, b integer); rows T: ('x', 1)",
        "table T (b text, n date); rows T: ('due', 01/02/2020), ('2', -)");
    const std::string before = printTable(*merged.existing);
    merged.merge.GetDiffTypeField(0)->SetNewFieldFormat(FieldFormat::Text);

    merged.merge.Merge(merged.mapping);
    const std::string after = printTable(*merged.existing);

    EXPECT_EQ(after,
        "table T (a text, b text, n date);\n"
        "rows T:\n('x', '1', -)\n(-, 'due', 01/02/2020)\n(-, '2', -)\n;\n");
    EXPECT_TRUE(merged.changes.Undo());
    EXPECT_EQ(printTable(*merged.existing), before);
    EXPECT_FALSE(merged.changes.CanUndo());
    EXPECT_TRUE(merged.changes.Redo());
    EXPECT_EQ(printTable(*merged.existing), after);
}

TEST(MergeTableTest, OnlyTheChosenFieldsAreAdded)
{
    Merged merged("table T (a text)",
        "table T (n date, a text, m text required default 'q');"
        "rows T: (01/02/2020, 'x', 'y')");
    merged.merge.SetAddField({ merged.merge.GetAddField(1) });

    merged.merge.Merge(merged.mapping);

    EXPECT_EQ(merged.mapping, (std::vector<int> { -1, 0, 1 }));
    EXPECT_EQ(printTable(*merged.existing),
        "table T (a text, m text required default 'q');\nrows T:\n('x', 'y')\n;\n");
}

TEST(MergeTableTest, NoFieldChosenMeansNoneAdded)
{
    Merged merged("table T (a text)", "table T (n date, a text); rows T: (01/02/2020, 'x')");
    merged.merge.SetAddField({});

    merged.merge.Merge(merged.mapping);

    EXPECT_EQ(merged.mapping, (std::vector<int> { -1, 0 }));
    EXPECT_EQ(printTable(*merged.existing), "table T (a text);\nrows T:\n('x')\n;\n");
}

TEST(MergeTableTest, ARenamedConflictIsAddedUnderItsNewName)
{
    Merged merged("table T (a text); rows T: ('x')", "table T (a integer); rows T: (7)");
    ASSERT_TRUE(merged.merge.GetDiffTypeField(0)->SetNewFieldName("numero"));

    merged.merge.Merge(merged.mapping);

    EXPECT_EQ(merged.mapping, std::vector<int> { 1 });
    EXPECT_EQ(printTable(*merged.existing),
        "table T (a text, numero integer);\nrows T:\n('x', -)\n(-, 7)\n;\n");
}

TEST(MergeTableTest, UnifyingConvertsBothSidesAndReportsWhatWasEmptied)
{
    Merged merged("table T (a text); rows T: ('1.5'), ('x')", "table T (a boolean); rows T: (yes)");
    merged.merge.GetDiffTypeField(0)->SetNewFieldFormat(FieldFormat::Decimal);

    merged.merge.Merge(merged.mapping);

    EXPECT_EQ(
        printTable(*merged.existing), "table T (a decimal 2);\nrows T:\n(1.5)\n(-)\n(-)\n;\n");
    const auto& findings = embedded::Library::of(merged.library.get())->lastReport().findings;
    ASSERT_EQ(findings.size(), 1u);
    EXPECT_EQ(findings[0].code, embedded::FindingCode::CellsEmptied);
    EXPECT_EQ(findings[0].subject, "a");
    EXPECT_EQ(findings[0].count, 2);
}

TEST(MergeTableTest, TheListIsMadeOfTheTextsOfBoth)
{
    Merged merged("table T (a text); rows T: ('pino'), ('abete'), (-), ('pino')",
        "table T (a integer); rows T: (7), (10)");
    gis::CDiffTypeFieldInfo* conflict = merged.merge.GetDiffTypeField(0);
    conflict->SetNewFieldFormat(FieldFormat::List);
    conflict->SetCreateList(true);

    merged.merge.Merge(merged.mapping);

    EXPECT_EQ(printTable(*merged.existing),
        "table T (a list ('10', '7', 'abete', 'pino'));\n"
        "rows T:\n('pino')\n('abete')\n(-)\n('pino')\n('7')\n('10')\n;\n");
}

TEST(MergeTableTest, WithoutTheWishAnExistingListStays)
{
    Merged merged("table T (a list ('x')); rows T: ('x')", "table T (a text); rows T: ('y')");
    merged.merge.GetDiffTypeField(0)->SetNewFieldFormat(FieldFormat::List);

    merged.merge.Merge(merged.mapping);

    EXPECT_EQ(printTable(*merged.existing), "table T (a list ('x'));\nrows T:\n('x')\n('y')\n;\n");
}

TEST(MergeTableTest, FieldsThatDifferByCaseOnlyAreToldApart)
{
    Merged merged("table T (Nome text, NOME text); rows T: ('a', 'b')",
        "table T (NOME text, nome text, noME text); rows T: ('c', 'd', 'e')");

    merged.merge.Merge(merged.mapping);

    EXPECT_EQ(merged.mapping, (std::vector<int> { 1, 0, 2 }));
    EXPECT_EQ(printTable(*merged.existing),
        "table T (Nome text, NOME text, noME_1 text);\n"
        "rows T:\n('a', 'b', -)\n('d', 'c', 'e')\n;\n");
}

TEST(MergeTableTest, RenamingRefusesEmptyAndUsedNames)
{
    Merged merged("table Strade (a text); table Case (a text)", "table Strade (a integer)");

    EXPECT_FALSE(merged.merge.RenameTable(""));
    EXPECT_FALSE(merged.merge.RenameTable("CASE"));
    EXPECT_EQ(merged.merge.GetMergeResult(), MergeResult::Undecided);
    EXPECT_TRUE(merged.merge.RenameTable("Strade nuove"));
    EXPECT_EQ(merged.merge.GetMergeResult(), MergeResult::Renamed);
    EXPECT_EQ(merged.merge.GetTableName(), orv::String("Strade nuove"));
    EXPECT_EQ(merged.scratch->GetTableName(merged.incoming), orv::String("Strade nuove"));
    EXPECT_FALSE(merged.library->GetModifiedFlag());
}

TEST(MergeTableTest, OnceDecidedItIsDecided)
{
    Merged renamed("table T (a text)", "table T (a integer); rows T: (1)");
    ASSERT_TRUE(renamed.merge.RenameTable("U"));
    renamed.merge.Merge(renamed.mapping);
    EXPECT_EQ(renamed.merge.GetMergeResult(), MergeResult::Renamed);
    EXPECT_TRUE(renamed.mapping.empty());
    EXPECT_EQ(renamed.library->GetNumRows(renamed.existing), 0);

    Merged merged("table T (a text)", "table T (a text); rows T: ('x')");
    merged.merge.Merge(merged.mapping);
    merged.merge.Merge(merged.mapping);
    EXPECT_FALSE(merged.merge.RenameTable("U"));
    EXPECT_EQ(merged.merge.GetMergeResult(), MergeResult::Merged);
    EXPECT_EQ(merged.library->GetNumRows(merged.existing), 1);
}

TEST(MergeTableTest, NullsAreHarmless)
{
    CMergeTable merge(nullptr, nullptr, nullptr, nullptr);
    std::vector<int> mapping;

    EXPECT_EQ(merge.CompareTable(), ResultCompare::Compatible);
    merge.Merge(mapping);
    merge.SetAddField({ nullptr });

    EXPECT_EQ(merge.GetMergeResult(), MergeResult::Undecided);
    EXPECT_FALSE(merge.RenameTable("x"));
    EXPECT_EQ(merge.GetTableName(), orv::String());
    EXPECT_EQ(merge.GetTableNoFields(), 0);
    EXPECT_EQ(merge.GetDiffTypeField(0), nullptr);
    EXPECT_EQ(merge.GetAddField(0), nullptr);
    EXPECT_TRUE(mapping.empty());
}

} // namespace
