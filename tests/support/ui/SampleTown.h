// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/RecordingLibrary.h"

#include <memory>

namespace ui {

/// A small town as offices keep it: streets with all kinds of fields and values that are missing,
/// trees, and a table without a theme. For pictures and for the common checks of dialogs.
std::shared_ptr<support::CRecordingLibrary> sampleTown();

} // namespace ui
