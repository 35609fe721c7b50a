// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tables/grid/DlgShowTable.h"

#include "tables/grid/CtrlShowTable.h"

#include "kit/Form.h"

#include "ui_CDlgShowTable.h"

namespace {

constexpr int LeastHeightPixels = 125;
constexpr int BesideButtonsPixels = 10;

} // namespace

CDlgShowTable::CDlgShowTable(gis::CLibGis* library, gis::CDBTable* table, QWidget* parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::CDlgShowTable>())
    , m_grid(new CCtrlShowTable(nullptr, 0, library, table))
{
    m_ui->setupUi(this);
    kit::placeOver(m_ui->id2066, m_grid);
    kit::prepareDialog(*this, "CDlgShowTable", { 304, 238 });
    layout()->setSizeConstraint(
        QLayout::SetNoConstraint); // the least size is the dialog's own rule
    m_grid->putBefore(*m_ui->id1);
    setTabOrder(m_ui->id1, m_ui->id2);
    connect(m_ui->id1, &QPushButton::clicked, this, &CDlgShowTable::accept);
    connect(m_ui->id2, &QPushButton::clicked, this, &CDlgShowTable::reject);
    m_grid->Fill();
    // "Annulla" while the table was being read: it is not to be opened. Once the window runs, for
    // there is nothing to be closed before.
    if (m_grid->reading() == kit::WorkEnd::Stopped)
        QMetaObject::invokeMethod(this, &QDialog::reject, Qt::QueuedConnection);
}

CDlgShowTable::~CDlgShowTable() = default;

void CDlgShowTable::accept()
{
    if (m_grid->Save())
        QDialog::accept();
}

void CDlgShowTable::showEvent(QShowEvent* event)
{
    layout()->activate();
    const int span = m_ui->id2->geometry().right() + 1 - m_ui->id1->geometry().left();
    setMinimumSize(span + BesideButtonsPixels, LeastHeightPixels);
    QDialog::showEvent(event);
}
