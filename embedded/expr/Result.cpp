// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT

#include "host/expr/Result.h"

#include <utility>

CEEResult::CEEResult() = default;
CEEResult::CEEResult(const CEEResult& other) = default;
CEEResult::CEEResult(CEEResult&& other) noexcept = default;
CEEResult::~CEEResult() = default;
CEEResult& CEEResult::operator=(const CEEResult& other) = default;
CEEResult& CEEResult::operator=(CEEResult&& other) noexcept = default;

CEEResult::CEEResult(bool value)
    : m_element(value)
{
}

bool CEEResult::GetElemBool() const
{
    return m_element.GetBoolValue();
}

void CEEResult::SetElemBool(bool value)
{
    m_element = value;
}

orv::String CEEResult::GetElemString() const
{
    return m_element.GetStringValue();
}

void CEEResult::SetElem(const orv::CPolyValue& value)
{
    m_element = value;
}

void CEEResult::SetElem(orv::CPolyValue&& value) noexcept
{
    m_element = std::move(value);
}
