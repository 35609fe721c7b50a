// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT

// Long work of the library under the window: progress, "Annulla", and what is told when it fails.

#include "tests/app/AppTesting.h"

#include "app/LibraryProgress.h"
#include "embedded/model/Library.h"
#include "embedded/shapefile/Shapefile.h"
#include "host/gis/TableEdit.h"
#include "kit/MessageBox.h"
#include "tests/support/LibraryNotation.h"
#include "tests/support/ui/CancelProgress.h"
#include "tests/support/ui/ModalDriver.h"

#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QFile>

namespace {

using namespace apptest;
using kit::Answer;

class LongWorkWindowTest : public CTownWindow {
protected:
    /// A shapefile whose import takes a good second.
    QString longShapefile()
    {
        constexpr int Count = 400'000;
        constexpr int Fields = 6;
        const auto library
            = support::makeLibrary("table Lungo (c text); theme Lungo: points 2d on Lungo");
        gis::CDBTable* table = library->GetTable(0);
        gis::CTheme* theme = library->GetTheme(0);
        for (int i = 1; i < Fields; ++i)
            table->addField(("c" + std::to_string(i)).c_str(), gis::FieldFormat::Text);
        table->addRows(Count);
        for (int field = 0; field < Fields; ++field) {
            embedded::Column texts(gis::ColumnKind::Dictionary);
            for (int row = 0; row < Count; ++row)
                texts.appendText(std::to_string(row * 7 + field));
            table->setColumn(field, std::move(texts));
        }
        for (int i = 0; i < Count; ++i) {
            theme->entities().addEntity(table->row(i));
            double* vertex = theme->entities().addPart(1);
            vertex[0] = i % 1000;
            vertex[1] = i / 1000;
        }
        embedded::Report report;
        int flags = 0;
        EXPECT_TRUE(embedded::exportShapefile(
            *theme, folder.file(QString()).toStdString(), {}, flags, report)
                        .ok());
        return folder.file(QStringLiteral("Lungo.shp"));
    }
};

const QString Stopped = QStringLiteral("Operazione annullata: nulla è stato modificato.");

TEST_F(LongWorkWindowTest, ALongImportShowsItselfAndCanBeStopped)
{
    const QString shp = longShapefile();
    for (const bool opens : { true, false }) {
        ui::CModalDriver driver;
        driver.box(Stopped, Answer::Ok);
        const ui::CancelWhenShown cancel;
        EXPECT_FALSE(opens ? window.openFile(shp) : window.importFile(shp));
        EXPECT_GE(cancel.seen, 1);
        EXPECT_EQ(cancel.label, QStringLiteral("Operazione in corso…"));
        EXPECT_EQ(cancel.caption, QStringLiteral("Annulla"));
        EXPECT_FALSE(cancel.hadWaitCursor) << "the button can be clicked";

        EXPECT_EQ(ui::shownProgress(), nullptr);
        EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
        EXPECT_EQ(window.document().path(), path) << "the library before is there still";
        EXPECT_EQ(window.document().library().GetNumThemes(), 2);
        EXPECT_TRUE(window.document().isSaved());
        EXPECT_FALSE(window.document().changes().CanUndo());
    }
    ASSERT_TRUE(window.importFile(shp)) << "and nothing stands in the way of the next try";
    EXPECT_EQ(ui::shownProgress(), nullptr);
    EXPECT_EQ(window.document().library().GetNumThemes(), 3);
}

TEST_F(LongWorkWindowTest, WhyWorkCouldNotBeDoneIsToldInABox)
{
    app::LibraryProgress progress;
    ui::CModalDriver driver;
    driver.box(QStringLiteral("\"tipo\" non può essere letto."), Answer::Ok, [](QMessageBox& box) {
        EXPECT_EQ(box.icon(), QMessageBox::Warning);
        EXPECT_EQ(ui::shownProgress(), nullptr);
    });
    progress.advance(0.5);
    progress.failed({ embedded::ErrorCode::ReadFailed, "tipo", {} });
    EXPECT_EQ(driver.stepsTaken(), 1);
}

TEST_F(LongWorkWindowTest, AStructureWhoseCellsCannotBeReadIsToldAndChangesNothing)
{
    const QString damaged = folder.file(QStringLiteral("guasta.gpkg"));
    std::string rows;
    for (int i = 0; i < 2000; ++i)
        rows += (i > 0 ? ", ('" : "('") + std::to_string(i) + "', 'x')";
    openTown(window.document(), damaged, "table T (nome text, tipo text); rows T: " + rows);
    // The file's first page is known already; the cells have not been read yet.
    QFile file(damaged);
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    constexpr qint64 FirstPage = 4096;
    ASSERT_TRUE(file.seek(FirstPage));
    ASSERT_GT(file.write(QByteArray(static_cast<int>(file.size() - FirstPage), '\x5A')), 0);
    file.close();

    ui::CModalDriver driver;
    driver.dialog("CDlgTableEdit", [](QDialog& structure) {
        auto* grid = structure.findChild<QAbstractItemView*>(QStringLiteral("id1000"));
        grid->model()->setData(
            grid->model()->index(1, 2), QStringLiteral("Numerico"), Qt::EditRole);
        ui::press(structure, 1);
        structure.reject();
    });
    driver.box(
        QStringLiteral("Il file \"%1\" è danneggiato: usarne una copia di riserva.").arg(damaged),
        Answer::Ok);
    action(QStringLiteral("Struttura tabella...")).trigger();

    EXPECT_EQ(driver.stepsTaken(), 2);
    gis::CLibGis& library = window.document().library();
    EXPECT_EQ(
        library.GetFieldFormat(library.GetField(library.GetTable(0), 1)), gis::FieldFormat::Text);
    EXPECT_FALSE(window.document().changes().CanUndo());
    EXPECT_TRUE(window.document().isSaved());
}

} // namespace
