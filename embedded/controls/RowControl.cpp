// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/controls/RowControl.h"

#include "embedded/model/Library.h"

#include "host/controls/GisTableCtrl.h"
#include "kit/Colours.h"
#include "kit/DateEdit.h"
#include "kit/Form.h"
#include "kit/MessageBox.h"
#include "kit/texts/QtText.h"

#include <QComboBox>
#include <QFocusEvent>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>

#include <limits>

namespace embedded {

namespace {

QLabel* makeLabel(const RowEntry& entry, QWidget* editor)
{
    auto* label = new QLabel(
        kit::toQt(entry.name()) + (entry.isRequired() ? QStringLiteral(" *") : QString()));
    label->setTextFormat(Qt::PlainText);
    label->setBuddy(editor);
    if (entry.isRequired()) {
        label->setToolTip(QStringLiteral("Campo obbligatorio"));
        QFont font = label->font();
        font.setBold(true);
        label->setFont(font);
    }
    return label;
}

void showAsComputed(QLineEdit& edit)
{
    QPalette palette = edit.palette();
    palette.setColor(QPalette::Base, QColor(kit::PredefinedBackground));
    palette.setColor(QPalette::Text, Qt::black); // readable on it in dark themes too
    edit.setPalette(palette);
}

} // namespace

RowControl::RowControl(gis::CLibGis* library, gis::CDBTable* table, orv::CResultRow* row,
    bool isEditable, QWidget* parent)
    : QScrollArea(parent)
    , m_library(library)
    , m_row(row)
{
    setWidgetResizable(true);
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleName(QStringLiteral("Attributi"));
    auto* page = new QWidget(this);
    auto* form = new QFormLayout(page);
    form->setRowWrapPolicy(QFormLayout::WrapLongRows);
    const int count = library->GetNumFields(table);
    for (int i = 0; i < count; ++i) {
        RowEntry entry(*library, table, row, i);
        QWidget* editor = makeEditor(entry, isEditable);
        form->addRow(makeLabel(entry, editor), editor);
        m_lines.push_back({ std::move(entry), editor });
    }
    setWidget(page);
}

QWidget* RowControl::makeEditor(const RowEntry& entry, bool isEditable)
{
    QWidget* editor = nullptr;
    const bool isFixed = !isEditable || entry.isPredefined();
    if (!isFixed && !entry.choices().isEmpty()) {
        auto* combo = new QComboBox;
        combo->addItems(entry.choices());
        combo->setCurrentIndex(static_cast<int>(entry.choices().indexOf(entry.storedText())));
        editor = combo;
    } else {
        const bool isDate = !isFixed && entry.format() == gis::FieldFormat::Date;
        QLineEdit* edit = isDate ? new kit::CDateEdit : new QLineEdit;
        edit->setMaxLength(std::numeric_limits<int>::max()); // a long text must come back whole
        edit->setText(entry.storedText());
        edit->setCursorPosition(0);
        edit->setReadOnly(isFixed);
        if (entry.isPredefined())
            showAsComputed(*edit);
        editor = edit;
    }
    editor->setAccessibleName(kit::toQt(entry.name()));
    editor->setObjectName(QStringLiteral("field%1").arg(entry.fieldIndex()));
    return editor;
}

QString RowControl::textOf(const QWidget& editor)
{
    if (const auto* combo = qobject_cast<const QComboBox*>(&editor))
        return combo->currentText();
    return static_cast<const QLineEdit&>(editor).text();
}

// The first editor that can be written in.
void RowControl::focusInEvent(QFocusEvent* event)
{
    for (const Line& line : m_lines) {
        const auto* edit = qobject_cast<QLineEdit*>(line.editor);
        if (!edit || !edit->isReadOnly()) {
            line.editor->setFocus(event->reason());
            return;
        }
    }
    QScrollArea::focusInEvent(event);
}

bool RowControl::refuse(const Line& line, bool showMessages, int message)
{
    if (showMessages)
        FMessageBox(window(), kit::Message { message, line.entry.name() });
    ensureWidgetVisible(line.editor);
    line.editor->setFocus();
    if (auto* edit = qobject_cast<QLineEdit*>(line.editor))
        edit->selectAll();
    return false;
}

bool RowControl::commit(bool showMessages)
{
    std::vector<std::pair<int, orv::CPolyValue>> changed;
    for (const Line& line : m_lines) {
        if (line.entry.isPredefined())
            continue;
        const auto value = line.entry.valueOf(textOf(*line.editor));
        if (!value)
            return refuse(line, showMessages, texts::ValueOutsideRange);
        if (value->IsEmpty() && line.entry.isRequired())
            return refuse(line, showMessages, texts::FieldRequired);
        if (*value != line.entry.storedValue())
            changed.emplace_back(line.entry.fieldIndex(), *value);
    }
    if (changed.empty())
        return true;
    Library& library = *Library::of(m_library);
    const orv::ChangeStep step(library.changes(), orv::String("Attributi dell'entità"));
    for (auto& [field, value] : changed)
        m_library->SetRowValue(m_row, field, value);
    library.markModified();
    return true;
}

} // namespace embedded

QWidget* GisTableCtrl_Create(gis::CLibGis* library, gis::CDBTable* table, orv::CResultRow* row,
    const QRect& rectangle, QWidget* parent, int controlId, bool editable)
{
    if (!library || !table || !row)
        return nullptr;
    auto* control = new embedded::RowControl(library, table, row, editable, parent);
    control->setObjectName(kit::controlName(controlId));
    control->setGeometry(rectangle);
    control->show();
    return control;
}

bool GisTableCtrl_Commit(QWidget* control, bool showMessages)
{
    auto* row = qobject_cast<embedded::RowControl*>(control);
    return row && row->commit(showMessages);
}

void GisTableCtrl_Destroy(QWidget* control)
{
    delete qobject_cast<embedded::RowControl*>(control);
}
