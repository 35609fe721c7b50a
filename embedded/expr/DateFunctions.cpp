// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT

#include "host/expr/Symbols.h"

#include "host/base/Dates.h"

#include <chrono>
#include <cmath>

namespace {

/// An integer, or a double without a fraction, within 32 bits.
bool readInteger(const orv::CPolyValue& value, int& number)
{
    if (value.GetType() == orv::PolyDouble) {
        const double read = value.GetDoubleValue();
        if (!(std::fabs(read) <= 2147483647.0) || std::trunc(read) != read)
            return false;
    } else if (value.GetType() != orv::PolyInt32)
        return false;
    number = value.GetInt32Value();
    return true;
}

bool makeDate(const CEEResult* arguments, CEEResult& result)
{
    for (int index = 0; index < 3; ++index)
        if (arguments[index].GetElem().IsEmpty()) {
            result = CEEResult();
            return true;
        }
    orv::CalendarDay day;
    std::int32_t dayNumber = 0;
    if (!readInteger(arguments[0].GetElem(), day.day)
        || !readInteger(arguments[1].GetElem(), day.month)
        || !readInteger(arguments[2].GetElem(), day.year) || !orv::DayNumber(day, dayNumber))
        return false;
    orv::CPolyValue date;
    date.SetDateValue(orv::LocalMidnightOfDay(dayNumber));
    result.SetElem(std::move(date));
    return true;
}

} // namespace

CEESymbolFunDate::CEESymbolFunDate(int code)
    : m_code(code)
{
}

CEESymbolFunDate::~CEESymbolFunDate() = default;

bool CEESymbolFunDate::Eval(int argumentCount, CEEResult* arguments, CEEResult& result)
{
    if (argumentCount != 1 || !arguments || m_code < EEFunctionYear || m_code > EEFunctionDay)
        return false;
    const orv::CPolyValue& moment = arguments[0].GetElem();
    if (moment.IsEmpty()) {
        result = CEEResult();
        return true;
    }
    std::int32_t dayNumber = 0;
    if (moment.GetType() != orv::PolyDate || !orv::LocalDayNumber(moment.GetDateValue(), dayNumber))
        return false;
    const orv::CalendarDay day = orv::DayFromNumber(dayNumber);
    const int part = m_code == EEFunctionYear ? day.year
        : m_code == EEFunctionMonth           ? day.month
                                              : day.day;
    result.SetElem(orv::CPolyValue(part));
    return true;
}

CEESymbolFunVarious::CEESymbolFunVarious(int code)
    : m_code(code)
{
}

CEESymbolFunVarious::~CEESymbolFunVarious() = default;

bool CEESymbolFunVarious::Eval(int argumentCount, CEEResult* arguments, CEEResult& result)
{
    if (m_code == EEFunctionDate)
        return argumentCount == 3 && arguments && makeDate(arguments, result);
    if (m_code != EEFunctionNow || argumentCount != 0)
        return false;
    using namespace std::chrono;
    orv::CPolyValue now;
    now.SetDateValue(floor<seconds>(system_clock::now()).time_since_epoch().count());
    result.SetElem(std::move(now));
    return true;
}
