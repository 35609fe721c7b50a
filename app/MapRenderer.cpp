// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "app/MapRenderer.h"

#include <QCoreApplication>
#include <QPointer>
#include <QThreadPool>

namespace app {

MapRenderer::MapRenderer() = default;

MapRenderer::~MapRenderer()
{
    if (m_cancelled)
        *m_cancelled = true;
    // The job holds its own share of what it reads; only its answer must find nobody.
}

void MapRenderer::request(
    std::shared_ptr<const embedded::MapContent> content, const embedded::MapView& view)
{
    m_wantedContent = std::move(content);
    m_wantedView = view;
    m_isWanted = true;
    if (m_isBusy) {
        *m_cancelled = true;
        return;
    }
    start();
}

void MapRenderer::start()
{
    m_isWanted = false;
    m_isBusy = true;
    m_cancelled = std::make_shared<std::atomic<bool>>(false);
    QThreadPool::globalInstance()->start(
        [self = QPointer<MapRenderer>(this), content = m_wantedContent, view = m_wantedView,
            cancelled = m_cancelled] {
            QImage image;
            try {
                image = embedded::renderMap(*content, view, *cancelled);
            } catch (const std::exception&) { // out of memory: the picture before stays
            }
            QMetaObject::invokeMethod(qApp, [self, image, view] {
                if (!self)
                    return;
                self->m_isBusy = false;
                if (!image.isNull())
                    Q_EMIT self->drawn(image, view);
                if (self->m_isWanted)
                    self->start();
            });
        });
}

} // namespace app
