// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "cli/Commands.h"
#include "cli/Output.h"

namespace cli {

int runRender(const RenderArguments& /*arguments*/)
{
    tell("render: this build has no renderer, so no map can be drawn");
    return Failed;
}

} // namespace cli
