// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tables/structure/DlgTableEdit.h"

#include "tables/fields/SubDlgBase.h"
#include "tables/structure/FieldDelegate.h"
#include "tables/structure/FieldNames.h"

#include "kit/Form.h"
#include "kit/MessageBox.h"
#include "kit/Progress.h"
#include "kit/WaitCursor.h"
#include "kit/texts/QtText.h"

#include "ui_CDlgTableEdit.h"

#include <QGridLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QScopedValueRollback>
#include <QTableView>

#include <algorithm>
#include <iterator>
#include <utility>

using tables::CFieldDelegate;
using tables::CFieldModel;
using tables::FieldColumnCount;
using tables::NameColumn;
using tables::TypeColumn;

namespace {

constexpr int ColumnWidthPixels = 100;
constexpr int RowHeaderWidthPixels = 20;
constexpr int RowPaddingPixels = 8;
constexpr int LeastRows = 7;
constexpr int RowsBetweenProgress = 4096;
constexpr kit::DialogUnits PageSize { 292, 88 }; // room for the tallest page

bool isText(gis::FieldType type)
{
    return type == gis::FieldType::PointName || type == gis::FieldType::PointDescription
        || type >= gis::FieldType::Sketch;
}

/// Wide enough for the longest name of a source, which outgrows the usual width with a large font.
int columnWidth(const QWidget& grid)
{
    int longest = 0;
    for (const QString& name : tables::typeChoices())
        longest = std::max(longest, grid.fontMetrics().horizontalAdvance(name));
    constexpr int marginsPixels = 12;
    return std::max(ColumnWidthPixels, longest + marginsPixels);
}

} // namespace

CDlgTableEdit::CDlgTableEdit(gis::CLibGis* library, gis::CDBTable* table, QWidget* parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::CDlgTableEdit>())
    , m_library(library)
    , m_table(table)
    , m_controller(library, table)
    , m_model(m_controller)
    , m_delegate(new CFieldDelegate(this))
    , m_grid(new QTableView(this))
{
    m_ui->setupUi(this);
    makeGrid();
    kit::prepareDialog(*this, "CDlgTableEdit", { 303, 235 });
    keepRoomForPage();
    for (int row = 0; row < m_model.fieldCount(); ++row)
        applyPredefinedRule(m_model.field(row));
    QWidget* const order[]
        = { m_grid, m_ui->id2088, m_ui->id2089, m_ui->id2004, m_ui->id2003, m_ui->id1, m_ui->id2 };
    for (std::size_t i = 1; i < std::size(order); ++i)
        setTabOrder(order[i - 1], order[i]);
    connect(m_ui->id1, &QPushButton::clicked, this, &CDlgTableEdit::accept);
    connect(m_ui->id2, &QPushButton::clicked, this, &CDlgTableEdit::reject);
    connect(m_ui->id2088, &QPushButton::clicked, this, [this] { move(-1); });
    connect(m_ui->id2089, &QPushButton::clicked, this, [this] { move(1); });
}

CDlgTableEdit::~CDlgTableEdit()
{
    m_delegate->dropOpenEditor(); // its end would ask the model, which goes before the grid
}

/// The room of the page and its check box is there from the beginning, so that the grid does not
/// jump while one goes from field to field.
void CDlgTableEdit::keepRoomForPage()
{
    m_pagePlace = new QGridLayout(m_ui->id2003);
    m_pagePlace->setContentsMargins(0, 0, 0, 0);
    m_pagePlace->setRowMinimumHeight(0, kit::pixelsOf(*this, PageSize).height());
    QSizePolicy policy = m_ui->id2004->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    m_ui->id2004->setSizePolicy(policy);
    m_ui->id2004->hide();
}

void CDlgTableEdit::makeGrid()
{
    m_grid->setObjectName(kit::controlName(kit::IdGrid));
    m_grid->setAccessibleName(QStringLiteral("Campi"));
    m_grid->setWordWrap(false);
    m_grid->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    const int rowHeight = m_grid->fontMetrics().height() + RowPaddingPixels;
    m_grid->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    m_grid->verticalHeader()->setMinimumSectionSize(rowHeight);
    m_grid->verticalHeader()->setDefaultSectionSize(rowHeight);
    m_grid->setModel(&m_model);
    m_grid->setItemDelegate(m_delegate);
    m_grid->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::SelectedClicked
        | QAbstractItemView::EditKeyPressed | QAbstractItemView::AnyKeyPressed);
    m_grid->setTabKeyNavigation(false);
    m_grid->horizontalHeader()->setHighlightSections(false);
    m_grid->verticalHeader()->setFixedWidth(RowHeaderWidthPixels);
    m_grid->setMinimumHeight(LeastRows * rowHeight);
    for (int column = 0; column < FieldColumnCount; ++column)
        m_grid->setColumnWidth(column, columnWidth(*m_grid));
    kit::placeOver(m_ui->id2002, m_grid);
    m_grid->installEventFilter(this);
    connect(m_delegate, &CFieldDelegate::editBegun, this, &CDlgTableEdit::switchPage);
    connect(m_delegate, &CFieldDelegate::typingBegun, this, &CDlgTableEdit::onTypingBegun);
    connect(&m_model, &CFieldModel::edited, this, &CDlgTableEdit::onEdited);
    connect(m_grid->selectionModel(), &QItemSelectionModel::selectionChanged, this,
        &CDlgTableEdit::onSelectionChanged);
}

bool CDlgTableEdit::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_grid && event->type() == QEvent::KeyPress
        && takeKey(*static_cast<QKeyEvent*>(event)))
        return true; // else it would begin to edit the cell
    return QDialog::eventFilter(watched, event);
}

/// What the mouse does, from the keyboard: Space clicks the current cell, Ctrl+Return clicks it
/// twice, Shift+Space clicks the number of its row.
bool CDlgTableEdit::takeKey(const QKeyEvent& key)
{
    const QModelIndex cell = m_grid->currentIndex();
    const bool isControl = key.modifiers().testFlag(Qt::ControlModifier);
    switch (key.key()) {
    case Qt::Key_Delete:
        onDelete();
        return true;
    case Qt::Key_Space:
        if (key.modifiers().testFlag(Qt::ShiftModifier))
            m_grid->selectRow(cell.row());
        else if (cell.isValid())
            m_grid->setCurrentIndex(cell);
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (!isControl)
            return false;
        if (cell.isValid() && m_model.flags(cell).testFlag(Qt::ItemIsEditable))
            m_grid->edit(cell);
        return true;
    default:
        return false;
    }
}

// The blank row becomes a field with the first letter; the edit goes on.
void CDlgTableEdit::onTypingBegun(int row)
{
    if (!m_model.isBlank(row))
        return;
    m_model.appendField();
    switchPage(row);
}

void CDlgTableEdit::onEdited(int row, int column, const QString& text)
{
    const QString before = m_model.index(row, column).data(Qt::EditRole).toString();
    if (text != before) {
        if (isValid(row, column, text)) {
            if (m_model.isBlank(row))
                m_model.appendField();
            apply(row, column, text);
            m_model.refreshRow(row);
        } else {
            m_model.refreshRow(row);
            returnTo(m_model.index(row, column));
        }
    }
    switchPage(row);
}

/// Now, and once more when the keys or clicks that ended the edit have had their way with the
/// focus.
void CDlgTableEdit::returnTo(const QModelIndex& cell)
{
    m_grid->setCurrentIndex(cell);
    QMetaObject::invokeMethod(
        this,
        [this, cell = QPersistentModelIndex(cell)] {
            if (cell.isValid())
                m_grid->setCurrentIndex(cell);
        },
        Qt::QueuedConnection);
}

bool CDlgTableEdit::isValid(int row, int column, const QString& text)
{
    if (column != NameColumn)
        return !text.isEmpty();
    if (text.isEmpty())
        return true; // refused on OK only: the name may come later
    const orv::String name = kit::fromQt(text);
    for (int other = 0; other < m_model.fieldCount(); ++other)
        if (other != row
            && m_controller.GetFieldName(m_model.field(other)).CompareIgnoreCase(name) == 0) {
            FMessageBox(this, kit::Message { texts::FieldNameUsed });
            return false;
        }
    return true;
}

void CDlgTableEdit::apply(int row, int column, const QString& text)
{
    Field* const field = m_model.field(row);
    switch (column) {
    case NameColumn:
        m_controller.SetFieldName(field, kit::fromQt(text));
        break;
    case TypeColumn:
        m_controller.SetFieldType(field, tables::typeOf(text));
        applyPredefinedRule(field);
        break;
    default:
        m_controller.SetFieldFormat(field, tables::formatOf(text));
        break;
    }
}

// A computed field has the format of what is computed.
void CDlgTableEdit::applyPredefinedRule(Field* field)
{
    if (m_controller.IsFieldPredefined(field)) {
        const auto format = isText(m_controller.GetFieldType(field)) ? gis::FieldFormat::Text
                                                                     : gis::FieldFormat::Decimal;
        if (m_controller.GetFieldFormat(field) != format)
            m_controller.SetFieldFormat(field, format);
    }
    if (!m_page)
        return;
    m_page->RefreshFromField();
    if (Field* shown = m_model.field(m_pageRow))
        m_ui->id2004->setEnabled(!m_controller.IsFieldPredefined(shown));
}

void CDlgTableEdit::switchPage(int row)
{
    Field* const field = m_model.field(row);
    if (!field) {
        destroyPage();
        return;
    }
    const gis::FieldFormat format = m_controller.GetFieldFormat(field);
    if (row == m_pageRow && format == m_pageFormat)
        return;
    destroyPage();
    m_page = makeFieldPage(format, m_controller, field, m_ui->id2003);
    m_pageRow = row;
    m_pageFormat = format;
    if (!m_page)
        return;
    m_pagePlace->addWidget(m_page, 0, 0);
    m_page->show();
    renderRequested(field);
    putPageIntoTabOrder();
}

/// After "Obbligatorio", where it is seen; Qt puts what is made later at the end of the window.
void CDlgTableEdit::putPageIntoTabOrder()
{
    QList<QWidget*> controls;
    for (QWidget* next = m_page->nextInFocusChain(); next != m_page;
         next = next->nextInFocusChain())
        if (m_page->isAncestorOf(next) && (next->focusPolicy() & Qt::TabFocus) != 0
            && !next->focusProxy())
            controls.append(next);
    QWidget* before = m_ui->id2004;
    for (QWidget* control : controls) {
        setTabOrder(before, control);
        before = control;
    }
    setTabOrder(before, m_ui->id1);
}

void CDlgTableEdit::renderRequested(Field* field)
{
    m_ui->id2004->show();
    m_ui->id2004->setChecked(m_controller.IsFieldRequested(field));
    m_ui->id2004->setEnabled(!m_controller.IsFieldPredefined(field));
}

// Also with the field deleted: its handle stays valid, and what the page says is still said.
void CDlgTableEdit::destroyPage()
{
    m_pageRow = -1; // so that the next field in the same row gets a page of its own
    CSubDlgBase* const page = std::exchange(m_page, nullptr);
    if (page) {
        page->SetRequested(m_ui->id2004->isChecked());
        page->SaveFieldData();
        delete page;
    }
    m_ui->id2004->hide();
}

int CDlgTableEdit::wholeRow() const
{
    const QModelIndexList rows = m_grid->selectionModel()->selectedRows();
    const QModelIndexList cells = m_grid->selectionModel()->selectedIndexes();
    return rows.size() == 1 && cells.size() == FieldColumnCount ? rows.first().row() : -1;
}

void CDlgTableEdit::onSelectionChanged()
{
    const QModelIndexList cells = m_grid->selectionModel()->selectedIndexes();
    if (!cells.isEmpty() && !m_delegate->isEditing())
        switchPage(m_grid->currentIndex().isValid()
                    && m_grid->selectionModel()->isSelected(m_grid->currentIndex())
                ? m_grid->currentIndex().row()
                : cells.first().row());
    updateMoveButtons();
}

void CDlgTableEdit::updateMoveButtons()
{
    const int row = wholeRow();
    const int count = m_model.fieldCount();
    m_ui->id2088->setEnabled(row > 0 && row < count);
    m_ui->id2089->setEnabled(row >= 0 && row < count - 1);
}

void CDlgTableEdit::move(int step)
{
    m_delegate->commitOpenEditor(); // before another field stands in its row
    const int row = wholeRow();
    const int target = row + step;
    if (row < 0 || row >= m_model.fieldCount() || target < 0 || target >= m_model.fieldCount())
        return;
    m_model.swapFields(row, target);
    if (m_pageRow == row) // the page goes with its field
        m_pageRow = target;
    else if (m_pageRow == target)
        m_pageRow = row;
    m_grid->setCurrentIndex(m_model.index(target, NameColumn));
    m_grid->selectRow(target);
    updateMoveButtons();
}

void CDlgTableEdit::onDelete()
{
    const int row = wholeRow();
    if (!m_model.field(row))
        return;
    const QSignalBlocker silent(m_grid->selectionModel());
    m_model.removeField(row);
    destroyPage();
    m_grid->clearSelection();
    m_grid->selectionModel()->clearCurrentIndex();
    m_grid->viewport()->update();
    updateMoveButtons();
}

bool CDlgTableEdit::hasNamelessField()
{
    for (int row = 0; row < m_model.fieldCount(); ++row)
        if (m_controller.GetFieldName(m_model.field(row)).Length() == 0)
            return true;
    return false;
}

// Computed values follow the new fields; rows without an entity get the defaults of empty cells.
void CDlgTableEdit::updateRows()
{
    const int count = m_library->GetNumRows(m_table);
    // The fields are in the library already: there is nothing left that could be cancelled.
    kit::Progress progress(
        this, QStringLiteral("Aggiornamento delle righe…"), kit::ProgressKind::Unstoppable);
    for (int i = 0; i < count; ++i) {
        if (i % RowsBetweenProgress == 0)
            progress.advance(static_cast<double>(i) / count);
        orv::CResultRow* row = m_library->GetRow(m_table, i);
        if (gis::CEnt* entity = m_library->GetEnt(row))
            m_library->RecalcAllPredefValues(gis::CLibGis::GetTheme(entity), entity);
        else
            m_library->InitializeWithDefVal(m_table, row);
    }
}

bool CDlgTableEdit::applyAll()
{
    // Progress lets events in, and with them a second OK or Annulla.
    const QScopedValueRollback<bool> applying(m_isApplying, true);
    const kit::WaitCursor wait;
    if (!m_controller.Commit())
        return false;
    updateRows();
    return true;
}

void CDlgTableEdit::accept()
{
    if (m_isApplying)
        return;
    m_delegate->commitOpenEditor();
    if (hasNamelessField()) {
        FMessageBox(this, kit::Message { texts::FieldNamesMissing });
        return;
    }
    const int shownRow = m_pageRow;
    destroyPage();
    if (!applyAll()) {
        switchPage(shownRow);
        return;
    }
    QDialog::accept();
}

void CDlgTableEdit::reject()
{
    if (m_isApplying)
        return;
    m_delegate->dropOpenEditor();
    if (m_page) {
        // Not saved; gone before its field's handle is, whatever the loss of the focus makes it do.
        m_page->hide();
        std::exchange(m_page, nullptr)->deleteLater();
        m_pageRow = -1;
    }
    m_controller.Revert();
    QDialog::reject();
}
