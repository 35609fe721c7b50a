// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "app/RecentFiles.h"

#include "host/base/IniFile.h"
#include "kit/texts/QtText.h"

#include <QFileInfo>
#include <QStandardPaths>
#include <QUrl>

namespace app {

namespace {
constexpr int MostFiles = 10;
const char* const Section = "RecentFiles";

orv::String keyOf(int index)
{
    return "File" + orv::String::ValueOf(index + 1);
}
} // namespace

QString RecentFiles::settingsFolder()
{
    const QString given = qEnvironmentVariable("TEMATICA_INI");
    return given.isEmpty() ? QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)
            + QStringLiteral("/tematica")
                           : QFileInfo(given).absolutePath();
}

QStringList RecentFiles::paths()
{
    const CIniFile settings;
    QStringList found;
    for (int i = 0; i < MostFiles; ++i) {
        // Percent-encoded: a path may hold what an ini file cannot.
        const QString path = QUrl::fromPercentEncoding(
            kit::toQt(settings.GetString(Section, keyOf(i), "")).toUtf8());
        if (!path.isEmpty() && QFileInfo::exists(path))
            found << path;
    }
    return found;
}

void RecentFiles::add(const QString& path)
{
    QStringList files = paths();
    files.removeAll(path);
    files.prepend(path);
    CIniFile settings;
    for (int i = 0; i < MostFiles; ++i)
        settings.WriteString(Section, keyOf(i),
            orv::String(
                QUrl::toPercentEncoding(i < files.size() ? files[i] : QString()).constData()));
}

} // namespace app
