// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "query/dialog/DlgQueryPage2.h"

#include "query/dialog/DlgQuerySheet.h"
#include "tables/grid/CtrlShowTable.h"

#include "kit/Form.h"

#include <QVBoxLayout>

CDlgQueryPage2::CDlgQueryPage2(CDlgQuerySheet& sheet)
    : CDlgQueryPageBase(sheet)
{
    kit::preparePage(*this, "CDlgQueryPage2");
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
}

CDlgQueryPage2::~CDlgQueryPage2() = default;

void CDlgQueryPage2::OnSetActive()
{
    if (!m_grid) {
        gis::CLibGis* library = sheet().Library();
        m_grid = std::make_unique<CCtrlShowTable>(
            sheet().Engine(), sheet().Drawing(), library, sheet().Table(), this);
        m_gridTable = sheet().Table();
        m_grid->SetEditable(false);
        const bool areColumnsRead = m_readTable == sheet().Table();
        m_grid->FillEntities(sheet().Found(), areColumnsRead);
        m_readTable = m_grid->reading() == kit::WorkEnd::Done ? sheet().Table() : nullptr;
        layout()->addWidget(m_grid.get());
        if (m_widthsOf == sheet().Table())
            m_grid->setColumnWidths(m_widths);
        m_grid->show();
    }
    CDlgQueryPageBase::OnSetActive();
}

void CDlgQueryPage2::DropGrid()
{
    if (m_grid) { // widths are kept as long as the question is about the same table
        m_widths = m_grid->columnWidths();
        m_widthsOf = m_gridTable;
    }
    m_grid.reset();
}
