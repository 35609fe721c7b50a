// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "query/nodes/ExpressionFieldIsNull.h"

CExpressionFieldIsNull::CExpressionFieldIsNull(const orv::String& field, bool isNull)
    : CEEExpressionVar(field)
    , m_isNull(isNull)
{
}

CExpressionFieldIsNull::~CExpressionFieldIsNull() = default;

bool CExpressionFieldIsNull::Eval(CEESymbolProvider* provider, CEEResult& result)
{
    if (!CEEExpressionVar::Eval(provider, result))
        return false;
    const bool isEmpty = result.GetElemType() == orv::PolyEmpty;
    result = CEEResult(isEmpty == m_isNull);
    return true;
}

CEEExpression* CExpressionFieldIsNull::Clone()
{
    return new CExpressionFieldIsNull(GetVarName(), m_isNull);
}
