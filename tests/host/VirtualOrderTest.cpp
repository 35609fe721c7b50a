// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "host/base/ChangeManager.h"
#include "host/base/LibGen.h"
#include "host/cad/DravoEng.h"
#include "host/cad/Symbols.h"
#include "host/expr/Expression.h"
#include "host/expr/Symbols.h"
#include "host/gis/Columns.h"
#include "host/gis/Exchange.h"
#include "host/gis/Feedback.h"
#include "host/gis/LibGis.h"
#include "host/gis/Merge.h"
#include "host/gis/Readings.h"
#include "host/gis/TableEdit.h"
#include "host/gis/ThemeMapEdit.h"
#include "tematica/GisMerger.h"
#include "tematica/QueryExecute.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <numeric>
#include <vector>

// Hosts are compiled apart from the library: where a virtual operation stands in its class's table
// is part of the interface. Each class is listed whole, in its order: one that is moved, put in
// between, taken away or appended is seen. Source of the layout: Itanium C++ ABI, 2.3 (a pointer to
// a virtual member function holds 1 plus its offset in the table).

namespace {

template <typename Function> int slotOf(Function function)
{
    std::ptrdiff_t offset = 0;
    std::memcpy(&offset, &function, sizeof offset);
    EXPECT_EQ(offset % static_cast<std::ptrdiff_t>(sizeof(void*)), 1) << "not virtual";
    return static_cast<int>(offset / static_cast<std::ptrdiff_t>(sizeof(void*)));
}

using Slots = std::vector<int>;

/// A class that goes on where another ends: its own operation stands in the first free place.
template <typename Class> class Next : public Class {
public:
    virtual void first() { }

protected:
    ~Next() = default;
};
template <typename Class> int sizeOfTable()
{
    return slotOf(&Next<Class>::first);
}

/// The places from `first` up to the end of the class's table.
template <typename Class> Slots allFrom(int first)
{
    Slots slots(static_cast<std::size_t>(sizeOfTable<Class>() - first));
    std::iota(slots.begin(), slots.end(), first);
    return slots;
}

constexpr int AfterDestructor = 2; // a destructor takes two places

TEST(VirtualOrderTest, ExpressionsStartWithTheirDestructor)
{
    using acceptConst = void (CEEExpression::*)(CEEExpressionConstVisitor&) const;
    using accept = void (CEEExpression::*)(CEEExpressionVisitor&);
    EXPECT_EQ(
        (Slots { slotOf(&CEEExpression::GetType), slotOf(&CEEExpression::Eval),
            slotOf(&CEEExpression::ToString), slotOf(&CEEExpression::IsConst),
            slotOf(static_cast<acceptConst>(&CEEExpression::Accept)),
            slotOf(static_cast<accept>(&CEEExpression::Accept)), slotOf(&CEEExpression::Clone) }),
        allFrom<CEEExpression>(AfterDestructor));
    EXPECT_EQ(sizeOfTable<CEEExpression>(), 9);
}

TEST(VirtualOrderTest, NodesOfExpressionsAddNoOperation)
{
    EXPECT_EQ(sizeOfTable<CEEExpressionConst>(), 9);
    EXPECT_EQ(sizeOfTable<CEEExpressionVar>(), 9);
    EXPECT_EQ(sizeOfTable<CEEExpressionUnOp>(), 9);
    EXPECT_EQ(sizeOfTable<CEEExpressionBinOp>(), 9);
    EXPECT_EQ(sizeOfTable<CEEExpressionFun>(), 9);
}

template <typename Visitor> void expectOrderOfVisitor()
{
    EXPECT_EQ((Slots { slotOf(&Visitor::Visit), slotOf(&Visitor::VisitConst),
                  slotOf(&Visitor::VisitVar), slotOf(&Visitor::VisitUnOp),
                  slotOf(&Visitor::VisitBinOp), slotOf(&Visitor::VisitFun) }),
        allFrom<Visitor>(0));
    EXPECT_EQ(sizeOfTable<Visitor>(), 6);
}

TEST(VirtualOrderTest, VisitorsAreAskedForAnyNodeFirst)
{
    expectOrderOfVisitor<CEEExpressionConstVisitor>();
    expectOrderOfVisitor<CEEExpressionVisitor>();
}

TEST(VirtualOrderTest, ASymbolIsEvaluatedAndSaysWhetherItIsAFunction)
{
    EXPECT_EQ((Slots { slotOf(&CEESymbol::Eval), slotOf(&CEESymbol::IsFunction) }),
        allFrom<CEESymbol>(AfterDestructor));
    EXPECT_EQ(sizeOfTable<CEESymbol>(), 4);
}

TEST(VirtualOrderTest, ASymbolIsTheFirstThingThatAProviderIsAskedFor)
{
    EXPECT_EQ(
        (Slots { slotOf(&CEESymbolProvider::GetSymbol), slotOf(&CEESymbolProvider::GetFunction) }),
        allFrom<CEESymbolProvider>(0));
    EXPECT_EQ(sizeOfTable<CEESymbolProvider>(), 2);
    EXPECT_EQ((Slots { slotOf(&CEESymbolTable::GetSymbol), slotOf(&CEESymbolTable::GetFunction) }),
        (Slots { 0, 1 }));
    EXPECT_EQ(sizeOfTable<CEESymbolTable>(), 4) << "and its destructor";
}

TEST(VirtualOrderTest, TheMergerIsCalledInTheOrderOfAnImport)
{
    using gis::IGisMerger;
    EXPECT_EQ(
        (Slots { slotOf(&IGisMerger::OnBeforeLoadTable), slotOf(&IGisMerger::OnAfterLoadTable),
            slotOf(&IGisMerger::GetTable), slotOf(&IGisMerger::OnLoadTheme) }),
        (Slots { 0, 1, 2, 3 }));
    EXPECT_EQ(sizeOfTable<IGisMerger>(), 6) << "its destructor is the last";
}

TEST(VirtualOrderTest, TheClassesThatHostsDriveHaveNoOperationsOfTheirOwn)
{
    using gis::CGisMerger;
    EXPECT_EQ(
        (Slots { slotOf(&CGisMerger::OnBeforeLoadTable), slotOf(&CGisMerger::OnAfterLoadTable),
            slotOf(&CGisMerger::GetTable), slotOf(&CGisMerger::OnLoadTheme) }),
        (Slots { 0, 1, 2, 3 }));
    EXPECT_EQ(sizeOfTable<CGisMerger>(), sizeOfTable<gis::IGisMerger>());
    EXPECT_EQ(sizeOfTable<CQueryExecute>(), AfterDestructor);
}

TEST(VirtualOrderTest, TheOverwriteQuestionIsTheOnlyOperation)
{
    EXPECT_EQ(slotOf(&IExportFileCallback::AskOverwrite), 0);
    EXPECT_EQ(sizeOfTable<IExportFileCallback>(), 1);
    EXPECT_EQ(sizeof(IExportFileCallback), sizeof(void*));
}

TEST(VirtualOrderTest, TheLinkOfImportedEntitiesHasOneOperation)
{
    using gis::ILinkImportedEnt;
    EXPECT_EQ(Slots { slotOf(&ILinkImportedEnt::OnEntImported) },
        allFrom<ILinkImportedEnt>(AfterDestructor));
    EXPECT_EQ(sizeOfTable<ILinkImportedEnt>(), 3);
}

TEST(VirtualOrderTest, AChangeIsUndoneThenRedone)
{
    using orv::IChange;
    EXPECT_EQ((Slots { slotOf(&IChange::Undo), slotOf(&IChange::Redo) }),
        allFrom<IChange>(AfterDestructor));
    EXPECT_EQ(sizeOfTable<IChange>(), 4);
}

TEST(VirtualOrderTest, ControllersHaveOnlyTheirDestructor)
{
    EXPECT_EQ(sizeOfTable<gis::CCtrlDlgTableEdit>(), AfterDestructor);
    EXPECT_EQ(sizeOfTable<gis::CCtrlThemeMapEdit>(), AfterDestructor);
}

TEST(VirtualOrderTest, ALibraryOfAnyKindHasItsMark)
{
    EXPECT_EQ((Slots { slotOf(&CLibGen::SetModifiedFlag), slotOf(&CLibGen::GetModifiedFlag) }),
        allFrom<CLibGen>(AfterDestructor));
    EXPECT_EQ(sizeOfTable<CLibGen>(), 4);
}

template <typename Result, typename... Arguments>
using Operation = Result (gis::CLibGis::*)(Arguments...);

TEST(VirtualOrderTest, TheLibraryHasItsOperationsInTheirOrderAndExtensionLast)
{
    using namespace gis;
    const Slots slots {
        // Tables
        slotOf(&CLibGis::GetNumTables),
        slotOf(static_cast<Operation<CDBTable*, int>>(&CLibGis::GetTable)),
        slotOf(static_cast<Operation<CDBTable*, CTheme*>>(&CLibGis::GetTable)),
        slotOf(&CLibGis::FindTable),
        slotOf(&CLibGis::CreateTable),
        slotOf(&CLibGis::CreateTableAsCopyOf),
        slotOf(&CLibGis::DeleteTable),
        slotOf(&CLibGis::IsTableUsedByThemes),
        slotOf(&CLibGis::GetTableName),
        slotOf(&CLibGis::SetTableName),
        // Fields
        slotOf(&CLibGis::GetNumFields),
        slotOf(&CLibGis::GetField),
        slotOf(&CLibGis::GetFieldName),
        slotOf(&CLibGis::GetFieldFormat),
        slotOf(&CLibGis::IsFieldPredefined),
        slotOf(&CLibGis::IsFieldRequested),
        slotOf(&CLibGis::GetFieldConstraints),
        slotOf(&CLibGis::GetListElement),
        // Rows
        slotOf(&CLibGis::GetNumRows),
        slotOf(static_cast<Operation<orv::CResultRow*, CDBTable*, int>>(&CLibGis::GetRow)),
        slotOf(static_cast<Operation<orv::CResultRow*, CEnt*>>(&CLibGis::GetRow)),
        slotOf(&CLibGis::GetRowValue),
        slotOf(&CLibGis::SetRowValue),
        slotOf(&CLibGis::InitializeWithDefVal),
        slotOf(&CLibGis::RecalcAllPredefValues),
        // Themes
        slotOf(&CLibGis::GetNumThemes),
        slotOf(static_cast<Operation<CTheme*, int>>(&CLibGis::GetTheme)),
        slotOf(&CLibGis::FindTheme),
        slotOf(&CLibGis::CreateTheme),
        slotOf(&CLibGis::DeleteTheme),
        slotOf(&CLibGis::GetThemeName),
        slotOf(&CLibGis::SetThemeName),
        slotOf(&CLibGis::GetEntCoords),
        slotOf(&CLibGis::GetThemeActive),
        slotOf(&CLibGis::SetThemeActive),
        slotOf(&CLibGis::IsThemeActive),
        slotOf(&CLibGis::GetThemeVisible),
        slotOf(&CLibGis::SetThemeVisible),
        slotOf(&CLibGis::GetThemeLocked),
        slotOf(&CLibGis::SetThemeLocked),
        slotOf(&CLibGis::GetTargetDrawing),
        slotOf(&CLibGis::GetThemeTargetDrawing),
        slotOf(&CLibGis::SetThemeTargetDrawing),
        slotOf(&CLibGis::GetThemeOpzLabel),
        slotOf(&CLibGis::SetThemeOpzLabel),
        slotOf(&CLibGis::ThemeIsChange),
        // Entities
        slotOf(&CLibGis::GetNoEnts),
        slotOf(static_cast<Operation<CEnt*, CTheme*, int>>(&CLibGis::GetEnt)),
        slotOf(static_cast<Operation<CEnt*, orv::CResultRow*>>(&CLibGis::GetEnt)),
        slotOf(&CLibGis::GetEntPart),
        slotOf(&CLibGis::GetEntVert),
        // Classes of a thematic map
        slotOf(&CLibGis::IsDefaultFeatureClass),
        slotOf(&CLibGis::Extension),
    };
    const int first = sizeOfTable<CLibGen>();
    EXPECT_EQ(slots, allFrom<CLibGis>(first));
    EXPECT_EQ(sizeOfTable<CLibGis>(), 57) << "nothing is appended: Extension stays the last";
}

TEST(VirtualOrderTest, TheEngineHasItsOperationsInTheirOrder)
{
    EXPECT_EQ(
        Slots { slotOf(&ORVNotifySource::Notify) }, allFrom<ORVNotifySource>(AfterDestructor));
    EXPECT_EQ(slotOf(&CDravoEng::Notify), slotOf(&ORVNotifySource::Notify));
    const Slots slots {
        slotOf(&CDravoEng::CenterViewAt),
        slotOf(&CDravoEng::StopExecuteCommand),
        slotOf(&CDravoEng::GetAllDrawingsNamesForType),
        slotOf(&CDravoEng::GetDrawingName),
        slotOf(&CDravoEng::GetDrawingFromName),
        slotOf(&CDravoEng::AddDrawing),
        slotOf(&CDravoEng::DlgInsertNewDrawingName),
        slotOf(&CDravoEng::GetNoStyles),
        slotOf(&CDravoEng::GetStyle),
        slotOf(&CDravoEng::GetStyleName),
        slotOf(&CDravoEng::RadiansToUnits),
        slotOf(&CDravoEng::UnitsToRadians),
        slotOf(&CDravoEng::GetColorRef),
        slotOf(&CDravoEng::DlgColorChoice),
        slotOf(&CDravoEng::ShowDlgSelHatchType),
        slotOf(&CDravoEng::GetNuTotLineType),
        slotOf(&CDravoEng::GetLineType),
    };
    EXPECT_EQ(slots, allFrom<CDravoEng>(sizeOfTable<ORVNotifySource>()));
    EXPECT_EQ(sizeOfTable<CDravoEng>(), 20);
}

TEST(VirtualOrderTest, SymbolsOfTheDrawingHaveOneOperationEach)
{
    EXPECT_EQ(Slots { slotOf(&CSymbol::GetBitmap) }, allFrom<CSymbol>(AfterDestructor));
    EXPECT_EQ(Slots { slotOf(&CDocSymbolManager::GetSymbol) },
        allFrom<CDocSymbolManager>(AfterDestructor));
    EXPECT_EQ(sizeOfTable<CSymbol>(), 3);
    EXPECT_EQ(sizeOfTable<CDocSymbolManager>(), 3);
}

TEST(VirtualOrderTest, ExtensionsOfTheLibraryHaveTheirOperationsInTheirOrder)
{
    using namespace gis;
    EXPECT_EQ((Slots { slotOf(&IColumns::GetColumn), slotOf(&IColumns::GetEntityRuns) }),
        allFrom<IColumns>(0));
    EXPECT_EQ((Slots { slotOf(&IFeedback::ShowFound), slotOf(&IFeedback::ShowRow),
                  slotOf(&IFeedback::GetSelected) }),
        allFrom<IFeedback>(0));
    EXPECT_EQ((Slots { slotOf(&IReadings::IsReadable), slotOf(&IReadings::Read) }),
        allFrom<IReadings>(0));
    EXPECT_EQ(Slots { slotOf(&IReadingStop::IsStopped) }, allFrom<IReadingStop>(0));
    EXPECT_EQ(sizeOfTable<IColumns>(), 2);
    EXPECT_EQ(sizeOfTable<IFeedback>(), 3);
    EXPECT_EQ(sizeOfTable<IReadings>(), 2);
    EXPECT_EQ(sizeOfTable<IReadingStop>(), 1);
}

} // namespace
