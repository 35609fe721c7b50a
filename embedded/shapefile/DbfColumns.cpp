// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/shapefile/DbfColumns.h"

#include "embedded/shapefile/DbfCells.h"

#include "host/base/Numbers.h"

#include <algorithm>
#include <chrono>
#include <exception>
#include <mutex>
#include <thread>
#include <unordered_set>

namespace embedded {

namespace {

bool isTextType(char type)
{
    return std::string_view("NFLDTIBYO@+MGP").find(type) == std::string_view::npos;
}

/// Runs `work(i)` for each i below `count` on all cores; waits on the calling thread.
template <typename Work, typename Wait>
void runOnAllCores(std::size_t count, const Work& work, const Wait& wait)
{
    std::atomic<std::size_t> next { 0 };
    std::atomic<std::size_t> running { 0 };
    std::mutex failureLock;
    std::exception_ptr failure;
    const auto loop = [&] {
        try {
            for (std::size_t i = next++; i < count; i = next++)
                work(i);
        } catch (...) {
            const std::lock_guard<std::mutex> locked(failureLock);
            failure = std::current_exception();
        }
        --running;
    };
    const std::size_t cores = std::max(1u, std::thread::hardware_concurrency());
    std::vector<std::jthread> threads; // joined also when waiting or starting one fails
    const std::size_t wanted = std::min(count, cores);
    for (std::size_t i = 0; i < wanted; ++i) {
        ++running;
        try {
            threads.emplace_back(loop);
        } catch (const std::system_error&) { // no thread to be had: those that run do it all
            --running;
            break;
        }
    }
    if (threads.empty()) {
        ++running;
        loop();
    }
    while (running > 0)
        wait();
    threads.clear();
    if (failure)
        std::rethrow_exception(failure);
}

} // namespace

std::vector<DbfColumn> readDbfColumns(
    const DbfReading& reading, const std::function<bool(double)>& isToStop)
{
    TextDecoder nameDecoder(reading.decoder);
    const std::vector<std::string> given = decodedFieldNames(reading.file, nameDecoder);
    const std::vector<std::string> names = uniqueFieldNames(given);
    const std::size_t count = names.size();
    std::vector<DbfColumn> columns(count);
    std::atomic<bool> stop { false };
    std::atomic<std::int64_t> cellsDone { 0 };
    const auto cells
        = static_cast<double>(std::max<std::size_t>(1, reading.records.size() * count));

    runOnAllCores(
        count,
        [&](std::size_t i) {
            TextDecoder decoder(reading.decoder);
            columns[i]
                = readDbfColumn(reading, decoder, static_cast<int>(i), names[i], stop, cellsDone);
        },
        [&] {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
            if (!stop && isToStop(static_cast<double>(cellsDone) / cells))
                stop = true;
        });
    if (stop)
        return {};
    for (std::size_t i = 0; i < count; ++i) {
        if (names[i] == given[i])
            continue;
        Finding renamed;
        renamed.code = FindingCode::FieldRenamed;
        renamed.severity = FindingSeverity::Note;
        renamed.subject = names[i];
        renamed.detail = given[i];
        columns[i].findings.insert(columns[i].findings.begin(), std::move(renamed));
    }
    return columns;
}

TextEvidence textEvidence(const DbfFile& file, const std::vector<std::uint32_t>& records)
{
    TextEvidence evidence;
    for (const DbfField& field : file.fields()) {
        evidence.add(field.name, field.name.size() >= 10);
        if (!isTextType(field.type))
            continue;
        for (const std::uint32_t record : records) {
            if (record == NoRecord)
                continue;
            const std::string_view cell = file.cell(record, field);
            const std::string_view text = cell.substr(0, cell.find('\0'));
            evidence.add(text, text.size() == cell.size());
        }
    }
    return evidence;
}

std::vector<std::string> decodedFieldNames(const DbfFile& file, TextDecoder& decoder)
{
    std::vector<std::string> names;
    for (const DbfField& field : file.fields()) {
        bool isValid = true;
        names.emplace_back(decoder.cell(field.name, isValid));
    }
    return names;
}

std::vector<std::string> uniqueFieldNames(const std::vector<std::string>& names)
{
    // The names that stand in the file are taken by their first owners, so that a made-up name
    // never pushes a given one aside.
    std::unordered_set<std::string> taken;
    std::vector<std::string> result(names.size());
    for (std::size_t i = 0; i < names.size(); ++i)
        if (!names[i].empty() && taken.insert(orv::FoldAsciiCase(names[i])).second)
            result[i] = names[i];
    for (std::size_t i = 0; i < names.size(); ++i)
        for (int number = 2; result[i].empty(); ++number) {
            const std::string name = names[i] + "_" + std::to_string(number);
            if (taken.insert(orv::FoldAsciiCase(name)).second)
                result[i] = name;
        }
    return result;
}

} // namespace embedded
