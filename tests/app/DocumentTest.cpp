// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/app/AppTesting.h"

#include "app/Words.h"
#include "embedded/model/Library.h"
#include "host/gis/TableEdit.h"

#include "tests/support/ui/CancelProgress.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QFile>
#include <QSignalSpy>

#include <chrono>
#include <stdexcept>
#include <thread>

namespace {

using app::Document;
using namespace apptest;

class DocumentTest : public testing::Test {
protected:
    CFolder folder;
    Document document;
    QString path = folder.file(QStringLiteral("t.gpkg"));

    QString shapefile(const char* theme) { return shapefileOf(folder, QLatin1String(theme)); }
    void writeCell(const char* text)
    {
        document.act(QStringLiteral("Scrittura"), [&] {
            gis::CLibGis& library = document.library();
            orv::CPolyValue value { orv::String(text) };
            library.SetRowValue(library.GetRow(library.GetTable(0), 0), 0, value);
        });
    }
    QString cell()
    {
        orv::CPolyValue value;
        gis::CLibGis& library = document.library();
        library.GetRowValue(library.GetRow(library.GetTable(0), 0), 0, value);
        return QString::fromUtf8(value.GetStringValue().Data());
    }
};

TEST_F(DocumentTest, ANewDocumentIsSavedAndHasNoName)
{
    EXPECT_TRUE(document.isSaved());
    EXPECT_EQ(document.title(), QStringLiteral("Senza nome"));
    EXPECT_TRUE(document.path().isEmpty());
}

TEST_F(DocumentTest, AnActIsOneStepWithItsNameAndIsUnsavedUntilTakenBack)
{
    openTown(document, path);
    ASSERT_TRUE(document.isSaved());
    writeCell("nuovo");

    EXPECT_FALSE(document.isSaved());
    EXPECT_EQ(document.changes().UndoName(), orv::String("Scrittura"));
    document.undo();
    EXPECT_EQ(cell(), QStringLiteral("a"));
    EXPECT_TRUE(document.isSaved());
    document.redo();
    EXPECT_EQ(cell(), QStringLiteral("nuovo"));
    EXPECT_FALSE(document.isSaved());
}

TEST_F(DocumentTest, WhatIsSavedIsThereAgain)
{
    openTown(document, path);
    writeCell("nuovo");
    ASSERT_TRUE(document.save().ok());
    EXPECT_TRUE(document.isSaved());
    const QString other = folder.file(QStringLiteral("altro.gpkg"));
    ASSERT_TRUE(document.saveAs(other).ok());
    EXPECT_EQ(document.path(), other);
    document.startNew();

    embedded::Report report;
    for (const QString& saved : { path, other }) {
        ASSERT_TRUE(document.open(saved, report).ok());
        EXPECT_EQ(cell(), QStringLiteral("nuovo"));
    }
}

TEST_F(DocumentTest, AShapefileOpensAsUnsavedWorkWithoutAFile)
{
    embedded::Report report;
    ASSERT_TRUE(document.open(shapefile("A"), report).ok());

    EXPECT_EQ(document.library().GetNumThemes(), 1);
    EXPECT_TRUE(document.path().isEmpty());
    EXPECT_FALSE(document.isSaved());
}

TEST_F(DocumentTest, AnImportIsOneStepAndAClashIsRefusedWhole)
{
    ASSERT_TRUE(document.importShapefile(shapefile("A")).ok());
    ASSERT_TRUE(document.importShapefile(shapefile("P")).ok());
    EXPECT_EQ(document.library().GetNumThemes(), 2);
    EXPECT_EQ(document.changes().UndoName(), orv::String("Importazione di P.shp"));

    const auto again = document.importShapefile(shapefile("P"));
    ASSERT_FALSE(again.ok());
    EXPECT_EQ(again.error().code, embedded::ErrorCode::NameClash);
    EXPECT_TRUE(app::errorText(again.error()).contains(QStringLiteral("\"P\"")));
    EXPECT_EQ(document.library().GetNumThemes(), 2);
    EXPECT_EQ(document.library().GetNumTables(), 2);
    EXPECT_EQ(document.changes().UndoName(), orv::String("Importazione di P.shp"));

    document.undo();
    document.undo();
    EXPECT_EQ(document.library().GetNumThemes(), 0);
    EXPECT_TRUE(document.isSaved());
}

TEST_F(DocumentTest, WhoComesSecondReadsOnlyAndSavesUnderAnotherName)
{
    openTown(document, path);
    Document second;
    embedded::Report report;
    ASSERT_TRUE(second.open(path, report).ok());

    EXPECT_FALSE(document.isReadOnly());
    EXPECT_TRUE(second.isReadOnly());
    EXPECT_FALSE(second.save().ok());
    EXPECT_TRUE(second.saveAs(folder.file(QStringLiteral("copia.gpkg"))).ok());
    EXPECT_FALSE(second.isReadOnly());
}

TEST_F(DocumentTest, WhatCannotBeOpenedLeavesThePresentWork)
{
    openTown(document, path);
    writeCell("nuovo");
    const QString text = folder.file(QStringLiteral("testo.gpkg"));
    QFile file(text);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("non sono una libreria");
    file.close();

    embedded::Report report;
    const auto opened = document.open(text, report);
    ASSERT_FALSE(opened.ok());
    EXPECT_TRUE(app::errorText(opened.error()).contains(QStringLiteral("testo.gpkg")));
    EXPECT_FALSE(document.open(folder.file(QStringLiteral("non-esiste.shp")), report).ok());
    EXPECT_EQ(cell(), QStringLiteral("nuovo"));
    EXPECT_EQ(document.path(), path);
}

TEST_F(DocumentTest, EveryErrorIsASentenceThatNamesTheThing)
{
    using embedded::ErrorCode;
    for (int code = 0; code <= static_cast<int>(ErrorCode::Internal); ++code) {
        const auto which = static_cast<ErrorCode>(code);
        const QString text = app::errorText({ which, "100%1 <b>.shp", "motivo %2" });
        EXPECT_GT(text.size(), 10) << code;
        EXPECT_TRUE(text.endsWith(QLatin1Char('.'))) << text.toStdString();
        if (which != ErrorCode::Cancelled && which != ErrorCode::Internal) {
            EXPECT_TRUE(text.contains(QStringLiteral("100%1 <b>.shp"))) << text.toStdString();
        }
    }
}

TEST_F(DocumentTest, MarksGoWhenTheirEntitiesMayBeGone)
{
    ASSERT_TRUE(document.importShapefile(shapefile("P")).ok());
    gis::CLibGis& library = document.library();
    const QSignalSpy spy(&document, &Document::highlightChanged);
    gis::CEnt* entity = library.GetEnt(library.GetTheme(0), 0);
    document.setSelected({ entity });
    document.ShowFound(0, { entity });
    document.ShowRow(entity);
    EXPECT_EQ(spy.count(), 2) << "the grid's row has a signal of its own";
    std::vector<gis::CEnt*> selected;
    document.GetSelected(selected);
    EXPECT_EQ(selected, std::vector<gis::CEnt*> { entity });

    document.undo();

    EXPECT_TRUE(document.highlight().selected.empty());
    EXPECT_TRUE(document.highlight().found.empty());
    EXPECT_EQ(document.highlight().current, nullptr);
}

TEST_F(DocumentTest, AnActThatEndsByAnExceptionIsAStepThatIsShownAndCanBeTakenBack)
{
    openTown(document, path);
    const QSignalSpy changed(&document, &Document::changed);
    EXPECT_THROW(document.act(QStringLiteral("Scrittura"),
                     [&] {
                         document.library().SetTableName(document.library().GetTable(0), "Mezza");
                         throw std::runtime_error("in the middle");
                     }),
        std::runtime_error);
    EXPECT_FALSE(document.changes().IsStepOpen());
    ASSERT_TRUE(document.changes().CanUndo());
    EXPECT_EQ(document.changes().UndoName(), orv::String("Scrittura"));
    EXPECT_TRUE(waitFor([&] { return changed.count() == 1; }));

    writeCell("nuovo"); // a step of its own
    document.undo();
    EXPECT_EQ(tableName(document), QStringLiteral("Mezza"));
    document.undo();
    EXPECT_EQ(tableName(document), QStringLiteral("T"));
    EXPECT_TRUE(document.isSaved());
}

/// The document's progress, over work that takes its time at each step.
class CSlowProgress final : public embedded::IProgress {
public:
    explicit CSlowProgress(gis::CLibGis& library)
        : m_library(library)
        , m_shown(embedded::Library::of(&library)->progress())
    {
        embedded::Library::of(&m_library)->setProgress(this);
    }
    CSlowProgress(const CSlowProgress&) = delete;
    CSlowProgress& operator=(const CSlowProgress&) = delete;
    ~CSlowProgress() { embedded::Library::of(&m_library)->setProgress(m_shown); }
    bool advance(double fraction) override
    {
        std::this_thread::sleep_for(std::chrono::milliseconds(30));
        return m_shown->advance(fraction);
    }
    void finish() override { m_shown->finish(); }

private:
    gis::CLibGis& m_library;
    embedded::IProgress* m_shown;
};

/// Long work of the library shows itself and can be stopped; then nothing has happened.
TEST_F(DocumentTest, ALongChangeOfStructureCanBeStopped)
{
    constexpr int Rows = 200'000;
    gis::CLibGis& library = document.library();
    gis::CDBTable* table = library.CreateTable("T");
    table->addField("testo", gis::FieldFormat::Text);
    table->addRows(Rows);
    embedded::Column texts(gis::ColumnKind::Dictionary);
    for (int row = 0; row < Rows; ++row)
        texts.appendText(std::to_string(row));
    table->setColumn(0, std::move(texts));
    gis::CCtrlDlgTableEdit structure(&library, table);
    structure.SetFieldFormat(structure.GetCurField(0), gis::FieldFormat::Decimal);
    bool isDone = true;
    {
        const CSlowProgress slow(library);
        const ui::CancelWhenShown cancel;

        document.act(QStringLiteral("Struttura"), [&] { isDone = structure.Commit(); });

        EXPECT_EQ(cancel.seen, 1);
        EXPECT_EQ(cancel.caption, QStringLiteral("Annulla"));
    }
    EXPECT_FALSE(isDone);
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr) << "nothing is left on the screen";
    EXPECT_EQ(table->field(0)->format, gis::FieldFormat::Text);
    EXPECT_EQ(table->column(0).dictionary().size(), static_cast<std::uint32_t>(Rows));

    document.act(QStringLiteral("Struttura"), [&] { isDone = structure.Commit(); });

    EXPECT_TRUE(isDone) << "stopped once, not for ever";
    EXPECT_EQ(table->field(0)->format, gis::FieldFormat::Decimal);
    EXPECT_EQ(table->column(0).decimalAt(Rows - 1), Rows - 1);
}

} // namespace
