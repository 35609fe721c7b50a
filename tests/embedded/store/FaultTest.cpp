// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/embedded/store/FaultyDisk.h"
#include "tests/embedded/store/LibraryImage.h"
#include "tests/embedded/store/RandomLibrary.h"
#include "tests/embedded/store/StoreTesting.h"

#include <gtest/gtest.h>

using namespace storetest;
using embedded::ErrorCode;
using embedded::OpenMode;
using Fault = CFaultyDisk::Fault;

namespace {

/// A save in which each disk operation fails in its turn.
class FaultTest : public testing::Test {
protected:
    void SetUp() override
    {
        gis::CLibGis library;
        CRandomLibrary(3).fill(library);
        before = imageOf(library);
        ASSERT_TRUE(embedded::saveLibraryAs(library, path).ok());
        original = bytesOf(path);
    }
    std::unique_ptr<gis::CLibGis> changedLibrary(unsigned seed)
    {
        writeBytes(path, original);
        std::filesystem::remove(path + "-journal");
        auto library = opened(path, OpenMode::Write);
        CRandomLibrary random(seed);
        for (int i = 0; i < 6; ++i)
            random.change(*library);
        after = imageOf(*library);
        return library;
    }
    std::string imageOfFile()
    {
        const auto library = opened(path);
        return library ? imageOf(*library) : "not opened";
    }
    std::size_t filesInFolder()
    {
        return static_cast<std::size_t>(
            std::distance(std::filesystem::directory_iterator(folder.path()), {}));
    }

    CTemporaryFolder folder;
    std::string path = folder.file("a.gpkg");
    std::string original;
    std::string before;
    std::string after;
    CFaultyDisk disk;
};

} // namespace

TEST_F(FaultTest, AStopAtAnyMomentOfASaveLeavesTheOldStateOrTheNewOne)
{
    int reached = 0;
    for (unsigned seed = 1; seed <= 4; ++seed)
        for (int operation = 1;; ++operation) {
            SCOPED_TRACE(
                "seed " + std::to_string(seed) + " operation " + std::to_string(operation));
            auto library = changedLibrary(seed);
            disk.failAt(operation, Fault::ForGood);
            const bool isSaved = embedded::saveLibrary(*library).ok();
            library.reset();
            disk.work();

            const std::string image = imageOfFile();
            ASSERT_TRUE(image == after || (!isSaved && image == before));
            ASSERT_EQ(sqlAnswer(path, "PRAGMA integrity_check"), "ok");
            if (!disk.hasFailed())
                break;
            ++reached;
        }
    EXPECT_GT(reached, 50);
}

TEST_F(FaultTest, AfterOneFailureTheNextSaveSucceeds)
{
    for (int operation = 1;; ++operation) {
        SCOPED_TRACE("operation " + std::to_string(operation));
        auto library = changedLibrary(1);
        disk.failAt(operation, Fault::Once);
        const auto first = embedded::saveLibrary(*library);
        const bool isReached = disk.hasFailed();
        disk.work();
        ASSERT_EQ(imageOf(*library), after) << "the library itself is untouched";
        if (!first) {
            ASSERT_FALSE(embedded::Library::of(library.get())->isSaved());
            const auto second = embedded::saveLibrary(*library);
            ASSERT_TRUE(second.ok()) << second.error().detail;
        }
        ASSERT_EQ(imageOfFile(), after);
        if (!isReached)
            break;
    }
}

TEST_F(FaultTest, AFullDiskIsSaidAndTheOldStateStays)
{
    int full = 0;
    for (int operation = 1;; ++operation) {
        SCOPED_TRACE("operation " + std::to_string(operation));
        auto library = changedLibrary(2);
        disk.failAt(operation, Fault::Full);
        const auto saved = embedded::saveLibrary(*library);
        const bool isReached = disk.hasFailed();
        disk.work();
        if (!saved) {
            ++full;
            ASSERT_EQ(saved.error().code, ErrorCode::DiskFull);
            library.reset();
            ASSERT_EQ(imageOfFile(), before);
        }
        if (!isReached)
            break;
    }
    EXPECT_GT(full, 0);
}

TEST_F(FaultTest, AFileThatIsReplacedIsOldOrNewAndNothingLiesBeside)
{
    for (const Fault fault : { Fault::ForGood, Fault::Full })
        for (int operation = 1;; ++operation) {
            SCOPED_TRACE("operation " + std::to_string(operation));
            auto library = changedLibrary(5);
            disk.failAt(operation, fault);
            const auto saved = embedded::saveLibraryAs(*library, path);
            const bool isReached = disk.hasFailed();
            library.reset();
            disk.work();
            ASSERT_EQ(imageOfFile(), saved.ok() ? after : before);
            ASSERT_EQ(filesInFolder(), 1u);
            if (!isReached)
                break;
        }
}

namespace {

// Stopped from outside: asked for progress a few times, then told to give up.
class CImpatient final : public embedded::IProgress {
public:
    bool advance(double fraction) override
    {
        last = fraction;
        return false;
    }
    double last = -1;
};

} // namespace

TEST(CancelTest, ACancelledSaveLeavesTheFileAndTheLibraryAsTheyWere)
{
    const CTemporaryFolder folder;
    const std::string path = folder.file("a.gpkg");
    gis::CLibGis facade;
    auto& library = *embedded::Library::of(&facade);
    gis::CDBTable* table = library.createTable("T");
    table->addField("a", gis::FieldFormat::Text);
    ASSERT_TRUE(embedded::saveLibraryAs(facade, path).ok());
    const std::string before = bytesOf(path);
    table->addRows(400000);
    CImpatient impatient;
    library.setProgress(&impatient);

    const auto saved = embedded::saveLibrary(facade);
    const auto savedAs = embedded::saveLibraryAs(facade, folder.file("b.gpkg"));

    ASSERT_FALSE(saved.ok());
    EXPECT_EQ(saved.error().code, ErrorCode::Cancelled);
    ASSERT_FALSE(savedAs.ok());
    EXPECT_EQ(savedAs.error().code, ErrorCode::Cancelled);
    EXPECT_GE(impatient.last, 0);
    EXPECT_FALSE(std::filesystem::exists(folder.file("b.gpkg")));
    EXPECT_EQ(bytesOf(path), before);
    library.setProgress(nullptr);
    ASSERT_TRUE(embedded::saveLibrary(facade).ok());
    const auto again = opened(path);
    EXPECT_EQ(again->GetNumRows(again->GetTable(0)), 400000);
}
