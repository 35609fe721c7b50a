// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "app/MainWindow.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

#include <functional>
#include <string_view>

class QAction;

namespace apptest {

/// A folder for files, settings and recovery copies, of one test.
class CFolder final {
public:
    CFolder();
    [[nodiscard]] QString file(const QString& name) const { return m_folder.filePath(name); }

private:
    QTemporaryDir m_folder;
};

/// Two tables, three themes: points P with a linked point, lines L, polygons A.
inline constexpr std::string_view Town
    = "table T (nome text, tipo text, punto text from name);"
      "rows T: ('a', 'x', -), ('b', 'y', -), ('c', 'x', -);"
      "table U (n integer); rows U: (1), (2);"
      "theme P: points 2d on T active;"
      "ents P: 0 [10 10] point 'P1' 'angolo', 1 [90 90], 2 [50 50];"
      "theme A: polygons 2d on U;"
      "ents A: 0 [0 0, 0 40, 40 40, 40 0, 0 0], 1 [60 0, 60 40, 100 40, 100 0, 60 0]";

/// Puts the town (or another library in the tests' notation) into a document, saved in a file.
void openTown(app::Document& document, const QString& path, std::string_view notation = Town);

/// A theme of a library as a shapefile in the folder; the path of its .shp.
QString shapefileOf(const CFolder& folder, const QString& theme, std::string_view notation = Town);

/// Renames the first table, as one act.
void renameTable(app::Document& document, const char* name);
QString tableName(const app::Document& document);

/// A copy of work on `original` as a program leaves it that ended early: nobody holds its lock. The
/// first table has another name in it.
QString leaveCopy(const CFolder& folder, const QString& original, const QString& name,
    const char* renamed = "Recuperata");

/// Waits, with events, until something holds; false when it does not in good time.
bool waitFor(const std::function<bool()>& condition);

/// Ends a window's work: nothing is written to the test's folder any more.
void giveUp(app::MainWindow& window);

/// The window with the town (or another library) open in it.
class CTownWindow : public testing::Test {
protected:
    explicit CTownWindow(std::string_view notation = Town);
    ~CTownWindow() override;

    gis::CEnt* entity(int theme, int index);
    /// A menu entry by its text without access key.
    QAction& action(const QString& text);
    void writeCell();
    /// What the status line says of the last act.
    [[nodiscard]] QString message() const;

    CFolder folder;
    QString path = folder.file(QStringLiteral("t.gpkg"));
    app::MainWindow window;
};

} // namespace apptest
