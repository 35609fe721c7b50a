// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "query/dialog/LiveCount.h"

#include "kit/texts/QtText.h"

#include <QLocale>

#include <system_error>
#include <utility>

namespace query {

namespace {

/// After this pause in typing the counting begins.
constexpr int StartAfterMs = 60;
constexpr int SliceMs = 15;
constexpr int NotCounted = -1;

constexpr int MostNameLetters = 60;

QString countText(int found, int total)
{
    static const QLocale italian(QLocale::Italian, QLocale::Italy);
    return italian.toString(found) + QStringLiteral(" entità su ") + italian.toString(total)
        + (found == 1 ? QStringLiteral(" soddisfa il filtro")
                      : QStringLiteral(" soddisfano il filtro"));
}

QString unknownText(const std::vector<orv::String>& names)
{
    QString text;
    for (const auto& name : names)
        text += (text.isEmpty() ? QString() : QStringLiteral(", "))
            + kit::toQt(name).left(MostNameLetters);
    return names.empty() ? text : QStringLiteral(" (nomi sconosciuti: ") + text + QLatin1Char(')');
}

} // namespace

CLiveCount::CLiveCount(gis::CLibGis* library, QObject* parent)
    : QObject(parent)
    , m_library(library)
{
    m_startTimer.setSingleShot(true);
    connect(&m_startTimer, &QTimer::timeout, this, &CLiveCount::start);
    connect(&m_stepTimer, &QTimer::timeout, this, &CLiveCount::step);
}

CLiveCount::~CLiveCount()
{
    if (m_working)
        m_working->stop();
    if (m_worker.valid())
        m_worker.wait(); // it reads the library, which may go when the dialog has gone
}

void CLiveCount::setTheme(gis::CTheme* theme)
{
    m_theme = theme;
    check();
}

void CLiveCount::setFilter(const QString& filter)
{
    if (filter == m_filter)
        return;
    m_filter = filter;
    check();
}

void CLiveCount::check()
{
    m_stepTimer.stop();
    m_startTimer.stop();
    if (m_working)
        m_working->stop();
    m_count.reset();
    const FilterCheck checked = checkFilter(m_filter);
    if (checked.isFilter && m_library && m_theme) {
        // A number may stand until the next one is there; what was wrong is not wrong any more.
        if (m_state.isWrong || (m_theme != m_shownTheme && !m_state.text.isEmpty()))
            show({});
        m_shownTheme = m_theme;
        m_startTimer.start(StartAfterMs);
    } else
        show({ checked.message, !checked.message.isEmpty(), checked.start, checked.length });
}

void CLiveCount::start()
{
    try {
        m_count = CFilterCount::make(*m_library, m_theme, m_filter.toStdString());
    } catch (...) { // out of memory, or whatever a host's columns throw: one can ask as well
        m_count.reset();
    }
    if (!m_count) {
        show({});
    } else if (const auto& field = m_count->unreadableField()) {
        show({ QStringLiteral("il campo ") + kit::toQt(*field).left(MostNameLetters)
                + QStringLiteral(" non può essere letto"),
            true, 0, 0 });
    } else if (m_count->isByColumns()) {
        startWorker();
    } else {
        m_isSlowTold = false;
        m_stepTimer.start(0);
    }
}

void CLiveCount::startWorker()
{
    if (m_worker.valid())
        return; // one at a time: the running one's end starts this one
    m_working = m_count;
    const auto work = [this, count = m_working] {
        int found = NotCounted;
        try {
            found = count->countColumns();
        } catch (...) { // the same
        }
        QMetaObject::invokeMethod(this, &CLiveCount::onWorkerDone, Qt::QueuedConnection);
        return found;
    };
    try {
        m_worker = std::async(std::launch::async, work);
    } catch (const std::system_error&) { // no thread to be had: without a count one can ask as well
        m_working.reset();
        show({});
    }
}

void CLiveCount::onWorkerDone()
{
    const int found = m_worker.get();
    const bool isWanted = m_working == m_count;
    m_working.reset();
    if (isWanted && m_count && found == NotCounted)
        show({});
    else if (isWanted && m_count)
        showCount(found);
    else if (m_count && m_count->isByColumns())
        startWorker();
}

void CLiveCount::step()
{
    bool isDone = false;
    try {
        isDone = m_count->step(SliceMs);
    } catch (...) { // the same
        m_stepTimer.stop();
        m_count.reset();
        show({});
        return;
    }
    if (!isDone) {
        if (!std::exchange(m_isSlowTold, true))
            show({ QStringLiteral("conteggio in corso…"), false, 0, 0 });
        return;
    }
    m_stepTimer.stop();
    showCount(m_count->found());
}

void CLiveCount::showCount(int found)
{
    show(
        { countText(found, m_count->total()) + unknownText(m_count->unknownNames()), false, 0, 0 });
}

void CLiveCount::show(LiveState state)
{
    m_state = std::move(state);
    Q_EMIT stateChanged();
}

} // namespace query
