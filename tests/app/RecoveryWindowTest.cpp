// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/app/AppTesting.h"

#include "app/Recovery.h"
#include "embedded/store/GeoPackage.h"
#include "kit/Choosers.h"
#include "kit/MessageBox.h"
#include "kit/texts/QtText.h"
#include "tests/support/ui/ModalDriver.h"

#include <QDateTime>
#include <QFile>
#include <QTest>

namespace {

using namespace apptest;
using app::Recovery;
using kit::Answer;

/// What the user sees who starts the program after it ended early.
class RecoveryWindowTest : public testing::Test {
protected:
    RecoveryWindowTest() { window.show(); }
    ~RecoveryWindowTest() override { giveUp(window); }

    static QString question(const app::RecoveryFile& file)
    {
        return QStringLiteral(
            "Il programma si è chiuso prima che il lavoro su \"%1\" fosse salvato (%2)."
            "\nRecuperarlo?")
            .arg(file.originalPath, file.time);
    }
    /// Takes up the one copy that was left.
    void recover()
    {
        ui::CModalDriver driver;
        driver.box(question(Recovery::leftBehind().front()), Answer::Yes);
        window.offerRecovery();
        ASSERT_TRUE(waitFor([&] { return !window.recovery().isWriting(); }));
    }
    void pressSave()
    {
        window.activateWindow();
        QTest::qWait(1);
        QTest::keyClick(&window, Qt::Key_S, Qt::ControlModifier);
    }
    static QString savedTableName(const QString& file)
    {
        app::Document saved;
        embedded::Report report;
        EXPECT_TRUE(saved.open(file, report).ok());
        return tableName(saved);
    }

    CFolder folder;
    QString path = folder.file(QStringLiteral("t.gpkg"));
    QString other = folder.file(QStringLiteral("altra.gpkg"));
    QString saved = folder.file(QStringLiteral("salvata.gpkg"));
    app::MainWindow window;
};

TEST_F(RecoveryWindowTest, LeftWorkIsOfferedAndComesBackUnsaved)
{
    const QString left = leaveCopy(folder, path, QStringLiteral("lasciata.gpkg"));
    const auto files = Recovery::leftBehind();
    ASSERT_EQ(files.size(), 1u);
    EXPECT_EQ(files.front().path, left);
    EXPECT_EQ(files.front().originalPath, path);

    ui::CModalDriver driver;
    driver.box(question(files.front()), Answer::Yes);
    window.offerRecovery();

    EXPECT_EQ(tableName(window.document()), QStringLiteral("Recuperata"));
    EXPECT_FALSE(window.document().isSaved());
    EXPECT_TRUE(QFile::exists(left)) << "until the work has another copy";
    ASSERT_TRUE(waitFor([&] { return !window.recovery().isWriting(); }));
    EXPECT_TRUE(QFile::exists(window.recovery().path()));
    EXPECT_FALSE(QFile::exists(left));
    EXPECT_TRUE(Recovery::leftBehind().empty());
}

TEST_F(RecoveryWindowTest, LeftWorkThatIsNotWantedIsThrownAwayAndOneMayAlsoDecideLater)
{
    const QString left = leaveCopy(folder, path, QStringLiteral("lasciata.gpkg"));
    const QString asked = question(Recovery::leftBehind().front());
    {
        ui::CModalDriver driver;
        driver.box(asked, Answer::Cancel);
        window.offerRecovery();
    }
    EXPECT_TRUE(QFile::exists(left));
    ui::CModalDriver driver;
    driver.box(asked, Answer::No);
    window.offerRecovery();
    EXPECT_FALSE(QFile::exists(left));
    EXPECT_EQ(window.document().library().GetNumTables(), 0);
}

TEST_F(RecoveryWindowTest, RecoveredWorkCannotBeTakenBackUntilItLooksSaved)
{
    leaveCopy(folder, path, QStringLiteral("lasciata.gpkg"));
    recover();
    app::Document& document = window.document();
    EXPECT_FALSE(document.changes().CanUndo());
    EXPECT_TRUE(window.isWindowModified());

    document.undo();
    EXPECT_FALSE(document.isSaved());
    EXPECT_TRUE(QFile::exists(window.recovery().path()));

    renameTable(document, "Oltre");
    ASSERT_TRUE(document.changes().CanUndo());
    document.undo();
    EXPECT_EQ(tableName(document), QStringLiteral("Recuperata"));
    EXPECT_FALSE(document.isSaved()) << "what was recovered is in no file yet";
    ASSERT_TRUE(waitFor([&] { return !window.recovery().isWriting(); }));
    EXPECT_TRUE(QFile::exists(window.recovery().path()));
}

TEST_F(RecoveryWindowTest, TheFirstSaveOfRecoveredWorkAsksForTheNameAndOffersTheOldOne)
{
    leaveCopy(folder, path, QStringLiteral("lasciata.gpkg"));
    recover();
    int asked = 0;
    const kit::FileChooserScope chooser([&](const kit::FileRequest& request) {
        ++asked;
        EXPECT_EQ(request.folder, path);
        return path;
    });
    pressSave();
    EXPECT_EQ(asked, 1);
    EXPECT_TRUE(window.document().isSaved());
    EXPECT_FALSE(QFile::exists(window.recovery().path()));
    renameTable(window.document(), "Ancora");
    pressSave();
    EXPECT_EQ(asked, 1) << "the name is known now";
    EXPECT_TRUE(window.document().isSaved());
    window.document().startNew();
    EXPECT_EQ(savedTableName(path), QStringLiteral("Ancora"));
}

TEST_F(RecoveryWindowTest, AnotherLibraryOpenedAfterARecoveryIsSavedWithoutAskingForAName)
{
    const QString left = leaveCopy(folder, path, QStringLiteral("lasciata.gpkg"));
    ASSERT_TRUE(QFile::copy(path, other));
    recover();
    {
        ui::CModalDriver driver;
        driver.box(QStringLiteral("Salvare le modifiche a \"t.gpkg\"?"), Answer::No);
        ASSERT_TRUE(window.openFile(other));
    }
    EXPECT_FALSE(QFile::exists(left));
    renameTable(window.document(), "Nuova");
    const kit::FileChooserScope chooser([](const kit::FileRequest&) -> std::optional<QString> {
        ADD_FAILURE() << "it has a name";
        return std::nullopt;
    });
    pressSave();
    EXPECT_TRUE(window.document().isSaved());
    window.document().startNew();
    EXPECT_EQ(savedTableName(other), QStringLiteral("Nuova"));
}

/// Two programs ended early: the work on `path`, which is offered first, and that on `other`.
class TwoCopiesTest : public RecoveryWindowTest {
protected:
    TwoCopiesTest()
    {
        leave(QStringLiteral("una.gpkg"), path, "Una", 60);
        leave(QStringLiteral("due.gpkg"), other, "Due", 3600);
        files = Recovery::leftBehind();
        EXPECT_EQ(files.size(), 2u);
        EXPECT_EQ(files.front().originalPath, path) << "the newest first";
    }
    void leave(const QString& name, const QString& original, const char* table, int secondsAgo)
    {
        setTime(leaveCopy(folder, original, name, table), secondsAgo);
    }
    void setTime(const QString& name, int secondsAgo)
    {
        QFile file(name);
        EXPECT_TRUE(file.open(QIODevice::ReadWrite));
        EXPECT_TRUE(file.setFileTime(now.addSecs(-secondsAgo), QFileDevice::FileModificationTime));
    }
    /// Yes to the first copy, then what comes.
    void offer(ui::CModalDriver& driver, Answer toSecond)
    {
        driver.box(question(files[0]), Answer::Yes);
        driver.box(question(files[1]), toSecond);
    }
    void settle()
    {
        ASSERT_TRUE(waitFor([&] { return !window.recovery().isWriting(); }));
    }
    [[nodiscard]] QString shown() { return tableName(window.document()); }

    const QDateTime now = QDateTime::currentDateTime();
    std::vector<app::RecoveryFile> files;
    const QString first = QStringLiteral("Una"); // what the table is called in it
    const QString second = QStringLiteral("Due");
    const QString leaving = QStringLiteral("Salvare le modifiche a \"t.gpkg\"?");
};

TEST_F(TwoCopiesTest, TheSecondMayBeThrownAway)
{
    ui::CModalDriver driver;
    offer(driver, Answer::No);
    window.offerRecovery();
    settle();
    EXPECT_EQ(shown(), first);
    EXPECT_FALSE(window.document().isSaved());
    EXPECT_TRUE(QFile::exists(window.recovery().path()));
    EXPECT_FALSE(QFile::exists(files[1].path));
}

TEST_F(TwoCopiesTest, TheSecondMayWaitForTheNextStart)
{
    ui::CModalDriver driver;
    offer(driver, Answer::Cancel);
    window.offerRecovery();
    settle();
    EXPECT_EQ(shown(), first);
    ASSERT_EQ(Recovery::leftBehind().size(), 1u);
    EXPECT_EQ(Recovery::leftBehind().front().path, files[1].path);
}

TEST_F(TwoCopiesTest, TheFirstIsSavedBeforeTheSecondTakesItsPlace)
{
    const kit::FileChooserScope chooser([this](const kit::FileRequest&) { return saved; });
    ui::CModalDriver driver;
    offer(driver, Answer::Yes);
    driver.box(leaving, Answer::Yes);
    window.offerRecovery();
    settle();
    EXPECT_EQ(shown(), second);
    EXPECT_FALSE(window.document().isSaved());
    EXPECT_TRUE(QFile::exists(window.recovery().path()));
    EXPECT_TRUE(Recovery::leftBehind().empty());
    EXPECT_EQ(savedTableName(saved), first);
}

TEST_F(TwoCopiesTest, TheFirstMayBeGivenUpForTheSecond)
{
    ui::CModalDriver driver;
    offer(driver, Answer::Yes);
    driver.box(leaving, Answer::No);
    window.offerRecovery();
    settle();
    EXPECT_EQ(shown(), second);
    EXPECT_FALSE(window.document().isSaved());
    EXPECT_TRUE(Recovery::leftBehind().empty());
    app::Document copy;
    ASSERT_TRUE(copy.openRecovered(window.recovery().path(), {}).ok());
    EXPECT_EQ(tableName(copy), second);
}

TEST_F(TwoCopiesTest, WhoKeepsTheFirstKeepsTheSecondCopyToo)
{
    ui::CModalDriver driver;
    offer(driver, Answer::Yes);
    driver.box(leaving, Answer::Cancel);
    window.offerRecovery();
    settle();
    EXPECT_EQ(shown(), first);
    EXPECT_FALSE(window.document().isSaved());
    EXPECT_TRUE(QFile::exists(window.recovery().path()));
    ASSERT_EQ(Recovery::leftBehind().size(), 1u);
    EXPECT_EQ(Recovery::leftBehind().front().path, files[1].path);
}

TEST_F(TwoCopiesTest, ASecondThatCannotBeReadLeavesTheFirst)
{
    QFile damaged(files[1].path);
    ASSERT_TRUE(damaged.open(QIODevice::WriteOnly));
    damaged.write("nulla");
    damaged.close();
    setTime(files[1].path, 3600);
    ui::CModalDriver driver;
    offer(driver, Answer::Yes);
    driver.box(leaving, Answer::No);
    driver.box(QStringLiteral("\"%1\" non è una libreria GIS né un GeoPackage.").arg(files[1].path),
        Answer::Ok);
    window.offerRecovery();
    settle();
    EXPECT_EQ(shown(), first);
    EXPECT_TRUE(QFile::exists(window.recovery().path()));
}

} // namespace
