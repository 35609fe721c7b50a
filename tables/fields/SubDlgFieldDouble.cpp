// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tables/fields/SubDlgFieldDouble.h"

#include "kit/Form.h"
#include "kit/texts/QtText.h"
#include "kit/texts/TextIds.h"

#include <QRegularExpression>
#include <QRegularExpressionValidator>

#include <algorithm>

#include "ui_CSubDlgFieldDouble.h"

CSubDlgFieldDouble::CSubDlgFieldDouble(
    gis::CCtrlDlgTableEdit& controller, CFieldChangeTracker* field, QWidget* parent)
    : CSubDlgBase(controller, field, parent)
    , m_ui(std::make_unique<Ui::CSubDlgFieldDouble>())
{
    m_ui->setupUi(this);
    kit::preparePage(*this, "CSubDlgFieldDouble");
    // Digits only, as many as one likes: too many of them are told, not swallowed.
    m_ui->id2011->setValidator(new QRegularExpressionValidator(
        QRegularExpression(QStringLiteral("[0-9]*")), m_ui->id2011));
    const Constraints values = constraints();
    // A host may hold any number here; saved as it is shown.
    const int digits = std::clamp(values[3].GetInt32Value(), 0, gis::MaxDecimalDigits);
    m_bounds
        = { values[0].GetDoubleValue(), values[1].GetDoubleValue(), values[2].GetDoubleValue() };
    m_ui->id2008->setText(kit::toQt(tables::boundText(m_bounds.standard, digits)));
    m_ui->id2009->setText(kit::toQt(tables::boundText(m_bounds.minimum, digits)));
    m_ui->id2010->setText(kit::toQt(tables::boundText(m_bounds.maximum, digits)));
    m_ui->id2011->setText(QString::number(digits));
    RefreshFromField();
}

CSubDlgFieldDouble::~CSubDlgFieldDouble() = default;

void CSubDlgFieldDouble::RefreshFromField()
{
    // How many digits a computed value shows is still the user's.
    for (QLineEdit* edit : { m_ui->id2008, m_ui->id2009, m_ui->id2010 })
        edit->setEnabled(!isPredefined());
}

void CSubDlgFieldDouble::SaveFieldData()
{
    if (!isStill(gis::FieldFormat::Decimal))
        return;
    // The messages come in the order of the edits, those of the whole after them.
    std::vector<int> messages = tables::takeBounds(
        { m_ui->id2008->text().toStdString(), m_ui->id2009->text().toStdString(),
            m_ui->id2010->text().toStdString() },
        m_bounds);
    int digits = 0;
    if (tables::takeDigits(m_ui->id2011->text().toStdString(), digits)) {
        const auto whole = std::find_if(messages.begin(), messages.end(), [](int message) {
            return message == texts::RangeIncongruent || message == texts::DefaultOutsideRange;
        });
        messages.insert(whole, texts::DigitsTooMany);
    }
    tell(messages);
    Constraints values;
    values[0] = m_bounds.standard;
    values[1] = m_bounds.minimum;
    values[2] = m_bounds.maximum;
    values[3] = digits;
    setConstraints(values);
}
