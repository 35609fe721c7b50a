// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "cli/Commands.h"
#include "cli/Output.h"
#include "cli/Progress.h"

#include <exception>

namespace {

struct Run {
    int operator()(const cli::Ended& ended) const { return ended.exitCode; }
    int operator()(const cli::InfoArguments& arguments) const { return cli::runInfo(arguments); }
    int operator()(const cli::QueryArguments& arguments) const { return cli::runQuery(arguments); }
    int operator()(const cli::ValuesArguments& arguments) const
    {
        return cli::runValues(arguments);
    }
    int operator()(const cli::ImportArguments& arguments) const
    {
        return cli::runImport(arguments);
    }
    int operator()(const cli::ExportArguments& arguments) const
    {
        return cli::runExport(arguments);
    }
    int operator()(const cli::RenderArguments& arguments) const
    {
        return cli::runRender(arguments);
    }
};

} // namespace

int main(int argc, char** argv)
{
    int exitCode = cli::Failed;
    try {
        exitCode = std::visit(Run(), cli::parseArguments({ argv + (argc > 0), argv + argc }));
    } catch (const std::exception& error) {
        cli::tell(std::string("an error inside the program (") + error.what() + ")");
    } catch (...) {
        cli::tell("an error inside the program");
    }
    // An interrupt that came when all was done has stopped nothing.
    if (exitCode != cli::Done)
        cli::endByInterrupt();
    return exitCode;
}
