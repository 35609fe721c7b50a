// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/model/Library.h"
#include "embedded/store/GeoPackage.h"
#include "tests/embedded/store/LibraryImage.h"
#include "tests/embedded/store/RandomLibrary.h"
#include "tests/embedded/store/StoreTesting.h"

#include <cstdint>
#include <cstdlib>
#include <string>

// Opens bytes as a library and reads all of it. Bytes that begin with 'S' are a file as they are;
// others change a sound library at places: four bytes where, one byte what. Random bytes alone
// would hardly ever pass SQLite's own checks.

namespace {

const storetest::CTemporaryFolder& folder()
{
    static const storetest::CTemporaryFolder made;
    return made;
}

const std::string& soundLibrary()
{
    static const std::string bytes = [] {
        gis::CLibGis library;
        storetest::CRandomLibrary(7).fill(library);
        const std::string path = folder().file("sound.gpkg");
        if (!embedded::saveLibraryAs(library, path).ok())
            std::abort();
        return storetest::bytesOf(path);
    }();
    return bytes;
}

std::string changed(const std::uint8_t* data, std::size_t size)
{
    std::string bytes = soundLibrary();
    for (std::size_t i = 0; i + 5 <= size; i += 5) {
        const std::size_t place = data[i] | data[i + 1] << 8 | data[i + 2] << 16
            | static_cast<std::size_t>(data[i + 3]) << 24;
        bytes[place % bytes.size()] = static_cast<char>(data[i + 4]);
    }
    return bytes;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const bool isFile = size > 0 && data[0] == 'S';
    const std::string path = folder().file("fuzz.gpkg");
    storetest::writeBytes(path,
        isFile ? std::string(reinterpret_cast<const char*>(data), size) : changed(data, size));
    embedded::Report report;
    const auto library = embedded::openLibrary(path, embedded::OpenMode::Read, nullptr, report);
    if (library && embedded::Library::of(library.value().get())->loadAll().ok())
        static_cast<void>(storetest::imageOf(*library.value()));
    return 0;
}
