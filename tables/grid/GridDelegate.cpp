// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tables/grid/GridDelegate.h"

#include "kit/ChoiceEdit.h"
#include "kit/Colours.h"
#include "kit/DateEdit.h"
#include "kit/texts/QtText.h"

#include <QComboBox>
#include <QLineEdit>

#include <limits>

namespace tables {

CGridDelegate::CGridDelegate(CGridModel& model, QObject* parent)
    : QStyledItemDelegate(parent)
    , m_model(model)
{
}

void CGridDelegate::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const
{
    QStyledItemDelegate::initStyleOption(option, index);
    option->textElideMode = Qt::ElideRight;
    if (m_model.contents().field(index.column()).isPredefined) {
        option->backgroundBrush = QColor(kit::PredefinedBackground);
        option->palette.setColor(QPalette::Text, Qt::black); // readable on it in dark themes too
    } else if (index.row() == m_currentRow) {
        QColor mark = option->palette.color(QPalette::Highlight);
        mark.setAlpha(40);
        option->backgroundBrush = mark;
    }
}

QWidget* CGridDelegate::createChoice(QWidget* parent, const GridField& field) const
{
    auto* combo = new kit::CChoiceEdit(parent);
    for (const auto& choice : cellChoices(*m_model.contents().library(), field))
        combo->addItem(kit::toQt(choice));
    // A choice from the open list is the whole edit: nobody expects to confirm it with Return.
    connect(combo, &QComboBox::activated, this, [this, combo] {
        if (!combo->isListChoice())
            return;
        auto* self = const_cast<CGridDelegate*>(this);
        Q_EMIT self->commitData(combo);
        Q_EMIT self->closeEditor(combo);
    });
    return combo;
}

QWidget* CGridDelegate::createEditor(
    QWidget* parent, const QStyleOptionViewItem&, const QModelIndex& index) const
{
    const GridField& field = m_model.contents().field(index.column());
    if (field.format == gis::FieldFormat::Boolean || field.format == gis::FieldFormat::List) {
        m_editor = createChoice(parent, field);
    } else {
        auto* edit = field.format == gis::FieldFormat::Date ? new kit::CDateEdit(parent)
                                                            : new QLineEdit(parent);
        edit->setMaxLength(std::numeric_limits<int>::max()); // a long text must come back whole
        edit->setFrame(false);
        edit->setAlignment(Qt::Alignment(index.data(Qt::TextAlignmentRole).toInt()));
        m_editor = edit;
    }
    m_editor->setAccessibleName(kit::toQt(field.name));
    m_editor->setAutoFillBackground(true);
    return m_editor;
}

void CGridDelegate::destroyEditor(QWidget* editor, const QModelIndex& index) const
{
    if (editor == m_editor)
        m_editor.clear(); // it lives on until the events have run
    QStyledItemDelegate::destroyEditor(editor, index);
}

void CGridDelegate::setEditorData(QWidget* editor, const QModelIndex& index) const
{
    const QString text = index.data(Qt::EditRole).toString();
    if (auto* combo = qobject_cast<QComboBox*>(editor))
        combo->setCurrentIndex(
            combo->findText(text, Qt::MatchFixedString | Qt::MatchCaseSensitive));
    else if (auto* edit = qobject_cast<QLineEdit*>(editor))
        edit->setText(text);
}

void CGridDelegate::setModelData(
    QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const
{
    if (const auto* combo = qobject_cast<QComboBox*>(editor)) {
        if (combo->currentIndex() >= 0) // a stored text that the list has no more stays
            model->setData(index, combo->currentText(), Qt::EditRole);
    } else if (const auto* edit = qobject_cast<QLineEdit*>(editor)) {
        model->setData(index, edit->text(), Qt::EditRole);
    }
}

void CGridDelegate::updateEditorGeometry(
    QWidget* editor, const QStyleOptionViewItem& option, const QModelIndex&) const
{
    // As high as the editor needs, so that its text is whole in a low row.
    QRect place = option.rect;
    place.setHeight(qMax(place.height(), editor->minimumSizeHint().height()));
    if (qobject_cast<QComboBox*>(editor))
        place.setWidth(qMax(place.width(), editor->sizeHint().width()));
    editor->setGeometry(place);
}

} // namespace tables
