// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "embedded/drawing/MapPicture.h"

#include <QObject>

#include <atomic>
#include <memory>

namespace app {

/// Draws pictures of the map on another thread. The newest request wins: one that is being drawn is
/// cancelled. Thread: the user interface's; `drawn` arrives there.
class MapRenderer final : public QObject {
    Q_OBJECT

public:
    MapRenderer();
    ~MapRenderer() override;

    void request(
        std::shared_ptr<const embedded::MapContent> content, const embedded::MapView& view);
    [[nodiscard]] bool isBusy() const { return m_isBusy; }

Q_SIGNALS:
    void drawn(const QImage& image, const embedded::MapView& view);

private:
    void start();

    std::shared_ptr<const embedded::MapContent> m_wantedContent;
    embedded::MapView m_wantedView;
    bool m_isWanted = false;
    bool m_isBusy = false;
    std::shared_ptr<std::atomic<bool>> m_cancelled; // of the picture being drawn
};

} // namespace app
