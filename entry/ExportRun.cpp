// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "entry/ExportRun.h"

#include "kit/texts/TextIds.h"

#include "host/gis/LibGis.h"

namespace entry {

namespace {

bool isAsciiLetter(char c)
{
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

/// A drive, or backslashes only: such a folder goes on with backslashes on every system.
char separatorOf(std::string_view folder)
{
    const bool hasDrive = folder.size() >= 2 && isAsciiLetter(folder[0]) && folder[1] == ':';
    const bool hasBackslash = folder.find('\\') != std::string_view::npos;
    const bool hasSlash = folder.find('/') != std::string_view::npos;
#ifdef _WIN32
    (void)hasDrive, (void)hasBackslash, (void)hasSlash;
    return '\\';
#else
    return hasDrive || (hasBackslash && !hasSlash) ? '\\' : '/';
#endif
}

bool endsWithSeparator(std::string_view folder, char separator)
{
#ifdef _WIN32
    if (folder.back() == '/')
        return true;
#endif
    return folder.back() == separator;
}

} // namespace

orv::String withSeparator(const orv::String& folder)
{
    const std::string_view text = folder.View();
    if (text.empty() || endsWithSeparator(text, separatorOf(text)))
        return folder;
    return folder + separatorOf(text);
}

void exportThemes(gis::CLibGis& library, const ExportChoice& choice, IExportFileCallback& overwrite,
    const Warn& warn, ExportFunction exportOne)
{
    orv::String folder = choice.folder;
    for (gis::CTheme* theme : choice.themes) {
        int errorFlags = 0;
        if (exportOne(&library, theme, folder, choice.maxTextBytes, choice.coordinates, &overwrite,
                errorFlags))
            continue;
        const orv::String name = library.GetThemeName(theme);
        folder = withSeparator(folder); // and stays so for the themes that follow
        if (errorFlags & ExportShpNotWritten)
            warn(texts::ShpNotWritten, folder + name + ".shp");
        if (errorFlags & ExportDbfNotWritten)
            warn(texts::DbfNotWritten, folder + name + ".dbf");
    }
}

} // namespace entry
