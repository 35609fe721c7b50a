// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tables/grid/CtrlShowTable.h"

#include "tables/grid/FindBar.h"
#include "tables/grid/GridFind.h"
#include "tables/grid/GridView.h"

#include "kit/Form.h"
#include "kit/MessageBox.h"
#include "kit/Progress.h"
#include "kit/WaitCursor.h"
#include "kit/texts/QtText.h"
#include "kit/texts/TextLoader.h"

#include <QApplication>
#include <QClipboard>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLocale>
#include <QMenu>
#include <QShortcut>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>
#include <span>

using tables::RowRun;

namespace {

/// More runs of selected rows than this are let go, and the user is told: a selection of so many
/// pieces would make every repaint slow.
constexpr std::size_t MostSelectedRuns = 20000;

QString countText(int count, const QString& one, const QString& several)
{
    static const QLocale italian(QLocale::Italian, QLocale::Italy);
    return italian.toString(count) + QLatin1Char(' ') + (count == 1 ? one : several);
}

} // namespace

CCtrlShowTable::CCtrlShowTable(CDravoEng* engine, std::int64_t drawing, gis::CLibGis* library,
    gis::CDBTable* table, QWidget* parent)
    : QWidget(parent)
    , m_grid(engine, drawing, library, table)
    , m_model(m_grid.contents())
    , m_view(new tables::CGridView(this))
    , m_findBar(new tables::CFindBar(this))
    , m_counts(new QLabel(this))
    , m_hint(new QLabel(this))
{
    setObjectName(kit::controlName(kit::IdGrid));
    m_view->setObjectName(kit::controlName(kit::IdGrid));
    m_view->setAccessibleName(QStringLiteral("Tabella degli attributi"));
    m_counts->setObjectName(QStringLiteral("counts"));
    m_hint->setObjectName(QStringLiteral("hint"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(3);
    layout->addWidget(m_view, 1);
    layout->addWidget(m_findBar);
    auto* status = new QHBoxLayout;
    status->setContentsMargins(2, 0, 2, 0);
    status->addWidget(m_counts);
    status->addStretch(1);
    status->addWidget(m_hint);
    layout->addLayout(status);
    for (QLabel* label : { m_counts, m_hint })
        label->setTextFormat(Qt::PlainText);
    setFocusProxy(m_view);
    m_view->setGridModel(m_model);
    connectView();
    renderStatus();
}

CCtrlShowTable::~CCtrlShowTable()
{
    m_view->disconnect(this); // its last signals come when half of this is gone
}

void CCtrlShowTable::connectView()
{
    using tables::CGridModel;
    using tables::CGridView;
    connect(m_view, &CGridView::currentRowChanged, this,
        [this](int row) { m_grid.showRow(m_model.fillRow(row)); });
    connect(m_view, &CGridView::selectedRowsChanged, this, [this] {
        m_lostSelection = 0;
        renderStatus();
    });
    connect(m_view, &CGridView::copyRequested, this, &CCtrlShowTable::copy);
    connect(m_view, &CGridView::menuRequested, this, &CCtrlShowTable::showMenu);
    connect(m_view, &CGridView::findRequested, m_findBar, &tables::CFindBar::open);
    // From anywhere in the window while the grid is seen.
    auto* find = new QShortcut(QKeySequence::Find, this);
    connect(find, &QShortcut::activated, m_findBar, &tables::CFindBar::open);
    connect(m_view, &CGridView::findNextRequested, this, &CCtrlShowTable::findNext);
    connect(m_findBar, &tables::CFindBar::findRequested, this, &CCtrlShowTable::findNext);
    connect(m_findBar, &tables::CFindBar::closed, this, &CCtrlShowTable::closeFind);
    connect(&m_model, &CGridModel::aboutToSort, this, &CCtrlShowTable::beforeSort);
    connect(&m_model, &CGridModel::sorted, this, &CCtrlShowTable::afterSort);
    connect(&m_model, &CGridModel::sortFailed, this, &CCtrlShowTable::onSortFailed);
    connect(&m_model, &CGridModel::entryRefused, this, &CCtrlShowTable::onEntryRefused);
    connect(&m_model, &CGridModel::entryTaken, this, &CCtrlShowTable::renderStatus);
}

void CCtrlShowTable::Fill()
{
    m_grid.contents().fill();
    m_reading = readColumns();
    afterFill();
    selectFillRows(m_grid.rowsSelectedInDrawing());
    renderStatus();
    if (const auto runs = m_view->selectedRuns(); !runs.empty())
        m_view->scrollTo(m_model.index(runs.front().first, 0), QAbstractItemView::PositionAtCenter);
}

void CCtrlShowTable::Fill(const std::vector<orv::CResultRow*>& rows)
{
    m_grid.contents().fill(rows);
    m_reading = readColumns();
    afterFill();
}

void CCtrlShowTable::FillEntities(const std::vector<gis::CEnt*>& entities, bool areColumnsRead)
{
    m_grid.contents().fill(std::span<gis::CEnt* const>(entities));
    m_reading = areColumnsRead ? kit::WorkEnd::Done : readColumns();
    afterFill();
}

// Columns that are still in a file are read before the first cell is painted, where the user sees
// how far it is. Without them the cells are read when they come into sight.
kit::WorkEnd CCtrlShowTable::readColumns()
{
    tables::CGridContents& contents = m_grid.contents();
    if (!contents.hasColumns())
        return kit::WorkEnd::Done;
    return kit::runLongWork(
        this, QStringLiteral("Lettura della tabella…"), [&](kit::WorkToken& token) {
            for (int field = 0; field < contents.fieldCount() && !token.isCancelled(); ++field) {
                static_cast<void>(contents.column(field));
                token.report((field + 1.0) / contents.fieldCount());
            }
        });
}

void CCtrlShowTable::afterFill()
{
    m_refused = QPersistentModelIndex();
    m_model.refill();
    m_view->fitRowNumbers();
    m_view->showOrder(m_model);
    // No cell is current before the user chose one: Qt would take the first when the grid gets the
    // focus, and the drawing would jump there.
    m_view->setCurrentIndex(QModelIndex());
    renderStatus();
}

void CCtrlShowTable::SetEditable(bool isEditable)
{
    m_model.setEditable(isEditable);
}

bool CCtrlShowTable::Save()
{
    m_view->commitOpenEditor();
    if (m_refused.isValid()) {
        showRefusal();
        return false;
    }
    std::optional<kit::Message> refusal;
    {
        const kit::WaitCursor wait;
        refusal = m_grid.save();
    }
    if (refusal)
        FMessageBox(this, *refusal);
    return !refusal;
}

void CCtrlShowTable::onEntryRefused(const QModelIndex& index)
{
    if (m_refused.isValid())
        return;
    m_refused = index;
    // Not now: the editor is still in the middle of its end, and a window on top would end it
    // again.
    QTimer::singleShot(0, this, &CCtrlShowTable::showRefusal);
}

void CCtrlShowTable::showRefusal()
{
    if (!m_refused.isValid())
        return;
    const QModelIndex cell = m_refused;
    m_refused = QPersistentModelIndex();
    FMessageBox(this, tables::CCtrlDlgShowTable::outsideBounds());
    m_view->makeCurrent(cell);
    m_view->setFocus();
    m_view->update(cell);
}

void CCtrlShowTable::selectFillRows(const std::vector<int>& fillRows)
{
    if (!fillRows.empty())
        m_model.showAllRows();
    std::vector<bool> isSelected(static_cast<std::size_t>(m_model.rowCount()));
    for (const int row : fillRows)
        isSelected[static_cast<std::size_t>(row)] = true;
    std::vector<RowRun> runs;
    for (int row = 0; row < m_model.rowCount() && !fillRows.empty(); ++row) {
        if (!isSelected[static_cast<std::size_t>(m_model.fillRow(row))])
            continue;
        if (!runs.empty() && runs.back().last == row - 1)
            runs.back().last = row;
        else
            runs.push_back({ row, row });
    }
    const bool isTooMany = runs.size() > MostSelectedRuns;
    if (!runs.empty() && !isTooMany)
        m_view->selectRuns(runs);
    m_lostSelection = isTooMany ? static_cast<int>(fillRows.size()) : 0;
}

void CCtrlShowTable::beforeSort()
{
    m_view->commitOpenEditor();
    m_selectedFillRows.clear();
    for (const RowRun& run : m_view->selectedRuns())
        for (int row = run.first; row <= run.last; ++row)
            m_selectedFillRows.push_back(m_model.fillRow(row));
    // Selected again by hand afterwards: Qt would carry each selected cell over one by one.
    m_view->clearSelection();
}

void CCtrlShowTable::onSortFailed()
{
    FMessageBox(this,
        QStringLiteral("La tabella non può essere ordinata: memoria insufficiente.\n"
                       "Chiudere altri programmi e riprovare."),
        kit::text(texts::Attention), kit::BoxIcon::Exclamation, kit::BoxButtons::Ok);
}

void CCtrlShowTable::afterSort()
{
    m_view->showOrder(m_model);
    selectFillRows(m_selectedFillRows);
    m_selectedFillRows = {};
    if (m_view->currentIndex().isValid())
        m_view->scrollTo(m_view->currentIndex());
    renderStatus();
}

void CCtrlShowTable::copy()
{
    const auto runs = m_view->selectedRuns();
    if (runs.empty()) {
        const QModelIndex cell = m_view->currentIndex();
        if (cell.isValid())
            QApplication::clipboard()->setText(
                kit::toQt(m_grid.cellForCopy(m_model.fillRow(cell.row()), cell.column())));
        return;
    }
    std::vector<int> fillRows;
    for (const RowRun& run : runs)
        for (int row = run.first; row <= run.last; ++row)
            fillRows.push_back(m_model.fillRow(row));
    std::string text;
    kit::Progress progress(this, QStringLiteral("Copia in corso…"));
    if (m_grid.copyRows(
            fillRows, [&](double fraction) { return progress.advance(fraction); }, text))
        QApplication::clipboard()->setText(QString::fromStdString(text));
}

/// What can be done with the grid, at the mouse or, with the Menu key, at the current cell.
void CCtrlShowTable::showMenu(const QPoint& place)
{
    auto* menu = new QMenu(this);
    menu->setObjectName(QStringLiteral("gridMenu"));
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const QModelIndex cell = m_view->currentIndex();
    QAction* edit = menu->addAction(QStringLiteral("Modifica\tF2"), this, [this] {
        if (m_view->currentIndex().isValid())
            m_view->edit(m_view->currentIndex());
    });
    edit->setEnabled(cell.isValid() && m_model.flags(cell).testFlag(Qt::ItemIsEditable));
    menu->addSeparator();
    menu->addAction(QStringLiteral("Copia\tCtrl+C"), this, &CCtrlShowTable::copy)
        ->setEnabled(cell.isValid() || m_view->selectedCount() > 0);
    menu->addAction(
        QStringLiteral("Seleziona tutto\tCtrl+A"), m_view, &QAbstractItemView::selectAll);
    menu->addAction(QStringLiteral("Trova...\tCtrl+F"), m_findBar, &tables::CFindBar::open);
    menu->popup(place);
}

std::vector<int> CCtrlShowTable::columnWidths() const
{
    std::vector<int> widths;
    for (int column = 0; column < m_model.columnCount(); ++column)
        widths.push_back(m_view->columnWidth(column));
    return widths;
}

void CCtrlShowTable::setColumnWidths(const std::vector<int>& widths)
{
    const int count = std::min(m_model.columnCount(), static_cast<int>(widths.size()));
    for (int column = 0; column < count; ++column)
        m_view->setColumnWidth(column, widths[static_cast<std::size_t>(column)]);
}

void CCtrlShowTable::putBefore(QWidget& next)
{
    QWidget* last = m_view;
    for (QWidget* each = last; isAncestorOf(each); each = each->nextInFocusChain())
        if (each->focusPolicy() & Qt::TabFocus)
            last = each;
    setTabOrder(last, &next);
}

void CCtrlShowTable::findNext(bool isForward)
{
    if (m_findBar->isHidden() || m_findBar->sought().isEmpty()) {
        m_findBar->open();
        return;
    }
    m_model.showAllRows();
    kit::Progress progress(this, QStringLiteral("Ricerca in corso…"));
    tables::CGridFinder finder(m_model, m_findBar->sought());
    const QModelIndex current = m_view->currentIndex();
    const auto place = finder.find({ current.row(), current.column() },
        isForward ? tables::FindDirection::Forward : tables::FindDirection::Backward,
        [&](double fraction) { return progress.advance(fraction); });
    m_notFound = place.isFound() || finder.wasStopped()
        ? QString()
        : QStringLiteral("Nessuna cella contiene \"") + m_findBar->sought() + QLatin1Char('"');
    if (place.isFound())
        m_view->makeCurrent(m_model.index(place.viewRow, place.field));
    renderStatus();
}

void CCtrlShowTable::closeFind()
{
    m_notFound.clear();
    m_findBar->hide();
    m_view->setFocus();
    renderStatus();
}

void CCtrlShowTable::renderStatus()
{
    const int rows = m_grid.contents().rowCount();
    QString counts = countText(rows, QStringLiteral("riga"), QStringLiteral("righe"));
    if (const int selected = m_view->selectedCount(); selected > 0)
        counts += QStringLiteral(", ")
            + countText(selected, QStringLiteral("selezionata"), QStringLiteral("selezionate"));
    m_counts->setText(counts);
    if (!m_notFound.isEmpty())
        m_hint->setText(m_notFound);
    else if (m_lostSelection > 0)
        m_hint->setText(QStringLiteral("Selezione troppo frammentata, non mostrata: ")
            + countText(m_lostSelection, QStringLiteral("riga"), QStringLiteral("righe")));
    else if (m_grid.contents().hasEditedDecimals())
        m_hint->setText(QStringLiteral("I decimali si modificano in \"Attributi gis\""));
    else
        m_hint->clear();
}
