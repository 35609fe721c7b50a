// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/store/ReadingPair.h"

#include "host/base/Numbers.h"

#include <future>
#include <thread>

namespace embedded::store {
namespace {

// Below this a second thread does not pay for its connection.
constexpr std::int64_t WorthTwoThreads = 150000;
constexpr int SecondTimeoutMs = 5000;

} // namespace

ReadingPair::ReadingPair(std::unique_ptr<Connection> main)
    : m_main(std::move(main))
{
}

ReadingPair::~ReadingPair() = default;

Connection* ReadingPair::second()
{
    if (m_second || !m_mayHaveSecond)
        return m_second.get();
    m_mayHaveSecond = std::thread::hardware_concurrency() > 1;
    if (!m_mayHaveSecond)
        return nullptr;
    try {
        // With a write-ahead log the second connection could see a later state than the first.
        if (orv::FoldAsciiCase(m_main->textOf("PRAGMA journal_mode")) == "wal")
            m_mayHaveSecond = false;
        else
            m_second = std::make_unique<Connection>(
                m_main->path(), Connection::Access::Read, SecondTimeoutMs);
        if (m_second)
            m_second->setActivity(Activity::Reading);
    } catch (const StoreFailure&) {
        m_mayHaveSecond = false; // one is enough
    }
    return m_second.get();
}

int ReadingPair::inHalves(
    std::int64_t rows, const std::function<void(Connection&, int half, int of)>& read)
{
    Connection* other = rows >= WorthTwoThreads ? second() : nullptr;
    if (!other) {
        read(*m_main, 0, 1);
        return 1;
    }
    auto upper = std::async(std::launch::async, [&] { read(*other, 1, 2); });
    try {
        read(*m_main, 0, 2);
    } catch (...) {
        upper.wait();
        throw;
    }
    upper.get();
    return 2;
}

} // namespace embedded::store
