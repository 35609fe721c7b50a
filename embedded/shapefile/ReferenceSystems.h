// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "embedded/base/Report.h"
#include "embedded/model/Theme.h"

#include <string>

namespace embedded {

/// The reference system that a .prj describes: its text byte for byte, with an authority's code
/// where it is identified without doubt. Findings: ReferenceSystemUnknown, as a warning when the
/// text is none, as a note when there is nothing to identify it with.
ReferenceSystem readReferenceSystem(const std::string& prjPath, Report& report);

/// The text for a .prj: the definition as it stands, else made from the authority's code; empty
/// when neither is known.
std::string prjText(const ReferenceSystem& system);

} // namespace embedded
