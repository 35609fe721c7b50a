// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/contract/Contract.h"
#include "tests/support/RecordingLibrary.h"

#include "host/gis/Columns.h"
#include "host/gis/Readings.h"

namespace contract {

/// The embedded host, and the double that tests of dialogs use: what it records it must also do.
std::vector<HostCase> hosts()
{
    const auto fill = [](gis::CLibGis& library, const support::LibraryPlan& plan) {
        support::fillLibrary(library, plan);
    };
    return {
        { "Embedded",
            [](orv::CChangeTransactionManager* manager, std::int64_t drawing) {
                return std::make_unique<gis::CLibGis>(manager, drawing);
            },
            fill },
        { "Recording",
            [](orv::CChangeTransactionManager* manager, std::int64_t drawing) {
                return std::make_unique<support::CRecordingLibrary>(manager, drawing);
            },
            fill },
        { "RecordingWithColumns",
            [](orv::CChangeTransactionManager* manager, std::int64_t drawing) {
                auto library = std::make_unique<support::CRecordingLibrary>(manager, drawing);
                library->offerColumns();
                return library;
            },
            fill },
    };
}

namespace {

std::string namesWith(const char* extension)
{
    std::string names;
    for (const HostCase& one : hostsWith(extension))
        names += one.name + " ";
    return names;
}

// The suite leaves out a host that lacks an extension; ours must not come to lack one unseen.
TEST(EmbeddedHostsTest, OfferTheirExtensions)
{
    EXPECT_EQ(namesWith(gis::ColumnsExtension), "Embedded RecordingWithColumns ");
    EXPECT_EQ(namesWith(gis::ReadingsExtension), "Embedded Recording RecordingWithColumns ");
}

} // namespace
} // namespace contract
