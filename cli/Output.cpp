// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "cli/Output.h"

#include "cli/Cells.h"
#include "cli/Messages.h"
#include "cli/Progress.h"

#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <system_error>

namespace cli {

void tell(std::string_view text)
{
    const std::string line = "tematica: " + plainText(text) + '\n';
    clearProgressLine();
    std::fwrite(line.data(), 1, line.size(), stderr);
}

void tellWarnings(const embedded::Report& report, std::string_view subject)
{
    for (const auto& finding : report.findings) {
        if (finding.severity != embedded::FindingSeverity::Warning)
            continue;
        const std::string text = sentence(finding);
        tell(subject.empty() ? text : std::string(subject) + ": " + text);
    }
}

ExitCode fail(const embedded::Error& error)
{
    tell(sentence(error));
    // Leaving --theme out where there are several is a wrong call; all else is about the files.
    return error.code == embedded::ErrorCode::SeveralThemes ? WrongUsage : Failed;
}

bool Output::flush()
{
    std::size_t written = 0;
    while (!m_hasFailed && written < m_buffer.size()) {
        const auto count
            = ::write(STDOUT_FILENO, m_buffer.data() + written, m_buffer.size() - written);
        if (count >= 0) {
            written += static_cast<std::size_t>(count);
        } else if (errno != EINTR) {
            m_hasFailed = true;
            if (errno != EPIPE)
                tell("standard output: could not be written ("
                    + std::generic_category().message(errno) + ")");
        }
    }
    m_buffer.clear();
    return !m_hasFailed;
}

ExitCode Output::finish()
{
    return flush() ? Done : Failed;
}

} // namespace cli
