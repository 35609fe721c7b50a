// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "app/Document.h"
#include "app/MapCanvas.h"
#include "app/Recovery.h"

#include <QMainWindow>
#include <QTimer>

#include <memory>
#include <optional>

class QActionGroup;
class QLabel;
class QMenu;

namespace app {

class IdentifyPanel;
class ThemePanel;

/// The desktop program's window: map, themes, identified entity, menus. It opens the dialogs by the
/// exported functions only, as any host would, each as one step of the undo list. Thread: the user
/// interface's.
class MainWindow final : public QMainWindow {
    Q_OBJECT

public:
    MainWindow();
    ~MainWindow() override;

    [[nodiscard]] Document& document() { return m_document; }
    [[nodiscard]] MapCanvas& canvas() { return *m_canvas; }
    [[nodiscard]] Recovery& recovery() { return m_recovery; }
    /// Opens a library or shapefile; a failure is told in a box.
    bool openFile(const QString& path);
    bool importFile(const QString& path);
    /// Offers what an earlier run left behind.
    void offerRecovery();
    bool save();
    bool saveAs();
    /// Saves, gives up or keeps: true when the present work may go.
    bool askUnsaved();

protected:
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void makeFileMenu();
    void makeEditMenu();
    void makeViewMenu();
    void makeGisMenu();
    void makePanels();
    void makeStatusBar();
    QAction* addTool(QActionGroup* group, MapTool tool, const QString& text, const char* icon,
        const QString& help);

    void onOpened();
    void onChanged();
    void onPicked(const std::vector<gis::CEnt*>& entities, bool adds);
    void refreshMarks();
    void showMarks();
    void refreshTitle();
    void refreshCounts();
    void refreshActions();
    void refreshRecentFiles();
    void chooseAndOpen();
    void chooseAndImport();
    void tell(const embedded::Error& error);
    void tellText(const QString& text);
    void tellFailedRead();
    void onFailedReadDue();
    void tellDone(const QString& text);
    void tellFindings(const embedded::Report& report, const QString& done);
    /// Runs an exported dialog function as one step named after the dialog.
    template <typename Run> void runDialog(const QString& step, const Run& run);
    void tellStructureReport(const QString& act);
    [[nodiscard]] gis::CTheme* chosenTheme() const;
    [[nodiscard]] gis::CDBTable* chosenTable() const;
    [[nodiscard]] gis::CEnt* chosenEntity() const;
    void showEntityForm(gis::CEnt* entity);
    void showStructure();
    void showTable();

    Document m_document;
    Recovery m_recovery;
    std::optional<embedded::Error> m_failedRead; // still to be told
    QTimer m_failedReadTimer;
    MapCanvas* m_canvas;
    embedded::MapContent m_lastingMarks; // of found and selected entities
    ThemePanel* m_themes = nullptr;
    IdentifyPanel* m_identify = nullptr;
    QMenu* m_recentMenu = nullptr;
    QAction* m_save = nullptr;
    QAction* m_undo = nullptr;
    QAction* m_redo = nullptr;
    QAction* m_structure = nullptr;
    QAction* m_table = nullptr;
    QAction* m_form = nullptr;
    QAction* m_query = nullptr;
    QLabel* m_coordinates = nullptr;
    QLabel* m_counts = nullptr;
    QLabel* m_message = nullptr;
    QLabel* m_unprotected = nullptr; // seen while no recovery copy can be written
    bool m_isFirstContent = true; // of the open library: the view is fitted to it
};

} // namespace app
