// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "cli/Commands.h"
#include "cli/Messages.h"
#include "cli/Output.h"
#include "cli/Paths.h"
#include "cli/Source.h"

#include "embedded/drawing/RenderFile.h"
#include "embedded/model/Library.h"

#include <dlfcn.h>
#include <filesystem>

namespace cli {

namespace {

/// The drawing library stands beside the host library, which this program is linked to. It is
/// loaded only here: it brings Qt along, and every other command is done before Qt would have been
/// loaded.
decltype(&tematicaRenderFile) findRenderer()
{
    Dl_info host {};
    if (dladdr(reinterpret_cast<const void*>(&gis::FCalcXCentPredef), &host) == 0
        || !host.dli_fname)
        return nullptr;
    const auto folder = std::filesystem::canonical(host.dli_fname).parent_path();
    void* library = dlopen((folder / "libtematica-host-drawing.so").c_str(), RTLD_NOW | RTLD_LOCAL);
    return library
        ? reinterpret_cast<decltype(&tematicaRenderFile)>(dlsym(library, "tematicaRenderFile"))
        : nullptr;
}

} // namespace

int runRender(const RenderArguments& arguments)
{
    if (isPartOf(arguments.output, arguments.file)) {
        tell(arguments.output + ": the picture would take the place of the file that is drawn");
        return WrongUsage;
    }
    const auto renderer = findRenderer();
    if (!renderer) {
        tell("render: libtematica-host-drawing.so is not installed beside the host library, so no "
             "map can be drawn");
        return Failed;
    }
    const auto library = openForReading(arguments.file);
    if (!library)
        return fail(library.error());
    if (library.value()->GetNumThemes() == 0)
        return fail({ embedded::ErrorCode::NoThemes, arguments.file, "" });
    std::vector<gis::CTheme*> themes;
    for (const std::string& name : arguments.themes) {
        const auto theme = chooseTheme(*library.value(), arguments.file, name);
        if (!theme)
            return fail(theme.error());
        themes.push_back(theme.value());
    }
    TematicaRenderRequest request;
    request.library = library.value().get();
    request.themes = themes.data();
    request.themeCount = static_cast<int>(themes.size());
    request.path = arguments.output.c_str();
    request.width = arguments.width;
    request.height = arguments.height;
    request.legend = arguments.hasLegend;
    if (arguments.box) {
        request.hasBox = true;
        request.minX = (*arguments.box)[0];
        request.minY = (*arguments.box)[1];
        request.maxX = (*arguments.box)[2];
        request.maxY = (*arguments.box)[3];
    }
    const int failure = renderer(&request);
    if (const embedded::Error* failed = failedRead(*library.value()))
        return fail(*failed);
    if (failure != 0) {
        tell(arguments.output
            + ": the picture could not be written; check the folder and its permissions");
        return Failed;
    }
    return Done;
}

} // namespace cli
