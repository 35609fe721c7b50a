// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

// What a host library must export: its symbols are found by the dialogs at load time.
#define TEMATICA_HOST_API __attribute__((visibility("default")))
