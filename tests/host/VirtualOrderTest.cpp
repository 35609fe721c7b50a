// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "host/expr/Expression.h"
#include "host/expr/Symbols.h"
#include "host/gis/Columns.h"
#include "host/gis/Exchange.h"
#include "host/gis/Feedback.h"
#include "host/gis/LibGis.h"
#include "host/gis/Merge.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <vector>

// Hosts are compiled apart from the library: where a virtual operation stands in its class's table
// is part of the interface. Source of the layout: Itanium C++ ABI, 2.3 (a pointer to a virtual
// member function holds 1 plus its offset in the table).

namespace {

template <typename Function> int slotOf(Function function)
{
    std::ptrdiff_t offset = 0;
    std::memcpy(&offset, &function, sizeof offset);
    EXPECT_EQ(offset % static_cast<std::ptrdiff_t>(sizeof(void*)), 1) << "not virtual";
    return static_cast<int>(offset / static_cast<std::ptrdiff_t>(sizeof(void*)));
}

using Slots = std::vector<int>;

TEST(VirtualOrderTest, ExpressionsStartWithTheirDestructor)
{
    using acceptConst = void (CEEExpression::*)(CEEExpressionConstVisitor&) const;
    using accept = void (CEEExpression::*)(CEEExpressionVisitor&);
    EXPECT_EQ(
        (Slots { slotOf(&CEEExpression::GetType), slotOf(&CEEExpression::Eval),
            slotOf(&CEEExpression::ToString), slotOf(&CEEExpression::IsConst),
            slotOf(static_cast<acceptConst>(&CEEExpression::Accept)),
            slotOf(static_cast<accept>(&CEEExpression::Accept)), slotOf(&CEEExpression::Clone) }),
        (Slots { 2, 3, 4, 5, 6, 7, 8 })); // a destructor takes two places
}

TEST(VirtualOrderTest, ASymbolIsTheFirstThingThatAProviderIsAskedFor)
{
    EXPECT_EQ(slotOf(&CEESymbolProvider::GetSymbol), 0);
}

TEST(VirtualOrderTest, TheMergerIsCalledInTheOrderOfAnImport)
{
    using gis::IGisMerger;
    EXPECT_EQ(
        (Slots { slotOf(&IGisMerger::OnBeforeLoadTable), slotOf(&IGisMerger::OnAfterLoadTable),
            slotOf(&IGisMerger::GetTable), slotOf(&IGisMerger::OnLoadTheme) }),
        (Slots { 0, 1, 2, 3 }));
}

TEST(VirtualOrderTest, TheOverwriteQuestionIsTheOnlyOperation)
{
    EXPECT_EQ(slotOf(&IExportFileCallback::AskOverwrite), 0);
    EXPECT_EQ(sizeof(IExportFileCallback), sizeof(void*));
}

TEST(VirtualOrderTest, ExtensionIsTheLibrarysLastOperation)
{
    using gis::CLibGis;
    const int last = slotOf(&CLibGis::Extension);
    for (const int other : { slotOf(&CLibGis::GetNumTables), slotOf(&CLibGis::GetEntVert),
             slotOf(&CLibGis::IsDefaultFeatureClass), slotOf(&CLibGis::SetRowValue),
             slotOf(&CLibGis::SetModifiedFlag), slotOf(&CLibGis::SetThemeOpzLabel) })
        EXPECT_LT(other, last);
}

} // namespace
