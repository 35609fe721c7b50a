// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tables/fields/SubDlgBase.h"

#include "tables/fields/SubDlgFieldBool.h"
#include "tables/fields/SubDlgFieldDate.h"
#include "tables/fields/SubDlgFieldDouble.h"
#include "tables/fields/SubDlgFieldInt.h"
#include "tables/fields/SubDlgFieldList.h"
#include "tables/fields/SubDlgFieldString.h"

CSubDlgBase::CSubDlgBase(
    gis::CCtrlDlgTableEdit& controller, CFieldChangeTracker* field, QWidget* parent)
    : QWidget(parent)
    , m_controller(controller)
    , m_field(field)
{
}

void CSubDlgBase::SetRequested(bool isRequested)
{
    m_controller.SetFieldRequested(m_field, isRequested);
}

CSubDlgBase::Constraints CSubDlgBase::constraints() const
{
    Constraints values;
    m_controller.GetFieldConstraints(m_field, values.data());
    return values;
}

void CSubDlgBase::setConstraints(const Constraints& constraints)
{
    m_controller.SetFieldConstraints(m_field, constraints.data());
}

bool CSubDlgBase::isPredefined() const
{
    return m_controller.IsFieldPredefined(m_field);
}

bool CSubDlgBase::isStill(gis::FieldFormat format) const
{
    return m_controller.GetFieldFormat(m_field) == format;
}

void CSubDlgBase::tell(const std::vector<int>& messages)
{
    for (const int message : messages)
        FMessageBox(window(), kit::Message { message });
}

CSubDlgBase* makeFieldPage(gis::FieldFormat format, gis::CCtrlDlgTableEdit& controller,
    CSubDlgBase::CFieldChangeTracker* field, QWidget* parent)
{
    switch (format) {
    case gis::FieldFormat::Text:
        return new CSubDlgFieldString(controller, field, parent);
    case gis::FieldFormat::Boolean:
        return new CSubDlgFieldBool(controller, field, parent);
    case gis::FieldFormat::Integer:
        return new CSubDlgFieldInt(controller, field, parent);
    case gis::FieldFormat::Decimal:
        return new CSubDlgFieldDouble(controller, field, parent);
    case gis::FieldFormat::List:
        return new CSubDlgFieldList(controller, field, parent);
    case gis::FieldFormat::Date:
        return new CSubDlgFieldDate(controller, field, parent);
    }
    return nullptr;
}
