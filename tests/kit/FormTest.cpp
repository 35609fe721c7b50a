// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "kit/Form.h"

#include "tests/support/ui/DialogChecks.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QVBoxLayout>

namespace {

struct SmallDialog {
    QDialog dialog;
    QLabel* label = new QLabel(QStringLiteral("&Nome:"));
    QLineEdit* edit = new QLineEdit;
    QLabel* placeholder = new QLabel;
    QPushButton* ok = new QPushButton(QStringLiteral("OK"));
    QPushButton* cancel = new QPushButton(QStringLiteral("Annulla"));

    SmallDialog()
    {
        auto* layout = new QVBoxLayout(&dialog);
        for (QWidget* widget :
            std::initializer_list<QWidget*> { label, edit, placeholder, cancel, ok })
            layout->addWidget(widget);
        label->setBuddy(edit);
        edit->setObjectName(QStringLiteral("id2001"));
        ok->setObjectName(QStringLiteral("id1"));
        cancel->setObjectName(QStringLiteral("id2"));
        QObject::connect(ok, &QPushButton::clicked, &dialog, &QDialog::accept);
        QObject::connect(cancel, &QPushButton::clicked, &dialog, &QDialog::reject);
    }
};

} // namespace

TEST(FormTest, ReturnInAnEditPressesOkWhateverButtonComesFirst)
{
    SmallDialog small;
    kit::prepareDialog(small.dialog, "CDlgSmall", { 164, 42 });
    small.dialog.show();

    QTest::keyClick(small.edit, Qt::Key_Return);

    EXPECT_EQ(small.dialog.result(), QDialog::Accepted);
    EXPECT_FALSE(small.dialog.isVisible());
}

TEST(FormTest, ReturnOnAFocusedButtonPressesThatButton)
{
    SmallDialog small;
    kit::prepareDialog(small.dialog, "CDlgSmall", { 164, 42 });
    small.dialog.show();
    int cancelled = 0;
    QObject::connect(small.cancel, &QPushButton::clicked, [&] { ++cancelled; });

    small.cancel->setFocus();
    QTest::keyClick(small.cancel, Qt::Key_Return);

    EXPECT_EQ(cancelled, 1);
    EXPECT_EQ(small.dialog.result(), QDialog::Rejected);
}

TEST(FormTest, AnInputIsNamedAfterTheLabelBesideIt)
{
    SmallDialog small;
    kit::prepareDialog(small.dialog, "CDlgSmall", { 164, 42 });

    EXPECT_EQ(small.edit->accessibleName(), QStringLiteral("Nome"));
    EXPECT_EQ(small.dialog.objectName(), QStringLiteral("CDlgSmall"));
    EXPECT_EQ(kit::control<QLineEdit>(small.dialog, 2001), small.edit);
    EXPECT_EQ(kit::control<QLabel>(small.dialog, 2001), nullptr);
    EXPECT_TRUE(ui::wrongDefaults(small.dialog).isEmpty());
}

TEST(FormTest, TheSizeFollowsTheFont)
{
    QWidget widget;
    QFont font = widget.font();
    widget.setFont(font);
    const QSize once = kit::pixelsOf(widget, { 100, 100 });
    font.setPointSizeF(font.pointSizeF() * 2);
    widget.setFont(font);
    const QSize twice = kit::pixelsOf(widget, { 100, 100 });

    EXPECT_NEAR(twice.width(), 2 * once.width(), once.width() / 5);
    EXPECT_NEAR(twice.height(), 2 * once.height(), once.height() / 5);
    EXPECT_GT(once.width(), 100);
}

TEST(FormTest, AControlMadeAtRunTimeTakesThePlaceOfItsPlaceholder)
{
    SmallDialog small;
    auto* control = new QLabel(QStringLiteral("x"));
    const int place = small.dialog.layout()->indexOf(small.placeholder);

    kit::placeOver(small.placeholder, control);

    EXPECT_EQ(small.dialog.layout()->indexOf(control), place);
    EXPECT_TRUE(small.placeholder->isHidden());
    EXPECT_EQ(control->parentWidget(), &small.dialog);
}
