// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/drawing/RenderFile.h"

#include "embedded/drawing/MapPicture.h"
#include "embedded/model/Theme.h"

#include <QByteArray>
#include <QGuiApplication>
#include <QSaveFile>

#include <algorithm>
#include <cstdio>
#include <optional>

namespace {

/// Texts of the legend need an application; a picture needs no screen, so it never asks for one.
class OffscreenApplication final {
public:
    OffscreenApplication()
    {
        if (QCoreApplication::instance())
            return;
        m_hadPlatform = qEnvironmentVariableIsSet(PlatformVariable);
        m_platform = qgetenv(PlatformVariable);
        qputenv(PlatformVariable, "offscreen");
        // Qt's remarks about the desktop (no runtime folder, no fonts folder) are not for the users
        // of a program that answers in lines.
        m_handler = qInstallMessageHandler(tellFatalOnly);
        m_application.emplace(m_argumentCount, m_arguments);
    }
    OffscreenApplication(const OffscreenApplication&) = delete;
    OffscreenApplication& operator=(const OffscreenApplication&) = delete;
    /// Leaves the process as it was: a host may make an application of its own afterwards.
    ~OffscreenApplication()
    {
        if (!m_application)
            return;
        m_application.reset();
        qInstallMessageHandler(m_handler);
        if (m_hadPlatform)
            qputenv(PlatformVariable, m_platform);
        else
            qunsetenv(PlatformVariable);
    }

private:
    static constexpr const char* PlatformVariable = "QT_QPA_PLATFORM";
    static void tellFatalOnly(QtMsgType type, const QMessageLogContext&, const QString& text)
    {
        if (type == QtFatalMsg)
            std::fprintf(stderr, "tematica: %s\n", qPrintable(text));
    }

    bool m_hadPlatform = false;
    QByteArray m_platform;
    QtMessageHandler m_handler = nullptr;
    int m_argumentCount = 1;
    char m_name[9] = "tematica";
    char* m_arguments[2] = { m_name, nullptr };
    std::optional<QGuiApplication> m_application;
};

} // namespace

extern "C" int tematicaRenderFile(const TematicaRenderRequest* request)
{
    try {
        const OffscreenApplication application;
        std::vector<gis::CTheme*> themes(request->themes, request->themes + request->themeCount);
        if (themes.empty())
            themes = embedded::visibleThemes(*request->library);
        embedded::MapContent content = embedded::mapContent(*request->library, themes);
        if (std::any_of(themes.begin(), themes.end(),
                [](const gis::CTheme* theme) { return theme->geometryFailure(); }))
            return 2;
        content.legend = request->legend;
        const QSize size(request->width, request->height);
        const embedded::Box asked { request->minX, request->minY, request->maxX, request->maxY };
        // The box that was asked for to its edges; else everything, with a margin.
        const auto view = request->hasBox
            ? embedded::MapView::fitted(asked, size, 0)
            : embedded::MapView::fitted(embedded::extentOf(content), size);
        const std::atomic<bool> cancelled { false };
        const QImage image = embedded::renderMap(content, view, cancelled);
        QSaveFile file(QString::fromUtf8(request->path));
        if (image.isNull() || !file.open(QIODevice::WriteOnly) || !image.save(&file, "PNG")
            || !file.commit())
            return 1;
        return 0;
    } catch (const std::exception&) {
        return 1;
    }
}
