// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "app/MainWindow.h"

#include "app/IdentifyPanel.h"
#include "app/Marks.h"
#include "app/RecentFiles.h"
#include "app/ThemePanel.h"
#include "app/Words.h"
#include "embedded/model/Library.h"
#include "kit/Choosers.h"
#include "kit/MessageBox.h"
#include "kit/WaitCursor.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QDragEnterEvent>
#include <QFileInfo>
#include <QLabel>
#include <QMenu>
#include <QMimeData>
#include <QSettings>
#include <QTextDocument>
#include <QUrl>

#include <algorithm>
#include <cmath>
#include <optional>
#include <unordered_set>

namespace app {

namespace {

const QString Caption = QStringLiteral("Tematica");
constexpr std::size_t MostFindingsShown = 12;
constexpr int LeastCoordinateDigits = 2;
constexpr int MostCoordinateDigits = 9;

QString settingsPath()
{
    return RecentFiles::settingsFolder() + QStringLiteral("/desktop.conf");
}

} // namespace

MainWindow::MainWindow()
    : m_recovery(m_document)
    , m_canvas(new MapCanvas(this))
{
    setObjectName(QStringLiteral("MainWindow"));
    setAcceptDrops(true);
    setCentralWidget(m_canvas);
    makePanels();
    makeFileMenu();
    makeEditMenu();
    makeViewMenu();
    makeGisMenu();
    makeStatusBar();
    resize(1280, 800);
    const QSettings settings(settingsPath(), QSettings::IniFormat);
    restoreGeometry(settings.value(QStringLiteral("geometry")).toByteArray());
    restoreState(settings.value(QStringLiteral("state")).toByteArray());

    connect(&m_recovery, &Recovery::failed, m_unprotected, &QWidget::show);
    connect(&m_recovery, &Recovery::protectedAgain, m_unprotected, &QWidget::hide);
    connect(&m_document, &Document::opened, this, &MainWindow::onOpened);
    connect(&m_document, &Document::changed, this, &MainWindow::onChanged);
    connect(&m_document, &Document::highlightChanged, this, &MainWindow::refreshMarks);
    connect(&m_document, &Document::currentChanged, this, &MainWindow::showMarks);
    connect(&m_document, &Document::centreAsked, m_canvas, &MapCanvas::centreAt);
    connect(m_canvas, &MapCanvas::entitiesPicked, this, &MainWindow::onPicked);
    connect(m_canvas, &MapCanvas::identified, this, [this](gis::CEnt* entity) {
        m_identify->show(entity);
        m_document.setSelected(
            entity ? std::vector<gis::CEnt*> { entity } : std::vector<gis::CEnt*> {});
        tellFailedRead();
    });
    m_failedReadTimer.setSingleShot(true);
    connect(&m_failedReadTimer, &QTimer::timeout, this, &MainWindow::onFailedReadDue);
    connect(m_canvas, &MapCanvas::opened, this, &MainWindow::showEntityForm);
    connect(m_canvas, &MapCanvas::cursorMoved, this, [this](double x, double y) {
        // One digit more than a pixel needs: metres with two at the scale of a street, degrees with
        // six.
        const double unitsPerPixel = m_canvas->view().unitsPerPixel;
        const int digits = std::clamp(static_cast<int>(std::ceil(1 - std::log10(unitsPerPixel))),
            LeastCoordinateDigits, MostCoordinateDigits);
        m_coordinates->setText(
            QStringLiteral("E %1   N %2").arg(x, 0, 'f', digits).arg(y, 0, 'f', digits));
    });
    onOpened();
    onChanged();
}

MainWindow::~MainWindow()
{
    hide(); // an edit that loses the focus gives its text to the document, which goes before it
    disconnect(&m_document, nullptr, this, nullptr);
}

bool MainWindow::openFile(const QString& path)
{
    if (!askUnsaved())
        return false;
    embedded::Report report;
    embedded::Result<void> opened;
    {
        const kit::WaitCursor wait;
        opened = m_document.open(QFileInfo(path).absoluteFilePath(), report);
    }
    if (!opened) {
        tell(opened.error());
        return false;
    }
    RecentFiles::add(QFileInfo(path).absoluteFilePath());
    refreshRecentFiles();
    tellFindings(report, QStringLiteral("Aperto %1").arg(QFileInfo(path).fileName()));
    if (m_document.isReadOnly())
        FMessageBox(this,
            QStringLiteral("Il file è aperto in sola lettura: un altro programma lo sta "
                           "modificando o non si hanno i permessi di scrittura.\n"
                           "Le modifiche si possono salvare con un altro nome."),
            Caption, kit::BoxIcon::Information, kit::BoxButtons::Ok);
    return true;
}

bool MainWindow::importFile(const QString& path)
{
    embedded::Result<void> imported;
    {
        const kit::WaitCursor wait;
        imported = m_document.importShapefile(QFileInfo(path).absoluteFilePath());
    }
    if (!imported) {
        tell(imported.error());
        return false;
    }
    tellFindings(embedded::Library::of(&m_document.library())->lastReport(),
        QStringLiteral("Importato %1").arg(QFileInfo(path).fileName()));
    return true;
}

/// In the status line, as much of it as there is room for, and the whole in its tip.
void MainWindow::tellDone(const QString& text)
{
    m_message->setText(text);
    m_message->setToolTip(Qt::convertFromPlainText(text));
}

void MainWindow::tell(const embedded::Error& error)
{
    tellText(errorText(error));
}

void MainWindow::tellText(const QString& text)
{
    FMessageBox(this, text, Caption, kit::BoxIcon::Exclamation, kit::BoxButtons::Ok);
}

/// What cannot be read is missing on the map or in the panel, and must not pass for what was never
/// there.
void MainWindow::tellFailedRead()
{
    if (auto failure = m_document.takeUntoldFailure())
        m_failedRead = std::move(failure);
    if (m_failedRead)
        m_failedReadTimer.start(0);
}

/// Only when nothing else goes on, an act or what it has to say: the box would stand in its midst.
void MainWindow::onFailedReadDue()
{
    constexpr int AskAgainMs = 200;
    if (QApplication::activeModalWidget() || m_document.changes().IsStepOpen())
        m_failedReadTimer.start(AskAgainMs);
    else if (const auto error = std::exchange(m_failedRead, std::nullopt))
        tell(*error);
}

void MainWindow::tellFindings(const embedded::Report& report, const QString& done)
{
    QStringList lines;
    for (const embedded::Finding& finding : report.findings)
        if (finding.severity == embedded::FindingSeverity::Warning)
            lines << findingText(finding);
    if (lines.isEmpty()) {
        tellDone(done);
        return;
    }
    const auto count = static_cast<std::size_t>(lines.size());
    tellDone(done
        + (count == 1 ? QStringLiteral(", con un avviso")
                      : QStringLiteral(", con %1 avvisi").arg(count)));
    if (count > MostFindingsShown) {
        lines = lines.mid(0, MostFindingsShown);
        const auto left = count - MostFindingsShown;
        lines << (left == 1 ? QStringLiteral("… e un altro avviso")
                            : QStringLiteral("… e altri %1 avvisi").arg(left));
    }
    FMessageBox(
        this, lines.join(QLatin1Char('\n')), done, kit::BoxIcon::Information, kit::BoxButtons::Ok);
}

void MainWindow::offerRecovery()
{
    for (const RecoveryFile& file : Recovery::leftBehind()) {
        const QString name = file.originalPath.isEmpty()
            ? QStringLiteral("una libreria senza nome")
            : QStringLiteral("\"%1\"").arg(file.originalPath);
        const kit::Answer answer = FMessageBox(this,
            QStringLiteral("Il programma si è chiuso prima che il lavoro su %1 fosse salvato "
                           "(%2).\nRecuperarlo?")
                .arg(name, file.time),
            Caption, kit::BoxIcon::Question, kit::BoxButtons::YesNoCancel);
        if (answer == kit::Answer::Cancel)
            continue; // asked again at the next start
        if (answer == kit::Answer::No) {
            Recovery::discard(file);
            continue;
        }
        if (!askUnsaved())
            continue;
        const auto opened = m_document.openRecovered(file.path, file.originalPath);
        if (!opened) {
            tell(opened.error());
            continue;
        }
        m_recovery.replaces(file);
        tellDone(QStringLiteral("Lavoro recuperato: salvarlo con \"Salva con nome\""));
    }
}

bool MainWindow::save()
{
    m_identify->commit();
    if (m_document.needsName())
        return saveAs();
    const kit::WaitCursor wait;
    const auto saved = m_document.save();
    if (!saved) {
        tellText(saveErrorText(saved.error()));
        return false;
    }
    tellDone(QStringLiteral("Salvato %1").arg(m_document.title()));
    return true;
}

bool MainWindow::saveAs()
{
    m_identify->commit();
    kit::FileRequest request;
    request.kind = kit::FileRequest::Kind::Save;
    request.caption = QStringLiteral("Salva con nome");
    request.folder = m_document.path();
    request.filter = QStringLiteral("Librerie GIS (*.gpkg)");
    request.suffix = QStringLiteral("gpkg");
    const auto path = kit::FChooseFile(this, request);
    if (!path)
        return false;
    embedded::Result<void> saved;
    {
        const kit::WaitCursor wait;
        saved = m_document.saveAs(*path);
    }
    if (!saved) {
        tellText(saveAsErrorText(saved.error()));
        return false;
    }
    RecentFiles::add(*path);
    refreshRecentFiles();
    tellDone(QStringLiteral("Salvato %1").arg(m_document.title()));
    return true;
}

bool MainWindow::askUnsaved()
{
    m_identify->commit();
    if (m_document.isSaved())
        return true;
    const kit::Answer answer = FMessageBox(this,
        QStringLiteral("Salvare le modifiche a \"%1\"?").arg(m_document.title()), Caption,
        kit::BoxIcon::Question, kit::BoxButtons::YesNoCancel);
    // Not saving gives the work up only when something else takes its place: until then its copy
    // stays.
    return answer == kit::Answer::No || (answer == kit::Answer::Yes && save());
}

void MainWindow::closeEvent(QCloseEvent* event)
{
    if (!askUnsaved()) {
        event->ignore();
        return;
    }
    m_recovery.forget();
    QSettings settings(settingsPath(), QSettings::IniFormat);
    settings.setValue(QStringLiteral("geometry"), saveGeometry());
    settings.setValue(QStringLiteral("state"), saveState());
    event->accept();
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event)
{
    const auto urls = event->mimeData()->urls();
    const bool usable = std::any_of(urls.begin(), urls.end(), [](const QUrl& url) {
        const QString path = url.toLocalFile();
        return path.endsWith(QLatin1String(".gpkg"), Qt::CaseInsensitive)
            || path.endsWith(QLatin1String(".shp"), Qt::CaseInsensitive);
    });
    if (usable)
        event->acceptProposedAction();
}

void MainWindow::dropEvent(QDropEvent* event)
{
    event->acceptProposedAction();
    // When the drop is over: the program that the files come from waits for its end.
    QTimer::singleShot(0, this, [this, urls = event->mimeData()->urls()] {
        for (const QUrl& url : urls) {
            const QString path = url.toLocalFile();
            if (path.endsWith(QLatin1String(".gpkg"), Qt::CaseInsensitive))
                openFile(path);
            else if (path.endsWith(QLatin1String(".shp"), Qt::CaseInsensitive))
                importFile(path);
        }
    });
}

void MainWindow::onOpened()
{
    m_failedRead.reset(); // of the library before
    m_isFirstContent = true;
    m_unprotected->hide();
}

void MainWindow::onChanged()
{
    gis::CLibGis& library = m_document.library();
    auto content = std::make_shared<embedded::MapContent>(
        embedded::mapContent(library, embedded::visibleThemes(library)));
    const bool fits = m_isFirstContent && !content->layers.empty();
    if (content->layers.empty())
        m_isFirstContent = true; // what is drawn next may lie elsewhere
    m_canvas->setContent(std::move(content));
    if (fits) {
        m_isFirstContent = false;
        m_canvas->fitAll();
    }
    refreshMarks();
    refreshTitle();
    refreshActions();
    tellFailedRead();
}

void MainWindow::refreshMarks()
{
    m_lastingMarks = lastingMarks(*m_canvas->content(), m_document.highlight());
    showMarks();
    refreshCounts();
    refreshActions();
}

// The grid's row changes with each arrow key; what was found or selected does not.
void MainWindow::showMarks()
{
    m_canvas->setMarks(std::make_shared<embedded::MapContent>(
        withCurrentMark(m_lastingMarks, *m_canvas->content(), m_document.highlight().current)));
}

void MainWindow::refreshTitle()
{
    setWindowModified(!m_document.isSaved());
    setWindowTitle(
        QStringLiteral("%1[*]%2 — Tematica")
            .arg(m_document.title(),
                m_document.isReadOnly() ? QStringLiteral(" (sola lettura)") : QString()));
}

void MainWindow::refreshCounts()
{
    int total = 0;
    gis::CLibGis& library = m_document.library();
    for (int i = 0; i < library.GetNumThemes(); ++i)
        total += library.GetNoEnts(library.GetTheme(i));
    const Highlight& marks = m_document.highlight();
    m_counts->setText(QStringLiteral("Entità: %L1   Selezionate: %L2   Trovate: %L3")
                          .arg(total)
                          .arg(marks.selected.size())
                          .arg(marks.found.size()));
}

void MainWindow::onPicked(const std::vector<gis::CEnt*>& entities, bool adds)
{
    if (!adds) {
        m_document.setSelected(entities);
        return;
    }
    // An entity picked again leaves the selection.
    const auto& before = m_document.highlight().selected;
    const std::unordered_set<gis::CEnt*> picked(entities.begin(), entities.end());
    const std::unordered_set<gis::CEnt*> known(before.begin(), before.end());
    std::vector<gis::CEnt*> selected;
    for (gis::CEnt* entity : before)
        if (!picked.contains(entity))
            selected.push_back(entity);
    for (gis::CEnt* entity : entities)
        if (!known.contains(entity))
            selected.push_back(entity);
    m_document.setSelected(std::move(selected));
}

} // namespace app
