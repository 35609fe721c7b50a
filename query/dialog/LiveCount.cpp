// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "query/dialog/LiveCount.h"

#include "query/execution/Readings.h"
#include "query/language/FilterParser.h"

#include "kit/texts/QtText.h"

#include "host/gis/LibGis.h"

#include <QLocale>

#include <utility>

namespace query {

namespace {

/// After this pause in typing the counting begins.
constexpr int StartAfterMs = 60;
constexpr int SliceMs = 15;
constexpr int NotCounted = -1;

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
        text += (text.isEmpty() ? QString() : QStringLiteral(", ")) + shortened(kit::toQt(name));
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
    stopWorker();
    if (m_worker.valid())
        m_worker.wait(); // it reads the library, which may go when the dialog has gone
}

void CLiveCount::stopWorker()
{
    if (m_working)
        m_working->stop();
    if (m_reading)
        *m_reading = true;
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
    stopWorker();
    m_isWanted = false;
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
    m_isWanted = m_worker.valid(); // one at a time: the running one's end starts this one
    if (m_isWanted)
        return;
    guarded([this] {
        if (!startReading())
            count();
    });
}

/// Out of memory or threads, or whatever a host throws: the line stays empty, one can ask as well.
void CLiveCount::guarded(const std::function<void()>& work)
{
    try {
        work();
    } catch (...) {
        m_stepTimer.stop();
        m_count.reset();
        m_working.reset();
        m_reading.reset();
        show({});
    }
}

/// What the filter names may still lie in a file: it is read before the counting begins. False when
/// there is nothing to be read.
bool CLiveCount::startReading()
{
    const ColumnSource source(m_library);
    const auto root = parseFilter(m_filter.toStdString(), ErrorReport::Silent).root;
    if (!source || !root)
        return false;
    m_reading = std::make_shared<std::atomic<bool>>(false);
    runAside([source, table = m_library->GetTable(m_theme),
                 fields = fieldsOf(m_library, m_theme, *root), stop = m_reading] {
        readColumns(source, table, fields, [&stop](double) { return !*stop; });
        return 0;
    });
    return true;
}

/// Runs work on another thread; `onWorkerDone` follows.
void CLiveCount::runAside(const std::function<int()>& work)
{
    m_worker = std::async(std::launch::async, [this, work] {
        int found = NotCounted;
        try {
            found = work();
        } catch (...) { // out of memory, or whatever a host's columns throw
        }
        QMetaObject::invokeMethod(this, &CLiveCount::onWorkerDone, Qt::QueuedConnection);
        return found;
    });
}

void CLiveCount::count()
{
    m_count = CFilterCount::make(*m_library, m_theme, m_filter.toStdString());
    if (!m_count) {
        show({});
    } else if (const auto& field = m_count->unreadableField()) {
        show({ QStringLiteral("il campo ") + shortened(kit::toQt(*field))
                + QStringLiteral(" non può essere letto"),
            true, 0, 0 });
    } else if (m_count->isByColumns()) {
        m_working = m_count;
        runAside([counting = m_working] { return counting->countColumns(); });
    } else {
        m_isSlowTold = false;
        m_stepTimer.start(0);
    }
}

void CLiveCount::onWorkerDone()
{
    const int found = m_worker.get();
    const auto reading = std::exchange(m_reading, nullptr);
    const auto counted = std::exchange(m_working, nullptr);
    if (m_isWanted)
        start();
    else if (reading && !*reading)
        guarded([this] { count(); });
    else if (counted && counted == m_count && found == NotCounted)
        show({});
    else if (counted && counted == m_count)
        showCount(found);
}

void CLiveCount::step()
{
    bool isDone = false;
    guarded([&] { isDone = m_count->step(SliceMs); });
    if (!m_count)
        return;
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
