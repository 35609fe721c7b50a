// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "bench/data/PointData.h"
#include "bench/support/Jobs.h"

#include "embedded/model/Library.h"
#include "embedded/store/GeoPackage.h"
#include "query/dialog/DlgQuery.h"
#include "query/execution/DistinctValues.h"
#include "tables/grid/CtrlShowTable.h"
#include "tables/grid/DlgShowTable.h"

#include <fmt/format.h>
#include <sqlite3.h>

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QPixmap>
#include <QPushButton>
#include <QTest>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <numeric>

namespace bench {
namespace {

constexpr const char* FilterA
    = "Tipo = 'Strada' AND (Larghezza >= 3.5 OR Corsie > 1) AND Nome IS NOT NULL";

/// A library of the measured points.
struct Town {
    explicit Town(int rows)
        : points(makePoints(rows))
        , theme(fillLibrary(library, points))
    {
        library.SetThemeActive(theme);
    }
    PointArrays points;
    gis::CLibGis library;
    gis::CTheme* theme;
    [[nodiscard]] gis::CDBTable* table() { return library.GetTable(theme); }
};

[[noreturn]] void stop(const std::string& what)
{
    std::fprintf(stderr, "bench: %s\n", what.c_str());
    std::exit(1);
}

/// What is on the screen now is painted when this returns.
void paint(QWidget& window)
{
    QApplication::processEvents();
    static_cast<void>(window.grab());
}

double openGridMs(Town& town, int repetitions)
{
    return medianMs(repetitions, [&] {
        CDlgShowTable dialog(&town.library, town.table());
        dialog.show();
        paint(dialog);
    });
}

CCtrlShowTable& gridOf(QWidget& dialog)
{
    auto* grid = dialog.findChild<CCtrlShowTable*>();
    if (!grid)
        stop("the dialog has no grid");
    return *grid;
}

void openJobs(Jobs& jobs, Town& town, double smallMs)
{
    const int rows = jobs.settings().rows();
    const std::string name = "open the grid";
    if (!jobs.wants(name))
        return;
    const double ms = openGridMs(town, 9);
    jobs.add({ fmt::format("{}, {} rows", name, rows), ms, "1000 rows", smallMs, 1.5 });
}

void openLargeJob(Jobs& jobs, double smallMs)
{
    const int rows = jobs.settings().rows() * 10;
    const std::string name = fmt::format("open the grid, {} rows", rows);
    if (!jobs.wants(name))
        return;
    Town large(rows);
    jobs.add({ name, openGridMs(large, 5), "1000 rows", smallMs, 3.0 });
    // The rest of the rows comes when the first are on the screen: how long it holds the window up.
    std::vector<double> rest;
    for (int i = 0; i < 5; ++i) {
        CDlgShowTable dialog(&large.library, large.table());
        dialog.show();
        paint(dialog);
        double longest = 0;
        while (!gridOf(dialog).model().areAllRowsShown())
            longest = std::max(longest, elapsedMs([&] { QApplication::processEvents(); }));
        rest.push_back(longest);
    }
    jobs.add({ name + ", longest hold-up afterwards", median(rest), "bound", 200.0, 1.0 });
}

/// Resident memory that the grid adds, in megabytes beside its bound.
void memoryJobs(Jobs& jobs, Town& town)
{
    if (!jobs.wants("memory of the grid"))
        return;
    const double share = jobs.settings().rows() / 1e6;
    const double before = residentBytes();
    CDlgShowTable dialog(&town.library, town.table());
    dialog.show();
    paint(dialog);
    gridOf(dialog).model().showAllRows();
    const double opened = residentBytes();
    gridOf(dialog).model().sort(0, Qt::AscendingOrder);
    paint(dialog);
    const double sorted = residentBytes();
    jobs.add({ "memory of the grid (MB in place of ms)", (opened - before) / 1e6,
        "20 MB per million rows", 20.0 * share, 1.0 });
    jobs.add({ "memory of the grid, sorted (MB in place of ms)", (sorted - before) / 1e6,
        "30 MB per million rows", 30.0 * share, 1.0 });
}

/// The peer sorts an index over the ranks of the names, which it has at hand.
void sortJob(Jobs& jobs, Town& town)
{
    const std::string name = "sort the grid by a text column";
    if (!jobs.wants(name))
        return;
    CDlgShowTable dialog(&town.library, town.table());
    dialog.show();
    paint(dialog);
    tables::CGridModel& model = gridOf(dialog).model();
    bool ascends = false;
    const double ours = medianMs(5, [&] {
        ascends = !ascends;
        model.sort(0, ascends ? Qt::AscendingOrder : Qt::DescendingOrder);
    });
    const PointArrays& points = town.points;
    std::vector<std::uint32_t> byName(points.names.size());
    std::iota(byName.begin(), byName.end(), 0u);
    std::sort(byName.begin(), byName.end(),
        [&](std::uint32_t a, std::uint32_t b) { return points.names[a] < points.names[b]; });
    std::vector<std::uint32_t> rank(points.names.size());
    for (std::uint32_t i = 0; i < byName.size(); ++i)
        rank[byName[i]] = i;
    std::vector<std::uint32_t> rankOfRow(points.name.size());
    for (std::size_t i = 0; i < rankOfRow.size(); ++i)
        rankOfRow[i] = points.name[i] == PointArrays::MissingText ? PointArrays::MissingText
                                                                  : rank[points.name[i]];
    std::vector<int> order(rankOfRow.size());
    const double peer = medianMs(5, [&] {
        std::iota(order.begin(), order.end(), 0);
        std::sort(order.begin(), order.end(), [&](int a, int b) {
            const auto left = rankOfRow[static_cast<std::size_t>(a)];
            const auto right = rankOfRow[static_cast<std::size_t>(b)];
            return left != right ? left < right : a < b;
        });
    });
    jobs.add({ name, ours, "std::sort over ranks", peer, 1.5 });
}

template <typename Control> Control& control(QWidget& dialog, const char* id)
{
    auto* found = dialog.findChild<Control*>(QString::fromLatin1(id));
    if (!found)
        stop(std::string("the query dialog has no ") + id);
    return *found;
}

void clickField(QWidget& dialog, int row)
{
    auto& fields = control<QAbstractItemView>(dialog, "id2068");
    const QModelIndex index = fields.model()->index(row, 0);
    fields.scrollTo(index);
    QTest::mouseClick(fields.viewport(), Qt::LeftButton, {}, fields.visualRect(index).center());
}

void valuesJob(Jobs& jobs, Town& town)
{
    const std::string name = "values of Nome in the query dialog";
    if (!jobs.wants(name))
        return;
    CDlgQuery dialog(0, nullptr, &town.library);
    dialog.show();
    paint(dialog);
    const int field = town.theme->table->findField("Nome");
    const int other = town.theme->table->findField("Attivo");
    auto& values = control<QAbstractItemView>(dialog, "id2069");
    std::vector<double> times;
    for (int i = 0; i < 6; ++i) {
        clickField(dialog, other); // the same field again would not be gathered again
        paint(dialog);
        times.push_back(elapsedMs([&] {
            clickField(dialog, field);
            paint(dialog);
        }));
    }
    if (values.model()->rowCount() < 2)
        stop("no values were listed");
    times.erase(times.begin());
    const double engine = medianMs(
        5, [&] { static_cast<void>(query::distinctValues(town.library, town.theme, field)); });
    jobs.add({ name, median(times), "the engine's distinct values", engine, 2.0 });
}

/// The parts and the whole in turns, so that a slower moment of the machine is one for both.
void runJob(Jobs& jobs, Town& town, Town& small)
{
    const std::string name = "Esegui with query (a), result painted";
    if (!jobs.wants(name))
        return;
    CDlgQuery dialog(0, nullptr, &town.library);
    dialog.show();
    control<QLineEdit>(dialog, "id2071").setText(QString::fromLatin1(FilterA));
    auto& run = control<QPushButton>(dialog, "id2081");
    std::vector<gis::CEnt*> found;
    std::vector<double> ours;
    std::vector<double> peers;
    const auto clickRun = [&] {
        QTest::mouseClick(&run, Qt::LeftButton);
        paint(dialog);
    };
    QTest::qWait(1000); // the line that counts as one types has had its say
    for (int i = 0; i < 15; ++i) {
        const double engine = elapsedMs([&] {
            CQueryExecute query(&town.library, town.theme);
            if (query.SetQueryFilter(FilterA))
                query.Execute(found);
        });
        peers.push_back(engine + openGridMs(small, 1));
        clickRun(); // not counted, as the first opening of the grid is not
        QTest::qWait(200); // the list of last filters is written
        ours.push_back(elapsedMs(clickRun));
    }
    if (gridOf(dialog).model().rowCount() != static_cast<int>(found.size()))
        stop("the result page does not show what the query finds");
    jobs.add({ name, median(ours), "query + grid of 1000 rows", median(peers), 1.3 });
}

/// 100,000 cells edited in the grid, OK, the library saved; SQLite updates the same cells.
void saveJob(Jobs& jobs)
{
    const std::string name = "save 100,000 edited cells";
    if (!jobs.wants(name))
        return;
    const int edits = jobs.settings().rows() / 10;
    const std::string file = jobs.settings().folder + "/edited.gpkg";
    const std::string peerFile = jobs.settings().folder + "/edited-sqlite.gpkg";
    {
        Town town(jobs.settings().rows());
        if (!embedded::saveLibraryCopy(town.library, file)
            || !embedded::saveLibraryCopy(town.library, peerFile))
            stop("the library could not be written");
    }
    embedded::Report report;
    auto opened = embedded::openLibrary(file, embedded::OpenMode::Write, nullptr, report);
    if (!opened)
        stop("the library could not be opened");
    gis::CLibGis& library = *opened.value();
    gis::CTheme* theme = library.GetTheme(0);
    const int lanes = theme->table->findField("Corsie");
    int value = 0;
    double ours = 0;
    for (int i = 0; i < 3; ++i) { // the last one counts: everything is loaded by then
        CDlgShowTable dialog(&library, library.GetTable(theme));
        dialog.show();
        paint(dialog);
        tables::CGridModel& model = gridOf(dialog).model();
        ++value;
        for (int row = 0; row < edits; ++row)
            model.setData(model.index(row * 10, lanes), QString::number(10 + value), Qt::EditRole);
        ours = elapsedMs([&] {
            dialog.accept();
            if (!embedded::saveLibrary(library))
                stop("the library could not be saved");
        });
        if (dialog.result() != QDialog::Accepted)
            stop("the grid was not accepted");
    }
    sqlite3* db = nullptr;
    sqlite3_open(peerFile.c_str(), &db);
    // The layer's triggers call functions that only GIS programs have.
    sqlite3_db_config(db, SQLITE_DBCONFIG_ENABLE_TRIGGER, 0, nullptr);
    double peer = 0;
    for (int i = 0; i < 3; ++i)
        peer = elapsedMs([&] {
            sqlite3_exec(db, "BEGIN", nullptr, nullptr, nullptr);
            sqlite3_stmt* update = nullptr;
            if (sqlite3_prepare_v2(
                    db, "UPDATE \"Punti\" SET \"Corsie\" = ?1 WHERE fid = ?2", -1, &update, nullptr)
                != SQLITE_OK)
                stop(sqlite3_errmsg(db));
            for (int row = 0; row < edits; ++row) {
                sqlite3_bind_int(update, 1, 11 + i);
                sqlite3_bind_int64(update, 2, row * 10 + 1);
                if (sqlite3_step(update) != SQLITE_DONE)
                    stop(sqlite3_errmsg(db));
                sqlite3_reset(update);
            }
            sqlite3_finalize(update);
            sqlite3_exec(db, "COMMIT", nullptr, nullptr, nullptr);
        });
    sqlite3_close(db);
    jobs.add({ name + " in the grid and the file", ours, "SQLite, prepared UPDATE", peer, 3.0 });
}

} // namespace

void dialogJobs(Jobs& jobs)
{
    static const char* const Names[] = { "open the grid", "memory of the grid",
        "sort the grid by a text column", "values of Nome in the query dialog",
        "Esegui with query (a), result painted", "save 100,000 edited cells" };
    if (std::none_of(
            std::begin(Names), std::end(Names), [&](const char* name) { return jobs.wants(name); }))
        return;
    Town small(1000);
    const double smallMs = openGridMs(small, 21);
    {
        Town town(jobs.settings().rows());
        memoryJobs(jobs, town);
        openJobs(jobs, town, smallMs);
        sortJob(jobs, town);
        valuesJob(jobs, town);
        runJob(jobs, town, small);
    }
    openLargeJob(jobs, smallMs);
    saveJob(jobs);
}

} // namespace bench
