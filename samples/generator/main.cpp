// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT

// Makes the committed samples anew: a library and a shapefile of each theme. Usage:
// tematica-samples FOLDER

#include "embedded/shapefile/Shapefile.h"
#include "embedded/store/GeoPackage.h"
#include "samples/generator/Town.h"

#include <cstdio>
#include <filesystem>
#include <string>

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fputs("tematica-samples: one argument is needed, the folder to write into\n", stderr);
        return 2;
    }
    const std::string folder = std::filesystem::absolute(argv[1]).string();
    gis::CLibGis library;
    samples::buildTown(library, 1861);
    embedded::Report report;
    for (gis::CTheme* theme : embedded::Library::of(&library)->themes()) {
        int errorFlags = 0;
        if (!embedded::exportShapefile(*theme, folder, {}, errorFlags, report)) {
            std::fprintf(stderr, "tematica-samples: %s could not be written\n", theme->name.Data());
            return 1;
        }
    }
    const auto saved = embedded::saveLibraryAs(library, folder + "/borgofiore.gpkg");
    if (!saved) {
        std::fprintf(stderr, "tematica-samples: the library could not be written: %s\n",
            saved.error().detail.c_str());
        return 1;
    }
    return 0;
}
