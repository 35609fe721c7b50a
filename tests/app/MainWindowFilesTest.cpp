// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/app/AppTesting.h"

#include "app/RecentFiles.h"
#include "kit/Choosers.h"
#include "kit/MessageBox.h"
#include "tests/support/ui/ModalDriver.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QDockWidget>
#include <QDropEvent>
#include <QFile>
#include <QLabel>
#include <QMenu>
#include <QMimeData>
#include <QUrl>

namespace {

using namespace apptest;
using kit::Answer;
using kit::FileRequest;

class MainWindowFilesTest : public CTownWindow {
protected:
    [[nodiscard]] int themeCount() { return window.document().library().GetNumThemes(); }
    /// Of a library that has nothing in common with the town.
    QString otherShapefile()
    {
        return shapefileOf(folder, QStringLiteral("Alberi"),
            "table Alberi (specie text); rows Alberi: ('Tiglio'), ('Pino');"
            "theme Alberi: points 2d on Alberi; ents Alberi: 0 [1000 1000], 1 [1100 1050]");
    }
    /// A shapefile of one point; so many of its fields hold what is no number.
    QString faultyShapefile(int fields)
    {
        std::string names;
        std::string values;
        for (int i = 1; i <= fields; ++i) {
            names += (i > 1 ? ", f" : "f") + std::to_string(i) + " integer";
            values += i > 1 ? ", 1" : "1";
        }
        const QString shp = shapefileOf(folder, QStringLiteral("Guasti"),
            "table Guasti (" + names + "); rows Guasti: (" + values
                + "); theme Guasti: points 2d on Guasti; ents Guasti: 0 [5 5]");
        QFile dbf(folder.file(QStringLiteral("Guasti.dbf")));
        EXPECT_TRUE(dbf.open(QIODevice::ReadWrite));
        QByteArray bytes = dbf.readAll();
        const int header
            = static_cast<unsigned char>(bytes[8]) + 256 * static_cast<unsigned char>(bytes[9]);
        for (int i = header; i < bytes.size(); ++i)
            if (bytes[i] == '1')
                bytes[i] = '?';
        EXPECT_TRUE(dbf.seek(0));
        EXPECT_EQ(dbf.write(bytes), bytes.size());
        return shp;
    }
    /// The box that tells what was found in faultyShapefile.
    static QString toldFaults(int lines, const QString& rest = {})
    {
        QStringList told;
        for (int i = 1; i <= lines; ++i)
            told << QStringLiteral("Una cella del campo \"f%1\" non è un numero: resta vuota.")
                        .arg(i);
        if (!rest.isEmpty())
            told << rest;
        return told.join(QLatin1Char('\n'));
    }
    void drop(const QStringList& files)
    {
        QMimeData data;
        QList<QUrl> urls;
        for (const QString& file : files)
            urls << QUrl::fromLocalFile(file);
        data.setUrls(urls);
        QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(&window, &enter);
        EXPECT_TRUE(enter.isAccepted());
        QDropEvent dropped(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(&window, &dropped);
    }
    QList<QAction*> recentEntries()
    {
        for (QMenu* menu : window.findChildren<QMenu*>())
            if (menu->title() == QStringLiteral("Apri &recenti"))
                return menu->actions();
        return {};
    }
};

TEST_F(MainWindowFilesTest, SaveAsWritesUnderTheChosenNameAndWorksOnThatFile)
{
    const QString chosen = folder.file(QStringLiteral("scelta.gpkg"));
    writeCell();
    std::optional<FileRequest> asked;
    {
        const kit::FileChooserScope chooser([&](const FileRequest& request) {
            asked = request;
            return chosen;
        });
        action(QStringLiteral("Salva con nome...")).trigger();
    }
    ASSERT_TRUE(asked);
    EXPECT_EQ(asked->kind, FileRequest::Kind::Save);
    EXPECT_EQ(asked->caption, QStringLiteral("Salva con nome"));
    EXPECT_EQ(asked->folder, path);
    EXPECT_EQ(asked->suffix, QStringLiteral("gpkg"));
    EXPECT_EQ(window.document().path(), chosen);
    EXPECT_TRUE(window.document().isSaved());
    EXPECT_EQ(message(), QStringLiteral("Salvato scelta.gpkg"));
    EXPECT_TRUE(window.windowTitle().startsWith(QStringLiteral("scelta.gpkg")));
    EXPECT_EQ(app::RecentFiles::paths().value(0), chosen);

    app::Document before; // the old file can be written to again, and has no change in it
    embedded::Report report;
    ASSERT_TRUE(before.open(path, report).ok());
    EXPECT_FALSE(before.isReadOnly());
    orv::CPolyValue value;
    before.library().GetRowValue(
        before.library().GetRow(before.library().GetTable(0), 0), 0, value);
    EXPECT_EQ(value.GetStringValue(), orv::String("a"));
}

TEST_F(MainWindowFilesTest, SaveAsThatIsCancelledOrRefusedLeavesTheWorkAsItIs)
{
    writeCell();
    {
        const kit::FileChooserScope chooser(
            [](const FileRequest&) -> std::optional<QString> { return std::nullopt; });
        action(QStringLiteral("Salva con nome...")).trigger();
    }
    EXPECT_FALSE(window.document().isSaved());
    const QString nowhere = folder.file(QStringLiteral("non-esiste/scelta.gpkg"));
    const kit::FileChooserScope chooser([&](const FileRequest&) { return nowhere; });
    ui::CModalDriver driver;
    driver.box(QStringLiteral("La cartella \"%1\" non esiste.").arg(QFileInfo(nowhere).path()),
        Answer::Ok);
    action(QStringLiteral("Salva con nome...")).trigger();
    EXPECT_FALSE(window.document().isSaved());
    EXPECT_EQ(window.document().path(), path);
}

TEST_F(MainWindowFilesTest, OpenAsksForAFileOfAnyKind)
{
    const QString shp = otherShapefile();
    std::optional<FileRequest> asked;
    const kit::FileChooserScope chooser([&](const FileRequest& request) {
        asked = request;
        return shp;
    });
    action(QStringLiteral("Apri...")).trigger();
    ASSERT_TRUE(asked);
    EXPECT_EQ(asked->kind, FileRequest::Kind::Open);
    EXPECT_TRUE(asked->filter.contains(QStringLiteral("*.gpkg *.shp")));
    EXPECT_EQ(themeCount(), 1);
    EXPECT_EQ(window.document().title(), QStringLiteral("Senza nome"));
    EXPECT_EQ(message(), QStringLiteral("Aperto Alberi.shp"));
}

TEST_F(MainWindowFilesTest, AShapefileIsImportedByTheMenuAsOneStep)
{
    const QString shp = otherShapefile();
    const kit::FileChooserScope chooser([&](const FileRequest& request) {
        EXPECT_EQ(request.caption, QStringLiteral("Importa shapefile"));
        return shp;
    });
    action(QStringLiteral("Importa shapefile...")).trigger();
    EXPECT_EQ(themeCount(), 3);
    EXPECT_EQ(window.document().path(), path) << "into the open library";
    EXPECT_EQ(message(), QStringLiteral("Importato Alberi.shp"));
    action(QStringLiteral("Annulla Importazione di Alberi.shp")).trigger();
    EXPECT_EQ(themeCount(), 2);
    EXPECT_TRUE(window.document().isSaved());
    action(QStringLiteral("Ripeti Importazione di Alberi.shp")).trigger();
    EXPECT_EQ(themeCount(), 3);
    EXPECT_FALSE(action(QStringLiteral("Ripeti ")).isEnabled());
}

TEST_F(MainWindowFilesTest, AShapefileDroppedOnTheWindowIsImported)
{
    drop({ otherShapefile() });
    EXPECT_TRUE(waitFor([&] { return themeCount() == 3; }));
    EXPECT_EQ(window.document().path(), path);
}

TEST_F(MainWindowFilesTest, SeveralFilesDroppedAreTakenOneAfterTheOther)
{
    const QString other = folder.file(QStringLiteral("altra.gpkg"));
    ASSERT_TRUE(QFile::copy(path, other));
    drop({ other, folder.file(QStringLiteral("nota.txt")), otherShapefile() });
    EXPECT_TRUE(waitFor([&] { return themeCount() == 3; }));
    EXPECT_EQ(window.document().path(), other);
}

TEST_F(MainWindowFilesTest, WhatAnImportFoundIsToldInABox)
{
    const QString shp = faultyShapefile(1);
    ui::CModalDriver driver;
    driver.box(toldFaults(1), Answer::Ok, [](QMessageBox& box) {
        EXPECT_EQ(box.windowTitle(), QStringLiteral("Importato Guasti.shp"));
        EXPECT_EQ(box.icon(), QMessageBox::Information);
    });
    ASSERT_TRUE(window.importFile(shp));
    EXPECT_EQ(message(), QStringLiteral("Importato Guasti.shp, con un avviso"));
}

TEST_F(MainWindowFilesTest, TwelveFindingsAreToldAllAndOfMoreTheCount)
{
    const struct {
        int faults;
        QString rest;
    } cases[] = { { 12, {} }, { 13, QStringLiteral("… e un altro avviso") },
        { 20, QStringLiteral("… e altri 8 avvisi") } };
    for (const auto& [faults, rest] : cases) {
        const QString shp = faultyShapefile(faults);
        ui::CModalDriver driver;
        driver.box(toldFaults(12, rest), Answer::Ok);
        ASSERT_TRUE(window.openFile(shp));
        EXPECT_EQ(message(), QStringLiteral("Aperto Guasti.shp, con %1 avvisi").arg(faults));
        window.document().startNew();
    }
}

TEST_F(MainWindowFilesTest, AFileOfAnotherProgramOpensReadOnlyAndSavesUnderAnotherName)
{
    const QString held = folder.file(QStringLiteral("occupata.gpkg"));
    app::Document other;
    openTown(other, held);
    ui::CModalDriver driver;
    driver.box(QStringLiteral("Il file è aperto in sola lettura: un altro programma lo sta "
                              "modificando o non si hanno i permessi di scrittura.\n"
                              "Le modifiche si possono salvare con un altro nome."),
        Answer::Ok);
    ASSERT_TRUE(window.openFile(held));
    EXPECT_TRUE(window.windowTitle().startsWith(QStringLiteral("occupata.gpkg[*] (sola lettura)")))
        << window.windowTitle().toStdString();

    writeCell();
    const QString chosen = folder.file(QStringLiteral("mia.gpkg"));
    int asked = 0;
    const kit::FileChooserScope chooser([&](const FileRequest&) {
        ++asked;
        return chosen;
    });
    action(QStringLiteral("Salva")).trigger();
    EXPECT_EQ(asked, 1);
    EXPECT_TRUE(window.document().isSaved());
    EXPECT_FALSE(window.windowTitle().contains(QStringLiteral("sola lettura")));
}

TEST_F(MainWindowFilesTest, AnEntryOfTheRecentFilesOpensItsFile)
{
    const QString other = folder.file(QStringLiteral("Vie & piazze.gpkg"));
    ASSERT_TRUE(QFile::copy(path, other));
    ASSERT_TRUE(window.openFile(other));
    ASSERT_TRUE(window.openFile(path));
    const auto entries = recentEntries();
    ASSERT_EQ(entries.size(), 2);
    EXPECT_EQ(entries[0]->text(), path);
    EXPECT_EQ(entries[1]->text(), QString(other).replace(QStringLiteral("&"), QStringLiteral("&&")))
        << "an ampersand is no access key";
    entries[1]->trigger();
    EXPECT_EQ(window.document().path(), other);
    EXPECT_EQ(recentEntries().value(0)->text(),
        QString(other).replace(QStringLiteral("&"), QStringLiteral("&&")));
}

TEST_F(MainWindowFilesTest, OpeningAShapefileOverUnsavedWorkAsksFirst)
{
    const QString shp = otherShapefile();
    writeCell();
    const QString question = QStringLiteral("Salvare le modifiche a \"t.gpkg\"?");
    {
        ui::CModalDriver driver;
        driver.box(question, Answer::Cancel);
        EXPECT_FALSE(window.openFile(shp));
    }
    EXPECT_EQ(window.document().path(), path);
    EXPECT_FALSE(window.document().isSaved());
    {
        ui::CModalDriver driver;
        driver.box(question, Answer::Yes);
        EXPECT_TRUE(window.openFile(shp));
    }
    EXPECT_EQ(themeCount(), 1);
    app::Document saved;
    embedded::Report report;
    ASSERT_TRUE(saved.open(path, report).ok());
    orv::CPolyValue value;
    saved.library().GetRowValue(saved.library().GetRow(saved.library().GetTable(0), 0), 0, value);
    EXPECT_EQ(value.GetStringValue(), orv::String("scritto"));
}

TEST_F(MainWindowFilesTest, ItIsSeenWhileNoRecoveryCopyCanBeWritten)
{
    auto* label = window.findChild<QLabel*>(QStringLiteral("unprotected"));
    ASSERT_NE(label, nullptr);
    EXPECT_FALSE(label->isVisible());
    const QString copy = window.recovery().path();
    ASSERT_TRUE(QDir().mkpath(copy)); // a folder is in the way

    renameTable(window.document(), "A");
    EXPECT_TRUE(waitFor([&] { return label->isVisible(); }));
    EXPECT_EQ(label->text(), QStringLiteral("Copia di recupero non scritta"));
    ASSERT_TRUE(waitFor([&] { return !window.recovery().isWriting(); }));
    ASSERT_TRUE(QDir().rmdir(copy));
    renameTable(window.document(), "B");
    EXPECT_TRUE(waitFor([&] { return !label->isVisible(); }));
    EXPECT_TRUE(QFileInfo(copy).isFile());
}

TEST_F(MainWindowFilesTest, WorkThatIsSavedIsNotSaidToBeUnprotected)
{
    auto* label = window.findChild<QLabel*>(QStringLiteral("unprotected"));
    const QString copy = window.recovery().path();
    ASSERT_TRUE(QDir().mkpath(copy));
    renameTable(window.document(), "A");
    ASSERT_TRUE(waitFor([&] { return label->isVisible() && !window.recovery().isWriting(); }));

    ASSERT_TRUE(window.save());
    EXPECT_FALSE(label->isVisible()) << "nothing is unsaved";

    renameTable(window.document(), "B");
    EXPECT_TRUE(waitFor([&] { return label->isVisible() && !window.recovery().isWriting(); }))
        << "it cannot be written still";
    QDir().rmdir(copy);
}

TEST_F(MainWindowFilesTest, AnotherLibraryIsNotSaidToBeUnprotected)
{
    auto* label = window.findChild<QLabel*>(QStringLiteral("unprotected"));
    ASSERT_TRUE(QDir().mkpath(window.recovery().path()));
    renameTable(window.document(), "A");
    ASSERT_TRUE(waitFor([&] { return label->isVisible() && !window.recovery().isWriting(); }));
    window.document().startNew();
    EXPECT_FALSE(label->isVisible()) << "nothing is unsaved";

    const auto make = [&] { window.document().library().CreateTable("Nuova"); };
    window.document().act(QStringLiteral("Tabella nuova"), make);
    EXPECT_TRUE(waitFor([&] { return label->isVisible(); })) << "it cannot be written still";
    QDir().rmdir(window.recovery().path());
}

TEST_F(MainWindowFilesTest, TheWindowComesBackAsItWasLeft)
{
    window.resize(640, 480);
    auto* docked = window.findChild<QDockWidget*>(QStringLiteral("themesDock"));
    docked->hide();
    const QSize left = window.size();
    ASSERT_TRUE(window.close());

    app::MainWindow next;
    next.show();
    EXPECT_EQ(next.size(), left);
    EXPECT_FALSE(next.findChild<QDockWidget*>(QStringLiteral("themesDock"))->isVisible());
    EXPECT_TRUE(next.findChild<QDockWidget*>(QStringLiteral("identifyDock"))->isVisible());
    next.close();
}

} // namespace
