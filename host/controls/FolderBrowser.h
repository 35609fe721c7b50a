// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/base/String.h"

/// The host's folder chooser; true with the chosen folder in `folder`, else `folder` is unchanged.
TEMATICA_HOST_API bool FBrowserDirectory(orv::String& folder);
