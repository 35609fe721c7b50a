// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tables/grid/GridFind.h"
#include "tables/grid/GridModel.h"

#include "tests/support/RecordingLibrary.h"

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QSignalSpy>

using support::CRecordingLibrary;
using tables::CGridContents;
using tables::CGridModel;
using tables::FindDirection;
using tables::GridPlace;

namespace {

constexpr const char* Streets
    = "table Strade (Nome text, Corsie integer max 8, Larghezza decimal 2, Area decimal 1 from "
      "area);"
      "rows Strade: ('Via Roma', 2, 3.5, 10), ('Corso Italia', -, 7.25, 20), ('via Po', 4, -, 30)";

/// A model under the fatal tester, so that every test also proves that it keeps the model's rules.
struct Grid {
    CRecordingLibrary library { Streets };
    CGridContents contents { &library, library.GetTable(0) };
    CGridModel model { contents };
    QAbstractItemModelTester tester { &model,
        QAbstractItemModelTester::FailureReportingMode::Fatal };
    explicit Grid(bool hasColumns = true)
    {
        library.offerColumns(hasColumns);
        contents = CGridContents(&library, library.GetTable(0));
        contents.fill();
        model.refill();
    }
    std::string text(int row, int column)
    {
        return model.index(row, column).data().toString().toStdString();
    }
    std::string names() { return text(0, 0) + ", " + text(1, 0) + ", " + text(2, 0); }
    GridPlace find(
        const char* sought, GridPlace from, FindDirection direction = FindDirection::Forward)
    {
        return tables::CGridFinder(model, QString::fromUtf8(sought))
            .find(from, direction, [](double) { return true; });
    }
};

} // namespace

TEST(GridModelTest, ShowsNamesNumbersAndTexts)
{
    Grid grid;

    EXPECT_EQ(grid.model.rowCount(), 3);
    EXPECT_EQ(grid.model.columnCount(), 4);
    EXPECT_EQ(grid.model.headerData(1, Qt::Horizontal, Qt::DisplayRole).toString(),
        QStringLiteral("Corsie"));
    EXPECT_EQ(grid.model.headerData(0, Qt::Vertical, Qt::DisplayRole).toInt(), 1);
    EXPECT_EQ(grid.text(0, 2), "3.50");
    EXPECT_EQ(grid.text(1, 1), "");
    EXPECT_EQ(grid.model.index(0, 0).data(Qt::UserRole).value<void*>(),
        grid.library.GetRow(grid.library.GetTable(0), 0));
}

TEST(GridModelTest, NumbersStandRightAndTextsLeft)
{
    Grid grid;
    const auto alignment = [&](int column) {
        return grid.model.index(0, column).data(Qt::TextAlignmentRole).toInt();
    };

    EXPECT_EQ(alignment(0), int(Qt::AlignLeft | Qt::AlignVCenter));
    EXPECT_EQ(alignment(1), int(Qt::AlignRight | Qt::AlignVCenter));
    EXPECT_EQ(alignment(2), int(Qt::AlignRight | Qt::AlignVCenter));
}

TEST(GridModelTest, ComputedColumnsAndReadOnlyGridsCannotBeEdited)
{
    Grid grid;
    const auto isEditable = [&](int column) {
        return bool(grid.model.flags(grid.model.index(0, column)) & Qt::ItemIsEditable);
    };

    EXPECT_TRUE(isEditable(0));
    EXPECT_FALSE(isEditable(3));
    EXPECT_FALSE(grid.model.setData(grid.model.index(0, 3), QStringLiteral("1"), Qt::EditRole));
    grid.model.setEditable(false);
    EXPECT_FALSE(isEditable(0));
    EXPECT_FALSE(grid.model.setData(grid.model.index(0, 0), QStringLiteral("x"), Qt::EditRole));
}

TEST(GridModelTest, AnEntryIsKeptAndNothingIsWritten)
{
    Grid grid;
    const QSignalSpy changed(&grid.model, &CGridModel::dataChanged);

    EXPECT_TRUE(grid.model.setData(grid.model.index(0, 1), QStringLiteral("07"), Qt::EditRole));

    EXPECT_EQ(grid.text(0, 1), "7");
    EXPECT_EQ(changed.count(), 1);
    EXPECT_TRUE(grid.library.changes().empty());
}

TEST(GridModelTest, AnEntryBeyondTheBoundsIsRefusedAndTheCellReverts)
{
    Grid grid;
    const QSignalSpy refused(&grid.model, &CGridModel::entryRefused);

    EXPECT_FALSE(grid.model.setData(grid.model.index(0, 1), QStringLiteral("9"), Qt::EditRole));

    EXPECT_EQ(refused.count(), 1);
    EXPECT_EQ(grid.text(0, 1), "2");
}

TEST(GridModelTest, SortingChangesWhatIsShownWhereAndNothingElse)
{
    for (const bool hasColumns : { true, false }) {
        Grid grid(hasColumns);
        const QPersistentModelIndex corso = grid.model.index(1, 0);
        grid.model.setData(grid.model.index(2, 1), QStringLiteral("1"), Qt::EditRole);

        grid.model.sort(1, Qt::AscendingOrder);
        EXPECT_EQ(grid.names(), "via Po, Via Roma, Corso Italia");
        EXPECT_EQ(corso.row(), 2);
        grid.model.sort(1, Qt::DescendingOrder);
        EXPECT_EQ(grid.names(), "Via Roma, via Po, Corso Italia");
        grid.model.setData(grid.model.index(2, 0), QStringLiteral("Corso Po"), Qt::EditRole);
        EXPECT_EQ(grid.contents.text(1, 0), orv::String("Corso Po"));
        grid.model.sort(-1, Qt::AscendingOrder);
        EXPECT_EQ(grid.names(), "Via Roma, Corso Po, via Po");
    }
}

TEST(GridModelTest, FillingAnewForgetsOrderAndEntries)
{
    Grid grid;
    grid.model.sort(0, Qt::AscendingOrder);
    grid.model.setData(grid.model.index(0, 0), QStringLiteral("x"), Qt::EditRole);

    grid.contents.fill({ grid.library.GetRow(grid.library.GetTable(0), 2) });
    grid.model.refill();

    EXPECT_EQ(grid.model.rowCount(), 1);
    EXPECT_EQ(grid.text(0, 0), "via Po");
    EXPECT_EQ(grid.model.sortedField(), -1);
}

TEST(GridFindTest, GoesOnCellByCellRoundTheEndWithoutRegardToCase)
{
    for (const bool hasColumns : { true, false }) {
        Grid grid(hasColumns);

        auto place = grid.find("VIA", {});
        EXPECT_EQ(place.viewRow, 0);
        place = grid.find("VIA", place);
        EXPECT_EQ(place.viewRow, 2);
        place = grid.find("VIA", place);
        EXPECT_EQ(place.viewRow, 0);
        place = grid.find("via", place, FindDirection::Backward);
        EXPECT_EQ(place.viewRow, 2);
        EXPECT_FALSE(grid.find("Milano", {}).isFound());
        EXPECT_FALSE(grid.find("", {}).isFound());
    }
}

TEST(GridFindTest, FindsWhatCellsShowInNumbersAndEditedTexts)
{
    for (const bool hasColumns : { true, false }) {
        Grid grid(hasColumns);
        grid.model.setData(grid.model.index(1, 0), QStringLiteral("Piazza Dante"), Qt::EditRole);

        EXPECT_EQ(grid.find("7.25", {}).field, 2);
        EXPECT_EQ(grid.find("dante", {}).viewRow, 1);
        EXPECT_FALSE(grid.find("Italia", {}).isFound());
        EXPECT_EQ(grid.find(".0", {}).field, 3);
    }
}

TEST(GridFindTest, FollowsTheOrderOfTheView)
{
    Grid grid;
    grid.model.sort(2, Qt::DescendingOrder); // Corso Italia, Via Roma, via Po

    EXPECT_EQ(grid.find("i", {}).viewRow, 0);
    EXPECT_EQ(grid.find("via", {}).viewRow, 1);
}

TEST(GridFindTest, CanBeStopped)
{
    Grid grid;
    tables::CGridFinder finder(grid.model, QStringLiteral("Milano"));

    EXPECT_FALSE(finder.find({}, FindDirection::Forward, [](double) { return false; }).isFound());
    EXPECT_TRUE(finder.wasStopped());
}
