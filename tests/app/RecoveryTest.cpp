// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/app/AppTesting.h"

#include "app/Recovery.h"
#include "kit/MessageBox.h"
#include "tests/support/ui/ModalDriver.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSignalSpy>
#include <QTest>

#include <atomic>
#include <fcntl.h>
#include <sys/file.h>
#include <thread>
#include <unistd.h>

namespace {

using namespace apptest;
using app::Recovery;

class RecoveryTest : public testing::Test {
protected:
    CFolder folder;
    QString path = folder.file(QStringLiteral("t.gpkg"));
};

TEST_F(RecoveryTest, ACopyIsThereAfterEachActAndGoesWithTheSave)
{
    app::Document document;
    Recovery recovery(document);
    openTown(document, path);
    EXPECT_FALSE(QFile::exists(recovery.path()));

    renameTable(document, "Nuova");
    ASSERT_TRUE(waitFor([&] { return !recovery.isWriting(); }));
    EXPECT_TRUE(QFile::exists(recovery.path()));
    EXPECT_TRUE(Recovery::leftBehind().empty()) << "its program still runs";

    ASSERT_TRUE(document.save().ok());
    EXPECT_FALSE(QFile::exists(recovery.path()));
    EXPECT_TRUE(QDir(folder.file(QStringLiteral("recovery"))).isEmpty());
}

TEST_F(RecoveryTest, AnActThatChangesNothingWritesNothing)
{
    app::Document document;
    Recovery recovery(document);
    openTown(document, path);
    renameTable(document, "Nuova");
    ASSERT_TRUE(waitFor([&] { return !recovery.isWriting(); }));
    document.act(QStringLiteral("Interrogazione"), [] {});
    EXPECT_FALSE(recovery.isWriting());
}

TEST_F(RecoveryTest, AnotherLibraryWithAsManyChangesHasACopyOfItsOwn)
{
    app::Document document;
    Recovery recovery(document);
    openTown(document, path);
    renameTable(document, "Prima");
    ASSERT_TRUE(waitFor([&] { return !recovery.isWriting(); }));

    const QString other = folder.file(QStringLiteral("altra.gpkg"));
    openTown(document, other);
    EXPECT_TRUE(waitFor([&] { return !QFile::exists(recovery.path()); })) << "given up";
    renameTable(document, "Seconda"); // as many changes as before
    ASSERT_TRUE(waitFor([&] { return !recovery.isWriting(); }));

    app::Document recovered;
    ASSERT_TRUE(recovered.openRecovered(recovery.path(), path).ok());
    EXPECT_EQ(
        recovered.library().GetTableName(recovered.library().GetTable(0)), orv::String("Seconda"));
    EXPECT_TRUE(recovered.needsName());
    EXPECT_FALSE(recovered.isReadOnly()) << "it is work of one's own";
}

TEST_F(RecoveryTest, ACopyThatCannotBeWrittenIsToldOnceAndTriedAgain)
{
    app::Document document;
    Recovery recovery(document);
    openTown(document, path);
    ASSERT_TRUE(QDir().mkpath(recovery.path())); // a folder is in the way
    QSignalSpy failed(&recovery, &Recovery::failed);

    renameTable(document, "A");
    ASSERT_TRUE(waitFor([&] { return !recovery.isWriting() && failed.count() > 0; }));
    renameTable(document, "B");
    ASSERT_TRUE(waitFor([&] { return !recovery.isWriting(); }));
    EXPECT_EQ(failed.count(), 1);

    ASSERT_TRUE(QDir().rmdir(recovery.path()));
    document.act(QStringLiteral("Interrogazione"), [] {});
    ASSERT_TRUE(waitFor([&] { return !recovery.isWriting(); }));
    EXPECT_TRUE(QFileInfo(recovery.path()).isFile());
}

TEST_F(RecoveryTest, TheLastOfManyQuickActsIsInTheCopy)
{
    app::Document document;
    Recovery recovery(document);
    openTown(document, path);
    for (const char* name : { "A", "B", "C", "Ultima" })
        renameTable(document, name);
    ASSERT_TRUE(waitFor([&] { return !recovery.isWriting(); }));

    app::Document other;
    ASSERT_TRUE(other.openRecovered(recovery.path(), QString()).ok());
    EXPECT_EQ(other.library().GetTableName(other.library().GetTable(0)), orv::String("Ultima"));
}

TEST_F(RecoveryTest, WhatEndedBeforeADialogIsInTheCopyWhileTheDialogIsOpen)
{
    app::Document document;
    Recovery recovery(document);
    openTown(document, path);
    renameTable(document, "Una");
    ASSERT_TRUE(recovery.isWriting());
    renameTable(document, "Due"); // while the first is being written
    document.act(QStringLiteral("Finestra"), [&] {
        document.library().SetTableName(document.library().GetTable(0), "A mezzo");
        ASSERT_TRUE(waitFor([&] { return !recovery.isWriting(); }));
        app::Document other;
        ASSERT_TRUE(other.openRecovered(recovery.path(), path).ok());
        EXPECT_EQ(tableName(other), QStringLiteral("Due"));
    });
    ASSERT_TRUE(waitFor([&] { return !recovery.isWriting(); }));
    recovery.forget();
}

TEST_F(RecoveryTest, AnActTakenBackWhileTheOneBeforeIsWrittenIsNotInTheCopy)
{
    app::Document document;
    Recovery recovery(document);
    openTown(document, path);
    renameTable(document, "Una");
    renameTable(document, "Due");
    document.undo();
    ASSERT_TRUE(waitFor([&] { return !recovery.isWriting(); }));
    app::Document other;
    ASSERT_TRUE(other.openRecovered(recovery.path(), path).ok());
    EXPECT_EQ(tableName(other), QStringLiteral("Una"));
    recovery.forget();
}

/// The lock of a copy, as a program that runs has it.
class LockOfCopy final {
public:
    explicit LockOfCopy(const QString& copy)
        : m_file(::open(QFile::encodeName(copy + QStringLiteral(".lock")).constData(),
            O_RDWR | O_CREAT | O_CLOEXEC, 0600))
    {
        EXPECT_EQ(::flock(m_file, LOCK_EX | LOCK_NB), 0);
    }
    LockOfCopy(const LockOfCopy&) = delete;
    LockOfCopy& operator=(const LockOfCopy&) = delete;
    ~LockOfCopy() { ::close(m_file); }

private:
    int m_file;
};

TEST_F(RecoveryTest, ACopyThatAProgramHasTakenMeanwhileIsNotThrownAway)
{
    const QString left = leaveCopy(folder, path, QStringLiteral("lasciata.gpkg"));
    const auto files = Recovery::leftBehind();
    ASSERT_EQ(files.size(), 1U);
    {
        const LockOfCopy lock(left);
        Recovery::discard(files.front());
        EXPECT_TRUE(QFile::exists(left));
        EXPECT_TRUE(QFile::exists(left + QStringLiteral(".lock")));
        EXPECT_TRUE(Recovery::leftBehind().empty()) << "its program runs";
    }
    Recovery::discard(files.front());
    EXPECT_TRUE(QDir(folder.file(QStringLiteral("recovery"))).isEmpty());
}

TEST_F(RecoveryTest, ALockWhoseFileIsGoneIsTakenAnewWithTheNextCopy)
{
    app::Document document;
    Recovery recovery(document);
    openTown(document, path);
    renameTable(document, "Una");
    ASSERT_TRUE(waitFor([&] { return !recovery.isWriting(); }));
    ASSERT_TRUE(QFile::remove(recovery.path() + QStringLiteral(".lock")));

    renameTable(document, "Due");
    ASSERT_TRUE(waitFor([&] { return !recovery.isWriting(); }));
    EXPECT_TRUE(Recovery::leftBehind().empty()) << "its program still runs";
    recovery.forget();
}

/// Another program starts, and looks for what was left, in the moment in which this one takes its
/// lock.
TEST_F(RecoveryTest, AnotherProgramsStartNeverTakesTheLockAway)
{
    std::atomic<bool> isOver = false;
    std::thread other([&] {
        while (!isOver)
            static_cast<void>(Recovery::leftBehind());
    });
    for (int round = 0; round < 100; ++round) {
        app::Document document;
        Recovery recovery(document);
        const QSignalSpy failed(&recovery, &Recovery::failed);
        document.act(QStringLiteral("Tabella"), [&] { document.library().CreateTable("T"); });
        EXPECT_TRUE(waitFor([&] { return !recovery.isWriting(); }));
        EXPECT_EQ(failed.count(), 0);
        EXPECT_TRUE(QFile::exists(recovery.path()));
        EXPECT_TRUE(Recovery::leftBehind().empty());
        recovery.forget();
    }
    isOver = true;
    other.join();
}

TEST_F(RecoveryTest, WorkGivenUpComesNotBackAlsoWhileItIsBeingWritten)
{
    app::Document document;
    Recovery recovery(document);
    openTown(document, path);
    renameTable(document, "Nuova");
    recovery.forget();
    ASSERT_TRUE(waitFor([&] { return !recovery.isWriting(); }));

    EXPECT_FALSE(QFile::exists(recovery.path()));
}

TEST_F(RecoveryTest, WhatIsTakenBackAfterTheSaveHasACopy)
{
    app::Document document;
    Recovery recovery(document);
    openTown(document, path);
    renameTable(document, "Salvata");
    ASSERT_TRUE(waitFor([&] { return !recovery.isWriting(); }));
    ASSERT_TRUE(document.save().ok());
    ASSERT_FALSE(QFile::exists(recovery.path()));

    document.undo();
    ASSERT_FALSE(document.isSaved());
    ASSERT_TRUE(waitFor([&] { return !recovery.isWriting(); }));
    ASSERT_TRUE(QFile::exists(recovery.path()));
    app::Document other;
    ASSERT_TRUE(other.openRecovered(recovery.path(), path).ok());
    EXPECT_EQ(tableName(other), QStringLiteral("T"));

    document.redo(); // what the file holds
    EXPECT_TRUE(document.isSaved());
    EXPECT_FALSE(QFile::exists(recovery.path()));
    document.undo(); // where a copy was written before, which is gone
    ASSERT_TRUE(waitFor([&] { return !recovery.isWriting(); }));
    EXPECT_TRUE(QFile::exists(recovery.path()));
    recovery.forget();
}

} // namespace
