// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

// What the module with the knowledge of reference systems offers. It lies in a library of its own,
// loaded when the first .prj is met, so that a program that meets none does not load GDAL.

extern "C" {

/// How well a text was understood.
enum TematicaReferenceSystemAnswer {
    TematicaReferenceSystemUnreadable = 0, // no definition of a reference system
    TematicaReferenceSystemRead = 1, // a definition, of no known code
    TematicaReferenceSystemIdentified = 2, // `authority` and `code` are filled
};

/// `definition` ends with a NUL; `authority` has room for `authorityBytes`. Prints nothing.
using TematicaIdentifyReferenceSystem
    = int (*)(const char* definition, char* authority, int authorityBytes, int* code);

/// The definition of an authority's code as a .prj has it: bytes needed with the NUL, 0 when
/// unknown; written when `definitionBytes` is enough. Prints nothing.
using TematicaDefineReferenceSystem
    = int (*)(const char* authority, int code, char* definition, int definitionBytes);
}

inline constexpr const char* IdentifyReferenceSystemName = "tematica_identify_reference_system";
inline constexpr const char* DefineReferenceSystemName = "tematica_define_reference_system";
