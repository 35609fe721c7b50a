// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "kit/HandleListModel.h"
#include "kit/ItemLists.h"

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QComboBox>
#include <QSignalSpy>

TEST(ItemListsTest, FillingSelectsWhatWasAskedAndTellsNobody)
{
    QComboBox combo;
    const QSignalSpy spy(&combo, &QComboBox::currentIndexChanged);

    kit::fillCombo(combo, { { QStringLiteral("a") }, { QStringLiteral("b") } }, -1);
    EXPECT_EQ(combo.currentIndex(), -1);
    kit::fillCombo(combo, { { QStringLiteral("a") }, { QStringLiteral("b") } }, 1);

    EXPECT_EQ(combo.currentIndex(), 1);
    EXPECT_EQ(spy.count(), 0);
}

TEST(ItemListsTest, RowsOfOneTextKeepTheirOwnHandles)
{
    int first = 0;
    int second = 0;
    QComboBox combo;

    kit::fillCombo(
        combo, { { QStringLiteral("Strade"), &first }, { QStringLiteral("Strade"), &second } }, 0);

    EXPECT_EQ(kit::handleAt(combo, 0), &first);
    EXPECT_EQ(kit::handleAt(combo, 1), &second);
    EXPECT_EQ(kit::handleAt(combo, -1), nullptr);
}

TEST(HandleListModelTest, GivesTextsAndHandles)
{
    int thing = 0;
    kit::CHandleListModel model;
    const QAbstractItemModelTester tester(
        &model, QAbstractItemModelTester::FailureReportingMode::Fatal);

    model.setItems({ { QStringLiteral("%1 & <b>") }, { QStringLiteral("due"), &thing } });

    EXPECT_EQ(model.index(0).data().toString(), QStringLiteral("%1 & <b>"));
    EXPECT_EQ(kit::handleOf(model.index(1)), &thing);
    EXPECT_EQ(model.rowOf(&thing), 1);
    EXPECT_EQ(model.rowOf(&model), -1);
}
