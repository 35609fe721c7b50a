// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "app/LibraryProgress.h"

#include "embedded/base/Report.h"
#include "embedded/base/Result.h"

#include "host/base/ChangeManager.h"
#include "host/cad/DravoEng.h"
#include "host/cad/Symbols.h"
#include "host/gis/Feedback.h"
#include "host/gis/LibGis.h"

#include <QObject>
#include <QString>

#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace app {

/// What is marked on the map. Entities are those of the open library.
struct Highlight {
    std::vector<gis::CEnt*> selected; // by the user, on the map
    std::vector<gis::CEnt*> found; // by the last query
    gis::CEnt* current = nullptr; // of the grid's current row
};

/// The open library with its undo list, its drawing and what is marked in it: what the window
/// shows. Every change goes through the library's facade or a dialog, within a named step. Thread:
/// the user interface's.
class Document final : public QObject, public gis::IFeedback {
    Q_OBJECT

public:
    Document();
    ~Document() override;

    [[nodiscard]] gis::CLibGis& library() const { return *m_library; }
    [[nodiscard]] CDravoEng& engine() { return m_engine; }
    [[nodiscard]] CDocSymbolManager& symbols() { return m_symbols; }
    [[nodiscard]] orv::CChangeTransactionManager& changes() { return *m_changes; }
    [[nodiscard]] const Highlight& highlight() const { return m_highlight; }
    [[nodiscard]] const QString& path() const { return m_path; }
    /// File name without folder, or "Senza nome".
    [[nodiscard]] QString title() const;
    [[nodiscard]] bool isSaved() const;
    /// True when saving has to ask for a name: a new library, another program's file, recovered
    /// work.
    [[nodiscard]] bool needsName() const
    {
        return m_path.isEmpty() || m_isReadOnly || m_isRecovered;
    }
    /// True when the file can only be saved under another name.
    [[nodiscard]] bool isReadOnly() const { return m_isReadOnly; }

    void startNew();
    /// A library, another program's GeoPackage or a shapefile (imported into a new library).
    embedded::Result<void> open(const QString& path, embedded::Report& report);
    /// A copy left by a program that ended early; it is unsaved work on `originalPath` (may be
    /// empty).
    embedded::Result<void> openRecovered(const QString& recoveryPath, const QString& originalPath);
    embedded::Result<void> save();
    embedded::Result<void> saveAs(const QString& path);
    /// Why something of the library could not be read (it shows as if it were not there): once,
    /// until all can be read again, and not where a failed save or change of a table's structure
    /// told it.
    std::optional<embedded::Error> takeUntoldFailure();
    /// Through the host's function; a clash of names is refused. The library's last report has the
    /// findings.
    embedded::Result<void> importShapefile(const QString& path);

    /// One user act: opens a step, runs it, tells the window what changed. Of an act that ends by
    /// an exception, what was done is a step as well, and is shown as soon as events are handled
    /// again.
    template <typename Act> void act(const QString& name, const Act& run)
    {
        try {
            const orv::ChangeStep step(m_changes.get(), orv::String(name.toUtf8().constData()));
            run();
            m_progress.finish();
        } catch (...) {
            m_progress.finish();
            QMetaObject::invokeMethod(this, &Document::afterChange, Qt::QueuedConnection);
            throw;
        }
        afterChange();
    }
    void undo();
    void redo();
    void setSelected(std::vector<gis::CEnt*> entities);
    void clearHighlight();

    void ShowFound(std::int64_t drawing, const std::vector<gis::CEnt*>& entities) override;
    void ShowRow(gis::CEnt* entity) override;
    void GetSelected(std::vector<gis::CEnt*>& entities) override;

Q_SIGNALS:
    void opened(); // another library
    void changed(); // the library's contents, or its saved state
    void highlightChanged();
    void currentChanged(); // the grid's current row only
    void centreAsked(double x, double y);

private:
    void adopt(std::unique_ptr<gis::CLibGis> library,
        std::unique_ptr<orv::CChangeTransactionManager> changes, const QString& path,
        bool isReadOnly = false);
    void afterChange();
    [[nodiscard]] std::vector<std::pair<gis::CTheme*, int>> entityCounts() const;

    LibraryProgress m_progress;
    // Declared before the library, which records in it.
    std::unique_ptr<orv::CChangeTransactionManager> m_changes;
    std::unique_ptr<gis::CLibGis> m_library;
    CDravoEng m_engine;
    CDocSymbolManager m_symbols;
    Highlight m_highlight;
    std::vector<std::pair<gis::CTheme*, int>> m_entityCounts;
    QString m_path;
    bool m_isReadOnly = false;
    bool m_isRecovered = false;
};

} // namespace app
