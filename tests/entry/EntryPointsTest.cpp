// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tematica/Dialogs.h"

#include "host/gis/LibGis.h"

#include <QApplication>

#include <gtest/gtest.h>

#include <memory>

// Through the shared library, as a host calls it.

namespace {

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

const char* const TwoLines
    = "tematica: FDlgShowTableGIS: an object that it needs is null, no dialog is shown\n"
      "tematica: FDlgQuery: an object that it needs is null, no dialog is shown\n";

TEST(EntryPointsTest, NullArgumentsAreHarmlessWithAnApplicationAndWithout)
{
    testing::internal::CaptureStderr();
    callAllWithNull();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), TwoLines);

    int argc = 1;
    char name[] = "entry_test";
    char* argv[] = { name, nullptr };
    const QApplication app(argc, argv);
    testing::internal::CaptureStderr();
    callAllWithNull();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), TwoLines);
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
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");

    testing::internal::CaptureStderr();
    EXPECT_TRUE(FDlgShowTableGIS(&library, table));
    EXPECT_TRUE(FDlgQuery(0, nullptr, &library));
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
        "tematica: FDlgShowTableGIS: the process has no QApplication, no dialog is shown\n"
        "tematica: FDlgQuery: the process has no QApplication, no dialog is shown\n");
}

} // namespace
