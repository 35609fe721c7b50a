// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "bench/jobs/HandScan.h"

#include "host/base/Dates.h"

#include <cmath>
#include <cstring>
#include <thread>

namespace bench {
namespace {

constexpr int ThreadCount = 2;

template <typename Work> void inThreads(int count, const Work& work)
{
    std::thread other([&] { work(1, count / 2, count); });
    work(0, 0, count / 2);
    other.join();
}

/// First the rows that match as bytes, then, knowing how many each half found, the handles.
template <typename Test>
void scan(int count, char* first, std::ptrdiff_t strideBytes, std::vector<gis::CEnt*>& result,
    const Test& test)
{
    static thread_local std::vector<std::uint8_t> hits;
    hits.resize(static_cast<std::size_t>(count));
    std::uint8_t* const hit = hits.data();
    std::size_t found[ThreadCount] = {};
    inThreads(count, [&](int thread, int begin, int end) {
        std::size_t sum = 0;
        for (int i = begin; i < end; ++i) {
            hit[i] = test(static_cast<std::size_t>(i));
            sum += hit[i];
        }
        found[thread] = sum;
    });
    result.resize(found[0] + found[1]);
    inThreads(count, [&](int thread, int begin, int end) {
        gis::CEnt** out = result.data() + (thread == 0 ? 0 : found[0]);
        for (int i = begin; i < end; ++i)
            if (hit[i])
                *out++ = reinterpret_cast<gis::CEnt*>(first + strideBytes * i);
    });
}

/// 'Via R%a%': begins with "Via R" and has an "a" after it.
bool matchesPattern(const std::string& text)
{
    return text.size() > 5 && std::memcmp(text.data(), "Via R", 5) == 0
        && std::memchr(text.data() + 5, 'a', text.size() - 5) != nullptr;
}

} // namespace

void handScan(char query, const PointArrays& p, char* first, std::ptrdiff_t stride,
    std::vector<gis::CEnt*>& result)
{
    const auto run = [&](const auto& test) { scan(p.count, first, stride, result, test); };
    switch (query) {
    case 'a':
        run([&](std::size_t i) -> std::uint8_t {
            return (p.kind[i] == 0) & ((p.width[i] >= 3.5) | (p.lanes[i] > 1))
                & (p.name[i] != PointArrays::MissingText);
        });
        break;
    case 'b': {
        std::vector<std::uint8_t> matches(p.names.size() + 1);
        inThreads(static_cast<int>(p.names.size()), [&](int, int begin, int end) {
            for (int i = begin; i < end; ++i)
                matches[static_cast<std::size_t>(i)]
                    = matchesPattern(p.names[static_cast<std::size_t>(i)]);
        });
        const auto last = static_cast<std::uint32_t>(p.names.size());
        run([&](std::size_t i) -> std::uint8_t { return matches[std::min(p.name[i], last)]; });
        break;
    }
    case 'c':
        run([&](std::size_t i) -> std::uint8_t { return p.width[i] * 2 + 1 > 40; });
        break;
    case 'd': {
        std::int32_t day = 0;
        orv::DayNumber({ 5, 3, 2016 }, day);
        run([&](std::size_t i) -> std::uint8_t { return p.surveyDay[i] >= day; });
        break;
    }
    default:
        run([&](std::size_t i) -> std::uint8_t {
            return p.lanes[i] == PointArrays::MissingInteger;
        });
    }
}

} // namespace bench
