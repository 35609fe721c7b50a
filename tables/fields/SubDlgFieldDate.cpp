// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tables/fields/SubDlgFieldDate.h"

#include "kit/Form.h"
#include "kit/ItemLists.h"
#include "kit/texts/TextLoader.h"

#include <QDateTime>

#include "ui_CSubDlgFieldDate.h"

namespace {

enum Mode { NoDate, Today, Given };

} // namespace

CSubDlgFieldDate::CSubDlgFieldDate(
    gis::CCtrlDlgTableEdit& controller, CFieldChangeTracker* field, QWidget* parent)
    : CSubDlgBase(controller, field, parent)
    , m_ui(std::make_unique<Ui::CSubDlgFieldDate>())
{
    m_ui->setupUi(this);
    kit::preparePage(*this, "CSubDlgFieldDate");
    // Every date that a field can hold; the time of day is kept although it is not shown.
    m_ui->id2007->setDateTimeRange(
        QDateTime(QDate(1, 1, 1), QTime(0, 0)), QDateTime(QDate(9999, 12, 31), QTime(23, 59, 59)));
    m_ui->id2007->setDateTime(QDateTime::currentDateTime());
    const Constraints values = constraints();
    m_date = values[0].GetType() == orv::PolyDate ? values[0].GetDateValue()
                                                  : values[0].GetInt32Value();
    const int mode = values[3].GetInt32Value();
    kit::fillCombo(*m_ui->id2006,
        { { kit::text(texts::DateDefaultNone) }, { kit::text(texts::DateDefaultToday) },
            { kit::text(texts::DateDefaultGiven) } },
        mode >= NoDate && mode <= Given ? mode : -1);
    m_ui->id2007->setEnabled(mode == Given);
    if (mode == Given && m_date >= 0)
        showDate();
    connect(m_ui->id2006, &QComboBox::currentIndexChanged, this, &CSubDlgFieldDate::onModeChanged);
    connect(m_ui->id2007, &QDateTimeEdit::dateTimeChanged, this, [this] { m_date = pickedDate(); });
}

CSubDlgFieldDate::~CSubDlgFieldDate() = default;

std::int64_t CSubDlgFieldDate::pickedDate() const
{
    return m_ui->id2007->dateTime().toSecsSinceEpoch();
}

void CSubDlgFieldDate::showDate()
{
    const QSignalBlocker silent(m_ui->id2007);
    m_ui->id2007->setDateTime(QDateTime::fromSecsSinceEpoch(m_date));
}

void CSubDlgFieldDate::onModeChanged(int row)
{
    m_ui->id2007->setEnabled(row == Given);
    if (row == Today)
        m_date = QDateTime::currentSecsSinceEpoch();
    if (m_date >= 1)
        showDate();
}

void CSubDlgFieldDate::SaveFieldData()
{
    if (!isStill(gis::FieldFormat::Date))
        return;
    m_date = pickedDate();
    const int mode = m_ui->id2006->currentIndex();
    Constraints values;
    if (mode == Today || mode == Given) {
        values[0].SetDateValue(m_date);
        values[3] = mode;
    } else {
        values[0] = 0;
        values[3] = static_cast<int>(NoDate);
    }
    setConstraints(values);
}
