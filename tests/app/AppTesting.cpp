// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/app/AppTesting.h"

#include "app/Recovery.h"
#include "embedded/shapefile/Shapefile.h"
#include "embedded/store/GeoPackage.h"
#include "kit/texts/QtText.h"
#include "tests/support/LibraryNotation.h"
#include "tests/support/ui/ModalDriver.h"

#include <QAction>
#include <QFile>
#include <QFileInfo>
#include <QLabel>
#include <QTest>

namespace apptest {

CFolder::CFolder()
{
    qputenv("TEMATICA_INI", file(QStringLiteral("settings.ini")).toUtf8());
    qputenv("TEMATICA_RECOVERY", file(QStringLiteral("recovery")).toUtf8());
}

void openTown(app::Document& document, const QString& path, std::string_view notation)
{
    const auto library = support::makeLibrary(notation);
    ASSERT_TRUE(embedded::saveLibraryCopy(*library, path.toStdString()).ok());
    embedded::Report report;
    ASSERT_TRUE(document.open(path, report).ok());
}

QString shapefileOf(const CFolder& folder, const QString& theme, std::string_view notation)
{
    const auto library = support::makeLibrary(notation);
    embedded::Report report;
    int flags = 0;
    EXPECT_TRUE(embedded::exportShapefile(*library->FindTheme(theme.toUtf8().constData()),
        folder.file(QString()).toStdString(), {}, flags, report)
                    .ok());
    return folder.file(theme + QStringLiteral(".shp"));
}

void renameTable(app::Document& document, const char* name)
{
    document.act(QStringLiteral("Rinomina"),
        [&] { document.library().SetTableName(document.library().GetTable(0), name); });
}

QString tableName(const app::Document& document)
{
    gis::CLibGis& library = document.library();
    return kit::toQt(library.GetTableName(library.GetTable(0)));
}

QString leaveCopy(
    const CFolder& folder, const QString& original, const QString& name, const char* renamed)
{
    app::Document document;
    app::Recovery recovery(document);
    openTown(document, original);
    renameTable(document, renamed);
    EXPECT_TRUE(waitFor([&] { return !recovery.isWriting(); }));
    const QString left = folder.file(QStringLiteral("recovery/") + name);
    EXPECT_TRUE(QFile::rename(recovery.path(), left));
    EXPECT_TRUE(
        QFile::rename(recovery.path() + QStringLiteral(".ini"), left + QStringLiteral(".ini")));
    return left;
}

bool waitFor(const std::function<bool()>& condition)
{
    return ui::waitUntil(condition);
}

void giveUp(app::MainWindow& window)
{
    EXPECT_TRUE(waitFor([&] { return !window.recovery().isWriting(); }));
    window.recovery().forget();
}

CTownWindow::CTownWindow(std::string_view notation)
{
    window.resize(900, 700);
    window.show();
    openTown(window.document(), path, notation);
}

CTownWindow::~CTownWindow()
{
    giveUp(window);
}

gis::CEnt* CTownWindow::entity(int theme, int index)
{
    gis::CLibGis& library = window.document().library();
    return library.GetEnt(library.GetTheme(theme), index);
}

QAction& CTownWindow::action(const QString& text)
{
    for (QAction* found : window.findChildren<QAction*>()) {
        QString name = found->text();
        name.remove(QLatin1Char('&'));
        if (name == text)
            return *found;
    }
    qFatal("no menu entry %s", qPrintable(text));
}

void CTownWindow::writeCell()
{
    window.document().act(QStringLiteral("Scrittura"), [&] {
        gis::CLibGis& library = window.document().library();
        orv::CPolyValue value { orv::String("scritto") };
        library.SetRowValue(library.GetRow(library.GetTable(0), 0), 0, value);
    });
}

QString CTownWindow::message() const
{
    return window.findChild<QLabel*>(QStringLiteral("message"))->text();
}

} // namespace apptest
