// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tematica/Dialogs.h"

#include "host/gis/LibGis.h"

#include "tests/support/LibraryNotation.h"

#include <QApplication>
#include <QDialog>
#include <QTimer>
#include <QWidget>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <thread>

// Through the shared library, as a host calls it.

namespace {

/// The application of one test: others need that there is none.
class Application final {
private:
    int m_argumentCount = 1;
    char m_name[11] = "entry_test";
    char* m_arguments[2] = { m_name, nullptr };
    QApplication m_application { m_argumentCount, m_arguments };
};

/// A library with one row of one entity, and what the functions need of it.
struct Town {
    std::unique_ptr<gis::CLibGis> library = support::makeLibrary(
        "table Strade (nome text); rows Strade: ('Via Roma'); theme Vie: points 2d on Strade;"
        "ents Vie: 0 [0 0]");
    gis::CDBTable* table = library->GetTable(0);
    gis::CTheme* theme = library->GetTheme(0);
    orv::CResultRow* row = library->GetRow(table, 0);
};

void callAllWithNull()
{
    EXPECT_FALSE(FDlgTableListGIS(nullptr));
    EXPECT_FALSE(FDlgTableEditGIS(nullptr, nullptr));
    EXPECT_FALSE(FDlgCompileTableGIS(nullptr, nullptr, nullptr));
    EXPECT_TRUE(FDlgShowTableGIS(nullptr, nullptr));
    EXPECT_FALSE(FDlgThemeListGIS(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr));
    EXPECT_TRUE(FDlgQuery(0, nullptr, nullptr));
    EXPECT_FALSE(FExportEnt(nullptr));
    EXPECT_TRUE(FImportEnt(nullptr, nullptr));
    EXPECT_TRUE(FImportEnt(nullptr, nullptr, true));
}

TEST(EntryPointsTest, NullArgumentsAreHarmlessWithAnApplicationAndWithout)
{
    testing::internal::CaptureStderr();
    callAllWithNull();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");

    const Application application;
    testing::internal::CaptureStderr();
    callAllWithNull();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(EntryPointsTest, WithoutAnApplicationNothingIsShown)
{
    gis::CLibGis library;
    gis::CDBTable* table = library.CreateTable("Strade");
    ASSERT_EQ(QCoreApplication::instance(), nullptr);

    testing::internal::CaptureStderr();
    EXPECT_FALSE(FDlgTableListGIS(&library));
    EXPECT_FALSE(FDlgTableEditGIS(&library, table));
    EXPECT_FALSE(FDlgThemeListGIS(nullptr, nullptr, &library, nullptr, nullptr, nullptr));
    EXPECT_FALSE(FExportEnt(&library));
    EXPECT_TRUE(FImportEnt(&library, nullptr));
    EXPECT_TRUE(FDlgShowTableGIS(&library, table));
    EXPECT_TRUE(FDlgQuery(0, nullptr, &library));
    const Town town;
    EXPECT_FALSE(FDlgCompileTableGIS(town.library.get(), town.theme, town.row));
    std::string lines;
    for (const char* function : { "FDlgTableListGIS", "FDlgTableEditGIS", "FDlgThemeListGIS",
             "FExportEnt", "FImportEnt", "FDlgShowTableGIS", "FDlgQuery", "FDlgCompileTableGIS" })
        lines += std::string("tematica: ") + function
            + ": the process has no QApplication, no dialog is shown\n";
    EXPECT_EQ(testing::internal::GetCapturedStderr(), lines);
}

TEST(EntryPointsTest, ACallFromAnotherThreadShowsNothing)
{
    const Application application;
    gis::CLibGis library;
    gis::CDBTable* table = library.CreateTable("Strade");
    bool grid = false;
    bool structure = true;
    testing::internal::CaptureStderr();
    std::thread([&] {
        grid = FDlgShowTableGIS(&library, table);
        structure = FDlgTableEditGIS(&library, table);
    }).join();
    const std::string told = testing::internal::GetCapturedStderr();
    EXPECT_TRUE(grid);
    EXPECT_FALSE(structure);
    EXPECT_NE(told.find("tematica: FDlgShowTableGIS: "), std::string::npos) << told;
    EXPECT_NE(told.find("tematica: FDlgTableEditGIS: "), std::string::npos) << told;
}

/// Closes each dialog that comes up, and remembers its name.
QStringList namesOfDialogsDuring(const std::function<void()>& call)
{
    QStringList names;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] {
        if (QWidget* dialog = QApplication::activeModalWidget()) {
            names << dialog->objectName();
            dialog->close();
        }
    });
    timer.start(5);
    call();
    return names;
}

TEST(EntryPointsTest, TheQueryOpensAndAnswersTrueHoweverItEndsTheStructureFalseWhenCancelled)
{
    const Application application;
    gis::CLibGis library;
    gis::CDBTable* table = library.CreateTable("Strade");
    bool answer = false;

    auto names = namesOfDialogsDuring([&] { answer = FDlgQuery(0, nullptr, &library); });
    EXPECT_EQ(names, QStringList { QStringLiteral("CDlgQuery") });
    EXPECT_TRUE(answer);

    names = namesOfDialogsDuring([&] { answer = FDlgTableEditGIS(&library, table); });
    EXPECT_EQ(names, QStringList { QStringLiteral("CDlgTableEdit") });
    EXPECT_FALSE(answer);

    QTimer::singleShot(20, [] {
        if (auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget()))
            dialog->accept();
    });
    EXPECT_TRUE(FDlgTableEditGIS(&library, table));

    names = namesOfDialogsDuring([&] { FDlgTableListGIS(&library); });
    EXPECT_EQ(names, QStringList { QStringLiteral("CDlgTableList") });
    EXPECT_TRUE(QApplication::topLevelWidgets().isEmpty()) << "something was left open";
}

TEST(EntryPointsTest, TheAttributeGridOpensAndAnswersTrueHoweverItEnds)
{
    const Application application;
    gis::CLibGis library;
    gis::CDBTable* table = library.CreateTable("Strade");
    bool answer = false;

    const auto names = namesOfDialogsDuring([&] { answer = FDlgShowTableGIS(&library, table); });

    EXPECT_EQ(names, QStringList { QStringLiteral("CDlgShowTable") });
    EXPECT_TRUE(answer);
    EXPECT_TRUE(QApplication::topLevelWidgets().isEmpty()) << "something was left open";
}

TEST(EntryPointsTest, EachObjectThatIsMissingGivesTheCancelledAnswerAndNoDialog)
{
    const Application application;
    const Town town;
    gis::CLibGis* const library = town.library.get();
    struct Call {
        const char* name;
        bool expected;
        std::function<bool()> function;
    };
    const Call calls[] = {
        { "compile, no library", false,
            [&] { return FDlgCompileTableGIS(nullptr, town.theme, town.row); } },
        { "compile, no theme", false,
            [&] { return FDlgCompileTableGIS(library, nullptr, town.row); } },
        { "compile, no row", false,
            [&] { return FDlgCompileTableGIS(library, town.theme, nullptr); } },
        { "structure, no library", false, [&] { return FDlgTableEditGIS(nullptr, town.table); } },
        { "structure, no table", false, [&] { return FDlgTableEditGIS(library, nullptr); } },
        { "grid, no library", true, [&] { return FDlgShowTableGIS(nullptr, town.table); } },
        { "grid, no table", true, [&] { return FDlgShowTableGIS(library, nullptr); } },
        { "query, no library", true, [] { return FDlgQuery(7, nullptr, nullptr); } },
    };
    testing::internal::CaptureStderr();
    for (const Call& call : calls) {
        bool answer = !call.expected;
        const auto names = namesOfDialogsDuring([&] { answer = call.function(); });
        EXPECT_EQ(answer, call.expected) << call.name;
        EXPECT_TRUE(names.isEmpty()) << call.name;
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "") << "a null is no fault of the process";
    EXPECT_TRUE(QApplication::topLevelWidgets().isEmpty());
}

TEST(EntryPointsTest, TheFormOpensAndAnswersFalseWhenCancelledTrueOnOk)
{
    const Application application;
    const Town town;
    bool answer = true;
    const auto names = namesOfDialogsDuring(
        [&] { answer = FDlgCompileTableGIS(town.library.get(), town.theme, town.row); });
    EXPECT_EQ(names, QStringList { QStringLiteral("CDlgCompileTable") });
    EXPECT_FALSE(answer);

    QTimer::singleShot(20, [] {
        if (auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget()))
            dialog->accept();
    });
    EXPECT_TRUE(FDlgCompileTableGIS(town.library.get(), town.theme, town.row));
    EXPECT_TRUE(QApplication::topLevelWidgets().isEmpty()) << "something was left open";
}

} // namespace
