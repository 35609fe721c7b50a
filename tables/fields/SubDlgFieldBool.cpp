// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tables/fields/SubDlgFieldBool.h"

#include "kit/Form.h"
#include "kit/ItemLists.h"
#include "kit/texts/TextLoader.h"

#include "ui_CSubDlgFieldBool.h"

namespace {

enum Row { None, Yes, No };
// Defaults as the constraints hold them.
constexpr int DefaultNo = 0;
constexpr int DefaultYes = 1;
constexpr int DefaultNone = 2;

int rowOf(const orv::CPolyValue& standard)
{
    switch (standard.GetInt32Value()) {
    case DefaultNo:
        return No;
    case DefaultYes:
        return Yes;
    case DefaultNone:
        return None;
    default:
        return -1;
    }
}

} // namespace

CSubDlgFieldBool::CSubDlgFieldBool(
    gis::CCtrlDlgTableEdit& controller, CFieldChangeTracker* field, QWidget* parent)
    : CSubDlgBase(controller, field, parent)
    , m_ui(std::make_unique<Ui::CSubDlgFieldBool>())
{
    m_ui->setupUi(this);
    kit::preparePage(*this, "CSubDlgFieldBool");
    kit::fillCombo(*m_ui->id2005,
        { { kit::text(texts::BooleanDefaultNone) }, { kit::text(texts::BooleanDefaultYes) },
            { kit::text(texts::BooleanDefaultNo) } },
        rowOf(constraints()[0]));
}

CSubDlgFieldBool::~CSubDlgFieldBool() = default;

void CSubDlgFieldBool::SaveFieldData()
{
    if (!isStill(gis::FieldFormat::Boolean))
        return;
    Constraints values;
    switch (m_ui->id2005->currentIndex()) {
    case None:
        values[0] = DefaultNone;
        break;
    case Yes:
        values[0] = DefaultYes;
        break;
    case No:
        values[0] = DefaultNo;
        break;
    default:
        break;
    }
    setConstraints(values);
}
