// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tables/fields/SubDlgFieldString.h"

#include "kit/Form.h"
#include "kit/texts/QtText.h"

#include <limits>

#include "ui_CSubDlgFieldString.h"

CSubDlgFieldString::CSubDlgFieldString(
    gis::CCtrlDlgTableEdit& controller, CFieldChangeTracker* field, QWidget* parent)
    : CSubDlgBase(controller, field, parent)
    , m_ui(std::make_unique<Ui::CSubDlgFieldString>())
{
    m_ui->setupUi(this);
    kit::preparePage(*this, "CSubDlgFieldString");
    const Constraints values = constraints();
    m_ui->id2021->setMaxLength(std::numeric_limits<int>::max()); // a long default comes back whole
    m_ui->id2021->setText(kit::toQt(values[0].GetStringValue()));
    m_kept = values[3].GetInt32Value();
    RefreshFromField();
}

CSubDlgFieldString::~CSubDlgFieldString() = default;

void CSubDlgFieldString::RefreshFromField()
{
    m_ui->id2021->setEnabled(!isPredefined());
}

void CSubDlgFieldString::SaveFieldData()
{
    if (!isStill(gis::FieldFormat::Text))
        return;
    Constraints values;
    values[0] = kit::fromQt(m_ui->id2021->text(), constraints()[0].GetStringValue());
    values[3] = m_kept;
    setConstraints(values);
}
