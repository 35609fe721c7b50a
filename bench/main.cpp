// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "bench/support/Jobs.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#ifdef TEMATICA_BENCH_WIDGETS
#include <QApplication>
#include <QLoggingCategory>
#endif

#include <cstdlib>
#include <filesystem>

int main(int argc, char** argv)
{
    CLI::App arguments(
        "Times Tematica beside SQLite, OGR and hand-written code on the same data in the same run");
    bench::Settings settings;
    std::string json;
    arguments.add_option("--json", json, "write the results to this file");
    arguments.add_flag("--quick", settings.quick, "a tenth of the rows, fewer repetitions");
    arguments.add_option("--only", settings.only, "only jobs whose name contains this");
    CLI11_PARSE(arguments, argc, argv);

#ifdef TEMATICA_BENCH_WIDGETS
    ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
    QApplication application(argc, argv);
    QApplication::setStyle(QStringLiteral("Fusion"));
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false\nqt.qpa.*=false"));
#endif
    namespace fs = std::filesystem;
    const fs::path folder
        = fs::temp_directory_path() / fmt::format("tematica-bench-{}", ::getpid());
    fs::create_directories(folder);
    settings.folder = folder.string();
    settings.programFolder = fs::canonical("/proc/self/exe").parent_path().string();
    bench::Jobs jobs(settings);
    fmt::print("{:<58} {:>10}   {:<26} {:>10}   {:>7}   {:>7}\n", "job", "ms", "peer", "ms",
        "ratio", "goal");
    bench::memoryJob(jobs); // first: nothing has touched the memory yet
    bench::queryJobs(jobs);
    bench::valueJobs(jobs);
    bench::fileJobs(jobs);
    bench::growthJobs(jobs);
#ifdef TEMATICA_BENCH_WIDGETS
    bench::drawingJobs(jobs);
    bench::dialogJobs(jobs);
    bench::holdUpJobs(jobs);
    bench::structureJobs(jobs);
#endif
    jobs.print();
    fs::remove_all(folder);
    return json.empty() || jobs.writeJson(json) ? 0 : 1;
}
