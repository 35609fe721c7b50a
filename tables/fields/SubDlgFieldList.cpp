// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tables/fields/SubDlgFieldList.h"

#include "kit/Form.h"
#include "kit/texts/QtText.h"

#include <QEvent>
#include <QLineEdit>

#include <algorithm>
#include <limits>

#include "ui_CSubDlgFieldList.h"

CSubDlgFieldList::CSubDlgFieldList(
    gis::CCtrlDlgTableEdit& controller, CFieldChangeTracker* field, QWidget* parent)
    : CSubDlgBase(controller, field, parent)
    , m_ui(std::make_unique<Ui::CSubDlgFieldList>())
{
    m_ui->setupUi(this);
    kit::preparePage(*this, "CSubDlgFieldList");
    m_ui->id2015->setCompleter(nullptr); // a typed default is taken as it stands
    for (QLineEdit* edit : { m_ui->id2015->lineEdit(), m_ui->id2017 })
        edit->setMaxLength(std::numeric_limits<int>::max()); // a long value comes back whole
    const Constraints values = constraints();
    for (unsigned i = 0; i < values[3].GetNoArrayElements(); ++i)
        m_values.push_back(values[3].GetStringValue(i));
    m_standard = values[0].GetStringValue();
    refill();
    connect(
        m_ui->id2016, &QListWidget::itemSelectionChanged, this, &CSubDlgFieldList::showSelected);
    m_ui->id2016->installEventFilter(this);
    connect(m_ui->id2015, &QComboBox::currentIndexChanged, this, [this](int row) {
        m_standard = row > 0 ? m_values[static_cast<std::size_t>(row) - 1] : orv::String();
    });
    connect(m_ui->id2018, &QPushButton::clicked, this, &CSubDlgFieldList::onAdd);
    connect(m_ui->id2019, &QPushButton::clicked, this, &CSubDlgFieldList::onDelete);
    connect(m_ui->id2020, &QPushButton::clicked, this, &CSubDlgFieldList::onRename);
}

CSubDlgFieldList::~CSubDlgFieldList() = default;

void CSubDlgFieldList::refill()
{
    const QSignalBlocker silentList(m_ui->id2016);
    const QSignalBlocker silentCombo(m_ui->id2015);
    m_ui->id2016->clear();
    m_ui->id2015->clear();
    m_ui->id2015->addItem(QString());
    for (const orv::String& value : m_values) {
        m_ui->id2016->addItem(kit::toQt(value));
        m_ui->id2015->addItem(kit::toQt(value));
    }
    // The first that is equal but for the case of ASCII letters, as names are compared everywhere.
    const auto found = m_standard.Length() == 0
        ? m_values.end() // the empty entry above them all
        : std::find_if(m_values.begin(), m_values.end(),
            [this](const orv::String& value) { return value.CompareIgnoreCase(m_standard) == 0; });
    m_ui->id2015->setCurrentIndex(
        found == m_values.end() ? 0 : static_cast<int>(found - m_values.begin()) + 1);
}

int CSubDlgFieldList::selectedRow() const
{
    const auto selected = m_ui->id2016->selectionModel()->selectedRows();
    return selected.isEmpty() ? -1 : selected.first().row();
}

void CSubDlgFieldList::showSelected()
{
    if (const int row = selectedRow(); row >= 0)
        m_ui->id2017->setText(m_ui->id2016->item(row)->text());
}

bool CSubDlgFieldList::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_ui->id2016 && event->type() == QEvent::FocusOut)
        showSelected();
    return CSubDlgBase::eventFilter(watched, event);
}

void CSubDlgFieldList::onAdd()
{
    const QString text = m_ui->id2017->text();
    if (text.isEmpty())
        return;
    const bool isKnown = std::any_of(m_values.begin(), m_values.end(),
        [&](const orv::String& value) { return kit::toQt(value) == text; });
    m_ui->id2017->clear();
    if (isKnown)
        return;
    m_values.push_back(kit::fromQt(text));
    m_ui->id2016->addItem(text);
    m_ui->id2015->addItem(text);
    m_ui->id2017->setFocus();
}

void CSubDlgFieldList::onDelete()
{
    const int row = selectedRow();
    if (row < 0)
        return;
    m_values.erase(m_values.begin() + row);
    refill();
}

// Takes an empty text and one that is in the list already, unlike adding: the user has a line in
// front of him and sees what it becomes.
void CSubDlgFieldList::onRename()
{
    const int row = selectedRow();
    if (row < 0)
        return;
    const QString text = m_ui->id2017->text();
    const QString standard = m_ui->id2015->currentText();
    const bool isStandard
        = m_ui->id2015->currentIndex() == row + 1 && standard == m_ui->id2015->itemText(row + 1);
    orv::String& value = m_values[static_cast<std::size_t>(row)];
    value = kit::fromQt(text, value);
    m_ui->id2016->item(row)->setText(text);
    m_ui->id2015->setItemText(row + 1, text);
    if (isStandard)
        m_standard = value;
    else
        m_ui->id2015->setEditText(standard); // typed: renaming its entry would write over it
}

void CSubDlgFieldList::SaveFieldData()
{
    if (!isStill(gis::FieldFormat::List))
        return;
    m_standard = kit::fromQt(m_ui->id2015->currentText(), m_standard);
    Constraints values;
    values[0] = m_standard;
    values[3].CreateArray(static_cast<unsigned>(m_values.size()), orv::PolyString);
    for (unsigned i = 0; i < m_values.size(); ++i)
        values[3].SetStringValue(i, m_values[i]);
    setConstraints(values);
}
