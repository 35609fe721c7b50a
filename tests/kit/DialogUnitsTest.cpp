// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "kit/DialogUnits.h"

#include "kit/Form.h"

#include <gtest/gtest.h>

#include <QFontMetricsF>
#include <QLabel>
#include <QVBoxLayout>

#include <cmath>

namespace {

/// Template units times the font's average letter by 4, and its height by 8, in whole pixels.
QSize expected(const QFont& font, int width, int height)
{
    const QString letters = QStringLiteral("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz");
    const QFontMetricsF metrics(font);
    const double average = metrics.horizontalAdvance(letters) / 52;
    return { int(std::lround(width * average / 4)),
        int(std::lround(height * metrics.height() / 8)) };
}

QList<QFont> fonts()
{
    QFont bold(QStringLiteral("DejaVu Sans"), 11);
    bold.setBold(true);
    return { QFont(QStringLiteral("DejaVu Sans"), 9), QFont(QStringLiteral("DejaVu Sans"), 18),
        bold, QFont(QStringLiteral("DejaVu Sans Mono"), 10) };
}

} // namespace

TEST(DialogUnitsTest, FourUnitsAreAnAverageLetterAndEightAreALine)
{
    for (const QFont& font : fonts()) {
        QWidget widget;
        widget.setFont(font);
        const QFontMetricsF metrics(widget.font());
        const QString alphabet
            = QStringLiteral("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz");

        const QSize size = kit::pixelsOf(widget, { 52 * 4, 8 });

        EXPECT_EQ(size.width(), std::lround(metrics.horizontalAdvance(alphabet)));
        EXPECT_EQ(size.height(), std::lround(metrics.height()));
    }
}

TEST(DialogUnitsTest, SizesOfTemplatesAreExactForEachFont)
{
    const QSize templates[] = { { 338, 251 }, { 164, 42 }, { 7, 7 }, { 50, 14 }, { 0, 0 } };
    for (const QFont& font : fonts())
        for (const QSize& units : templates) {
            QWidget widget;
            widget.setFont(font);
            EXPECT_EQ(kit::pixelsOf(widget, { units.width(), units.height() }),
                expected(widget.font(), units.width(), units.height()));
        }
}

TEST(DialogUnitsTest, ADialogOpensWithTheSizeOfItsTemplateButNeverTooSmallForWhatItHolds)
{
    for (const QFont& font : fonts()) {
        QDialog dialog;
        dialog.setFont(font);
        auto* layout = new QVBoxLayout(&dialog);
        auto* label = new QLabel(QStringLiteral("Nome"));
        layout->addWidget(label);

        kit::prepareDialog(dialog, "CDlgSmall", { 200, 100 });
        EXPECT_EQ(dialog.size(), expected(dialog.font(), 200, 100));

        label->setFixedSize(900, 20);
        kit::prepareDialog(dialog, "CDlgSmall", { 200, 100 });
        EXPECT_EQ(dialog.width(), dialog.minimumSizeHint().width());
        EXPECT_EQ(dialog.height(), expected(dialog.font(), 200, 100).height());
    }
}
