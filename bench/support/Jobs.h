// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace bench {

/// One measured job beside its peer. A goal above 0 is the largest ratio ours/peer that holds.
struct JobResult {
    std::string job;
    double oursMs = 0;
    std::string peer;
    double peerMs = 0;
    double goal = 0;
    [[nodiscard]] double ratio() const { return peerMs > 0 ? oursMs / peerMs : 0; }
    [[nodiscard]] bool holds() const { return ratio() <= goal; }
};

struct Settings {
    bool quick = false; // a tenth of the rows, one repetition
    std::string only; // only jobs whose name contains this
    std::string folder; // for files; emptied by the caller
    std::string programFolder; // where tematica lies
    [[nodiscard]] int rows() const { return quick ? 100000 : 1000000; }
};

/// Collects results, skipping jobs that were not asked for.
class Jobs final {
public:
    explicit Jobs(Settings settings)
        : m_settings(std::move(settings))
    {
    }
    [[nodiscard]] const Settings& settings() const { return m_settings; }
    [[nodiscard]] bool wants(const std::string& job) const;
    void add(JobResult result);
    [[nodiscard]] const std::vector<JobResult>& results() const { return m_results; }
    void print() const;
    [[nodiscard]] bool writeJson(const std::string& path) const;

private:
    Settings m_settings;
    std::vector<JobResult> m_results;
};

double median(std::vector<double> times);
/// Median of `repetitions` runs in milliseconds, after one run that is not counted.
double medianMs(int repetitions, const std::function<void()>& run);
/// One run in milliseconds.
double elapsedMs(const std::function<void()>& run);
/// Runs a program by the shell; its wall time in milliseconds, the bench ends when it failed.
double commandMs(const std::string& command);
double medianCommandMs(int repetitions, const std::string& command, const std::string& before = {});
/// Resident memory of this process in bytes, without what was freed.
double residentBytes();

void queryJobs(Jobs& jobs);
void valueJobs(Jobs& jobs);
void fileJobs(Jobs& jobs);
void growthJobs(Jobs& jobs);
void memoryJob(Jobs& jobs);
void dialogJobs(Jobs& jobs);
void drawingJobs(Jobs& jobs);
void holdUpJobs(Jobs& jobs);
void structureJobs(Jobs& jobs);

} // namespace bench
