// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace cli {

/// Whether two paths mean one file, which need not be there.
[[nodiscard]] bool isSamePath(const std::string& one, const std::string& other);

/// Whether a path is a file that is read or written anyway: the file itself or, of a shapefile, one
/// of those that stand beside it. What is written there would destroy it.
[[nodiscard]] bool isPartOf(const std::string& path, const std::string& file);

/// Whether a path lies in the folder and is named as shapefiles and what belongs to them are.
[[nodiscard]] bool isShapefilePartIn(const std::string& path, const std::string& folder);

} // namespace cli
