// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "embedded/base/Report.h"
#include "embedded/base/Result.h"

#include <nlohmann/json_fwd.hpp>

#include <memory>
#include <string>

namespace cli {

/// What an import or an export found and could not keep, as a JSON file for other programs:
/// {"themes":[{"theme","file","written","error","findings":[{"code","warning","text","subject",
/// "detail","count","record"}]}]}; "theme" is null for an import that was refused.
class ReportFile final {
public:
    ReportFile();
    ReportFile(const ReportFile&) = delete;
    ReportFile& operator=(const ReportFile&) = delete;
    ~ReportFile();

    /// `theme`: its name; empty where there is none. `failure`: why it was not written; empty when
    /// it was.
    void add(const std::string& theme, const std::string& file, const embedded::Report& report,
        const std::string& failure);
    /// Written beside the path and put in its place at once; links are followed, and a file that is
    /// there gives its rights to the new one. What is no file (a pipe, a device, a standard stream)
    /// is written to.
    [[nodiscard]] embedded::Result<void> write(const std::string& path) const;

private:
    std::unique_ptr<nlohmann::ordered_json> m_themes;
};

} // namespace cli
