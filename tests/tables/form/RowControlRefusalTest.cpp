// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/tables/form/RowTesting.h"

#include <QScrollBar>

using formtest::Refused;
using orv::CPolyValue;

namespace {

class RowControlRefusalTest : public formtest::RowControl {
protected:
    QScrollArea& area() { return *qobject_cast<QScrollArea*>(control); }
    /// A table of many texts, of which the last is as told.
    void openLong(const std::string& last, const std::string& lastCell)
    {
        std::string fields;
        std::string cells;
        for (int i = 0; i < LastField; ++i) {
            fields += "f" + orv::String::ValueOf(i).Bytes() + " text, ";
            cells += "'x', ";
        }
        open(("table T (" + fields + last + "); rows T: (" + cells + lastCell + ")").c_str());
    }
    static constexpr int LastField = 50;
};

TEST_F(RowControlRefusalTest, AWholeNumberIsWrittenInDigitsOnly)
{
    open("table T (n integer); rows T: (5)");
    // Three thousand to who writes it so; it must become neither 3 nor 3000.
    for (const char* text : { "3.000", "3,000", "1e3", "3.", ",5", "+", "-", "--3", "3 000" }) {
        SCOPED_TRACE(text);
        edit(0).setText(QString::fromUtf8(text));
        expectRefused(Refused, 0);
        EXPECT_EQ(edit(0).text(), QString::fromUtf8(text));
        EXPECT_EQ(value(0), CPolyValue(5));
    }
    const std::pair<const char*, int> taken[]
        = { { "+7", 7 }, { " 12 ", 12 }, { "-3", -3 }, { "007", 7 } };
    for (const auto& [text, number] : taken) {
        edit(0).setText(QString::fromUtf8(text));
        EXPECT_TRUE(GisTableCtrl_Commit(control, true)) << text;
        EXPECT_EQ(value(0), CPolyValue(number)) << text;
    }
}

TEST_F(RowControlRefusalTest, ADecimalMayHaveAnExponentAndDigitsAfterAComma)
{
    open("table T (d decimal 3); rows T: (5)");
    const std::pair<const char*, double> taken[]
        = { { "3.000", 3 }, { "3,125", 3.125 }, { "1e3", 1000 }, { "+7", 7 } };
    for (const auto& [text, number] : taken) {
        edit(0).setText(QString::fromUtf8(text));
        EXPECT_TRUE(GisTableCtrl_Commit(control, true)) << text;
        EXPECT_EQ(value(0), CPolyValue(number)) << text;
    }
}

TEST_F(RowControlRefusalTest, AnEmptyRequiredListIsAskedForAndGetsTheFocus)
{
    open("table T (nome text, tipo list ('A', 'B') required); rows T: ('x', -)");
    expectRefused(QStringLiteral("Il campo \"tipo\" è obbligatorio!"), 1);
    combo(1).setCurrentIndex(combo(1).findText(QStringLiteral("B")));
    EXPECT_TRUE(GisTableCtrl_Commit(control, true));
    EXPECT_EQ(value(1), CPolyValue("B"));
}

TEST_F(RowControlRefusalTest, AnEmptyRequiredYesNoIsAskedForAndGetsTheFocus)
{
    open("table T (nome text, attiva boolean required); rows T: ('x', yes)");
    combo(1).setCurrentIndex(0);
    ASSERT_EQ(combo(1).currentText(), QString());
    expectRefused(QStringLiteral("Il campo \"attiva\" è obbligatorio!"), 1);
    EXPECT_EQ(combo(1).currentText(), QString()) << "what was chosen is kept";
    EXPECT_EQ(value(1), CPolyValue(true));
    combo(1).setCurrentIndex(2);
    EXPECT_TRUE(GisTableCtrl_Commit(control, true)) << "no is an answer";
    EXPECT_EQ(value(1), CPolyValue(false));
}

TEST_F(RowControlRefusalTest, TheFirstOfTwoRefusedFieldsIsTold)
{
    open("table T (nome text required, n integer); rows T: ('x', 1)");
    edit(0).clear();
    edit(1).setText(QStringLiteral("1e3"));
    expectRefused(QStringLiteral("Il campo \"nome\" è obbligatorio!"), 0);
}

TEST_F(RowControlRefusalTest, ARefusedFieldBelowIsScrolledTo)
{
    openLong("n integer", "1");
    edit(0).setFocus();
    ASSERT_EQ(area().verticalScrollBar()->value(), 0);
    edit(LastField).setText(QStringLiteral("3.000"));
    ASSERT_TRUE(edit(LastField).visibleRegion().isEmpty());
    expectRefused(Refused, LastField);
    QApplication::processEvents();
    EXPECT_EQ(edit(LastField).visibleRegion().boundingRect(), edit(LastField).rect());
    EXPECT_EQ(edit(LastField).selectedText(), QStringLiteral("3.000"));

    // And one above that, once this is mended.
    edit(LastField).setText(QStringLiteral("3000"));
    EXPECT_TRUE(GisTableCtrl_Commit(control, true));
}

TEST_F(RowControlRefusalTest, ARefusedListBelowIsScrolledTo)
{
    openLong("tipo list ('A') required", "-");
    edit(0).setFocus();
    ASSERT_TRUE(combo(LastField).visibleRegion().isEmpty());
    expectRefused(QStringLiteral("Il campo \"tipo\" è obbligatorio!"), LastField);
    QApplication::processEvents();
    EXPECT_EQ(combo(LastField).visibleRegion().boundingRect(), combo(LastField).rect());
}

TEST_F(RowControlRefusalTest, LongElementsOfAListDoNotWidenTheForm)
{
    // Also one that the row holds although the list has it no more, and a long text.
    const std::string element(10'000, 'x');
    const std::string former(10'000, 'y');
    open(("table T (tipo list ('A', '" + element
        + "'), altro list ('A'), nome text, n integer);"
          "rows T: ('"
        + element + "', '" + former + "', '" + former + "', 1)")
             .c_str());
    ASSERT_EQ(combo(0).currentText().size(), 10'000);
    ASSERT_EQ(combo(1).currentText().size(), 10'000);
    EXPECT_EQ(area().horizontalScrollBar()->maximum(), 0);
    EXPECT_FALSE(area().horizontalScrollBar()->isVisible());
    for (int field = 0; field < 4; ++field) {
        const QWidget& one = editor(field);
        const int left = one.mapTo(area().viewport(), QPoint()).x();
        EXPECT_GE(left, 0) << field;
        EXPECT_LE(left + one.width(), area().viewport()->width()) << field;
    }
    const QLabel& label = *control->findChildren<QLabel*>().first();
    EXPECT_LT(label.mapTo(control, QPoint()).y(),
        editor(0).mapTo(control, QPoint()).y() + editor(0).height())
        << "beside its list, as all names are";
    EXPECT_GT(label.mapTo(control, QPoint()).y() + label.height(),
        editor(0).mapTo(control, QPoint()).y());
    EXPECT_TRUE(GisTableCtrl_Commit(control, true));
    EXPECT_EQ(value(0), CPolyValue(element.c_str())) << "and comes back whole";
}

} // namespace
