// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "embedded/base/Report.h"
#include "embedded/base/Result.h"

#include <QString>

#include <exception>

namespace app {

/// An error of the embedded host in one Italian sentence that names the thing and the remedy.
QString errorText(const embedded::Error& error);

/// The same for a library that could not be saved: to save the work first is no remedy then.
QString saveErrorText(const embedded::Error& error);

/// The same for a library that could not be saved under the name the user chose.
QString saveAsErrorText(const embedded::Error& error);

/// What is told of an act that ended by something that nobody expected.
QString unhandledText(const std::exception& problem);

/// A finding in one Italian line.
QString findingText(const embedded::Finding& finding);

} // namespace app
