// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/embedded/store/FaultyDisk.h"
#include "tests/embedded/store/StoreTesting.h"
#include "tests/support/LibraryNotation.h"

#include <gtest/gtest.h>

// A disk that gives up while a library is saved under a new name: what is said is about that name,
// not about the passing file beside it.

using namespace storetest;
using embedded::ErrorCode;
using Fault = CFaultyDisk::Fault;

namespace {

class FullDiskTest : public testing::Test {
protected:
    void expectNamesThePath(embedded::Result<void> (*save)(gis::CLibGis&, const std::string&),
        Fault fault, ErrorCode code)
    {
        int failed = 0;
        for (bool isReached = true; isReached; std::filesystem::remove(path)) {
            SCOPED_TRACE("operation " + std::to_string(failed + 1));
            disk.failAt(failed + 1, fault);
            const auto saved = save(*library, path);
            isReached = disk.hasFailed();
            disk.work();
            if (saved)
                continue;
            ++failed;
            ASSERT_EQ(saved.error().code, code);
            ASSERT_EQ(saved.error().subject, path);
            ASSERT_TRUE(std::filesystem::is_empty(folder.path())) << "nothing is left";
        }
        EXPECT_GT(failed, 3);
    }

    CTemporaryFolder folder;
    std::string path = folder.file("citta.gpkg");
    std::unique_ptr<gis::CLibGis> library = support::makeLibrary(
        "table Lampioni (nome text); rows Lampioni: ('a'), ('b');"
        "theme Lampioni: points 2d on Lampioni; ents Lampioni: 0 [1 1], 1 [2 2]");
    CFaultyDisk disk;
};

TEST_F(FullDiskTest, AFullDiskIsToldByTheNameThatWasAskedFor)
{
    expectNamesThePath(&embedded::saveLibraryCopy, Fault::Full, ErrorCode::DiskFull);
    expectNamesThePath(&embedded::saveLibraryAs, Fault::Full, ErrorCode::DiskFull);
}

TEST_F(FullDiskTest, ABrokenDiskIsToldByTheNameThatWasAskedFor)
{
    expectNamesThePath(&embedded::saveLibraryCopy, Fault::ForGood, ErrorCode::WriteFailed);
    expectNamesThePath(&embedded::saveLibraryAs, Fault::ForGood, ErrorCode::WriteFailed);
}

} // namespace
