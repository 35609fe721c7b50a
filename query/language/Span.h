// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

namespace query {

/// Bytes of a filter text, counted from 0; `end` is the first byte after.
/// Trivially copyable, as the parser's stacks move it byte by byte when they grow.
struct Span {
    int begin;
    int end;
};

} // namespace query
