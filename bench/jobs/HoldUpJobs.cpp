// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "bench/data/PointData.h"
#include "bench/support/Jobs.h"

#include "embedded/model/Library.h"
#include "embedded/store/GeoPackage.h"
#include "tables/grid/CtrlShowTable.h"
#include "tables/grid/DlgShowTable.h"
#include "tables/grid/GridView.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QTest>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace bench {
namespace {

constexpr double LongestMs = 200; // what a user may wait without progress and "Annulla"

/// The longest time in which the window could not react while something runs: between two beats of
/// a quick timer, which goes on while progress is shown.
double longestHoldUpMs(const std::function<void()>& run)
{
    QElapsedTimer sinceBeat;
    double longest = 0;
    QTimer beat;
    beat.setInterval(1);
    QObject::connect(&beat, &QTimer::timeout, &beat, [&] {
        longest = std::max(longest, static_cast<double>(sinceBeat.nsecsElapsed()) / 1e6);
        sinceBeat.restart();
    });
    beat.start();
    QTest::qWait(20);
    longest = 0;
    sinceBeat.restart();
    run();
    longest = std::max(longest, static_cast<double>(sinceBeat.nsecsElapsed()) / 1e6);
    return longest;
}

void addHoldUp(Jobs& jobs, const std::string& what, const std::function<void()>& run)
{
    const std::string name = "longest hold-up: " + what;
    if (jobs.wants(name))
        jobs.add({ name, longestHoldUpMs(run), "bound", LongestMs, 1.0 });
}

} // namespace

/// The grid over a million rows that still lie in the file.
void holdUpJobs(Jobs& jobs)
{
    if (!jobs.wants("longest hold-up"))
        return;
    const std::string file = jobs.settings().folder + "/grid.gpkg";
    {
        gis::CLibGis made;
        fillLibrary(made, makePoints(jobs.settings().rows()));
        if (!embedded::saveLibraryCopy(made, file)) {
            std::fprintf(stderr, "bench: the library could not be written\n");
            std::exit(1);
        }
    }
    embedded::Report report;
    auto opened = embedded::openLibrary(file, embedded::OpenMode::Read, nullptr, report);
    if (!opened) {
        std::fprintf(stderr, "bench: the library could not be opened\n");
        std::exit(1);
    }
    gis::CLibGis& library = *opened.value();
    std::unique_ptr<CDlgShowTable> dialog;
    addHoldUp(jobs, "open the grid of a file", [&] {
        dialog = std::make_unique<CDlgShowTable>(&library, library.GetTable(library.GetTheme(0)));
        dialog->show();
        QApplication::processEvents();
        static_cast<void>(dialog->grab());
    });
    if (!dialog)
        return;
    auto* grid = dialog->findChild<CCtrlShowTable*>();
    tables::CGridView& view = grid->view();
    addHoldUp(jobs, "scroll to the end", [&] {
        view.scrollToBottom();
        QApplication::processEvents();
        static_cast<void>(dialog->grab());
    });
    for (int field = 0; field < grid->model().columnCount(); ++field)
        addHoldUp(jobs, "sort by column " + std::to_string(field + 1), [&] {
            grid->model().sort(field, Qt::AscendingOrder);
            QApplication::processEvents();
        });
    addHoldUp(jobs, "find what is nowhere", [&] {
        QTest::keyClick(&view, Qt::Key_F, Qt::ControlModifier);
        auto* sought = dialog->findChild<QLineEdit*>(QStringLiteral("sought"));
        sought->setText(QStringLiteral("questo testo non c'è"));
        QTest::keyClick(sought, Qt::Key_Return);
        QApplication::processEvents();
    });
    addHoldUp(jobs, "select all rows", [&] {
        view.setFocus();
        QTest::keyClick(&view, Qt::Key_A, Qt::ControlModifier);
        QApplication::processEvents();
    });
    addHoldUp(jobs, "copy all rows", [&] {
        QTest::keyClick(&view, Qt::Key_C, Qt::ControlModifier);
        QApplication::processEvents();
    });
}

} // namespace bench
