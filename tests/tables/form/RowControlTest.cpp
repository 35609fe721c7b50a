// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/tables/form/RowTesting.h"

#include "kit/Colours.h"
#include "kit/texts/QtText.h"

#include <QWheelEvent>

using formtest::Refused;
using orv::CPolyValue;

namespace {

constexpr const char* Town = "table T (nome text required, attiva boolean, corsie integer min 1 "
                             "max 8, larghezza decimal 2 "
                             "min 0, tipo list ('A', 'B'), rilievo date, area decimal 1 from area);"
                             "rows T: ('Via Roma', yes, 2, 3.14159, 'B', 01/02/2015, 12.34)";

class RowControlTest : public formtest::RowControl {
protected:
    void open(const char* notation = Town) { RowControl::open(notation); }
};

TEST_F(RowControlTest, EachFieldHasAnEditorForItsFormat)
{
    open();
    EXPECT_EQ(control->objectName(), QStringLiteral("id1000"));
    EXPECT_EQ(edit(0).text(), QStringLiteral("Via Roma"));
    EXPECT_EQ(combo(1).currentText(), QStringLiteral("Sì"));
    EXPECT_EQ(combo(1).count(), 3);
    EXPECT_EQ(edit(2).text(), QStringLiteral("2"));
    EXPECT_EQ(edit(3).text(), QStringLiteral("3.14"));
    EXPECT_EQ(combo(4).currentText(), QStringLiteral("B"));
    EXPECT_EQ(combo(4).itemText(0), QString());
    EXPECT_EQ(edit(5).text(), QStringLiteral("01/02/2015"));
    EXPECT_EQ(edit(6).text(), QStringLiteral("12.3"));
    EXPECT_TRUE(edit(6).isReadOnly());
    EXPECT_EQ(edit(6).palette().color(QPalette::Base), QColor(kit::PredefinedBackground));
    EXPECT_EQ(control->findChildren<QLabel*>().first()->text(), QStringLiteral("nome *"));
}

TEST_F(RowControlTest, NothingChangedWritesNothing)
{
    open();
    EXPECT_TRUE(GisTableCtrl_Commit(control, true));
    EXPECT_FALSE(changes.CanUndo());
    EXPECT_EQ(value(3), CPolyValue(3.14159)) << "digits that are not shown stay";
}

TEST_F(RowControlTest, WhatIsChangedIsOneStepDecimalsIncluded)
{
    open();
    edit(0).setText(QStringLiteral("<b>%s</b> & città 😀"));
    combo(1).setCurrentIndex(2);
    edit(2).setText(QStringLiteral("8"));
    edit(3).setText(QStringLiteral("4,5"));
    combo(4).setCurrentIndex(0);
    edit(5).setText(QStringLiteral("31/12/1969"));
    EXPECT_TRUE(GisTableCtrl_Commit(control, true));

    EXPECT_EQ(value(0), CPolyValue("<b>%s</b> & città 😀"));
    EXPECT_EQ(value(1), CPolyValue(false));
    EXPECT_EQ(value(2), CPolyValue(8));
    EXPECT_EQ(value(3), CPolyValue(4.5));
    EXPECT_TRUE(value(4).IsEmpty());
    EXPECT_EQ(value(5).GetStringValue(), orv::String("31/12/1969"));
    EXPECT_TRUE(library->GetModifiedFlag());
    ASSERT_TRUE(changes.Undo());
    EXPECT_FALSE(changes.CanUndo());
    EXPECT_EQ(value(0), CPolyValue("Via Roma"));
    EXPECT_EQ(value(3), CPolyValue(3.14159));
}

TEST_F(RowControlTest, WrongEntriesAreToldKeptAndFocused)
{
    open();
    const std::pair<int, const char*> entries[]
        = { { 2, "abc" }, { 2, "9" }, { 2, "0" }, { 2, "2.5" }, { 2, "99999999999" }, { 2, "%s" },
              { 3, "-0.01" }, { 3, "1e999" }, { 3, "tre" }, { 5, "31/02/2020" }, { 5, "oggi" } };
    for (const auto& [field, text] : entries) {
        SCOPED_TRACE(text);
        const QString before = edit(field).text();
        edit(field).setText(QString::fromUtf8(text));
        expectRefused(Refused, field);
        EXPECT_EQ(edit(field).text(), QString::fromUtf8(text));
        edit(field).setText(before);
    }
}

TEST_F(RowControlTest, ARequiredValueIsAskedForByName)
{
    open();
    edit(0).clear();
    expectRefused(QStringLiteral("Il campo \"nome\" è obbligatorio!"), 0);
    EXPECT_FALSE(GisTableCtrl_Commit(control, false)) << "the same without a box";
}

TEST_F(RowControlTest, ClearedFieldsHaveNoValueWhateverTheirBounds)
{
    open();
    for (const int field : { 2, 3, 5 })
        edit(field).clear();
    EXPECT_TRUE(GisTableCtrl_Commit(control, true));
    for (const int field : { 2, 3, 5 })
        EXPECT_TRUE(value(field).IsEmpty());
}

TEST_F(RowControlTest, ATextThatTheListHasNoMoreStaysUntilAnotherIsChosen)
{
    open("table T (tipo list ('A')); rows T: ('Z')");
    EXPECT_EQ(combo(0).currentText(), QStringLiteral("Z"));
    EXPECT_TRUE(GisTableCtrl_Commit(control, true));
    EXPECT_EQ(value(0), CPolyValue("Z"));
    combo(0).setCurrentIndex(combo(0).findText(QStringLiteral("A")));
    EXPECT_TRUE(GisTableCtrl_Commit(control, true));
    EXPECT_EQ(value(0), CPolyValue("A"));
}

TEST_F(RowControlTest, ALongTableScrollsAndTabFollowsItsFields)
{
    std::string fields;
    for (int i = 0; i < 60; ++i)
        fields += (i ? ", f" : "f") + std::to_string(i) + " text";
    open(("table T (" + fields + "); rows T: (" +
        [] {
            std::string cells = "-";
            for (int i = 1; i < 60; ++i)
                cells += ", -";
            return cells;
        }()
        + ")")
             .c_str());
    edit(0).setFocus();
    for (int i = 1; i < 60; ++i) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        ASSERT_EQ(QApplication::focusWidget(), &edit(i));
    }
    QApplication::processEvents();
    EXPECT_FALSE(edit(59).visibleRegion().isEmpty());
}

TEST_F(RowControlTest, ShiftTabGoesBackOutOfTheFields)
{
    open();
    QLineEdit before(&window);
    before.show();
    QWidget::setTabOrder(&before, control);
    edit(2).setFocus();
    for (int step = 0; step < 4 && QApplication::focusWidget() != &before; ++step)
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab);
    EXPECT_EQ(QApplication::focusWidget(), &before) << "the first field must not hold the focus";
}

TEST_F(RowControlTest, CommittingAgainWritesOnlyWhatChangedSince)
{
    open();
    edit(0).setText(QStringLiteral("Via Po"));
    EXPECT_TRUE(GisTableCtrl_Commit(control, true));
    changes.Clear();
    EXPECT_TRUE(GisTableCtrl_Commit(control, true));
    EXPECT_FALSE(changes.CanUndo());
    edit(0).setText(QStringLiteral("Via Roma"));
    EXPECT_TRUE(GisTableCtrl_Commit(control, true));
    EXPECT_EQ(value(0), CPolyValue("Via Roma"));
}

TEST_F(RowControlTest, NumbersAreTakenUpToTheirLimitsAndNoFurther)
{
    open("table T (n integer, d decimal 2); rows T: (1, 1)");
    for (const char* text : { "2147483647", "-2147483648", "+7", " 12 ", "0" }) {
        edit(0).setText(QString::fromUtf8(text));
        EXPECT_TRUE(GisTableCtrl_Commit(control, false)) << text;
    }
    for (const char* text : { "2147483648", "-2147483649", "2.5", "2,5", "0x10", "1 2" }) {
        edit(0).setText(QString::fromUtf8(text));
        EXPECT_FALSE(GisTableCtrl_Commit(control, false)) << text;
        EXPECT_EQ(edit(0).text(), QString::fromUtf8(text));
    }
    edit(0).setText(QStringLiteral("1"));
    for (const char* text : { "1.7e200", "9e250", "nan", "inf", "1.234,5" }) {
        edit(1).setText(QString::fromUtf8(text));
        EXPECT_FALSE(GisTableCtrl_Commit(control, false)) << text << " means no value elsewhere";
    }
}

TEST_F(RowControlTest, NamesOfFieldsAreShownAsTheyAreAndDoNotPushTheEditorsAway)
{
    const std::string longName(10000, 'n');
    open(("table T (\"R & S\" text, \"<b>%s</b>\" text, \"" + longName
        + "\" text); rows T: ('a', 'b', 'c')")
             .c_str());
    const auto labels = control->findChildren<QLabel*>();
    ASSERT_GE(labels.size(), 3);
    EXPECT_EQ(labels[0]->text(), QStringLiteral("R & S"));
    EXPECT_EQ(labels[0]->buddy(), nullptr) << "an ampersand would be an access key";
    EXPECT_EQ(labels[1]->text(), QStringLiteral("<b>%s</b>"));
    EXPECT_EQ(labels[1]->textFormat(), Qt::PlainText);
    EXPECT_LT(edit(2).mapTo(control, QPoint()).x(), 300);
    EXPECT_EQ(edit(2).accessibleName().toStdString(), longName);
}

TEST_F(RowControlTest, TheWheelScrollsAndChangesNoValue)
{
    open();
    for (const int field : { 1, 4 }) {
        combo(field).setFocus();
        const int before = combo(field).currentIndex();
        for (const int way : { 120, -120 }) {
            QWheelEvent wheel(QPointF(5, 5), combo(field).mapToGlobal(QPointF(5, 5)), {},
                QPoint(0, way), Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
            QApplication::sendEvent(&combo(field), &wheel);
            EXPECT_EQ(combo(field).currentIndex(), before);
        }
    }
}

TEST_F(RowControlTest, AControlToReadOnlyHoldsNobodyUp)
{
    open("table T (nome text required, tipo list ('A')); rows T: (-, 'A')");
    QWidget* reader = GisTableCtrl_Create(
        library.get(), library->GetTable(0), row, QRect(0, 0, 200, 100), &window, 1001, false);
    for (auto* field : reader->findChildren<QLineEdit*>())
        EXPECT_TRUE(field->isReadOnly());
    EXPECT_TRUE(GisTableCtrl_Commit(reader, true)) << "there is nothing to write";
    GisTableCtrl_Destroy(reader);
}

TEST_F(RowControlTest, LongAndOddTextsComeBackWhole)
{
    open();
    const QString odd[] = { QString(10000, QLatin1Char('x')), QStringLiteral("%s %1"),
        QStringLiteral("<b>&amp;</b> &"), QString::fromUtf8("\xF0\x9F\x98\x80") };
    for (const QString& text : odd) {
        edit(0).setText(text);
        EXPECT_TRUE(GisTableCtrl_Commit(control, true));
        EXPECT_EQ(kit::toQt(value(0).GetStringValue()), text);
    }
}

TEST(RowControlWithoutARowTest, IsNoControl)
{
    gis::CLibGis library;
    EXPECT_EQ(GisTableCtrl_Create(&library, nullptr, nullptr, QRect(), nullptr, 1, true), nullptr);
    EXPECT_FALSE(GisTableCtrl_Commit(nullptr, true));
    GisTableCtrl_Destroy(nullptr);
}

} // namespace
