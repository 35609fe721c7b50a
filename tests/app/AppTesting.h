// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "app/MainWindow.h"

#include <QTemporaryDir>

#include <functional>
#include <string_view>

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

/// Waits, with events, until something holds; false when it does not within 10 s.
bool waitFor(const std::function<bool()>& condition);

} // namespace apptest
