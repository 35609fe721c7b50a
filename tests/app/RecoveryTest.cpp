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

namespace {

using namespace apptest;
using app::Recovery;

class RecoveryTest : public testing::Test {
protected:
    CFolder folder;
    QString path = folder.file(QStringLiteral("t.gpkg"));

    static void rename(app::Document& document, const char* name)
    {
        document.act(QStringLiteral("Rinomina"),
            [&] { document.library().SetTableName(document.library().GetTable(0), name); });
    }
    /// A copy as a program leaves it that ended early: nobody holds its lock.
    QString leaveCopy()
    {
        app::Document document;
        Recovery recovery(document);
        openTown(document, path);
        rename(document, "Recuperata");
        EXPECT_TRUE(waitFor([&] { return !recovery.isWriting(); }));
        const QString left
            = QFileInfo(recovery.path()).dir().filePath(QStringLiteral("lasciata.gpkg"));
        EXPECT_TRUE(QFile::rename(recovery.path(), left));
        QFile::rename(recovery.path() + QStringLiteral(".ini"), left + QStringLiteral(".ini"));
        return left;
    }
};

TEST_F(RecoveryTest, ACopyIsThereAfterEachActAndGoesWithTheSave)
{
    app::Document document;
    Recovery recovery(document);
    openTown(document, path);
    EXPECT_FALSE(QFile::exists(recovery.path()));

    rename(document, "Nuova");
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
    rename(document, "Nuova");
    ASSERT_TRUE(waitFor([&] { return !recovery.isWriting(); }));
    document.act(QStringLiteral("Interrogazione"), [] {});
    EXPECT_FALSE(recovery.isWriting());
}

TEST_F(RecoveryTest, AnotherLibraryWithAsManyChangesHasACopyOfItsOwn)
{
    app::Document document;
    Recovery recovery(document);
    openTown(document, path);
    rename(document, "Prima");
    ASSERT_TRUE(waitFor([&] { return !recovery.isWriting(); }));

    const QString other = folder.file(QStringLiteral("altra.gpkg"));
    openTown(document, other);
    EXPECT_TRUE(waitFor([&] { return !QFile::exists(recovery.path()); })) << "given up";
    rename(document, "Seconda"); // as many changes as before
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

    rename(document, "A");
    ASSERT_TRUE(waitFor([&] { return !recovery.isWriting() && failed.count() > 0; }));
    rename(document, "B");
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
        rename(document, name);
    ASSERT_TRUE(waitFor([&] { return !recovery.isWriting(); }));

    app::Document other;
    ASSERT_TRUE(other.openRecovered(recovery.path(), QString()).ok());
    EXPECT_EQ(other.library().GetTableName(other.library().GetTable(0)), orv::String("Ultima"));
}

TEST_F(RecoveryTest, WorkGivenUpComesNotBackAlsoWhileItIsBeingWritten)
{
    app::Document document;
    Recovery recovery(document);
    openTown(document, path);
    rename(document, "Nuova");
    recovery.forget();
    ASSERT_TRUE(waitFor([&] { return !recovery.isWriting(); }));

    EXPECT_FALSE(QFile::exists(recovery.path()));
}

TEST_F(RecoveryTest, LeftWorkIsOfferedAndComesBackUnsaved)
{
    const QString left = leaveCopy();
    const auto files = Recovery::leftBehind();
    ASSERT_EQ(files.size(), 1u);
    EXPECT_EQ(files.front().path, left);
    EXPECT_EQ(files.front().originalPath, path);

    app::MainWindow window;
    ui::CModalDriver driver;
    driver.box(
        QStringLiteral("Il programma si è chiuso prima che il lavoro su \"%1\" fosse salvato (%2)."
                       "\nRecuperarlo?")
            .arg(path, files.front().time),
        kit::Answer::Yes);
    window.offerRecovery();

    app::Document& document = window.document();
    EXPECT_EQ(
        document.library().GetTableName(document.library().GetTable(0)), orv::String("Recuperata"));
    EXPECT_FALSE(document.isSaved());
    EXPECT_TRUE(QFile::exists(left)) << "until the work has another copy";
    ASSERT_TRUE(waitFor([&] { return !window.recovery().isWriting(); }));
    EXPECT_TRUE(QFile::exists(window.recovery().path()));
    EXPECT_FALSE(QFile::exists(left));
    EXPECT_TRUE(Recovery::leftBehind().empty());
    window.recovery().forget();
}

TEST_F(RecoveryTest, LeftWorkThatIsNotWantedIsThrownAwayAndOneMayAlsoDecideLater)
{
    const QString left = leaveCopy();
    const QString question = QStringLiteral(
        "Il programma si è chiuso prima che il lavoro su \"%1\" fosse salvato (%2)."
        "\nRecuperarlo?")
                                 .arg(path, Recovery::leftBehind().front().time);
    app::MainWindow window;
    {
        ui::CModalDriver driver;
        driver.box(question, kit::Answer::Cancel);
        window.offerRecovery();
    }
    EXPECT_TRUE(QFile::exists(left));
    ui::CModalDriver driver;
    driver.box(question, kit::Answer::No);
    window.offerRecovery();
    EXPECT_FALSE(QFile::exists(left));
    EXPECT_EQ(window.document().library().GetNumTables(), 0);
}

} // namespace
