// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

// What the shared library `tematica` shows to hosts; all else in it is hidden.
#define TEMATICA_API __attribute__((visibility("default")))
