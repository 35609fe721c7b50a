// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tematica/Dialogs.h"

#include "host/gis/LibGis.h"

#include <QApplication>
#include <QDialog>
#include <QTimer>
#include <QWidget>

#include <gtest/gtest.h>

#include <functional>
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
    std::string lines;
    for (const char* function : { "FDlgTableListGIS", "FDlgTableEditGIS", "FDlgThemeListGIS",
             "FExportEnt", "FImportEnt", "FDlgShowTableGIS", "FDlgQuery" })
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

} // namespace
