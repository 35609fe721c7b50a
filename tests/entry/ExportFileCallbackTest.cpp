// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "entry/ExportFileCallback.h"

#include "kit/texts/QtText.h"
#include "kit/texts/TextIds.h"
#include "kit/texts/TextLoader.h"
#include "tests/support/ui/ModalDriver.h"

#include <gtest/gtest.h>

namespace {

const orv::String Path("/dati/100%s <b>/Strade");

QString question()
{
    return kit::text(texts::ShapefileExists, Path)
        .replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
}

TEST(ExportFileCallbackTest, OnlyYesOverwrites)
{
    ASSERT_TRUE(question().contains(kit::toQt(Path)));
    CExportFileCallback callback;
    {
        ui::CModalDriver driver;
        driver.box(question(), kit::Answer::Yes, [](QMessageBox& box) {
            EXPECT_EQ(box.windowTitle(), kit::text(texts::Attention));
            EXPECT_EQ(box.textFormat(), Qt::PlainText);
        });
        EXPECT_TRUE(callback.AskOverwrite(Path));
    }
    ui::CModalDriver driver;
    driver.box(question(), kit::Answer::No);
    EXPECT_FALSE(callback.AskOverwrite(Path));
}

} // namespace
