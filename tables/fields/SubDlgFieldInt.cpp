// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tables/fields/SubDlgFieldInt.h"

#include "kit/Form.h"
#include "kit/texts/QtText.h"

#include "ui_CSubDlgFieldInt.h"

CSubDlgFieldInt::CSubDlgFieldInt(
    gis::CCtrlDlgTableEdit& controller, CFieldChangeTracker* field, QWidget* parent)
    : CSubDlgBase(controller, field, parent)
    , m_ui(std::make_unique<Ui::CSubDlgFieldInt>())
{
    m_ui->setupUi(this);
    kit::preparePage(*this, "CSubDlgFieldInt");
    const Constraints values = constraints();
    m_bounds = { values[0].GetInt32Value(), values[1].GetInt32Value(), values[2].GetInt32Value() };
    m_ui->id2012->setText(kit::toQt(tables::boundText(m_bounds.standard)));
    m_ui->id2013->setText(kit::toQt(tables::boundText(m_bounds.minimum)));
    m_ui->id2014->setText(kit::toQt(tables::boundText(m_bounds.maximum)));
}

CSubDlgFieldInt::~CSubDlgFieldInt() = default;

void CSubDlgFieldInt::SaveFieldData()
{
    if (!isStill(gis::FieldFormat::Integer))
        return;
    tell(
        tables::takeBounds({ m_ui->id2012->text().toStdString(), m_ui->id2013->text().toStdString(),
                               m_ui->id2014->text().toStdString() },
            m_bounds));
    Constraints values;
    values[0] = m_bounds.standard;
    values[1] = m_bounds.minimum;
    values[2] = m_bounds.maximum;
    setConstraints(values);
}
