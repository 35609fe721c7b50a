// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "host/expr/Symbols.h"

#include "host/base/Dates.h"
#include "host/base/Numbers.h"

#include <cmath>
#include <ctime>
#include <unordered_map>
#include <vector>

CEESymbol::~CEESymbol() = default;
CEESymbolProvider::~CEESymbolProvider() = default;

namespace {

/// Names of one kind: exact first, then ASCII case ignored; the first symbol of a name is the one
/// found.
class NameMap final {
public:
    void add(const orv::String& name, CEESymbol* symbol)
    {
        m_exact.try_emplace(name.Bytes(), symbol);
        m_folded.try_emplace(orv::FoldAsciiCase(name.View()), symbol);
    }
    [[nodiscard]] CEESymbol* find(const std::string& name) const
    {
        if (const auto exact = m_exact.find(name); exact != m_exact.end())
            return exact->second;
        const auto folded = m_folded.find(orv::FoldAsciiCase(name));
        return folded != m_folded.end() ? folded->second : nullptr;
    }

private:
    std::unordered_map<std::string, CEESymbol*> m_exact;
    std::unordered_map<std::string, CEESymbol*> m_folded;
};

/// A whole number within 32 bits, given as an integer or as a double with an integral value.
bool wholeNumber(const orv::CPolyValue& value, int& number)
{
    if (value.GetType() == orv::PolyInt32) {
        number = value.GetInt32Value();
        return true;
    }
    if (value.GetType() != orv::PolyDouble)
        return false;
    const double decimal = value.GetDoubleValue();
    if (decimal != std::floor(decimal) || std::abs(decimal) > 2147483647.0)
        return false;
    number = static_cast<int>(decimal);
    return true;
}

bool dateOf(int argumentCount, const CEEResult* arguments, CEEResult& result)
{
    if (argumentCount != 3)
        return false;
    // An argument without a value leaves the date open; the kinds of the others are then not looked
    // at.
    for (int i = 0; i < 3; ++i)
        if (arguments[i].GetElemType() == orv::PolyEmpty) {
            result = CEEResult();
            return true;
        }
    orv::CalendarDay day;
    std::int32_t number = 0;
    if (!wholeNumber(arguments[0].GetElem(), day.day)
        || !wholeNumber(arguments[1].GetElem(), day.month)
        || !wholeNumber(arguments[2].GetElem(), day.year) || !orv::DayNumber(day, number))
        return false;
    orv::CPolyValue date;
    date.SetDateValue(orv::LocalMidnightOfDay(number));
    result.SetElem(std::move(date));
    return true;
}

} // namespace

class CEESymbolTable::Impl final {
public:
    std::vector<std::unique_ptr<CEESymbol>> symbols;
    NameMap variables;
    NameMap functions;
};

CEESymbolTable::CEESymbolTable()
    : m_impl(std::make_unique<Impl>())
{
}
CEESymbolTable::~CEESymbolTable() = default;

void CEESymbolTable::AddSymbol(orv::String name, CEESymbol* symbol)
{
    if (!symbol)
        return;
    m_impl->symbols.emplace_back(symbol);
    (symbol->IsFunction() ? m_impl->functions : m_impl->variables).add(name, symbol);
}

CEESymbol* CEESymbolTable::GetSymbol(orv::String& name)
{
    CEESymbol* variable = m_impl->variables.find(name.Bytes());
    return variable ? variable : m_impl->functions.find(name.Bytes());
}

CEESymbol* CEESymbolTable::GetFunction(orv::String& name)
{
    return m_impl->functions.find(name.Bytes());
}

CEESymbolConstVar::CEESymbolConstVar() = default;
CEESymbolConstVar::~CEESymbolConstVar() = default;

void CEESymbolConstVar::SetElemValue(const orv::CPolyValue& value)
{
    m_value = value;
}

bool CEESymbolConstVar::Eval(int argumentCount, CEEResult*, CEEResult& result)
{
    if (argumentCount != 0)
        return false;
    result.SetElem(m_value);
    return true;
}

CEESymbolFunDate::CEESymbolFunDate(int code)
    : m_code(code)
{
}
CEESymbolFunDate::~CEESymbolFunDate() = default;

bool CEESymbolFunDate::Eval(int argumentCount, CEEResult* arguments, CEEResult& result)
{
    if (argumentCount != 1 || !arguments)
        return false;
    if (arguments[0].GetElemType() == orv::PolyEmpty) {
        result = CEEResult();
        return true;
    }
    std::int32_t number = 0;
    if (arguments[0].GetElemType() != orv::PolyDate
        || !orv::LocalDayNumber(arguments[0].GetElem().GetDateValue(), number))
        return false;
    const orv::CalendarDay day = orv::DayFromNumber(number);
    switch (m_code) {
    case EEFunctionYear:
        result.SetElem(orv::CPolyValue(day.year));
        return true;
    case EEFunctionMonth:
        result.SetElem(orv::CPolyValue(day.month));
        return true;
    case EEFunctionDay:
        result.SetElem(orv::CPolyValue(day.day));
        return true;
    default:
        return false;
    }
}

CEESymbolFunVarious::CEESymbolFunVarious(int code)
    : m_code(code)
{
}
CEESymbolFunVarious::~CEESymbolFunVarious() = default;

bool CEESymbolFunVarious::Eval(int argumentCount, CEEResult* arguments, CEEResult& result)
{
    if (m_code == EEFunctionDate)
        return dateOf(argumentCount, arguments, result);
    if (m_code != EEFunctionNow || argumentCount != 0)
        return false;
    orv::CPolyValue now;
    now.SetDateValue(std::time(nullptr));
    result.SetElem(std::move(now));
    return true;
}
