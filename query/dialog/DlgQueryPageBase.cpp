// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "query/dialog/DlgQueryPageBase.h"

#include "query/dialog/DlgQuerySheet.h"

CDlgQueryPageBase::CDlgQueryPageBase(CDlgQuerySheet& sheet)
    : m_sheet(sheet)
{
}

void CDlgQueryPageBase::OnSetActive() { }
