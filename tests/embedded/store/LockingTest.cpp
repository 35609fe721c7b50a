// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/embedded/store/LibraryImage.h"
#include "tests/embedded/store/StoreTesting.h"
#include "tests/support/LibraryNotation.h"
#include "tests/support/OrdinaryUser.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace storetest;
using embedded::ErrorCode;
using embedded::OpenMode;

namespace {

constexpr const char* Town = "table T (a text, b integer); rows T: ('x', 1), ('y', 2);"
                             "theme P: points 2d on T; ents P: 0 [1 1], 1 [2 2]";

class LockingTest : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(embedded::saveLibraryAs(*support::makeLibrary(Town), path).ok());
    }
    static void edit(gis::CLibGis& library, const char* text)
    {
        orv::CPolyValue value(text);
        library.SetRowValue(library.GetRow(library.GetTable(0), 0), 0, value);
    }
    static std::string firstCell(gis::CLibGis& library)
    {
        orv::CPolyValue value;
        library.GetRowValue(library.GetRow(library.GetTable(0), 0), 0, value);
        return value.GetStringValue().Bytes();
    }
    /// Runs `work` in another process; true when it ended well there.
    template <typename Work> static bool elsewhere(const Work& work)
    {
        const pid_t child = ::fork();
        if (child == 0)
            ::_exit(work() ? 0 : 1);
        int status = 0;
        ::waitpid(child, &status, 0);
        return WIFEXITED(status) && WEXITSTATUS(status) == 0;
    }

    CTemporaryFolder folder;
    std::string path = folder.file("citta.gpkg");
};

} // namespace

TEST_F(LockingTest, ASecondWriterIsRefusedAndReadersGoOn)
{
    const auto writer = opened(path, OpenMode::Write);
    ASSERT_TRUE(writer);

    EXPECT_EQ(refusal(path, OpenMode::Write).code, ErrorCode::LockedForWriting);
    EXPECT_TRUE(elsewhere(
        [&] { return refusal(path, OpenMode::Write).code == ErrorCode::LockedForWriting; }));
    EXPECT_TRUE(elsewhere([&] {
        const auto reader = opened(path);
        return reader && firstCell(*reader) == "x";
    }));
}

TEST_F(LockingTest, AfterASaveTheFileIsStillHeld)
{
    const auto writer = opened(path, OpenMode::Write);
    edit(*writer, "nuovo");
    ASSERT_TRUE(embedded::saveLibrary(*writer).ok());

    EXPECT_EQ(refusal(path, OpenMode::Write).code, ErrorCode::LockedForWriting);
    EXPECT_TRUE(elsewhere([&] {
        const auto reader = opened(path);
        return reader && firstCell(*reader) == "nuovo";
    }));
}

// Opening and closing a file gives up every lock of the process on it, unless SQLite does it.
TEST_F(LockingTest, LookingAtTheFileKeepsTheLock)
{
    const auto writer = opened(path, OpenMode::Write);
    ASSERT_TRUE(writer);

    EXPECT_TRUE(embedded::isGeoPackage(path));
    EXPECT_TRUE(opened(path));

    EXPECT_TRUE(elsewhere(
        [&] { return refusal(path, OpenMode::Write).code == ErrorCode::LockedForWriting; }));
}

TEST_F(LockingTest, AReaderThatHasNotReadAllHoldsASaveBack)
{
    const auto writer = opened(path, OpenMode::Write);
    edit(*writer, "nuovo");
    auto reader = opened(path);
    ASSERT_TRUE(reader);

    const auto saved = embedded::saveLibrary(*writer);

    ASSERT_FALSE(saved.ok());
    EXPECT_EQ(saved.error().code, ErrorCode::BusyReaders);
    EXPECT_EQ(firstCell(*reader), "x");
    reader.reset();
    EXPECT_TRUE(embedded::saveLibrary(*writer).ok());
    EXPECT_EQ(firstCell(*opened(path)), "nuovo");
}

TEST_F(LockingTest, AReaderThatHasReadAllLetsASaveThrough)
{
    const auto writer = opened(path, OpenMode::Write);
    edit(*writer, "nuovo");
    const auto reader = opened(path);
    ASSERT_TRUE(reader);
    ASSERT_TRUE(embedded::Library::of(reader.get())->loadAll().ok());

    EXPECT_TRUE(embedded::saveLibrary(*writer).ok());

    EXPECT_EQ(firstCell(*reader), "x");
}

TEST_F(LockingTest, SavingOverAFileThatAnotherHoldsIsRefused)
{
    const auto writer = opened(path, OpenMode::Write);
    const auto other = support::makeLibrary("table U (a text)");

    const auto saved = embedded::saveLibraryAs(*other, path);

    ASSERT_FALSE(saved.ok());
    EXPECT_EQ(saved.error().code, ErrorCode::LockedForWriting);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()), {}), 1)
        << "the file that was being made is gone";
}

TEST_F(LockingTest, SavingUnderTheOwnNameWorks)
{
    const auto writer = opened(path, OpenMode::Write);
    edit(*writer, "nuovo");

    ASSERT_TRUE(embedded::saveLibraryAs(*writer, path).ok());
    edit(*writer, "ancora");
    ASSERT_TRUE(embedded::saveLibrary(*writer).ok());

    EXPECT_EQ(firstCell(*opened(path)), "ancora");
}

TEST_F(LockingTest, AfterSavingAsTheLibraryWorksOnTheNewFile)
{
    const std::string other = folder.file("altra.gpkg");
    const auto writer = opened(path, OpenMode::Write);
    edit(*writer, "nuovo");
    ASSERT_TRUE(embedded::saveLibraryAs(*writer, other).ok());

    EXPECT_EQ(embedded::libraryPath(*writer), other);
    EXPECT_EQ(firstCell(*opened(path, OpenMode::Write)), "x") << "the old file is free again";
    edit(*writer, "poi");
    ASSERT_TRUE(embedded::saveLibrary(*writer).ok());
    EXPECT_EQ(firstCell(*opened(other)), "poi");
}

TEST_F(LockingTest, ACopyLeavesTheLibraryUnsavedOnItsFile)
{
    const std::string copy = folder.file("copia.gpkg");
    orv::CChangeTransactionManager changes;
    embedded::Report report;
    auto result = embedded::openLibrary(path, OpenMode::Write, &changes, report);
    ASSERT_TRUE(result.ok());
    gis::CLibGis& library = *result.value();
    edit(library, "nuovo");

    ASSERT_TRUE(embedded::saveLibraryCopy(library, copy).ok());

    EXPECT_EQ(embedded::libraryPath(library), path);
    EXPECT_FALSE(embedded::Library::of(&library)->isSaved());
    EXPECT_EQ(firstCell(*opened(copy)), "nuovo");
    ASSERT_TRUE(embedded::saveLibrary(library).ok());
    EXPECT_TRUE(embedded::Library::of(&library)->isSaved());
    EXPECT_EQ(firstCell(*opened(path)), "nuovo");
}

TEST_F(LockingTest, LinksAndRightsOfTheReplacedFileStay)
{
    const std::string link = folder.file("link.gpkg");
    std::filesystem::create_symlink("citta.gpkg", link);
    ASSERT_EQ(::chmod(path.c_str(), 0640), 0);

    ASSERT_TRUE(embedded::saveLibraryAs(*support::makeLibrary(Town), link).ok());

    EXPECT_TRUE(std::filesystem::is_symlink(link));
    struct stat status { };
    ASSERT_EQ(::stat(path.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777u, 0640u);
}

TEST_F(LockingTest, WhereNothingMayBeWrittenASaveSaysSo)
{
    const auto noFolder
        = embedded::saveLibraryAs(*support::makeLibrary(Town), folder.file("no/citta.gpkg"));
    ASSERT_FALSE(noFolder.ok());
    EXPECT_EQ(noFolder.error().code, ErrorCode::FolderNotFound);
    const auto onFolder = embedded::saveLibraryAs(*support::makeLibrary(Town), folder.path());
    ASSERT_FALSE(onFolder.ok());
    EXPECT_EQ(onFolder.error().code, ErrorCode::NotAFile);
    const auto reader = opened(path);
    edit(*reader, "nuovo");
    const auto readOnly = embedded::saveLibrary(*reader);
    ASSERT_FALSE(readOnly.ok());
    EXPECT_EQ(readOnly.error().code, ErrorCode::ReadOnly);
}

TEST_F(LockingTest, AFileWithoutTheRightToWriteIsReadAndNotSaved)
{
    const support::OrdinaryUserScope user(folder.path());
    ASSERT_TRUE(user.isOrdinary());
    ASSERT_EQ(::chmod(path.c_str(), 0400), 0);
    const auto library = opened(path, OpenMode::Write);
    ASSERT_TRUE(library);
    edit(*library, "nuovo");
    const auto saved = embedded::saveLibrary(*library);
    ASSERT_FALSE(saved.ok());
    EXPECT_EQ(saved.error().code, ErrorCode::ReadOnly);
    EXPECT_EQ(embedded::saveLibraryAs(*library, path).error().code, ErrorCode::ReadOnly);
    ASSERT_EQ(::chmod(path.c_str(), 0), 0);
    EXPECT_EQ(refusal(path).code, ErrorCode::NoPermission);
}

TEST_F(LockingTest, AFolderWithoutTheRightToWriteIsSaid)
{
    const support::OrdinaryUserScope user(folder.path());
    ASSERT_TRUE(user.isOrdinary());
    const auto library = opened(path, OpenMode::Write);
    edit(*library, "nuovo");
    ASSERT_EQ(::chmod(folder.path().c_str(), 0500), 0);
    const auto saved = embedded::saveLibrary(*library);
    const auto savedAs = embedded::saveLibraryAs(*library, folder.file("b.gpkg"));
    ASSERT_EQ(::chmod(folder.path().c_str(), 0700), 0);
    ASSERT_FALSE(saved.ok());
    EXPECT_EQ(saved.error().code, ErrorCode::ReadOnly);
    ASSERT_FALSE(savedAs.ok());
    EXPECT_EQ(savedAs.error().code, ErrorCode::ReadOnly);
    EXPECT_EQ(savedAs.error().subject, folder.file("b.gpkg")) << "the name that was asked for";
    EXPECT_TRUE(embedded::saveLibrary(*library).ok());
}

TEST_F(LockingTest, AFileLeftWithAWriteAheadLogOpensForReadingAndWriting)
{
    runSql(path, "PRAGMA journal_mode = WAL; UPDATE P SET b = 7");

    EXPECT_EQ(firstCell(*opened(path)), "x");
    const auto library = opened(path, OpenMode::Write);
    ASSERT_TRUE(library);
    edit(*library, "nuovo");
    ASSERT_TRUE(embedded::saveLibrary(*library).ok());
    EXPECT_EQ(firstCell(*opened(path)), "nuovo");
}
