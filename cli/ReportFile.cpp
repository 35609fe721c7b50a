// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "cli/ReportFile.h"

#include "cli/Messages.h"

#include <nlohmann/json.hpp>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
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

mode_t currentUmask()
{
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return mask;
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
    // A passing name of its own beside the file: nothing of the user's has it.
    std::string temporary = path + ".XXXXXX";
    const int descriptor = ::mkstemp(temporary.data());
    if (descriptor >= 0)
        static_cast<void>(::fchmod(descriptor, 0666 & ~currentUmask()));
    std::FILE* file = descriptor >= 0 ? ::fdopen(descriptor, "wb") : nullptr;
    const bool isWritten = file && std::fwrite(text.data(), 1, text.size(), file) == text.size();
    const bool isClosed = file && std::fclose(file) == 0;
    if (isWritten && isClosed && std::rename(temporary.c_str(), path.c_str()) == 0)
        return {};
    const std::string reason = std::generic_category().message(errno);
    if (descriptor >= 0)
        std::remove(temporary.c_str());
    return embedded::Error { embedded::ErrorCode::WriteFailed, path, reason };
}

} // namespace cli
