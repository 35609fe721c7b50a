// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tables/list/CtrlDlgTableList.h"

#include "tests/support/RecordingLibrary.h"

#include <gtest/gtest.h>

using tables::CCtrlDlgTableList;

namespace {

class CtrlDlgTableListTest : public testing::Test {
protected:
    CtrlDlgTableListTest() { list.setLibrary(&library); }
    std::string names()
    {
        std::string all;
        for (const auto& row : list.rows())
            all += (all.empty() ? "" : " ") + row.name.Bytes();
        return all;
    }
    gis::CDBTable* table(const char* name) { return library.FindTable(name); }

    support::CRecordingLibrary library { "table Zeta (a text); table alfa (a text); "
                                         "table Beta (n integer); theme P: points 2d on Beta" };
    CCtrlDlgTableList list;
};

TEST_F(CtrlDlgTableListTest, RowsAscendWithTheirHandles)
{
    EXPECT_EQ(names(), "alfa Beta Zeta");
    EXPECT_EQ(list.rows()[1].table, table("Beta"));
    list.setLibrary(nullptr);
    EXPECT_TRUE(list.rows().empty());
}

TEST_F(CtrlDlgTableListTest, RefusalsChangeNothing)
{
    library.clearCalls();
    const auto used = list.rename(table("alfa"), "ZETA");
    ASSERT_TRUE(used.has_value());
    EXPECT_EQ(used->text, texts::TableNameUsed);
    const auto missing = list.rename(table("alfa"), "");
    ASSERT_TRUE(missing.has_value());
    EXPECT_EQ(missing->text, texts::TableNameMissing);
    const auto inUse = list.remove(table("Beta"));
    ASSERT_TRUE(inUse.has_value());
    EXPECT_EQ(inUse->text, texts::TableInUse);
    EXPECT_TRUE(library.changes().empty());
}

TEST_F(CtrlDlgTableListTest, WhatIsDoneMarksTheLibrary)
{
    library.SetModifiedFlag(false);
    EXPECT_FALSE(list.rename(table("alfa"), "Alfa").has_value());
    EXPECT_TRUE(library.GetModifiedFlag());
    library.SetModifiedFlag(false);
    EXPECT_FALSE(list.rename(table("Alfa"), "Alfa").has_value()) << "the same name again";
    EXPECT_TRUE(library.GetModifiedFlag());
    library.SetModifiedFlag(false);
    list.create("Gamma");
    EXPECT_TRUE(library.GetModifiedFlag());
    library.SetModifiedFlag(false);
    EXPECT_FALSE(list.remove(table("Zeta")).has_value());
    EXPECT_TRUE(library.GetModifiedFlag());
    EXPECT_EQ(names(), "Alfa Beta Gamma");
}

TEST_F(CtrlDlgTableListTest, DeletingIsAskedWithYesAndNo)
{
    const auto question = CCtrlDlgTableList::deleteQuestion();
    EXPECT_EQ(question.text, texts::DeleteTable);
    EXPECT_EQ(question.buttons, kit::BoxButtons::YesNo);
}

} // namespace
