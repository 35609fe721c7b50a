// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "query/dialog/LiveCount.h"

#include "query/execution/Readings.h"
#include "query/language/FilterParser.h"

#include "kit/texts/QtText.h"

#include "host/gis/LibGis.h"

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
    m_isReadingWanted = false;
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
    m_isReadingWanted = m_library->Extension(gis::ColumnsExtension) != nullptr;
    if (m_isReadingWanted)
        startReading();
    else
        count();
}

/// What the filter names may still lie in a file: it is read before the counting begins.
void CLiveCount::startReading()
{
    if (m_worker.valid())
        return; // one at a time: the running one's end starts this one
    m_isReadingWanted = false;
    const auto root = parseFilter(m_filter.toStdString(), ErrorReport::Silent).root;
    if (!root)
        return;
    m_reading = std::make_shared<std::atomic<bool>>(false);
    auto* columns = static_cast<gis::IColumns*>(m_library->Extension(gis::ColumnsExtension));
    runAside([columns, table = m_library->GetTable(m_theme),
                 fields = fieldsOf(m_library, m_theme, *root), stop = m_reading] {
        readColumns(columns, table, fields, [&stop](double) { return !*stop; });
        return 0;
    });
}

/// Runs work on another thread; `onWorkerDone` follows. Where no thread is to be had the line stays
/// empty: without a count one can ask as well.
void CLiveCount::runAside(const std::function<int()>& work)
{
    const auto told = [this, work] {
        int found = NotCounted;
        try {
            found = work();
        } catch (...) { // out of memory, or whatever a host's columns throw
        }
        QMetaObject::invokeMethod(this, &CLiveCount::onWorkerDone, Qt::QueuedConnection);
        return found;
    };
    try {
        m_worker = std::async(std::launch::async, told);
    } catch (const std::system_error&) {
        m_working.reset();
        m_reading.reset();
        show({});
    }
}

void CLiveCount::count()
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
    runAside([counting = m_working] { return counting->countColumns(); });
}

void CLiveCount::onWorkerDone()
{
    const int found = m_worker.get();
    const auto wasReading = std::exchange(m_reading, nullptr);
    const auto worked = std::exchange(m_working, nullptr);
    if (m_isReadingWanted) {
        startReading();
    } else if (wasReading) {
        if (!*wasReading)
            count();
    } else if (worked == m_count && m_count && found == NotCounted) {
        show({});
    } else if (worked == m_count && m_count) {
        showCount(found);
    } else if (m_count && m_count->isByColumns()) {
        startWorker();
    }
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
