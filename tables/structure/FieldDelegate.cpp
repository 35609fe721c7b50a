// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tables/structure/FieldDelegate.h"

#include "tables/structure/FieldNames.h"

#include "kit/ChoiceEdit.h"

#include <QLineEdit>

#include <limits>

namespace tables {

namespace {
const char* const ChosenProperty = "isChosen"; // the user has changed it since it was opened
} // namespace

CFieldDelegate::CFieldDelegate(QObject* parent)
    : COpenEditorDelegate(parent)
{
}

QWidget* CFieldDelegate::createChoice(QWidget* parent, const QStringList& choices, int row) const
{
    auto* combo = new kit::CChoiceEdit(parent);
    combo->addItems(choices);
    connect(combo, &QComboBox::currentIndexChanged, this, [this, combo, row] {
        combo->setProperty(ChosenProperty, true);
        Q_EMIT typingBegun(row);
    });
    connect(combo, &QComboBox::activated, this, [this, combo] {
        if (!combo->isListChoice())
            return;
        auto* self = const_cast<CFieldDelegate*>(this);
        Q_EMIT self->commitData(combo);
        Q_EMIT self->closeEditor(combo);
    });
    return combo;
}

QWidget* CFieldDelegate::createEditor(
    QWidget* parent, const QStyleOptionViewItem&, const QModelIndex& index) const
{
    const int row = index.row();
    if (index.column() == NameColumn) {
        auto* edit = new QLineEdit(parent);
        edit->setMaxLength(std::numeric_limits<int>::max()); // a long name must come back whole
        edit->setFrame(false);
        connect(edit, &QLineEdit::textEdited, this, [this, row] { Q_EMIT typingBegun(row); });
        m_editor = edit;
    } else {
        m_editor = createChoice(
            parent, index.column() == TypeColumn ? typeChoices() : formatChoices(), row);
    }
    m_editor->setAccessibleName(
        index.model()->headerData(index.column(), Qt::Horizontal, Qt::DisplayRole).toString());
    m_editor->setAutoFillBackground(true);
    Q_EMIT editBegun(row);
    return m_editor;
}

void CFieldDelegate::setEditorData(QWidget* editor, const QModelIndex& index) const
{
    const QString text = index.data(Qt::EditRole).toString();
    // Not over what is being entered: the row it stands in may be new.
    if (auto* combo = qobject_cast<QComboBox*>(editor)) {
        if (combo->property(ChosenProperty).toBool())
            return;
        const QSignalBlocker silent(combo);
        combo->setCurrentIndex(
            combo->findText(text, Qt::MatchFixedString | Qt::MatchCaseSensitive));
    } else if (auto* edit = qobject_cast<QLineEdit*>(editor); edit && !edit->isModified()) {
        edit->setText(text);
    }
}

void CFieldDelegate::setModelData(
    QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const
{
    if (const auto* combo = qobject_cast<QComboBox*>(editor))
        model->setData(index, combo->currentText(), Qt::EditRole);
    else if (const auto* edit = qobject_cast<QLineEdit*>(editor))
        model->setData(index, edit->text(), Qt::EditRole);
}

void CFieldDelegate::updateEditorGeometry(
    QWidget* editor, const QStyleOptionViewItem& option, const QModelIndex&) const
{
    QRect place = option.rect;
    place.setHeight(qMax(place.height(), editor->minimumSizeHint().height()));
    if (qobject_cast<QComboBox*>(editor))
        place.setWidth(qMax(place.width(), editor->sizeHint().width()));
    editor->setGeometry(place);
}

} // namespace tables
