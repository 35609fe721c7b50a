// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "query/dialog/DlgQuery.h"

#include "query/dialog/DlgQueryPage1.h"
#include "query/dialog/DlgQuerySheet.h"
#include "query/dialog/ValueListModel.h"
#include "query/execution/Readings.h"
#include "tables/grid/CtrlShowTable.h"

#include "kit/Form.h"
#include "kit/HandleListModel.h"
#include "kit/LongWork.h"
#include "kit/WaitCursor.h"
#include "kit/texts/QtText.h"
#include "kit/texts/TextLoader.h"

#include "ui_CDlgQuery.h"

#include <QAction>
#include <QKeyEvent>
#include <QScopedValueRollback>
#include <QTimer>

#include <utility>

namespace {

constexpr int IdRun = 2081;
constexpr int RememberAfterMs = 100;

/// The row that is selected in a list; -1 when none is.
int selectedRow(const QAbstractItemView& list)
{
    const auto rows = list.selectionModel()->selectedIndexes();
    return rows.isEmpty() ? -1 : rows.constFirst().row();
}

QString selectedText(const QAbstractItemView& list)
{
    const auto rows = list.selectionModel()->selectedIndexes();
    return rows.isEmpty() ? QString() : rows.constFirst().data().toString();
}

} // namespace

CDlgQuery::CDlgQuery(
    std::int64_t drawing, CDravoEng* engine, gis::CLibGis* library, QWidget* parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::CDlgQuery>())
    , m_query(drawing, library)
    , m_fields(new kit::CHandleListModel(this))
    , m_values(new query::CValueListModel(this))
    , m_sheet(new CDlgQuerySheet(drawing, engine, library, this))
{
    m_ui->setupUi(this);
    m_ui->id2068->setModel(m_fields);
    m_ui->id2069->setModel(m_values);
    fillThemes();
    m_query.selectTheme(m_ui->id2067->currentIndex());
    renderTheme();
    kit::placeOver(m_ui->id2070, m_sheet);
    kit::prepareDialog(*this, "CDlgQuery", { 338, 251 }, IdRun);
    setTabOrder(m_ui->id2085, m_sheet);
    setTabOrder(m_sheet, m_ui->id2081);
    setTabOrder(m_ui->id2081, m_ui->id1);
    connect(m_sheet, &QTabWidget::currentChanged, this, &CDlgQuery::putButtonsLast);
    connect(m_ui->id2067, &QComboBox::currentIndexChanged, this, &CDlgQuery::onThemeChanged);
    bindLists();
    bindOperators();
    connect(m_ui->id2081, &QPushButton::clicked, this, &CDlgQuery::onRun);
    connect(m_ui->id1, &QPushButton::clicked, this, &QDialog::accept);
}

CDlgQuery::~CDlgQuery()
{
    if (m_pending)
        m_history.remember(m_pending->theme, m_pending->filter);
}

void CDlgQuery::bindLists()
{
    // Clicks, not changes of the current row: walking through the fields with the keys must not
    // gather the values of each.
    connect(m_ui->id2068, &QListView::clicked, this, [this] { onFieldClicked(m_ui->id2068); });
    connect(m_ui->id2068, &QListView::doubleClicked, this, &CDlgQuery::onFieldDoubleClicked);
    connect(m_ui->id2069, &QListView::doubleClicked, this, &CDlgQuery::onValueDoubleClicked);
    // The Menu key and the right button offer what a double click does.
    auto* insertField = new QAction(QStringLiteral("Inserisci campo"), m_ui->id2068);
    connect(insertField, &QAction::triggered, this, &CDlgQuery::onFieldDoubleClicked);
    m_ui->id2068->addAction(insertField);
    auto* insertValue = new QAction(QStringLiteral("Inserisci valore"), m_ui->id2069);
    connect(insertValue, &QAction::triggered, this, &CDlgQuery::onValueDoubleClicked);
    m_ui->id2069->addAction(insertValue);
    for (QWidget* list :
        { static_cast<QWidget*>(m_ui->id2068), static_cast<QWidget*>(m_ui->id2069) })
        list->setContextMenuPolicy(Qt::ActionsContextMenu);
    m_ui->id2068->installEventFilter(this);
    m_ui->id2069->installEventFilter(this);
}

void CDlgQuery::bindOperators()
{
    const std::pair<QPushButton*, QString> operators[] = {
        { m_ui->id2073, QStringLiteral(" < ") },
        { m_ui->id2074, QStringLiteral(" = ") },
        { m_ui->id2075, QStringLiteral(" > ") },
        { m_ui->id2076, QStringLiteral(" <= ") },
        { m_ui->id2077, QStringLiteral(" <> ") },
        { m_ui->id2078, QStringLiteral(" >= ") },
        { m_ui->id2079, QStringLiteral(" AND ") },
        { m_ui->id2080, QStringLiteral(" OR ") },
        { m_ui->id2082, QStringLiteral(" NOT ") },
        { m_ui->id2083, QStringLiteral(" LIKE ") },
        { m_ui->id2085, QStringLiteral(" IS NULL ") },
    };
    for (const auto& [button, text] : operators)
        connect(button, &QPushButton::clicked, m_sheet,
            [this, inserted = text] { m_sheet->InsertOperator(inserted); });
}

/// The keyboard's way to what the mouse does in the lists: Space clicks, Ctrl+Return double-clicks.
bool CDlgQuery::eventFilter(QObject* watched, QEvent* event)
{
    const bool isField = watched == m_ui->id2068;
    if (event->type() == QEvent::KeyPress && (isField || watched == m_ui->id2069)) {
        const auto* key = static_cast<QKeyEvent*>(event);
        const bool isReturn = key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter;
        const bool isDouble
            = isReturn && (key->modifiers() & ~Qt::KeypadModifier) == Qt::ControlModifier;
        if (isField && (key->key() == Qt::Key_Space || isDouble))
            onFieldClicked(nullptr);
        if (isDouble)
            isField ? onFieldDoubleClicked() : onValueDoubleClicked();
        if (isDouble || key->key() == Qt::Key_Space)
            return true;
    }
    return QDialog::eventFilter(watched, event);
}

void CDlgQuery::fillThemes()
{
    std::vector<kit::ListItem> items;
    for (const auto& theme : m_query.themes())
        items.push_back({ kit::toQt(theme.name), theme.handle });
    kit::fillCombo(*m_ui->id2067, items, m_query.activeTheme());
}

void CDlgQuery::onThemeChanged()
{
    m_query.selectTheme(m_ui->id2067->currentIndex());
    m_values->setTexts({});
    renderTheme();
}

void CDlgQuery::renderTheme()
{
    std::vector<kit::ListItem> items;
    QStringList names;
    for (const auto& field : m_query.fields()) {
        items.push_back({ kit::toQt(field.name), field.handle });
        names.append(items.back().text);
    }
    m_fields->setItems(std::move(items));
    m_sheet->SetTheme(m_query.theme());
    m_sheet->FilterPage().SetFieldNames(names);
    m_sheet->FilterPage().SetHistory(m_history.filtersOf(m_query.themeName()));
}

/// `clicked`: the list that the mouse clicked; null where the click was made with the keys.
void CDlgQuery::onFieldClicked(QAbstractItemView* clicked)
{
    if (m_isFieldClicked)
        return; // the second click of a double click: the first is being answered
    const QScopedValueRollback<bool> answering(m_isFieldClicked, true);
    const kit::WaitCursor wait;
    const int row = selectedRow(*m_ui->id2068);
    if (!readColumns(m_query.fieldsOfClick(row), clicked))
        return; // stopped: the click has not happened
    auto values = m_query.clickField(row);
    if (!values)
        return;
    m_sheet->SetFieldFormat(values->format);
    m_values->setTexts(std::move(values->texts));
    if (!values->isReadable)
        tellUnreadable(selectedText(*m_ui->id2068));
}

/// Columns that still lie in a file are read on another thread, where the user sees how far it is.
/// False when that was stopped; what failed there is read here, cell by cell where need be.
bool CDlgQuery::readColumns(const std::vector<int>& fields, QAbstractItemView* clicked)
{
    const query::ColumnSource columns = m_query.columnSource();
    gis::CDBTable* const table = m_query.table();
    if (fields.empty() || !columns)
        return true;
    const auto read = [&](kit::WorkToken& token) {
        query::readColumns(columns, table, fields, [&token](double fraction) {
            token.report(fraction);
            return !token.isCancelled();
        });
    };
    return kit::runLongWork(this, QStringLiteral("Lettura dei campi…"), read, clicked)
        != kit::WorkEnd::Stopped;
}

void CDlgQuery::tellUnreadable(const QString& field)
{
    FMessageBox(this,
        QStringLiteral("Il campo \"") + field
            + QStringLiteral("\" non può essere letto: il file è danneggiato o non raggiungibile.\n"
                             "Riaprirlo o usarne una copia di riserva."),
        kit::text(texts::Attention), kit::BoxIcon::Exclamation, kit::BoxButtons::Ok);
}

void CDlgQuery::onFieldDoubleClicked()
{
    if (selectedRow(*m_ui->id2068) >= 0)
        m_sheet->InsertField(selectedText(*m_ui->id2068));
}

void CDlgQuery::onValueDoubleClicked()
{
    if (selectedRow(*m_ui->id2069) >= 0)
        m_sheet->InsertValue(selectedText(*m_ui->id2069));
}

void CDlgQuery::onRun()
{
    const QString filter = m_sheet->FilterText();
    std::optional<kit::Message> refusal;
    {
        const kit::WaitCursor wait;
        const auto fields = m_query.fieldsOfFilter(kit::fromQt(filter));
        if (!readColumns(fields))
            return; // stopped: the result before stays
        refusal = m_query.run(kit::fromQt(filter), fields);
    }
    if (refusal)
        FMessageBox(this, *refusal);
    m_sheet->SetResult(m_query.found());
    if (refusal)
        return;
    if (m_query.unreadableField()) {
        tellUnreadable(kit::toQt(*m_query.unreadableField()));
        return;
    }
    m_sheet->SelectPage(CDlgQuerySheet::ResultPage);
    putButtonsLast();
    rememberPending();
    m_pending = std::make_unique<AskedFilter>(AskedFilter { m_query.themeName(), filter });
    // Once the result is painted: settings are written safely, which takes the disk a while.
    QTimer::singleShot(RememberAfterMs, this, &CDlgQuery::rememberPending);
}

/// The grid of the result is made late, so it would come after the buttons below it.
void CDlgQuery::putButtonsLast()
{
    auto* grid = m_sheet->findChild<CCtrlShowTable*>();
    if (!grid)
        return;
    grid->putBefore(*m_ui->id2081);
    setTabOrder(m_ui->id2081, m_ui->id1);
}

void CDlgQuery::rememberPending()
{
    const auto asked = std::exchange(m_pending, nullptr);
    if (!asked)
        return;
    m_history.remember(asked->theme, asked->filter);
    if (asked->theme == m_query.themeName())
        m_sheet->FilterPage().SetHistory(m_history.filtersOf(asked->theme));
}
