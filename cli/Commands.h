// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

// The commands, one function each; what they answer is the process's exit code.

#include "cli/Arguments.h"

namespace cli {

[[nodiscard]] int runInfo(const InfoArguments& arguments);
[[nodiscard]] int runQuery(const QueryArguments& arguments);
[[nodiscard]] int runValues(const ValuesArguments& arguments);
[[nodiscard]] int runImport(const ImportArguments& arguments);
[[nodiscard]] int runExport(const ExportArguments& arguments);
[[nodiscard]] int runRender(const RenderArguments& arguments);

} // namespace cli
