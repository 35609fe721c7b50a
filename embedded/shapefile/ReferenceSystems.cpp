// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/shapefile/ReferenceSystems.h"

#include "embedded/shapefile/FileBytes.h"
#include "embedded/shapefile/gdal/ReferenceSystemModule.h"

#include <array>
#include <dlfcn.h>

namespace embedded {

namespace {

/// The module's functions; null where it is not installed.
struct Module {
    TematicaIdentifyReferenceSystem identify = nullptr;
    TematicaDefineReferenceSystem define = nullptr;
};

Module loadModule()
{
    constexpr const char* fileName = "libtematica-host-gdal.so";
    // Beside the library that this code is in, wherever that was loaded from.
    Dl_info about {};
    std::string path;
    if (::dladdr(reinterpret_cast<void*>(&loadModule), &about) != 0 && about.dli_fname) {
        path = about.dli_fname;
        path.resize(path.rfind('/') == std::string::npos ? 0 : path.rfind('/') + 1);
    }
    void* library = ::dlopen((path + fileName).c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!library)
        library = ::dlopen(fileName, RTLD_NOW | RTLD_LOCAL);
    Module module;
    if (!library)
        return module;
    module.identify = reinterpret_cast<TematicaIdentifyReferenceSystem>(
        ::dlsym(library, IdentifyReferenceSystemName));
    module.define = reinterpret_cast<TematicaDefineReferenceSystem>(
        ::dlsym(library, DefineReferenceSystemName));
    return module;
}

const Module& module()
{
    static const Module loaded = loadModule();
    return loaded;
}

void reportUnknown(Report& report, FindingSeverity severity, const char* detail)
{
    Finding finding;
    finding.code = FindingCode::ReferenceSystemUnknown;
    finding.severity = severity;
    finding.detail = detail;
    report.add(std::move(finding));
}

} // namespace

ReferenceSystem readReferenceSystem(const std::string& prjPath, Report& report)
{
    constexpr std::size_t longestDefinition = 1 << 20;
    ReferenceSystem system;
    const auto file = FileBytes::open(prjPath);
    if (!file || file.value().size() == 0)
        return system;
    if (file.value().size() > longestDefinition) {
        reportUnknown(report, FindingSeverity::Warning, "the .prj is too long to be one");
        return system;
    }
    system.definition = file.value().bytes();
    if (!module().identify) {
        reportUnknown(report, FindingSeverity::Note, "nothing to identify it with");
        return system;
    }
    std::array<char, 32> authority {};
    int code = 0;
    const int answer = module().identify(
        system.definition.c_str(), authority.data(), static_cast<int>(authority.size()), &code);
    if (answer == TematicaReferenceSystemUnreadable)
        reportUnknown(report, FindingSeverity::Warning, "the .prj holds no reference system");
    if (answer == TematicaReferenceSystemIdentified) {
        system.authority = authority.data();
        system.code = code;
    }
    return system;
}

std::string prjText(const ReferenceSystem& system)
{
    if (!system.definition.empty() || system.authority.empty() || !module().define)
        return system.definition;
    const int bytes = module().define(system.authority.c_str(), system.code, nullptr, 0);
    if (bytes <= 0)
        return {};
    std::string text(static_cast<std::size_t>(bytes), '\0');
    module().define(system.authority.c_str(), system.code, text.data(), bytes);
    text.resize(text.size() - 1);
    return text;
}

} // namespace embedded
