// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "kit/DateEdit.h"

#include "kit/Form.h"
#include "kit/Icons.h"

#include "host/base/Dates.h"

#include <QAction>
#include <QCalendarWidget>
#include <QKeyEvent>
#include <QMenu>
#include <QWidgetAction>

namespace kit {

namespace {

QDate dateOf(const QString& text)
{
    std::int64_t midnight = 0;
    std::int32_t dayNumber = 0;
    if (!orv::ParseDateText(text.toStdString(), midnight)
        || !orv::LocalDayNumber(midnight, dayNumber))
        return QDate::currentDate();
    const auto day = orv::DayFromNumber(dayNumber);
    return { day.year, day.month, day.day };
}

} // namespace

CDateEdit::CDateEdit(QWidget* parent)
    : QLineEdit(parent)
{
    addClearButton(*this);
    setPlaceholderText(QStringLiteral("gg/mm/aaaa"));
    QAction* choose = addAction(icon("calendar"), TrailingPosition);
    choose->setToolTip(QStringLiteral("Calendario (F4)"));
    connect(choose, &QAction::triggered, this, &CDateEdit::chooseFromCalendar);
}

void CDateEdit::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_F4)
        chooseFromCalendar();
    else
        QLineEdit::keyPressEvent(event);
}

void CDateEdit::chooseFromCalendar()
{
    // A menu, not a window: as a child pop-up it leaves a cell's editor open.
    QMenu menu(this);
    auto* calendar = new QCalendarWidget(&menu);
    calendar->setLocale(QLocale(QLocale::Italian, QLocale::Italy));
    calendar->setFirstDayOfWeek(Qt::Monday);
    calendar->setSelectedDate(dateOf(text()));
    auto* holder = new QWidgetAction(&menu);
    holder->setDefaultWidget(calendar);
    menu.addAction(holder);
    const auto take = [&](QDate day) {
        setText(QStringLiteral("%1/%2/%3")
                    .arg(day.day(), 2, 10, QLatin1Char('0'))
                    .arg(day.month(), 2, 10, QLatin1Char('0'))
                    .arg(day.year()));
        menu.close();
    };
    connect(calendar, &QCalendarWidget::clicked, &menu, take);
    connect(calendar, &QCalendarWidget::activated, &menu, take);
    calendar->setFocus();
    menu.exec(mapToGlobal(QPoint(0, height())));
}

} // namespace kit
