// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/shapefile/gdal/ReferenceSystemModule.h"

#include "host/base/Export.h"

#include <charconv>
#include <cpl_conv.h>
#include <cpl_error.h>
#include <cstring>
#include <memory>
#include <ogr_srs_api.h>
#include <string>

namespace {

// A match below this may be a neighbour with other units or axes.
constexpr int LeastConfidence = 90;

/// Keeps GDAL's messages of this thread from being printed while it lives.
class QuietErrors final {
public:
    QuietErrors() { CPLPushErrorHandler(CPLQuietErrorHandler); }
    QuietErrors(const QuietErrors&) = delete;
    QuietErrors& operator=(const QuietErrors&) = delete;
    ~QuietErrors()
    {
        CPLErrorReset();
        CPLPopErrorHandler();
    }
};

struct Destroy {
    void operator()(void* system) const { OSRDestroySpatialReference(system); }
};
using System = std::unique_ptr<void, Destroy>;

bool codeOf(OGRSpatialReferenceH system, char* authority, int authorityBytes, int* code)
{
    const char* name = OSRGetAuthorityName(system, nullptr);
    const char* number = OSRGetAuthorityCode(system, nullptr);
    if (!name || !number || std::strlen(name) >= static_cast<std::size_t>(authorityBytes))
        return false;
    const char* end = number + std::strlen(number);
    const auto result = std::from_chars(number, end, *code);
    if (result.ec != std::errc() || result.ptr != end)
        return false;
    std::strcpy(authority, name);
    return true;
}

/// The one best match, when no other is as good.
bool matchOf(OGRSpatialReferenceH system, char* authority, int authorityBytes, int* code)
{
    int count = 0;
    int* confidences = nullptr;
    OGRSpatialReferenceH* matches = OSRFindMatches(system, nullptr, &count, &confidences);
    if (!matches)
        return false;
    const bool isClear = count > 0 && confidences[0] >= LeastConfidence
        && (count == 1 || confidences[1] < confidences[0]);
    const bool found = isClear && codeOf(matches[0], authority, authorityBytes, code);
    OSRFreeSRSArray(matches);
    CPLFree(confidences);
    return found;
}

} // namespace

extern "C" TEMATICA_HOST_API int tematica_identify_reference_system(
    const char* definition, char* authority, int authorityBytes, int* code)
{
    const QuietErrors quiet;
    const System system(OSRNewSpatialReference(nullptr));
    std::string text(definition);
    char* lines[] = { text.data(), nullptr };
    if (OSRImportFromESRI(system.get(), lines) != OGRERR_NONE)
        return TematicaReferenceSystemUnreadable;
    if (matchOf(system.get(), authority, authorityBytes, code))
        return TematicaReferenceSystemIdentified;
    return TematicaReferenceSystemRead;
}

extern "C" TEMATICA_HOST_API int tematica_define_reference_system(
    const char* authority, int code, char* definition, int definitionBytes)
{
    const QuietErrors quiet;
    const System system(OSRNewSpatialReference(nullptr));
    const std::string name = std::string(authority) + ":" + std::to_string(code);
    if (OSRSetFromUserInput(system.get(), name.c_str()) != OGRERR_NONE)
        return 0;
    const char* const options[] = { "FORMAT=WKT1_ESRI", nullptr };
    char* text = nullptr;
    int needed = 0;
    if (OSRExportToWktEx(system.get(), &text, options) == OGRERR_NONE && text && *text) {
        needed = static_cast<int>(std::strlen(text)) + 1;
        if (needed <= definitionBytes)
            std::memcpy(definition, text, static_cast<std::size_t>(needed));
    }
    CPLFree(text);
    return needed;
}
