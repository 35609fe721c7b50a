// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

namespace gis {
class CLibGis;
}

namespace embedded {

class Library;

/// A library with the same contents and no store of its own, to be read or saved by another thread.
/// Cells are shared until one side writes; vertices are copied. What was still only in the store is
/// read first. Thread: called on the library's; the copy belongs to whoever has it. Null when the
/// store cannot be read.
std::unique_ptr<gis::CLibGis> cloneLibrary(Library& library);

} // namespace embedded
