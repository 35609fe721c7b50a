// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "app/MainWindow.h"

#include "app/IdentifyPanel.h"
#include "app/RecentFiles.h"
#include "app/ThemePanel.h"
#include "app/Words.h"
#include "embedded/model/Library.h"
#include "kit/Choosers.h"
#include "kit/Icons.h"
#include "kit/MessageBox.h"
#include "kit/WaitCursor.h"
#include "kit/texts/QtText.h"
#include "tematica/Dialogs.h"

#include <QAction>
#include <QActionGroup>
#include <QDockWidget>
#include <QFileInfo>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QStatusBar>
#include <QToolBar>

namespace app {

namespace {

/// An entry whose dialog this build does not have yet: there, and plainly not to be used.
QAction* addLater(QMenu* menu, const QString& text)
{
    QAction* action = menu->addAction(text);
    action->setEnabled(false);
    return action;
}

/// A name in a menu: an ampersand in it is no access key.
QString plainInMenu(QString text)
{
    return text.replace(QLatin1Char('&'), QLatin1String("&&"));
}

/// The name of a step as a menu has room for it.
QString shortened(const orv::String& name)
{
    constexpr int MostLetters = 80;
    const QString text = kit::toQt(name);
    return text.size() <= MostLetters ? text : text.left(MostLetters) + QStringLiteral("…");
}

} // namespace

template <typename Run> void MainWindow::runDialog(const QString& step, const Run& run)
{
    m_identify->commit(); // what is still being typed there belongs to what the dialog shows
    m_document.act(step, run);
    activateWindow();
}

void MainWindow::makePanels()
{
    auto* themesDock = new QDockWidget(QStringLiteral("Temi"), this);
    themesDock->setObjectName(QStringLiteral("themesDock"));
    m_themes = new ThemePanel(m_document, themesDock);
    themesDock->setWidget(m_themes);
    addDockWidget(Qt::LeftDockWidgetArea, themesDock);
    auto* identifyDock = new QDockWidget(QStringLiteral("Entità"), this);
    identifyDock->setObjectName(QStringLiteral("identifyDock"));
    m_identify = new IdentifyPanel(m_document, identifyDock);
    identifyDock->setWidget(m_identify);
    addDockWidget(Qt::LeftDockWidgetArea, identifyDock);
    resizeDocks({ themesDock, identifyDock }, { 290, 290 }, Qt::Horizontal);
    connect(m_themes, &ThemePanel::currentChanged, this, &MainWindow::refreshActions);
    connect(m_identify, &IdentifyPanel::pendingChanged, this, &MainWindow::refreshActions);
}

void MainWindow::makeFileMenu()
{
    QMenu* menu = menuBar()->addMenu(QStringLiteral("&File"));
    connect(menu->addAction(QStringLiteral("&Nuovo"), QKeySequence::New), &QAction::triggered, this,
        [this] {
            if (askUnsaved())
                m_document.startNew();
        });
    connect(menu->addAction(QStringLiteral("&Apri..."), QKeySequence::Open), &QAction::triggered,
        this, &MainWindow::chooseAndOpen);
    m_recentMenu = menu->addMenu(QStringLiteral("Apri &recenti"));
    refreshRecentFiles();
    menu->addSeparator();
    m_save = menu->addAction(QStringLiteral("&Salva"), QKeySequence::Save);
    connect(m_save, &QAction::triggered, this, &MainWindow::save);
    connect(menu->addAction(QStringLiteral("Salva con n&ome..."), QKeySequence::SaveAs),
        &QAction::triggered, this, &MainWindow::saveAs);
    menu->addSeparator();
    connect(menu->addAction(QStringLiteral("&Importa shapefile...")), &QAction::triggered, this,
        &MainWindow::chooseAndImport);
    addLater(menu, QStringLiteral("&Esporta shapefile..."));
    menu->addSeparator();
    connect(menu->addAction(QStringLiteral("Es&ci"), QKeySequence::Quit), &QAction::triggered, this,
        &QWidget::close);
}

void MainWindow::makeEditMenu()
{
    QMenu* menu = menuBar()->addMenu(QStringLiteral("&Modifica"));
    m_undo = menu->addAction(QStringLiteral("&Annulla"), QKeySequence::Undo);
    connect(m_undo, &QAction::triggered, this, [this] {
        m_identify->commit();
        const kit::WaitCursor wait;
        m_document.undo();
    });
    m_redo = menu->addAction(QStringLiteral("&Ripeti"), QKeySequence::Redo);
    connect(m_redo, &QAction::triggered, this, [this] {
        m_identify
            ->commit(); // a text that was typed meanwhile is a new act: nothing to repeat then
        const kit::WaitCursor wait;
        m_document.redo();
    });
    menu->addSeparator();
    connect(menu->addAction(QStringLiteral("&Deseleziona tutto")), &QAction::triggered, this,
        [this] { m_document.clearHighlight(); });
}

QAction* MainWindow::addTool(
    QActionGroup* group, MapTool tool, const QString& text, const char* icon, const QString& help)
{
    QAction* action = group->addAction(kit::icon(icon), text);
    action->setCheckable(true);
    action->setChecked(m_canvas->tool() == tool);
    action->setToolTip(help);
    connect(action, &QAction::triggered, this, [this, tool] { m_canvas->setTool(tool); });
    return action;
}

void MainWindow::makeViewMenu()
{
    QMenu* menu = menuBar()->addMenu(QStringLiteral("&Vista"));
    QToolBar* bar = addToolBar(QStringLiteral("Strumenti"));
    bar->setObjectName(QStringLiteral("tools"));
    bar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    auto* group = new QActionGroup(this);
    addTool(group, MapTool::Select, QStringLiteral("Seleziona"), "select",
        QStringLiteral("Selezionare con un clic o un riquadro (Ctrl aggiunge)"));
    addTool(group, MapTool::Identify, QStringLiteral("Identifica"), "identify",
        QStringLiteral("Mostrare gli attributi di un'entità (doppio clic: scheda)"));
    addTool(group, MapTool::Pan, QStringLiteral("Sposta"), "pan",
        QStringLiteral("Spostare la mappa (anche con il tasto centrale)"));
    addTool(group, MapTool::ZoomBox, QStringLiteral("Ingrandisci"), "zoom",
        QStringLiteral("Ingrandire un riquadro (anche con la rotella)"));
    menu->addActions(group->actions());
    bar->addActions(group->actions());
    menu->addSeparator();
    QAction* fit = menu->addAction(
        kit::icon("fit"), QStringLiteral("&Vedi tutto"), QKeySequence(Qt::CTRL | Qt::Key_0));
    connect(fit, &QAction::triggered, m_canvas, &MapCanvas::fitAll);
    bar->addAction(fit);
    connect(menu->addAction(QStringLiteral("&Avvicina"), QKeySequence::ZoomIn), &QAction::triggered,
        this, [this] { m_canvas->zoomBy(1.5); });
    connect(menu->addAction(QStringLiteral("A&llontana"), QKeySequence::ZoomOut),
        &QAction::triggered, this, [this] { m_canvas->zoomBy(1 / 1.5); });
    menu->addSeparator();
    for (QDockWidget* dock : findChildren<QDockWidget*>())
        menu->addAction(dock->toggleViewAction());
}

void MainWindow::makeGisMenu()
{
    QMenu* menu = menuBar()->addMenu(QStringLiteral("&GIS"));
    QAction* tables = menu->addAction(QStringLiteral("&Tabelle..."));
    connect(tables, &QAction::triggered, this, [this] {
        embedded::Library::of(&m_document.library())->beginReport();
        const QString name = QStringLiteral("Gestione tabelle");
        runDialog(name, [&] { FDlgTableListGIS(&m_document.library()); });
        tellStructureReport(name);
    });
    m_structure = menu->addAction(QStringLiteral("&Struttura tabella..."));
    connect(m_structure, &QAction::triggered, this, &MainWindow::showStructure);
    m_table = menu->addAction(
        QStringLiteral("Tabella &attributi..."), QKeySequence(Qt::CTRL | Qt::Key_T));
    connect(m_table, &QAction::triggered, this, &MainWindow::showTable);
    m_form = menu->addAction(QStringLiteral("Attributi &dell'entità..."));
    connect(m_form, &QAction::triggered, this, [this] { showEntityForm(chosenEntity()); });
    menu->addSeparator();
    addLater(menu, QStringLiteral("T&emi..."));
    m_query
        = menu->addAction(QStringLiteral("&Interrogazione..."), QKeySequence(Qt::CTRL | Qt::Key_I));
    connect(m_query, &QAction::triggered, this, [this] {
        runDialog(QStringLiteral("Interrogazione"),
            [this] { FDlgQuery(0, &m_document.engine(), &m_document.library()); });
    });
    auto* bar = findChild<QToolBar*>(QStringLiteral("tools"));
    bar->addSeparator();
    m_table->setIcon(kit::icon("table"));
    m_query->setIcon(kit::icon("find"));
    m_table->setIconText(QStringLiteral("Tabella"));
    m_query->setIconText(QStringLiteral("Interroga"));
    bar->addActions({ m_table, m_query });
}

void MainWindow::makeStatusBar()
{
    m_message = new QLabel(this);
    m_message->setObjectName(QStringLiteral("message"));
    m_message->setTextFormat(Qt::PlainText);
    m_coordinates = new QLabel(this);
    m_counts = new QLabel(this);
    m_message->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    m_unprotected = new QLabel(QStringLiteral("Copia di recupero non scritta"), this);
    m_unprotected->setObjectName(QStringLiteral("unprotected"));
    m_unprotected->setToolTip(QStringLiteral(
        "La copia di recupero non può essere scritta: il lavoro non salvato non è protetto."));
    m_unprotected->setStyleSheet(
        QStringLiteral("color: white; background: #B3261E; padding: 0 6px"));
    m_unprotected->hide();
    statusBar()->addWidget(m_message, 1);
    statusBar()->addPermanentWidget(m_unprotected);
    statusBar()->addPermanentWidget(m_counts);
    statusBar()->addPermanentWidget(m_coordinates);
}

gis::CTheme* MainWindow::chosenTheme() const
{
    if (gis::CTheme* current = m_themes->currentTheme())
        return current;
    return m_document.library().GetThemeActive();
}

gis::CDBTable* MainWindow::chosenTable() const
{
    gis::CLibGis& library = m_document.library();
    if (gis::CTheme* theme = chosenTheme())
        return library.GetTable(theme);
    return library.GetNumTables() == 1 ? library.GetTable(0) : nullptr;
}

gis::CEnt* MainWindow::chosenEntity() const
{
    const auto& selected = m_document.highlight().selected;
    if (selected.size() > 1)
        return nullptr; // which of them is not told
    return selected.empty() ? m_identify->entity() : selected.front();
}

void MainWindow::showEntityForm(gis::CEnt* entity)
{
    if (!entity)
        return;
    gis::CLibGis& library = m_document.library();
    runDialog(QStringLiteral("Attributi dell'entità"), [&] {
        FDlgCompileTableGIS(&library, gis::CLibGis::GetTheme(entity), library.GetRow(entity));
    });
}

void MainWindow::showStructure()
{
    gis::CLibGis& library = m_document.library();
    gis::CDBTable* table = chosenTable();
    const QString name = QStringLiteral("Struttura di ") + kit::toQt(library.GetTableName(table));
    bool done = false;
    embedded::Library::of(&library)->beginReport();
    runDialog(name, [&] { done = FDlgTableEditGIS(&library, table); });
    if (done)
        tellStructureReport(name);
}

/// What changes of format have cost, in the status line and in the undo list.
void MainWindow::tellStructureReport(const QString& act)
{
    QStringList costs;
    std::string told;
    for (const embedded::Finding& finding :
        embedded::Library::of(&m_document.library())->lastReport().findings) {
        if (finding.code != embedded::FindingCode::CellsEmptied || finding.count == 0)
            continue;
        // The table's name where it is not that of the act, once for all of its fields.
        const QString table = QStringLiteral("Struttura di ")
            + QString::fromUtf8(finding.detail.data(), static_cast<int>(finding.detail.size()));
        const bool isNamed = table == act || told == finding.detail;
        told = finding.detail;
        costs << (isNamed ? QString() : table + QStringLiteral(": ")) + findingText(finding);
    }
    QString text = act;
    if (!costs.isEmpty())
        text += QStringLiteral(": ") + costs.join(QStringLiteral(", "));
    tellDone(text);
    if (!costs.isEmpty())
        m_document.changes().RenameStep(kit::fromQt(text));
    refreshActions();
}

void MainWindow::showTable()
{
    gis::CLibGis& library = m_document.library();
    gis::CDBTable* table = chosenTable();
    runDialog(QStringLiteral("Tabella %1").arg(kit::toQt(library.GetTableName(table))),
        [&] { FDlgShowTableGIS(&library, table); });
}

void MainWindow::refreshActions()
{
    const auto& changes = m_document.changes();
    m_undo->setEnabled(changes.CanUndo());
    m_redo->setEnabled(changes.CanRedo());
    m_undo->setText(QStringLiteral("&Annulla ")
        + plainInMenu(shortened(changes.CanUndo() ? changes.UndoName() : orv::String())));
    m_redo->setText(QStringLiteral("&Ripeti ")
        + plainInMenu(shortened(changes.CanRedo() ? changes.RedoName() : orv::String())));
    m_save->setEnabled(
        !m_document.isSaved() || m_document.path().isEmpty() || m_identify->hasPendingText());
    m_structure->setEnabled(chosenTable() != nullptr);
    m_table->setEnabled(chosenTable() != nullptr);
    m_form->setEnabled(chosenEntity() != nullptr);
    m_query->setEnabled(m_document.library().GetNumThemes() > 0);
}

void MainWindow::refreshRecentFiles()
{
    m_recentMenu->clear();
    for (const QString& path : RecentFiles::paths()) {
        QAction* action = m_recentMenu->addAction(plainInMenu(path));
        connect(action, &QAction::triggered, this, [this, path] { openFile(path); });
    }
    m_recentMenu->setEnabled(!m_recentMenu->isEmpty());
}

void MainWindow::chooseAndOpen()
{
    kit::FileRequest request;
    request.caption = QStringLiteral("Apri");
    request.folder = m_document.path();
    request.filter = QStringLiteral("Librerie e shapefile (*.gpkg *.shp *.GPKG *.SHP);;Librerie "
                                    "GIS (*.gpkg);;Shapefile (*.shp *.SHP)");
    if (const auto path = kit::FChooseFile(this, request))
        openFile(*path);
}

void MainWindow::chooseAndImport()
{
    kit::FileRequest request;
    request.caption = QStringLiteral("Importa shapefile");
    request.folder = m_document.path();
    request.filter = QStringLiteral("Shapefile (*.shp *.SHP)");
    if (const auto path = kit::FChooseFile(this, request))
        importFile(*path);
}

} // namespace app
