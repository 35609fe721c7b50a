// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "embedded/store/Connection.h"

#include <cstdint>
#include <functional>
#include <memory>

namespace embedded::store {

/// A connection, and a second one beside it for a second thread when there is much to read.
class ReadingPair final {
public:
    explicit ReadingPair(std::unique_ptr<Connection> main);
    ReadingPair(const ReadingPair&) = delete;
    ReadingPair& operator=(const ReadingPair&) = delete;
    ~ReadingPair();

    [[nodiscard]] Connection& main() { return *m_main; }
    /// Calls `read` once with everything, or twice at the same time with one half each: 0 and 1
    /// of 2. Returns into how many halves the work was cut. Errors: the first half's that failed.
    int inHalves(std::int64_t rows, const std::function<void(Connection&, int half, int of)>& read);
    /// Closes the second connection, whose locks would stand in the way of a save.
    void dropSecond() { m_second.reset(); }

private:
    Connection* second();

    std::unique_ptr<Connection> m_main;
    std::unique_ptr<Connection> m_second;
    bool m_mayHaveSecond = true;
};

} // namespace embedded::store
