// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>

namespace app {

/// Files opened last, newest first, kept in the settings file. A file that is gone is not listed.
class RecentFiles final {
public:
    [[nodiscard]] static QStringList paths();
    static void add(const QString& path);
    /// Where the program keeps its settings: beside the host's settings file.
    [[nodiscard]] static QString settingsFolder();
};

} // namespace app
