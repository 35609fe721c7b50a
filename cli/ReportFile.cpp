// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "cli/ReportFile.h"

#include "cli/Messages.h"

#include "embedded/store/ReplacedFile.h"

#include <nlohmann/json.hpp>

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <string_view>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace cli {

namespace {

using Json = nlohmann::ordered_json;

Json findingJson(const embedded::Finding& finding)
{
    Json json { { "code", word(finding.code) },
        { "warning", finding.severity == embedded::FindingSeverity::Warning },
        { "text", sentence(finding) }, { "subject", finding.subject }, { "detail", finding.detail },
        { "count", finding.count } };
    json["record"] = finding.record > 0 ? Json(finding.record) : Json(nullptr);
    return json;
}

using embedded::ErrorCode;
using embedded::store::failWith;

/// Closes the descriptor, if it is one. `path`: the name for errors.
void writeAll(int descriptor, std::string_view text, const std::string& path)
{
    std::FILE* file = descriptor >= 0 ? ::fdopen(descriptor, "wb") : nullptr;
    if (descriptor >= 0 && !file)
        ::close(descriptor);
    const bool isWritten = file && std::fwrite(text.data(), 1, text.size(), file) == text.size();
    const bool isClosed = file && std::fclose(file) == 0; // some file systems are full only now
    if (!isWritten || !isClosed)
        failWith(ErrorCode::WriteFailed, path, std::generic_category().message(errno));
}

/// Standard output or standard error where the place is one of them (/dev/stdout), whatever it
/// leads to: put in its place, the report would take the answers' file away. Else -1.
int standardStream(const struct stat& place)
{
    for (const int stream : { STDOUT_FILENO, STDERR_FILENO }) {
        struct stat open { };
        if (::fstat(stream, &open) == 0 && open.st_dev == place.st_dev
            && open.st_ino == place.st_ino)
            return ::dup(stream);
    }
    return -1;
}

/// Pipes, devices and standard streams: they are written to, never replaced. True when the place
/// was one of them.
bool writeStraight(const std::string& path, const std::string& text)
{
    struct stat place { };
    if (::stat(path.c_str(), &place) != 0)
        return false;
    if (S_ISDIR(place.st_mode))
        failWith(ErrorCode::NotAFile, path);
    const int stream = standardStream(place);
    if (stream < 0 && S_ISREG(place.st_mode))
        return false;
    writeAll(
        stream >= 0 ? stream : ::open(path.c_str(), O_WRONLY | O_NOCTTY | O_CLOEXEC), text, path);
    return true;
}

} // namespace

ReportFile::ReportFile()
    : m_themes(std::make_unique<Json>(Json::array()))
{
}

ReportFile::~ReportFile() = default;

void ReportFile::add(const std::string& theme, const std::string& file,
    const embedded::Report& report, const std::string& failure)
{
    Json findings = Json::array();
    for (const auto& finding : report.findings)
        findings.push_back(findingJson(finding));
    m_themes->push_back({ { "theme", theme.empty() ? Json(nullptr) : Json(theme) },
        { "file", file }, { "written", failure.empty() },
        { "error", failure.empty() ? Json(nullptr) : Json(failure) },
        { "findings", std::move(findings) } });
}

embedded::Result<void> ReportFile::write(const std::string& path) const
{
    const std::string text
        = Json { { "themes", *m_themes } }.dump(2, ' ', false, Json::error_handler_t::replace)
        + "\n";
    return embedded::store::guarded([&] {
        if (writeStraight(path, text))
            return;
        embedded::store::CReplacedFile file(path, embedded::store::Replaced::PlainFile);
        writeAll(::open(file.temporaryPath().c_str(), O_WRONLY | O_CLOEXEC), text, path);
        file.putInPlace();
    });
}

} // namespace cli
