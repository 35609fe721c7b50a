// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

namespace gis {
class CLibGis;
class CTheme;
} // namespace gis

/// What the command line asks of the drawing library, which it loads only for this: a library
/// without Qt must not bring Qt along.
struct TematicaRenderRequest {
    gis::CLibGis* library = nullptr;
    gis::CTheme* const* themes = nullptr; // null: the visible ones, which are chosen here only
    int themeCount = 0;
    const char* path = nullptr; // of the .png
    int width = 1600;
    int height = 1000;
    bool hasBox = false;
    double minX = 0;
    double minY = 0;
    double maxX = 0;
    double maxY = 0;
    bool legend = false;
};

/// Draws a map into a file, which is put in its place whole. 0 when done; 1 when it could not be
/// written; 2 when the library could not be read (Library::failedRead tells why): entities that a
/// damaged page held must not pass for none.
extern "C" int tematicaRenderFile(const TematicaRenderRequest* request);
