// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "embedded/base/Report.h"
#include "embedded/base/Result.h"

#include <string>
#include <string_view>

namespace cli {

enum ExitCode : int {
    Done = 0,
    Failed = 1,
    WrongUsage = 2,
    FilterRefused = 3,
};

/// One line on standard error, "tematica: " and the text as `plainText` gives it: names hold
/// anything, and it must stay one line of UTF-8.
void tell(std::string_view text);
/// The warnings of a report, a line each; `subject` (a file's name) stands before each unless
/// empty.
void tellWarnings(const embedded::Report& report, std::string_view subject = {});
/// Tells an error; gives the exit code for it.
ExitCode fail(const embedded::Error& error);

/// Standard output, in large pieces. A reader that has gone away (a pipe into "head") ends the
/// writing without a word; any other failure is told once.
class Output final {
public:
    Output() = default;
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    /// False when nothing more can be written; whoever writes much should then stop.
    bool write(std::string_view text)
    {
        m_buffer.append(text);
        return m_buffer.size() < BufferBytes || flush();
    }
    bool flush();
    /// Writes what is left; `Failed` when something could not be written.
    ExitCode finish();

private:
    static constexpr std::size_t BufferBytes = 1 << 16;
    std::string m_buffer;
    bool m_hasFailed = false;
};

} // namespace cli
