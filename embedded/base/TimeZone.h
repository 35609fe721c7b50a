// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/base/Export.h"

namespace embedded {

/// Forgets what is known of the process's time zone and reads TZ anew, for tests that change it.
/// Thread: none but the caller may use dates meanwhile.
TEMATICA_HOST_API void forgetTimeZone();

} // namespace embedded
