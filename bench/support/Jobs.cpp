// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "bench/support/Jobs.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <malloc.h>
#include <unistd.h>

namespace bench {

bool Jobs::wants(const std::string& job) const
{
    return m_settings.only.empty() || job.find(m_settings.only) != std::string::npos;
}

void Jobs::add(JobResult result)
{
    fmt::print("{:<58} {:>10.2f}   {:<26} {:>10.2f}   {:>7.3f}   {:>7.3f}   {}\n", result.job,
        result.oursMs, result.peer, result.peerMs, result.ratio(), result.goal,
        result.holds() ? "holds" : "MISSED");
    std::fflush(stdout);
    m_results.push_back(std::move(result));
}

void Jobs::print() const
{
    const auto missed = std::count_if(
        m_results.begin(), m_results.end(), [](const JobResult& r) { return !r.holds(); });
    fmt::print("{} jobs, {} missed\n", m_results.size(), missed);
}

bool Jobs::writeJson(const std::string& path) const
{
    auto list = nlohmann::json::array();
    for (const JobResult& r : m_results)
        list.push_back({ { "job", r.job }, { "tematica_ms", r.oursMs }, { "peer", r.peer },
            { "peer_ms", r.peerMs }, { "ratio", r.ratio() }, { "goal", r.goal },
            { "holds", r.holds() } });
    std::ofstream out(path);
    out << list.dump(1) << '\n';
    return out.good();
}

double elapsedMs(const std::function<void()>& run)
{
    const auto start = std::chrono::steady_clock::now();
    run();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start)
        .count();
}

double median(std::vector<double> times)
{
    const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
    std::nth_element(times.begin(), middle, times.end());
    return *middle;
}

double medianMs(int repetitions, const std::function<void()>& run)
{
    run();
    std::vector<double> times;
    for (int i = 0; i < repetitions; ++i)
        times.push_back(elapsedMs(run));
    return median(std::move(times));
}

double commandMs(const std::string& command)
{
    int status = 0;
    const double ms = elapsedMs([&] { status = std::system(command.c_str()); });
    if (status != 0) {
        // A job without a time must not look like a quick one.
        fmt::print(stderr, "bench: failed: {}\n", command);
        std::exit(1);
    }
    return ms;
}

double medianCommandMs(int repetitions, const std::string& command, const std::string& before)
{
    std::vector<double> times;
    for (int i = 0; i < repetitions; ++i) {
        if (!before.empty())
            commandMs(before);
        times.push_back(commandMs(command));
    }
    return median(std::move(times));
}

double residentBytes()
{
    malloc_trim(0); // what earlier jobs freed would otherwise be taken again and cost nothing
    std::ifstream statm("/proc/self/statm");
    double total = 0;
    double resident = 0;
    statm >> total >> resident;
    return resident * static_cast<double>(sysconf(_SC_PAGESIZE));
}

} // namespace bench
