// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "bench/support/Jobs.h"

#include "embedded/model/Library.h"
#include "host/base/ChangeManager.h"
#include "samples/generator/Random.h"
#include "tables/list/DlgTableList.h"
#include "tables/structure/DlgTableEdit.h"

#include <fmt/format.h>

#include <QApplication>
#include <QPixmap>
#include <QTableView>

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstdlib>

namespace bench {
namespace {

[[noreturn]] void stop(const char* what)
{
    std::fprintf(stderr, "bench: %s\n", what);
    std::exit(1);
}

/// Heights as texts: as many different ones as there are rows, or five thousand.
std::vector<std::string> makeTexts(int rows, bool areDifferent)
{
    samples::Random random(11);
    std::vector<std::string> texts(static_cast<std::size_t>(rows));
    for (std::string& text : texts)
        text = areDifferent ? fmt::format("{:.4f}", random.fraction() * 1e5)
                            : fmt::format("{:.2f}", random.below(5001) / 100.0);
    return texts;
}

/// A table with one text field and a number, half of its rows with an entity.
void fill(gis::CLibGis& facade, const std::vector<std::string>& texts)
{
    using gis::FieldFormat;
    embedded::Library& library = *embedded::Library::of(&facade);
    gis::CDBTable* table = library.createTable(orv::String("Quote"));
    table->addField("Quota", FieldFormat::Text);
    table->addField("Numero", FieldFormat::Integer);
    const int rows = static_cast<int>(texts.size());
    table->addRows(rows);
    embedded::Column column(gis::ColumnKind::Dictionary);
    embedded::Column numbers(gis::ColumnKind::Integer);
    for (const std::string& text : texts) {
        column.appendText(text);
        numbers.appendInteger(numbers.rowCount());
    }
    table->setColumn(0, std::move(column));
    table->setColumn(1, std::move(numbers));
    gis::CTheme* theme = library.createTheme(
        table, orv::String("Quote"), gis::EntType::Points, gis::EntTypeCoords::XY, 0);
    embedded::EntityStore& entities = theme->entities();
    for (int row = 0; row < rows / 2; ++row) {
        entities.addEntity(table->row(row));
        double* place = entities.addPart(1);
        place[0] = row;
        place[1] = row;
    }
}

double okMs(gis::CLibGis& library, orv::CChangeTransactionManager& changes)
{
    gis::CDBTable* table = library.GetTable(0);
    std::vector<double> times;
    for (int i = 0; i < 4; ++i) { // the first is not counted
        CDlgTableEdit dialog(&library, table);
        dialog.show();
        auto* grid = dialog.findChild<QTableView*>(QStringLiteral("id1000"));
        if (!grid)
            stop("the structure editor has no grid");
        grid->model()->setData(
            grid->model()->index(0, 2), QStringLiteral("Decimale"), Qt::EditRole);
        times.push_back(elapsedMs([&] {
            const orv::ChangeStep step(&changes, orv::String("Struttura"));
            dialog.accept();
        }));
        if (library.GetFieldFormat(library.GetField(table, 0)) != gis::FieldFormat::Decimal)
            stop("the format was not changed");
        changes.Undo();
    }
    times.erase(times.begin());
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

void convertJob(Jobs& jobs, const std::string& name, bool areDifferent)
{
    if (!jobs.wants(name))
        return;
    const std::vector<std::string> texts = makeTexts(jobs.settings().rows(), areDifferent);
    orv::CChangeTransactionManager changes;
    gis::CLibGis library(&changes);
    fill(library, texts);
    const double ours = okMs(library, changes);
    std::vector<double> numbers(texts.size());
    const double peer = medianMs(5, [&] {
        for (std::size_t i = 0; i < texts.size(); ++i)
            std::from_chars(texts[i].data(), texts[i].data() + texts[i].size(), numbers[i]);
    });
    jobs.add({ name, ours, "std::from_chars", peer, 3.0 });
}

double openMs(int fields)
{
    gis::CLibGis library;
    gis::CDBTable* table = library.CreateTable(orv::String("Campi"));
    for (int i = 0; i < fields; ++i)
        table->addField(
            orv::String(fmt::format("campo{}", i).c_str()), static_cast<gis::FieldFormat>(i % 6));
    return medianMs(11, [&] {
        CDlgTableEdit dialog(&library, table);
        dialog.show();
        QApplication::processEvents();
        static_cast<void>(dialog.grab());
    });
}

double openListMs(int tables)
{
    gis::CLibGis library;
    for (int i = 0; i < tables; ++i)
        library.CreateTable(orv::String(fmt::format("tabella {}", i).c_str()));
    return medianMs(11, [&] {
        CDlgTableList dialog;
        dialog.SetLibGis(&library);
        dialog.show();
        QApplication::processEvents();
        static_cast<void>(dialog.grab());
    });
}

} // namespace

void structureJobs(Jobs& jobs)
{
    convertJob(jobs, "structure: text to decimal, OK", true);
    convertJob(jobs, "structure: text to decimal, 5001 texts, OK", false);
    const std::string name = "structure: open 500 fields";
    if (jobs.wants(name))
        jobs.add({ name, openMs(500), "25 times 20 fields", 25 * openMs(20), 1.0 });
    const std::string list = "table list: open 2000 tables";
    if (jobs.wants(list))
        jobs.add({ list, openListMs(2000), "100 times 20 tables", 100 * openListMs(20), 1.0 });
}

} // namespace bench
