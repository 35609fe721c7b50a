// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "app/Document.h"

#include "embedded/drawing/Engine.h"
#include "embedded/model/Library.h"
#include "embedded/shapefile/Shapefile.h"
#include "embedded/store/GeoPackage.h"

#include "host/gis/Exchange.h"

#include <QFileInfo>

namespace app {

namespace {

embedded::Library& implementation(gis::CLibGis& library)
{
    return *embedded::Library::of(&library);
}

bool isSameFile(const QString& one, const QString& other)
{
    const QString canonical = QFileInfo(one).canonicalFilePath();
    return !canonical.isEmpty() && canonical == QFileInfo(other).canonicalFilePath();
}

bool isShapefile(const QString& path)
{
    return path.endsWith(QLatin1String(".shp"), Qt::CaseInsensitive);
}

} // namespace

Document::Document()
{
    embedded::EngineHooks hooks;
    hooks.centreView = [this](double x, double y, double) { Q_EMIT centreAsked(x, y); };
    embedded::Engine::of(m_engine).setHooks(std::move(hooks));
    startNew();
}

Document::~Document()
{
    embedded::Engine::of(m_engine).setLibrary(nullptr);
}

QString Document::title() const
{
    return m_path.isEmpty() ? QStringLiteral("Senza nome") : QFileInfo(m_path).fileName();
}

bool Document::isSaved() const
{
    return implementation(*m_library).isSaved();
}

void Document::adopt(std::unique_ptr<gis::CLibGis> library,
    std::unique_ptr<orv::CChangeTransactionManager> changes, const QString& path, bool isReadOnly)
{
    m_highlight = {};
    m_library = std::move(library);
    m_changes = std::move(changes);
    m_path = path;
    m_isReadOnly = isReadOnly;
    m_isRecovered = false;
    embedded::Engine::of(m_engine).setLibrary(m_library.get());
    implementation(*m_library)
        .setExtension(gis::FeedbackExtension, static_cast<gis::IFeedback*>(this));
    implementation(*m_library).setProgress(&m_progress);
    m_progress.setFailureTold(false);
    m_entityCounts = entityCounts();
    Q_EMIT opened();
    Q_EMIT changed();
}

void Document::startNew()
{
    auto changes = std::make_unique<orv::CChangeTransactionManager>();
    auto library = std::make_unique<gis::CLibGis>(changes.get());
    adopt(std::move(library), std::move(changes), {});
}

embedded::Result<void> Document::open(const QString& path, embedded::Report& report)
{
    const std::string file = path.toStdString();
    if (isSameFile(path, m_path)) {
        // The file is held by the present library, which goes only when the file can be read.
        const auto readable
            = embedded::openLibrary(file, embedded::OpenMode::Read, nullptr, report);
        if (!readable)
            return readable.error();
        report = {};
        startNew();
    }
    auto changes = std::make_unique<orv::CChangeTransactionManager>();
    if (isShapefile(path)) {
        auto library = std::make_unique<gis::CLibGis>(changes.get());
        implementation(*library).setProgress(&m_progress);
        const auto imported
            = embedded::importShapefile(*library, file, {}, nullptr, nullptr, report);
        m_progress.finish();
        if (!imported)
            return imported.error();
        adopt(std::move(library), std::move(changes), {});
        return {};
    }
    auto opened = embedded::openLibrary(file, embedded::OpenMode::Write, changes.get(), report);
    bool readOnly = false;
    if (!opened
        && (opened.error().code == embedded::ErrorCode::LockedForWriting
            || opened.error().code == embedded::ErrorCode::ReadOnly
            || opened.error().code == embedded::ErrorCode::NoPermission)) {
        readOnly = true;
        opened = embedded::openLibrary(file, embedded::OpenMode::Read, changes.get(), report);
    }
    if (!opened)
        return opened.error();
    const bool isOurs = !embedded::libraryPath(*opened.value()).empty();
    adopt(std::move(opened.value()), std::move(changes), isOurs ? path : QString(), readOnly);
    return {};
}

embedded::Result<void> Document::openRecovered(
    const QString& recoveryPath, const QString& originalPath)
{
    auto changes = std::make_unique<orv::CChangeTransactionManager>();
    embedded::Report report;
    auto opened = embedded::openLibrary(
        recoveryPath.toStdString(), embedded::OpenMode::Read, changes.get(), report);
    if (!opened)
        return opened.error();
    embedded::Library& library = implementation(*opened.value());
    if (const auto loaded = library.loadAll(); !loaded)
        return loaded.error();
    library.setStore(nullptr);
    adopt(std::move(opened.value()), std::move(changes), {});
    // An empty change that cannot be taken back: the work is unsaved until the user saves it,
    // wherever it came from.
    implementation(*m_library).record([] {}, [] {});
    m_changes->Clear();
    m_path = originalPath;
    m_isRecovered = true; // the first save asks for the name and offers the old one
    Q_EMIT changed();
    return {};
}

embedded::Result<void> Document::save()
{
    auto saved = embedded::saveLibrary(*m_library);
    m_progress.finish();
    if (!saved)
        static_cast<void>(takeUntoldFailure()); // the caller tells why it was not saved
    Q_EMIT changed();
    return saved;
}

embedded::Result<void> Document::saveAs(const QString& path)
{
    auto saved = embedded::saveLibraryAs(*m_library, path.toStdString());
    m_progress.finish();
    if (saved) {
        m_path = path;
        m_isReadOnly = false;
        m_isRecovered = false;
    } else {
        static_cast<void>(takeUntoldFailure());
    }
    Q_EMIT changed();
    return saved;
}

std::optional<embedded::Error> Document::takeUntoldFailure()
{
    const embedded::Error* failed = implementation(*m_library).failedRead();
    const bool isTold = m_progress.isFailureTold();
    m_progress.setFailureTold(failed != nullptr); // one that has passed is no reason for silence
    if (!failed || isTold)
        return std::nullopt;
    return *failed;
}

embedded::Result<void> Document::importShapefile(const QString& path)
{
    embedded::Result<void> result;
    act(QStringLiteral("Importazione di %1").arg(QFileInfo(path).fileName()), [&] {
        orv::String table;
        TOpzImportShape options;
        if (!FImportFileShape(m_library.get(), orv::String(path.toUtf8().constData()), table,
                nullptr, nullptr, nullptr, options))
            result = implementation(*m_library).lastFailure();
    });
    return result;
}

void Document::undo()
{
    m_changes->Undo();
    afterChange();
}

void Document::redo()
{
    m_changes->Redo();
    afterChange();
}

std::vector<std::pair<gis::CTheme*, int>> Document::entityCounts() const
{
    std::vector<std::pair<gis::CTheme*, int>> counts;
    for (gis::CTheme* theme : implementation(*m_library).themes())
        counts.emplace_back(theme, theme->entities().entityCount());
    return counts;
}

void Document::afterChange()
{
    auto counts = entityCounts();
    if (counts != m_entityCounts) { // marked entities may be gone
        m_entityCounts = std::move(counts);
        clearHighlight();
    }
    Q_EMIT changed();
}

void Document::setSelected(std::vector<gis::CEnt*> entities)
{
    m_highlight.selected = std::move(entities);
    Q_EMIT highlightChanged();
}

void Document::clearHighlight()
{
    m_highlight = {};
    Q_EMIT highlightChanged();
}

void Document::ShowFound(std::int64_t, const std::vector<gis::CEnt*>& entities)
{
    m_highlight.found = entities;
    m_highlight.current = nullptr;
    Q_EMIT highlightChanged();
}

void Document::ShowRow(gis::CEnt* entity)
{
    m_highlight.current = entity;
    Q_EMIT currentChanged();
}

void Document::GetSelected(std::vector<gis::CEnt*>& entities)
{
    entities = m_highlight.selected;
}

} // namespace app
