// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT

// What the window tells when a file cannot be read or written as it should.

#include "tests/app/AppTesting.h"

#include "kit/MessageBox.h"
#include "tests/support/ui/ModalDriver.h"

#include <QAction>
#include <QFile>
#include <QTest>

#include <sqlite3.h>
#include <sys/stat.h>

namespace {

using namespace apptest;
using kit::Answer;

class FailureWindowTest : public CTownWindow {
protected:
    /// Overwrites the page of a file in whose middle a number is.
    static void damagePageOf(const QString& name, double number)
    {
        constexpr int PageBytes = 4096;
        QFile file(name);
        ASSERT_TRUE(file.open(QIODevice::ReadWrite));
        const QByteArray sought(reinterpret_cast<const char*>(&number), sizeof number);
        const auto at = file.readAll().indexOf(sought);
        ASSERT_GE(at, PageBytes) << "the file could not even be opened";
        ASSERT_TRUE(file.seek(at / PageBytes * PageBytes));
        ASSERT_EQ(file.write(QByteArray(PageBytes, 'U')), PageBytes);
    }
    /// A library of three lines whose vertices fill many pages; one of these is damaged.
    QString damagedLines()
    {
        constexpr double Sought = 123456.75;
        std::string notation = "table Linee (N integer); rows Linee: (0) (1) (2);"
                               "theme Linee: lines 2d on Linee; ents Linee: ";
        for (int row = 0; row < 3; ++row) {
            notation += (row > 0 ? ", " : "") + std::to_string(row) + " [0 0";
            for (int i = 1; i < 4000; ++i)
                notation
                    += ", " + std::to_string(i) + (row == 1 && i == 2000 ? " 123456.75" : " 0");
            notation += "]";
        }
        QString name = folder.file(QStringLiteral("guasta.gpkg"));
        app::Document document;
        openTown(document, name, notation);
        document.startNew();
        damagePageOf(name, Sought);
        return name;
    }
    static QString damageOf(const QString& file)
    {
        return QStringLiteral("Il file \"%1\" è danneggiato: usarne una copia di riserva.")
            .arg(file);
    }
};

TEST_F(FailureWindowTest, EntitiesThatCannotBeReadAreToldOnceForALibrary)
{
    const QString damaged = damagedLines();
    {
        ui::CModalDriver driver;
        driver.box(damageOf(damaged), Answer::Ok);
        ASSERT_TRUE(window.openFile(damaged));
        EXPECT_TRUE(waitFor([&] { return driver.stepsTaken() == 1; }));
    }
    ui::CModalDriver driver; // no other box comes
    renameTable(window.document(), "Altre");
    window.canvas().fitAll();
    QTest::qWait(50);
    ASSERT_TRUE(waitFor([&] { return !window.canvas().isDrawing(); }));

    driver.box(damageOf(damaged), Answer::Ok);
    EXPECT_FALSE(window.save()) << "what was not read must not be written as nothing";
    QTest::qWait(50);

    ASSERT_TRUE(window.document().library().GetNumThemes() > 0);
    window.document().startNew();
    driver.box(damageOf(damaged), Answer::Ok);
    ASSERT_TRUE(window.openFile(damaged));
    EXPECT_TRUE(waitFor([&] { return driver.stepsTaken() == 2; })) << "opened anew, told anew";
}

TEST_F(FailureWindowTest, AFileThatCanBeReadIsOpenedWithoutABox)
{
    ui::CModalDriver driver;
    ASSERT_TRUE(window.openFile(path));
    QTest::qWait(50);
    EXPECT_EQ(driver.stepsTaken(), 0);
}

TEST_F(FailureWindowTest, APipeIsNotSaidToBeAFolder)
{
    const QString pipe = folder.file(QStringLiteral("tubo.gpkg"));
    ASSERT_EQ(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    ui::CModalDriver driver;
    for (const QString& name : { pipe, folder.file(QString()) }) {
        driver.box(
            QStringLiteral("\"%1\" è una cartella o un dispositivo, non un file: scegliere un "
                           "file.")
                .arg(QFileInfo(name).absoluteFilePath()),
            Answer::Ok);
        EXPECT_FALSE(window.openFile(name));
    }
}

/// The memory that SQLite may take, for a scope.
class ScarceMemory final {
public:
    ScarceMemory()
        : m_before(sqlite3_hard_heap_limit64(1))
    {
    }
    ScarceMemory(const ScarceMemory&) = delete;
    ScarceMemory& operator=(const ScarceMemory&) = delete;
    ~ScarceMemory() { sqlite3_hard_heap_limit64(m_before); }

private:
    sqlite3_int64 m_before;
};

TEST_F(FailureWindowTest, WhoCannotSaveIsNotToldToSave)
{
    renameTable(window.document(), "Nuova");
    ASSERT_TRUE(waitFor([&] { return !window.recovery().isWriting(); }));
    ui::CModalDriver driver;
    driver.box(QStringLiteral("La libreria non è stata salvata (memoria esaurita): chiudere altri "
                              "programmi e riprovare, o salvarla con un altro nome."),
        Answer::Ok);
    {
        const ScarceMemory scarce;
        EXPECT_FALSE(window.save());
    }
    EXPECT_FALSE(window.document().isSaved());
    EXPECT_TRUE(window.save()) << "once there is memory again";
}

} // namespace
