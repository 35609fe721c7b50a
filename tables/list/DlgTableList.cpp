// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tables/list/DlgTableList.h"

#include "tables/list/DlgInputNameTable.h"
#include "tables/list/NameDelegate.h"

#include "kit/Form.h"
#include "kit/Icons.h"
#include "kit/ItemLists.h"
#include "kit/ModalRun.h"
#include "kit/texts/QtText.h"
#include "kit/texts/TextLoader.h"
#include "tematica/Dialogs.h"

#include "ui_CDlgTableList.h"

#include <QKeyEvent>
#include <QStandardItemModel>

#include <utility>

CDlgTableList::CDlgTableList(QWidget* parent)
    : CToolBarDialog(parent)
    , m_ui(std::make_unique<Ui::CDlgTableList>())
    , m_rows(new QStandardItemModel(0, 1, this))
    , m_delegate(new tables::CNameDelegate(this))
{
    m_ui->setupUi(this);
    m_rows->setHorizontalHeaderLabels({ kit::text(texts::ColumnName) });
    QListView& list = *m_ui->id2000;
    list.setModel(m_rows);
    list.setIconSize(QSize(16, 16));
    list.setSelectionMode(QAbstractItemView::SingleSelection);
    list.setEditTriggers(QAbstractItemView::SelectedClicked);
    list.setUniformItemSizes(true); // thousands of tables are laid out at once
    list.setTextElideMode(Qt::ElideRight);
    list.installEventFilter(this);
    list.setItemDelegate(m_delegate);
    kit::prepareDialog(*this, "CDlgTableList", { 274, 180 }, 0);
    makeToolBar({ { New, "new" }, { Delete, "delete" }, { Rename, "rename" },
        { Properties, "properties" }, { Show, "show" } });
    offerCommandsIn(list);
    connect(m_delegate, &tables::CNameDelegate::edited, this, &CDlgTableList::onEdited);
    // Queued: the list first gives up its slow second click, which would edit the name.
    connect(&list, &QListView::doubleClicked, this, &CDlgTableList::accept, Qt::QueuedConnection);
    connect(list.selectionModel(), &QItemSelectionModel::selectionChanged, this,
        &CDlgTableList::updateCommands);
    list.setFocus();
}

CDlgTableList::~CDlgTableList()
{
    m_delegate->disconnect(this); // an open editor ends when half of this is gone
}

void CDlgTableList::SetLibGis(gis::CLibGis* library)
{
    m_list.setLibrary(library);
    fill();
}

bool CDlgTableList::GetToolTipText(int position, int, orv::String& text)
{
    text = kit::fromQt(kit::text(texts::ToolTipNew + position));
    return true;
}

void CDlgTableList::fill()
{
    m_rows->removeRows(0, m_rows->rowCount());
    const QIcon icon = kit::icon(14004);
    QList<QStandardItem*> items;
    for (const auto& row : m_list.rows()) {
        auto* item = new QStandardItem(icon, kit::toQt(row.name));
        item->setData(QVariant::fromValue(static_cast<void*>(row.table)), Qt::UserRole);
        items.append(item);
    }
    m_rows->invisibleRootItem()->appendRows(items);
    updateCommands();
}

int CDlgTableList::selectedRow() const
{
    const QModelIndexList selected = m_ui->id2000->selectionModel()->selectedIndexes();
    return selected.isEmpty() ? -1 : selected.first().row();
}

gis::CDBTable* CDlgTableList::tableOf(int row) const
{
    return static_cast<gis::CDBTable*>(kit::handleOf(m_rows->index(row, 0)));
}

bool CDlgTableList::isCommandEnabled(int command) const
{
    return m_list.library() && (command == New || selectedRow() >= 0);
}

// A click on the bar leaves the focus in a name being edited: that edit ends first, as it would
// under the command's own window. The table is kept by its handle, for the rows may be others then.
void CDlgTableList::runCommand(int command)
{
    const int row = selectedRow();
    gis::CDBTable* const table = row < 0 ? nullptr : tableOf(row);
    endEditing();
    if (command == New)
        return onNew();
    if (!table)
        return;
    switch (command) {
    case Delete:
        return onDelete(table);
    case Rename:
        return onRename(table);
    case Properties:
        FDlgTableEditGIS(m_list.library(), table);
        break;
    default:
        FDlgShowTableGIS(m_list.library(), table);
        break;
    }
}

// However the window is closed: what is being typed is taken, or told to be wrong and kept open.
void CDlgTableList::done(int result)
{
    m_delegate->commitOpenEditor();
    const bool isRefused = m_editRefusal.has_value();
    finishEdit();
    if (!isRefused)
        CToolBarDialog::done(result);
}

void CDlgTableList::accept()
{
    runCommand(Properties);
}

void CDlgTableList::onNew()
{
    CDlgInputNameTable dialog;
    dialog.Init(m_list.library(), orv::String());
    if (!kit::runModal(dialog))
        return;
    orv::String name;
    dialog.GetName(name);
    m_list.create(name);
    fill();
}

// Asked first, refused second: a user who says no need not learn why it would not go.
void CDlgTableList::onDelete(gis::CDBTable* table)
{
    if (FMessageBox(this, tables::CCtrlDlgTableList::deleteQuestion()) != kit::Answer::Yes)
        return;
    if (const auto refusal = m_list.remove(table))
        FMessageBox(this, *refusal);
    else
        fill();
}

void CDlgTableList::onRename(gis::CDBTable* table)
{
    CDlgInputNameTable dialog;
    dialog.Init(m_list.library(), m_list.library()->GetTableName(table));
    if (!kit::runModal(dialog))
        return;
    orv::String name;
    dialog.GetName(name);
    if (const auto refusal = m_list.rename(table, name))
        FMessageBox(this, *refusal);
    else
        fill();
}

// The library is changed now; the rows and the message wait until the editor is gone, which would
// not survive them.
void CDlgTableList::onEdited(const QModelIndex& index, const QString& text)
{
    if (m_isEditEnding) // the editor lost the focus while it was being closed
        return;
    m_isEditEnding = true;
    gis::CDBTable* const table = tableOf(index.row());
    m_editRefusal = m_list.rename(table, kit::fromQt(text, m_list.library()->GetTableName(table)));
    QMetaObject::invokeMethod(this, &CDlgTableList::finishEdit, Qt::QueuedConnection);
}

void CDlgTableList::finishEdit()
{
    if (!std::exchange(m_isEditEnding, false))
        return; // done already, before a command
    if (const auto refusal = std::exchange(m_editRefusal, std::nullopt))
        FMessageBox(this, *refusal);
    else
        fill();
}

void CDlgTableList::endEditing()
{
    m_delegate->commitOpenEditor();
    finishEdit();
}

bool CDlgTableList::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_ui->id2000 && event->type() == QEvent::KeyPress && !m_delegate->isEditing()
        && selectedRow() >= 0) {
        switch (static_cast<QKeyEvent*>(event)->key()) {
        case Qt::Key_F2:
            m_ui->id2000->edit(m_rows->index(selectedRow(), 0));
            return true;
        case Qt::Key_Delete:
            runCommand(Delete);
            return true;
        default:
            break;
        }
    }
    return CToolBarDialog::eventFilter(watched, event);
}

// Enter is for the structure of the selected table; in a name's editor it ends the edit.
void CDlgTableList::keyPressEvent(QKeyEvent* event)
{
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!isEnter)
        CToolBarDialog::keyPressEvent(event);
    else if (!m_delegate->isEditing())
        accept();
}
