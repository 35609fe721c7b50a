// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "query/dialog/FilterCheck.h"
#include "query/dialog/FilterCount.h"

#include <QObject>
#include <QTimer>

#include <atomic>
#include <functional>
#include <future>

namespace query {

/// What the line under the filter says.
struct LiveState {
    QString text;
    bool isWrong = false;
    /// The part of the filter to be marked when it is wrong.
    int start = 0;
    int length = 0;
};

/// Follows the filter while it is typed: says where it stops being right, or how many entities
/// satisfy it. Counting runs on another thread over the host's columns, else in slices of at most
/// 20 ms; the next change of the text ends it. The parser reports nothing.
class CLiveCount final : public QObject {
    Q_OBJECT

public:
    explicit CLiveCount(gis::CLibGis* library, QObject* parent = nullptr);
    ~CLiveCount() override;

    void setTheme(gis::CTheme* theme);
    void setFilter(const QString& filter);
    [[nodiscard]] const LiveState& state() const { return m_state; }

Q_SIGNALS:
    void stateChanged();

private:
    void check();
    void start();
    void guarded(const std::function<void()>& work);
    bool startReading();
    void count();
    void onWorkerDone();
    void runAside(const std::function<int()>& work);
    void stopWorker();
    void step();
    void show(LiveState state);
    void showCount(int found);

    gis::CLibGis* m_library;
    gis::CTheme* m_theme = nullptr;
    gis::CTheme* m_shownTheme = nullptr; // whose count was started last
    QString m_filter;
    LiveState m_state;
    QTimer m_startTimer;
    QTimer m_stepTimer;
    bool m_isSlowTold = false; // that the counting by slices goes on
    /// Shared with the worker, which may outlive the interest in its answer.
    std::shared_ptr<CFilterCount> m_count;
    std::future<int> m_worker;
    std::shared_ptr<CFilterCount> m_working;
    /// Set while the worker reads columns; true stops it.
    std::shared_ptr<std::atomic<bool>> m_reading;
    bool m_isWanted = false; // once the running worker has ended
};

} // namespace query
