// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "kit/DateEdit.h"

#include "kit/Icons.h"
#include "tests/support/ui/CalendarDriver.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QTest>
#include <QToolButton>

namespace {

class DateEditTest : public testing::Test {
protected:
    DateEditTest()
    {
        edit.resize(160, 30);
        edit.show();
        edit.activateWindow();
        edit.setFocus();
        QApplication::processEvents();
    }
    kit::CDateEdit edit;
};

TEST_F(DateEditTest, F4OpensACalendarOnTheDateAndTakesTheChosenDay)
{
    edit.setText(QStringLiteral("05/03/2016"));
    QDate shown;
    ASSERT_TRUE(ui::withCalendar(edit, [&](QCalendarWidget& calendar) {
        shown = calendar.selectedDate();
        Q_EMIT calendar.clicked(QDate(2016, 3, 31));
    }));
    EXPECT_EQ(shown, QDate(2016, 3, 5));
    EXPECT_EQ(edit.text(), QStringLiteral("31/03/2016"));
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
}

TEST_F(DateEditTest, LeavingTheCalendarLeavesTheDate)
{
    edit.setText(QStringLiteral("05/03/2016"));
    ASSERT_TRUE(ui::withCalendar(edit, [](QCalendarWidget&) {}));
    EXPECT_EQ(edit.text(), QStringLiteral("05/03/2016"));
}

TEST_F(DateEditTest, AWrongTextOpensTheCalendarOnTodayAndStays)
{
    edit.setText(QStringLiteral("31/02/2020"));
    QDate shown;
    ASSERT_TRUE(ui::withCalendar(
        edit, [&](QCalendarWidget& calendar) { shown = calendar.selectedDate(); }));
    EXPECT_EQ(shown, QDate::currentDate());
    EXPECT_EQ(edit.text(), QStringLiteral("31/02/2020"));
}

TEST_F(DateEditTest, TheCrossIsDrawnLikeTheCalendarAndClearsIt)
{
    edit.setText(QStringLiteral("05/03/2016"));
    QToolButton* cross = nullptr;
    for (QToolButton* button : edit.findChildren<QToolButton*>())
        if (button->toolTip().isEmpty() || !button->toolTip().startsWith(QLatin1String("Calend")))
            cross = button;
    ASSERT_NE(cross, nullptr);
    const QSize size(16, 16);
    for (const double ratio : { 1.0, 1.5, 2.0 }) // a drawing, sharp with any number of pixels
        EXPECT_EQ(cross->icon().pixmap(size, ratio).toImage(),
            kit::icon("clear").pixmap(size, ratio).toImage())
            << ratio;
    EXPECT_FALSE(kit::icon("clear").isNull());
    QTest::mouseClick(cross, Qt::LeftButton);
    EXPECT_EQ(edit.text(), QString());
}

} // namespace
