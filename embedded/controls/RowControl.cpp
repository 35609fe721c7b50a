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
#include <QEvent>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>

#include <limits>

namespace embedded {

namespace {

constexpr int MostLabelPixels = 220;
constexpr int MostNameLetters = 80;
constexpr int MostToolTipLetters = 500;

/// The field's name as it is, cut where it would push the editors away. Without a buddy, which
/// would turn an ampersand of the name into an access key.
QLabel* makeLabel(const RowEntry& entry)
{
    auto* label = new QLabel;
    label->setTextFormat(Qt::PlainText);
    QString tip;
    if (entry.isRequired()) {
        tip = QStringLiteral("Campo obbligatorio");
        QFont font = label->font();
        font.setBold(true);
        label->setFont(font);
    }
    const QString name = kit::toQt(entry.name());
    const QString shown
        = QFontMetrics(label->font()).elidedText(name, Qt::ElideRight, MostLabelPixels);
    if (shown != name)
        tip = name.left(MostToolTipLetters) + (tip.isEmpty() ? tip : QLatin1Char('\n') + tip);
    label->setText(shown + (entry.isRequired() ? QStringLiteral(" *") : QString()));
    label->setToolTip(tip.isEmpty() ? tip : Qt::convertFromPlainText(tip));
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
    , m_isEditable(isEditable)
{
    setWidgetResizable(true);
    setFocusPolicy(Qt::NoFocus); // Tab goes from field to field, and back
    setAccessibleName(QStringLiteral("Attributi"));
    auto* page = new QWidget(this);
    auto* form = new QFormLayout(page);
    form->setRowWrapPolicy(QFormLayout::WrapLongRows);
    const int count = library->GetNumFields(table);
    for (int i = 0; i < count; ++i) {
        RowEntry entry(*library, table, row, i);
        QWidget* editor = makeEditor(entry);
        form->addRow(makeLabel(entry), editor);
        m_lines.push_back({ std::move(entry), editor });
    }
    setWidget(page);
    takeFocusByFirstEditor();
}

QWidget* RowControl::makeEditor(const RowEntry& entry)
{
    QWidget* editor = nullptr;
    const bool isFixed = !m_isEditable || entry.isPredefined();
    if (!isFixed && !entry.choices().isEmpty()) {
        auto* combo = new QComboBox;
        kit::keepFormWidth(*combo);
        combo->addItems(entry.choices());
        combo->setCurrentIndex(static_cast<int>(entry.choices().indexOf(entry.storedText())));
        combo->setFocusPolicy(Qt::StrongFocus);
        combo->installEventFilter(this);
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

// The first editor that can be written in, else the first.
void RowControl::takeFocusByFirstEditor()
{
    if (!m_lines.empty())
        setFocusProxy(m_lines.front().editor);
    for (const Line& line : m_lines) {
        const auto* edit = qobject_cast<QLineEdit*>(line.editor);
        if (!edit || !edit->isReadOnly()) {
            setFocusProxy(line.editor);
            return;
        }
    }
}

// The wheel scrolls the form: over a list it would change a value that nobody meant.
bool RowControl::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Wheel) {
        event->ignore();
        return true;
    }
    return QScrollArea::eventFilter(watched, event);
}

bool RowControl::refuse(const Line& line, bool showMessages, int message)
{
    if (showMessages) {
        // A name of any length would make a box as wide as the screen.
        QString name = kit::toQt(line.entry.name());
        if (name.size() > MostNameLetters)
            name = name.left(MostNameLetters) + QChar(0x2026);
        FMessageBox(window(), kit::Message { message, kit::fromQt(name) });
    }
    ensureWidgetVisible(line.editor);
    line.editor->setFocus();
    if (auto* edit = qobject_cast<QLineEdit*>(line.editor))
        edit->selectAll();
    return false;
}

bool RowControl::commit(bool showMessages)
{
    if (!m_isEditable)
        return true; // only shown
    std::vector<std::pair<Line*, orv::CPolyValue>> changed;
    for (Line& line : m_lines) {
        if (line.entry.isPredefined())
            continue;
        const auto value = line.entry.valueOf(textOf(*line.editor));
        if (!value)
            return refuse(line, showMessages, texts::ValueOutsideRange);
        if (value->IsEmpty() && line.entry.isRequired())
            return refuse(line, showMessages, texts::FieldRequired);
        if (*value != line.entry.storedValue())
            changed.emplace_back(&line, *value);
    }
    if (changed.empty())
        return true;
    Library& library = *Library::of(m_library);
    const orv::ChangeStep step(library.changes(), orv::String("Attributi dell'entità"));
    for (auto& [line, value] : changed) {
        m_library->SetRowValue(m_row, line->entry.fieldIndex(), value);
        line->entry.setStored(value, textOf(*line->editor));
    }
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
