// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/drawing/RenderFile.h"

#include "embedded/drawing/MapPicture.h"

#include <QByteArray>
#include <QGuiApplication>
#include <QSaveFile>

#include <cstdlib>
#include <optional>

namespace {

/// Texts of the legend need an application; a picture needs no screen, so it never asks for one.
class OffscreenApplication final {
public:
    OffscreenApplication()
    {
        if (QCoreApplication::instance())
            return;
        qputenv("QT_QPA_PLATFORM", "offscreen");
        // Qt's remarks about the desktop (no runtime folder, no fonts folder) are not for the users
        // of a program that answers in lines.
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
        m_application.emplace(m_argumentCount, m_arguments);
    }

private:
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
        content.legend = request->legend;
        embedded::Box box { request->minX, request->minY, request->maxX, request->maxY };
        if (!request->hasBox)
            box = embedded::extentOf(content);
        const auto view = embedded::MapView::fitted(box, QSize(request->width, request->height));
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
