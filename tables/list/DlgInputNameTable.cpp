// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tables/list/DlgInputNameTable.h"

#include "tables/list/TableNameRules.h"

#include "kit/Form.h"
#include "kit/texts/QtText.h"

#include "ui_CDlgInputNameTable.h"

#include <limits>

CDlgInputNameTable::CDlgInputNameTable(QWidget* parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::CDlgInputNameTable>())
{
    m_ui->setupUi(this);
    m_ui->id2001->setMaxLength(std::numeric_limits<int>::max()); // a long name comes back whole
    kit::prepareDialog(*this, "CDlgInputNameTable", { 164, 42 });
    connect(m_ui->id1, &QPushButton::clicked, this, &CDlgInputNameTable::accept);
    connect(m_ui->id2, &QPushButton::clicked, this, &QDialog::reject);
}

CDlgInputNameTable::~CDlgInputNameTable() = default;

void CDlgInputNameTable::Init(gis::CLibGis* library, const orv::String& name)
{
    m_library = library;
    m_oldName = name;
    m_name = name;
    m_ui->id2001->setText(kit::toQt(name));
    m_ui->id2001->selectAll();
}

void CDlgInputNameTable::GetName(orv::String& name) const
{
    name = m_name;
}

void CDlgInputNameTable::accept()
{
    m_name = kit::fromQt(m_ui->id2001->text(), m_oldName);
    if (m_library)
        if (const auto refusal = tables::refusalOfTableName(*m_library, m_oldName, m_name)) {
            FMessageBox(this, *refusal);
            return;
        }
    QDialog::accept();
}
