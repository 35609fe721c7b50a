// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "embedded/base/Report.h"
#include "embedded/base/Result.h"

#include <QString>

namespace app {

/// An error of the embedded host in one Italian sentence that names the thing and the remedy.
QString errorText(const embedded::Error& error);

/// The same for a library that could not be saved under the name the user chose.
QString saveAsErrorText(const embedded::Error& error);

/// A finding in one Italian line.
QString findingText(const embedded::Finding& finding);

} // namespace app
