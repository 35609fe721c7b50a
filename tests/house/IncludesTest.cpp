// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/house/SourceTree.h"

#include <gtest/gtest.h>

#include <map>
#include <set>

// The floors of the house (docs/architecture.md): which module may include which.

namespace {

using house::SourceFile;

/// The module a path belongs to: the longest of the names below that begins it.
const std::map<std::string, std::set<std::string>> Allowed {
    { "host", { "host" } },
    { "tematica", { "host", "tematica" } },
    { "query", { "host", "tematica", "query" } },
    { "kit", { "host", "kit" } },
    { "embedded/base", { "host", "embedded/base" } },
    { "embedded/expr", { "host", "embedded/base", "embedded/expr" } },
    { "embedded/model", { "host", "embedded/base", "embedded/model" } },
    { "embedded/store", { "host", "embedded/base", "embedded/model", "embedded/store" } },
    { "embedded/shapefile",
        { "host", "embedded/base", "embedded/model", "embedded/store", "embedded/shapefile" } },
    { "embedded/drawing", { "host", "embedded/base", "embedded/model", "embedded/drawing" } },
    { "embedded/controls",
        { "host", "kit", "embedded/base", "embedded/model", "embedded/drawing",
            "embedded/controls" } },
    { "exchange/merge", { "host", "tematica", "exchange/merge" } },
    { "exchange", { "host", "tematica", "kit", "exchange", "exchange/merge" } },
    { "tables/grid", { "host", "tematica", "kit", "tables", "tables/grid" } },
    { "tables", { "host", "tematica", "kit", "tables", "tables/grid" } },
    { "themes", { "host", "tematica", "kit", "themes" } },
    { "query/dialog", { "host", "tematica", "kit", "query", "query/dialog", "tables/grid" } },
    { "entry",
        { "host", "tematica", "kit", "query", "query/dialog", "tables", "tables/grid", "themes",
            "exchange", "exchange/merge", "entry" } },
    { "cli",
        { "host", "tematica", "query", "exchange/merge", "embedded/base", "embedded/expr",
            "embedded/model", "embedded/store", "embedded/shapefile", "embedded/drawing",
            "cli" } }, // of the drawing only what needs no Qt: the next table sees to it
    { "app",
        { "host", "tematica", "kit", "embedded/base", "embedded/expr", "embedded/model",
            "embedded/store", "embedded/shapefile", "embedded/drawing", "embedded/controls",
            "app" } },
};
/// Not parts of what is delivered: free to include anything.
const std::set<std::string> Outside { "tests", "bench", "samples", "packaging" };
/// Neither Qt nor GDAL, so that programs without windows and other hosts can use them.
const std::set<std::string> WithoutQt { "host", "tematica", "query", "embedded/base",
    "embedded/expr", "embedded/model", "embedded/store", "embedded/shapefile", "exchange/merge",
    "cli" };

std::string moduleOf(const std::string& path)
{
    std::string best;
    for (const auto& [name, allowed] : Allowed)
        if (path.rfind(name + "/", 0) == 0 && name.size() > best.size())
            best = name;
    return best;
}

std::string moduleOf(const SourceFile& file)
{
    const std::string prefix = "include/";
    return moduleOf(file.path.rfind(prefix, 0) == 0 ? file.path.substr(prefix.size()) : file.path);
}

bool isOutside(const std::string& path)
{
    return Outside.contains(path.substr(0, path.find('/')));
}

bool isQt(const house::Include& include)
{
    return include.isSystem && include.name.size() > 1 && include.name[0] == 'Q'
        && include.name[1] >= 'A' && include.name[1] <= 'z';
}

/// What is wrong with the includes of a file, a line each.
std::string complaints(const SourceFile& file)
{
    std::string text;
    const std::string module = moduleOf(file);
    if (module.empty())
        return file.path + ": belongs to no module\n";
    for (const auto& include : house::includesOf(file)) {
        const std::string where = file.path + ":" + std::to_string(include.lineNumber) + ": ";
        const std::string target = include.isSystem ? std::string() : moduleOf(include.name);
        if (!target.empty() && !Allowed.at(module).contains(target))
            text += where + module + " may not include " + include.name + "\n";
        if (!include.isSystem && isOutside(include.name))
            text += where + "a test's header in delivered code: " + include.name + "\n";
        if (WithoutQt.contains(module) && isQt(include))
            text += where + module + " must do without Qt, has " + include.name + "\n";
    }
    return text;
}

TEST(IncludesTest, TheTreeIsFound)
{
    EXPECT_GT(house::sources().size(), 50u);
}

TEST(IncludesTest, EveryIncludeFollowsTheFloors)
{
    for (const auto& file : house::sources())
        EXPECT_EQ(isOutside(file.path) ? "" : complaints(file), "");
}

TEST(IncludesTest, ABreachIsSeen)
{
    const SourceFile up { "tables/list/X.cpp", { "#include \"entry/DialogFrame.h\"" } };
    const SourceFile across { "themes/list/X.cpp", { "#include \"tables/list/Y.h\"" } };
    const SourceFile host { "tables/list/X.cpp", { "#include \"embedded/model/Table.h\"" } };
    const SourceFile qt { "query/execution/X.cpp", { "#include <QString>" } };
    const SourceFile test { "cli/X.cpp", { "#include \"tests/support/Describe.h\"" } };
    const SourceFile good { "query/dialog/X.cpp",
        { "#include \"tables/grid/Y.h\"", "#include <QString>", "#include <vector>" } };

    for (const auto* file : { &up, &across, &host, &qt, &test })
        EXPECT_NE(complaints(*file), "") << file->path;
    EXPECT_EQ(complaints(good), "");
}

} // namespace
