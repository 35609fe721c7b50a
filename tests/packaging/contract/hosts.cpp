// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/contract/Contract.h"

namespace contract {

/// The installed default host with empty libraries: that the suite can be built and run outside of
/// the tree is what is checked here.
std::vector<HostCase> hosts()
{
    return { { "Installed",
        [](orv::CChangeTransactionManager* manager, std::int64_t drawing) {
            return std::make_unique<gis::CLibGis>(manager, drawing);
        },
        [](gis::CLibGis&, const support::LibraryPlan&) {} } };
}

} // namespace contract
