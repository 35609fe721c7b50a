// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/tables/fields/PageTesting.h"

using gis::FieldFormat;
using orv::CPolyValue;

namespace {

class FieldChoicesTest : public fieldstest::FieldPages {
protected:
    /// Types a default over the one that is shown, as a user does.
    void typeDefault(const QString& text)
    {
        QLineEdit& edit = *at<QComboBox>(2015).lineEdit();
        edit.setFocus();
        edit.selectAll();
        ui::typeInto(edit, text);
        ASSERT_EQ(at<QComboBox>(2015).currentText(), text);
    }
    void rename(int row, const QString& text)
    {
        at<QListWidget>(2016).setCurrentRow(row);
        ui::type(*page, 2017, text);
        ui::press(*page, 2020);
    }
};

TEST_F(FieldChoicesTest, YesNoAndTheDatesModeAreChosenNotTyped)
{
    open("b boolean", FieldFormat::Boolean);
    EXPECT_FALSE(at<QComboBox>(2005).isEditable());
    ui::typeInto(at<QComboBox>(2005), QStringLiteral("X"));
    EXPECT_EQ(at<QComboBox>(2005).currentText(), QStringLiteral("Nessuno"));

    open("d date", FieldFormat::Date);
    EXPECT_FALSE(at<QComboBox>(2006).isEditable());
    ui::typeInto(at<QComboBox>(2006), QStringLiteral("X"));
    EXPECT_EQ(at<QComboBox>(2006).currentText(), QStringLiteral("Nessuna"));
}

TEST_F(FieldChoicesTest, ADefaultOfAListMayBeTypedAndReturnAddsNoEntry)
{
    open("l list ('a', 'b')", FieldFormat::List);
    auto& combo = at<QComboBox>(2015);
    ASSERT_TRUE(combo.isEditable());
    EXPECT_EQ(combo.insertPolicy(), QComboBox::NoInsert);
    const QStringList before = items(combo);
    typeDefault(QStringLiteral("zz"));
    QTest::keyClick(combo.lineEdit(), Qt::Key_Return);
    EXPECT_EQ(items(combo), before);
    EXPECT_EQ(listed(), (QStringList { QStringLiteral("a"), QStringLiteral("b") }));
    EXPECT_EQ(combo.currentText(), QStringLiteral("zz"));
    save();
    EXPECT_EQ(constraint(0), CPolyValue("zz"));
    EXPECT_EQ(constraint(3).GetNoArrayElements(), 2u);
}

TEST_F(FieldChoicesTest, ATypedDefaultSurvivesTheRenamingOfAnEntry)
{
    // Of another one, and of the one that was chosen before: that entry is still the current one.
    for (const int row : { 1, 0 }) {
        SCOPED_TRACE(row);
        open("l list ('a', 'b')", FieldFormat::List);
        at<QComboBox>(2015).setCurrentIndex(1);
        typeDefault(QStringLiteral("zz"));
        rename(row, QStringLiteral("c"));
        EXPECT_EQ(listed()[row], QStringLiteral("c"));
        EXPECT_EQ(items(at<QComboBox>(2015))[row + 1], QStringLiteral("c"));
        EXPECT_EQ(at<QComboBox>(2015).currentText(), QStringLiteral("zz"));
        save();
        EXPECT_EQ(constraint(0), CPolyValue("zz"));
        EXPECT_EQ(constraint(3).GetStringValue(static_cast<unsigned>(row)), orv::String("c"));
    }
}

TEST_F(FieldChoicesTest, ATypedDefaultSurvivesTheAddingOfAnEntry)
{
    open("l list ('a')", FieldFormat::List);
    at<QComboBox>(2015).setCurrentIndex(1);
    typeDefault(QStringLiteral("zz"));
    ui::type(*page, 2017, QStringLiteral("b"));
    ui::press(*page, 2018);
    EXPECT_EQ(at<QComboBox>(2015).currentText(), QStringLiteral("zz"));
    save();
    EXPECT_EQ(constraint(0), CPolyValue("zz"));
    EXPECT_EQ(constraint(3).GetNoArrayElements(), 2u);
}

TEST_F(FieldChoicesTest, AChosenDefaultStaysWhenAnotherEntryIsRenamed)
{
    open("l list ('a', 'b')", FieldFormat::List);
    at<QComboBox>(2015).setCurrentIndex(2);
    rename(0, QStringLiteral("c"));
    EXPECT_EQ(at<QComboBox>(2015).currentText(), QStringLiteral("b"));
    rename(1, QStringLiteral("d"));
    EXPECT_EQ(at<QComboBox>(2015).currentText(), QStringLiteral("d")) << "it is the chosen one";
    save();
    EXPECT_EQ(constraint(0), CPolyValue("d"));
}

} // namespace
