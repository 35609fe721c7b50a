// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT

#include "host/base/LibGen.h"

CLibGen::~CLibGen() = default;

void CLibGen::SetModifiedFlag(bool modified)
{
    m_modified = modified;
}

bool CLibGen::GetModifiedFlag() const
{
    return m_modified;
}

ORVNotifySource::~ORVNotifySource() = default;

void ORVNotifySource::Notify(int /*code*/, int /*value*/, void* /*data*/) { }
