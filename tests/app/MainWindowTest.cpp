// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/app/AppTesting.h"

#include "app/RecentFiles.h"
#include "embedded/model/Library.h"
#include "host/gis/TableEdit.h"
#include "kit/texts/QtText.h"
#include "tests/support/ui/ModalDriver.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QAbstractItemView>
#include <QCloseEvent>
#include <QComboBox>
#include <QDropEvent>
#include <QFile>
#include <QLineEdit>
#include <QMenuBar>
#include <QMimeData>
#include <QPushButton>
#include <QTabWidget>
#include <QTest>
#include <QUrl>

namespace {

using namespace apptest;

class MainWindowTest : public CTownWindow { };

TEST_F(MainWindowTest, FoundEntitiesAreMarkedAndStayMarkedAfterClosing)
{
    ui::CModalDriver driver;
    driver.dialog("CDlgQuery", [&](QDialog& dialog) {
        ui::type(dialog, 2071, QStringLiteral("tipo = 'x'"));
        ui::press(dialog, 2081);
        EXPECT_EQ(window.document().highlight().found,
            (std::vector<gis::CEnt*> { entity(0, 0), entity(0, 2) }));
        ui::press(dialog, 1);
    });
    action(QStringLiteral("Interrogazione...")).trigger();

    EXPECT_EQ(window.document().highlight().found,
        (std::vector<gis::CEnt*> { entity(0, 0), entity(0, 2) }));
    EXPECT_FALSE(window.document().changes().CanUndo()) << "asking changes nothing";
    ASSERT_TRUE(waitFor([&] { return !window.canvas().isDrawing(); }));
    // The mark is seen beside the symbol, which is smaller.
    const QImage image = window.canvas().grab().toImage();
    const QPoint place = window.canvas().view().toPixels(50, 50).toPoint();
    int marked = 0;
    for (int y = -7; y <= 7; ++y)
        for (int x = -7; x <= 7; ++x)
            marked += image.pixelColor(place + QPoint(x, y)) != QColor(Qt::white) ? 1 : 0;
    EXPECT_GT(marked, 36);
}

TEST_F(MainWindowTest, SelectedEntitiesAreSelectedInTheGridAndItsRowIsMarkedOnTheMap)
{
    window.document().setSelected({ entity(0, 1) });
    ui::CModalDriver driver;
    driver.dialog("CDlgShowTable", [&](QDialog& dialog) {
        auto* view = dialog.findChild<QAbstractItemView*>(QStringLiteral("id1000"));
        ASSERT_NE(view, nullptr);
        const QModelIndexList selected = view->selectionModel()->selectedRows();
        ASSERT_EQ(selected.size(), 1);
        EXPECT_EQ(selected.first().row(), 1);
        QTest::mouseClick(view->viewport(), Qt::LeftButton, {},
            view->visualRect(view->model()->index(2, 0)).center());
        EXPECT_EQ(window.document().highlight().current, entity(0, 2));
        ui::press(dialog, 2);
    });
    action(QStringLiteral("Tabella attributi...")).trigger();
    EXPECT_EQ(window.document().highlight().current, entity(0, 2));
}

TEST_F(MainWindowTest, WhatIsEditedInTheGridIsOneStepNamedAfterIt)
{
    ui::CModalDriver driver;
    driver.dialog("CDlgShowTable", [&](QDialog& dialog) {
        auto* view = dialog.findChild<QAbstractItemView*>(QStringLiteral("id1000"));
        for (int row = 0; row < 3; ++row)
            view->model()->setData(
                view->model()->index(row, 1), QStringLiteral("nuovo"), Qt::EditRole);
        ui::press(dialog, 1);
    });
    action(QStringLiteral("Tabella attributi...")).trigger();

    EXPECT_EQ(window.document().changes().UndoName(), orv::String("Tabella T"));
    EXPECT_TRUE(window.isWindowModified());
    action(QStringLiteral("Annulla Tabella T")).trigger();
    EXPECT_TRUE(window.document().isSaved());
    EXPECT_FALSE(window.isWindowModified());
}

TEST_F(MainWindowTest, LeavingUnsavedWorkAsks)
{
    writeCell();
    const QString question = QStringLiteral("Salvare le modifiche a \"t.gpkg\"?");
    {
        ui::CModalDriver driver;
        driver.box(question, kit::Answer::Cancel);
        EXPECT_FALSE(window.close());
        EXPECT_TRUE(window.isVisible());
    }
    {
        ui::CModalDriver driver;
        driver.box(question, kit::Answer::Yes);
        EXPECT_TRUE(window.close());
    }
    EXPECT_TRUE(window.document().isSaved());
}

TEST_F(MainWindowTest, WorkThatIsGivenUpIsNotInTheFile)
{
    writeCell();
    ui::CModalDriver driver;
    driver.box(QStringLiteral("Salvare le modifiche a \"t.gpkg\"?"), kit::Answer::No);
    ASSERT_TRUE(window.openFile(path));
    EXPECT_TRUE(window.document().isSaved());
    orv::CPolyValue value;
    gis::CLibGis& library = window.document().library();
    library.GetRowValue(library.GetRow(library.GetTable(0), 0), 0, value);
    EXPECT_EQ(value.GetStringValue(), orv::String("a"));
}

TEST_F(MainWindowTest, AFileThatCannotBeOpenedIsToldByName)
{
    ui::CModalDriver driver;
    const QString missing = folder.file(QStringLiteral("manca.gpkg"));
    driver.box(QStringLiteral("Il file \"%1\" non esiste. Controllare il percorso.").arg(missing),
        kit::Answer::Ok);
    EXPECT_FALSE(window.openFile(missing));
    EXPECT_EQ(window.document().path(), path);
}

TEST_F(MainWindowTest, AFileDroppedOnTheWindowOpens)
{
    const QString other = folder.file(QStringLiteral("altra.gpkg"));
    ASSERT_TRUE(QFile::copy(path, other));
    QMimeData data;
    data.setUrls({ QUrl::fromLocalFile(other) });
    QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, {});
    QApplication::sendEvent(&window, &enter);
    EXPECT_TRUE(enter.isAccepted());
    QDropEvent drop(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, {});
    QApplication::sendEvent(&window, &drop);
    EXPECT_NE(window.document().path(), other) << "the program that dropped it must not wait";
    EXPECT_TRUE(waitFor([&] { return window.document().path() == other; }));

    data.setUrls({ QUrl::fromLocalFile(folder.file(QStringLiteral("foto.png"))) });
    QDragEnterEvent picture(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, {});
    picture.ignore();
    QApplication::sendEvent(&window, &picture);
    EXPECT_FALSE(picture.isAccepted());
}

TEST_F(MainWindowTest, FilesOpenedLastAreOfferedNewestFirst)
{
    QStringList made;
    for (int i = 0; i < 12; ++i) {
        made << folder.file(QStringLiteral("%1 à, =%.gpkg").arg(i));
        ASSERT_TRUE(QFile::copy(path, made.last()));
        app::RecentFiles::add(made.last());
    }
    app::RecentFiles::add(made[5]);
    QStringList offered = app::RecentFiles::paths();
    ASSERT_EQ(offered.size(), 10);
    EXPECT_EQ(offered[0], made[5]);
    EXPECT_EQ(offered[1], made[11]);
    EXPECT_EQ(offered.count(made[5]), 1);
    QFile::remove(made[11]);
    EXPECT_FALSE(app::RecentFiles::paths().contains(made[11])) << "a file that is gone";
}

TEST_F(MainWindowTest, EntitiesPickedAgainLeaveTheSelection)
{
    app::MapCanvas& canvas = window.canvas();
    Q_EMIT canvas.entitiesPicked({ entity(0, 0), entity(0, 1) }, false);
    Q_EMIT canvas.entitiesPicked({ entity(0, 1), entity(0, 2) }, true);
    EXPECT_EQ(window.document().highlight().selected,
        (std::vector<gis::CEnt*> { entity(0, 0), entity(0, 2) }));
    action(QStringLiteral("Deseleziona tutto")).trigger();
    EXPECT_TRUE(window.document().highlight().selected.empty());
}

TEST_F(MainWindowTest, EntriesOfDialogsThatComeLaterAreThereAndDisabled)
{
    EXPECT_FALSE(action(QStringLiteral("Temi...")).isEnabled());
    EXPECT_FALSE(action(QStringLiteral("Esporta shapefile...")).isEnabled());
    EXPECT_TRUE(action(QStringLiteral("Importa shapefile...")).isEnabled());
}

TEST_F(MainWindowTest, TheFormOfAnEntityOpensByADoubleClickAndIsOneStep)
{
    ui::CModalDriver driver;
    driver.dialog("CDlgCompileTable", [](QDialog& form) {
        form.findChild<QLineEdit*>(QStringLiteral("field1"))->setText(QStringLiteral("nuovo"));
        ui::press(form, 1);
    });
    window.canvas().setTool(app::MapTool::Identify);
    window.canvas().setView({ 50, 50, 0.5, window.canvas().size() });
    QTest::mouseDClick(
        &window.canvas(), Qt::LeftButton, {}, window.canvas().view().toPixels(90, 90).toPoint());

    EXPECT_EQ(window.document().changes().UndoName(), orv::String("Attributi dell'entità"));
    window.document().undo();
    EXPECT_TRUE(window.document().isSaved());
}

/// Makes the second field, a text, another format and presses OK.
void changeFormat(QDialog& structure, const char* format)
{
    auto* grid = structure.findChild<QAbstractItemView*>(QStringLiteral("id1000"));
    grid->model()->setData(grid->model()->index(1, 2), QString::fromUtf8(format), Qt::EditRole);
    ui::press(structure, 1);
}

TEST_F(MainWindowTest, WhatAStructureCostsIsToldAndStandsInTheUndoList)
{
    ui::CModalDriver driver;
    driver.dialog("CDlgTableEdit", [](QDialog& structure) { changeFormat(structure, "Numerico"); });
    action(QStringLiteral("Struttura tabella...")).trigger();

    const QString told = QStringLiteral("Struttura di T: 3 valori non convertibili in tipo");
    EXPECT_EQ(kit::toQt(window.document().changes().UndoName()), told);
    EXPECT_EQ(message(), told);
    window.document().undo();
    EXPECT_TRUE(window.document().isSaved());
}

TEST_F(MainWindowTest, AStructureThatCostsNothingIsOnlyNamed)
{
    ui::CModalDriver driver;
    driver.dialog("CDlgTableEdit", [](QDialog& structure) { changeFormat(structure, "Lista"); });
    action(QStringLiteral("Struttura tabella...")).trigger();

    EXPECT_EQ(window.document().changes().UndoName(), orv::String("Struttura di T"));
    EXPECT_EQ(message(), QStringLiteral("Struttura di T"));
}

TEST_F(MainWindowTest, WhatAStructureCostsIsToldAfterTheTableListToo)
{
    ui::CModalDriver driver;
    driver.dialog("CDlgTableList", [](QDialog& list) {
        auto* names = list.findChild<QAbstractItemView*>(QStringLiteral("id2000"));
        names->setCurrentIndex(names->model()->index(0, 0));
        QTest::keyClick(names, Qt::Key_Return);
        list.reject();
    });
    driver.dialog("CDlgTableEdit", [](QDialog& structure) { changeFormat(structure, "Numerico"); });
    action(QStringLiteral("Tabelle...")).trigger();

    EXPECT_EQ(driver.stepsTaken(), 2);
    const QString told
        = QStringLiteral("Gestione tabelle: Struttura di T: 3 valori non convertibili in tipo");
    EXPECT_EQ(kit::toQt(window.document().changes().UndoName()), told);
    EXPECT_EQ(message(), told);
}

TEST_F(MainWindowTest, TheFormOfAnEntityIsInTheMenuWhereOneIsChosen)
{
    QAction& form = action(QStringLiteral("Attributi dell'entità..."));
    EXPECT_FALSE(form.isEnabled());
    gis::CLibGis& library = window.document().library();
    window.document().setSelected({ library.GetEnt(library.GetTheme(0), 0) });
    ASSERT_TRUE(form.isEnabled());
    ui::CModalDriver driver;
    driver.dialog("CDlgCompileTable", [](QDialog& dialog) { ui::press(dialog, 2); });
    form.trigger();
    EXPECT_EQ(driver.stepsTaken(), 1);
}

TEST_F(MainWindowTest, TwoStructuresOfOneVisitAreBothTold)
{
    gis::CLibGis& library = window.document().library();
    gis::CDBTable* other = library.CreateTable("Altra");
    {
        gis::CCtrlDlgTableEdit edit(&library, other);
        edit.AppendField("nota", gis::FieldFormat::Text);
        edit.AppendField("codice", gis::FieldFormat::Text);
        ASSERT_TRUE(edit.Commit());
    }
    orv::CPolyValue text("non un numero");
    other->addRows(1);
    library.SetRowValue(other->row(0), 1, text);
    ui::CModalDriver driver;
    const auto change = [](QDialog& structure) { changeFormat(structure, "Numerico"); };
    driver.dialog("CDlgTableList", [](QDialog& list) {
        auto* names = list.findChild<QAbstractItemView*>(QStringLiteral("id2000"));
        for (const int row : { 0, 1 }) {
            names->setCurrentIndex(names->model()->index(row, 0));
            QTest::keyClick(names, Qt::Key_Return);
        }
        list.reject();
    });
    driver.dialog("CDlgTableEdit", change);
    driver.dialog("CDlgTableEdit", change);
    action(QStringLiteral("Tabelle...")).trigger();

    EXPECT_EQ(message().toStdString(),
        "Gestione tabelle: Struttura di Altra: 1 valore non convertibile in codice, "
        "Struttura di T: 3 valori non convertibili in tipo");
}

TEST_F(MainWindowTest, TheTableListIsInTheMenu)
{
    ui::CModalDriver driver;
    driver.dialog("CDlgTableList", [](QDialog& list) { list.reject(); });
    action(QStringLiteral("Tabelle...")).trigger();
    EXPECT_FALSE(window.document().changes().CanUndo());
}

} // namespace
