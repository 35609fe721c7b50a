// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/tables/fields/PageTesting.h"

#include <QGroupBox>
#include <QLabel>

#include <limits>

using gis::FieldFormat;
using orv::CPolyValue;

namespace {

using FieldPagesCasesTest = fieldstest::FieldPages;

/// Texts that must come back as they are, or be told to be wrong, and do nothing else.
const QString Strange[] = { QStringLiteral("%s%n%1"), QStringLiteral("<b>x</b>"),
    QStringLiteral("R&S && C"), QStringLiteral("Ж 日本 😀"), QString(40'000, QLatin1Char('x')) };

QStringList labelsOf(const QWidget& page)
{
    QStringList texts;
    for (const auto* box : page.findChildren<QGroupBox*>())
        texts << box->title();
    for (const auto* label : page.findChildren<QLabel*>())
        if (!label->text().isEmpty())
            texts << label->text();
    for (const auto* button : page.findChildren<QPushButton*>())
        texts << button->text();
    return texts;
}

TEST_F(FieldPagesCasesTest, EachPageHasItsTexts)
{
    const QString standard = QStringLiteral("Valore di default :");
    const QString minimum = QStringLiteral("Valore minimo :");
    const QString maximum = QStringLiteral("Valore massimo :");
    const struct {
        const char* notation;
        FieldFormat format;
        QStringList texts;
    } pages[] = {
        { "f boolean", FieldFormat::Boolean, { QStringLiteral("Sì/No"), standard } },
        { "f text", FieldFormat::Text, { QStringLiteral("Testo"), standard } },
        { "f integer", FieldFormat::Integer,
            { QStringLiteral("Numerico"), standard, minimum, maximum } },
        { "f decimal 2", FieldFormat::Decimal,
            { QStringLiteral("Decimale"), standard, minimum, maximum,
                QStringLiteral("Cifre decimali :") } },
        { "f list ('a')", FieldFormat::List,
            { QStringLiteral("Lista"), standard, QStringLiteral("Aggiungi"),
                QStringLiteral("Cancella"), QStringLiteral("Rinomina") } },
        { "f date", FieldFormat::Date,
            { QStringLiteral("Data"), standard, QStringLiteral("Data :") } },
    };
    for (const auto& each : pages) {
        open(each.notation, each.format);
        QStringList found = labelsOf(*page);
        QStringList wanted = each.texts;
        found.sort();
        wanted.sort();
        EXPECT_EQ(found, wanted) << each.notation;
    }
}

/// "Città" as other programs write it; and as it is shown.
const orv::String OtherBytes = "Citt\xE0";
const QString OtherShown = QStringLiteral("Citt\uFFFD");

TEST_F(FieldPagesCasesTest, ADefaultThatIsNoUtf8KeepsItsBytesUntilItIsTypedAnew)
{
    open("t text", FieldFormat::Text);
    setConstraint(0, CPolyValue(OtherBytes));
    reopen(FieldFormat::Text);
    ASSERT_EQ(textOf(2021), OtherShown);

    save();
    EXPECT_EQ(constraint(0), CPolyValue(OtherBytes));

    at<QLineEdit>(2021).setText(QStringLiteral("Città"));
    save();
    EXPECT_EQ(constraint(0), CPolyValue(orv::String("Citt\xC3\xA0")));
}

TEST_F(FieldPagesCasesTest, ListValuesThatAreNoUtf8KeepTheirBytesUntilTheyAreTypedAnew)
{
    open("l list ('a', 'b')", FieldFormat::List);
    CPolyValue listed = constraint(3);
    listed.SetStringValue(1, OtherBytes);
    setConstraint(3, listed);
    setConstraint(0, CPolyValue(OtherBytes));
    reopen(FieldFormat::List);
    ASSERT_EQ(at<QComboBox>(2015).currentText(), OtherShown);
    const auto expectKept = [&] {
        save();
        EXPECT_EQ(constraint(0), CPolyValue(OtherBytes));
        EXPECT_EQ(constraint(3).GetNoArrayElements(), 2U);
        EXPECT_EQ(constraint(3).GetStringValue(1), OtherBytes);
    };
    expectKept();

    at<QListWidget>(2016).setCurrentRow(1);
    ASSERT_EQ(textOf(2017), OtherShown);
    ui::press(*page, 2020); // renamed to what it is
    expectKept();
    at<QListWidget>(2016).setCurrentRow(0);
    at<QListWidget>(2016).setCurrentRow(1);
    ui::press(*page, 2018); // in the list already
    expectKept();
    at<QComboBox>(2015).setCurrentIndex(1);
    at<QComboBox>(2015).setCurrentIndex(2); // chosen again
    expectKept();

    ui::type(*page, 2017, QStringLiteral("c"));
    ui::press(*page, 2020);
    save();
    EXPECT_EQ(constraint(0), CPolyValue(orv::String("c")));
    EXPECT_EQ(constraint(3).GetStringValue(1), orv::String("c"));
}

TEST_F(FieldPagesCasesTest, StrangeTextsComeBackOrAreWrong)
{
    for (const QString& text : Strange) {
        open("t text", FieldFormat::Text);
        at<QLineEdit>(2021).setText(text);
        save();
        reopen(FieldFormat::Text);
        EXPECT_EQ(textOf(2021), text);

        open("l list ('a')", FieldFormat::List);
        at<QLineEdit>(2017).setText(text);
        ui::press(*page, 2018);
        at<QComboBox>(2015).setCurrentIndex(2);
        save();
        reopen(FieldFormat::List);
        EXPECT_EQ(at<QComboBox>(2015).currentText(), text);
        EXPECT_EQ(listed(), (QStringList { QStringLiteral("a"), text }));

        open("n integer", FieldFormat::Integer);
        for (const int id : { 2012, 2013, 2014 })
            at<QLineEdit>(id).setText(text);
        save({ texts::DefaultInvalid, texts::MinimumInvalid, texts::MaximumInvalid });

        open("x decimal 2", FieldFormat::Decimal);
        for (const int id : { 2008, 2009, 2010 })
            at<QLineEdit>(id).setText(text);
        save({ texts::DefaultInvalid, texts::MinimumInvalid, texts::MaximumInvalid });
        EXPECT_EQ(constraint(0), CPolyValue(orv::UnsetDecimal));
    }
}

TEST_F(FieldPagesCasesTest, AnEmptiedEditIsNotSet)
{
    open("n integer default 3 min 1 max 7", FieldFormat::Integer);
    for (const int id : { 2012, 2013, 2014 })
        ui::type(*page, id, QString());
    save();
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(constraint(i), CPolyValue(orv::UnsetInteger));

    open("x decimal 2 default 3 min 1 max 7", FieldFormat::Decimal);
    for (const int id : { 2008, 2009, 2010, 2011 })
        ui::type(*page, id, QString());
    save();
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(constraint(i), CPolyValue(orv::UnsetDecimal));
    EXPECT_EQ(constraint(3), CPolyValue(0)) << "no digits";
}

TEST_F(FieldPagesCasesTest, BoundsOfDecimalsAreInclusiveForTheDefaultAndApart)
{
    open("x decimal 1", FieldFormat::Decimal);
    ui::type(*page, 2008, QStringLiteral("7"));
    ui::type(*page, 2009, QStringLiteral("1"));
    ui::type(*page, 2010, QStringLiteral("7"));
    save();
    EXPECT_EQ(constraint(0), CPolyValue(7.0));

    ui::type(*page, 2008, QStringLiteral("7.1"));
    save({ texts::DefaultOutsideRange });
    EXPECT_EQ(constraint(0), CPolyValue(orv::UnsetDecimal));

    ui::type(*page, 2008, QStringLiteral("2"));
    ui::type(*page, 2009, QStringLiteral("3"));
    ui::type(*page, 2010, QStringLiteral("1"));
    save({ texts::RangeIncongruent, texts::DefaultOutsideRange });
    EXPECT_EQ(constraint(1), CPolyValue(1.0));
    EXPECT_EQ(constraint(2), CPolyValue(7.0));
}

TEST_F(FieldPagesCasesTest, ADefaultMayHaveTheDigitsItIsWrittenWith)
{
    for (const char* const text : { "1.5", "1.50", "-0", "0", "-3.25" }) {
        open("x decimal 1", FieldFormat::Decimal);
        ui::type(*page, 2008, QString::fromLatin1(text));
        save();
        EXPECT_NE(constraint(0), CPolyValue(orv::UnsetDecimal)) << text;
    }
    for (const char* const text : { "1,5", "1e3", "+1", ".5", " 1", "01", "1.5 " }) {
        open("x decimal 1", FieldFormat::Decimal);
        ui::type(*page, 2008, QString::fromLatin1(text));
        save({ texts::DefaultInvalid });
        EXPECT_EQ(constraint(0), CPolyValue(orv::UnsetDecimal)) << text;
    }
}

TEST_F(FieldPagesCasesTest, AnInvalidBoundKeepsItsPreviousValue)
{
    open("x decimal 0 min 1 max 7", FieldFormat::Decimal);
    ui::type(*page, 2009, QStringLiteral("uno"));
    ui::type(*page, 2010, QStringLiteral("9"));
    save({ texts::MinimumInvalid });
    EXPECT_EQ(constraint(1), CPolyValue(1.0));
    EXPECT_EQ(constraint(2), CPolyValue(9.0));

    ui::type(*page, 2010, QStringLiteral("0")); // below the minimum that was kept
    save({ texts::MinimumInvalid });
    EXPECT_EQ(constraint(1), CPolyValue(1.0));
    EXPECT_EQ(constraint(2), CPolyValue(9.0));
}

TEST_F(FieldPagesCasesTest, MessagesComeInTheOrderOfTheEditsThenThoseOfTheWhole)
{
    open("x decimal 0 min 1 max 7", FieldFormat::Decimal);
    ui::type(*page, 2008, QStringLiteral("9"));
    ui::type(*page, 2009, QStringLiteral("3"));
    ui::type(*page, 2010, QStringLiteral("3"));
    ui::type(*page, 2011, QStringLiteral("11"));
    save({ texts::DigitsTooMany, texts::RangeIncongruent, texts::DefaultOutsideRange });
}

TEST_F(FieldPagesCasesTest, DigitsBeyondAllNumbersAreTheMost)
{
    open("x decimal 2", FieldFormat::Decimal);
    at<QLineEdit>(2011).setText(QString(400, QLatin1Char('9')));
    save({ texts::DigitsTooMany });
    EXPECT_EQ(constraint(3), CPolyValue(gis::MaxDecimalDigits));
    for (const int digits : { -1, 11, 2147483647 }) {
        setConstraint(3, CPolyValue(digits));
        reopen(FieldFormat::Decimal);
        save(); // shown and saved as what is possible, without a message for what nobody typed
        EXPECT_EQ(constraint(3), CPolyValue(digits < 0 ? 0 : gis::MaxDecimalDigits));
    }
}

TEST_F(FieldPagesCasesTest, TheLargestIntegerMeansNotSet)
{
    open("n integer", FieldFormat::Integer);
    ui::type(*page, 2012, QStringLiteral("2147483647"));
    save();
    EXPECT_EQ(constraint(0), CPolyValue(orv::UnsetInteger));
    ui::type(*page, 2012, QStringLiteral("2147483648"));
    save({ texts::DefaultInvalid });
    ui::type(*page, 2012, QStringLiteral("-2147483648"));
    save();
    EXPECT_EQ(constraint(0), CPolyValue(std::numeric_limits<int>::min()));
}

TEST_F(FieldPagesCasesTest, WithoutADefaultTheEmptyEntryIsChosenAlsoBesideAnEmptyValue)
{
    open("l list ('', 'a')", FieldFormat::List);
    EXPECT_EQ(at<QComboBox>(2015).currentIndex(), 0);
    at<QListWidget>(2016).setCurrentRow(0);
    ui::type(*page, 2017, QStringLiteral("b"));
    ui::press(*page, 2020);
    save();
    EXPECT_EQ(constraint(0).GetStringValue(), orv::String()) << "there was no default to follow";
}

TEST_F(FieldPagesCasesTest, RenamingMayRepeatAValue)
{
    open("l list ('a', 'b')", FieldFormat::List);
    at<QListWidget>(2016).setCurrentRow(1);
    ui::type(*page, 2017, QStringLiteral("a"));
    ui::press(*page, 2020);
    EXPECT_EQ(listed(), (QStringList { QStringLiteral("a"), QStringLiteral("a") }));
}

TEST_F(FieldPagesCasesTest, AChosenDefaultSurvivesTheListsChanges)
{
    open("l list ('a', 'b', 'c')", FieldFormat::List);
    at<QComboBox>(2015).setCurrentIndex(3);
    at<QListWidget>(2016).setCurrentRow(0);
    ui::press(*page, 2019);
    EXPECT_EQ(at<QComboBox>(2015).currentText(), QStringLiteral("c"));
    save();
    EXPECT_EQ(constraint(0), CPolyValue("c"));
}

TEST_F(FieldPagesCasesTest, TheSelectedValueComesBackIntoTheEditWhenTheListIsLeft)
{
    open("l list ('a', 'b')", FieldFormat::List);
    auto& list = at<QListWidget>(2016);
    page->activateWindow();
    list.setFocus();
    list.setCurrentRow(1);
    at<QLineEdit>(2017).setText(QStringLiteral("typed"));
    QTest::keyClick(&list, Qt::Key_Tab);
    EXPECT_EQ(textOf(2017), QStringLiteral("b"));
}

TEST_F(FieldPagesCasesTest, TodayAtTheStartLeavesThePickerClosedAndAnUnknownModeSelectsNothing)
{
    open("d date", FieldFormat::Date);
    CPolyValue date;
    date.SetDateValue(86400 * 365);
    setConstraint(0, date);
    setConstraint(3, CPolyValue(1));
    reopen(FieldFormat::Date);
    EXPECT_EQ(at<QComboBox>(2006).currentIndex(), 1);
    EXPECT_FALSE(at<QDateTimeEdit>(2007).isEnabled());

    setConstraint(3, CPolyValue(5));
    reopen(FieldFormat::Date);
    EXPECT_EQ(at<QComboBox>(2006).currentIndex(), -1);
    EXPECT_FALSE(at<QDateTimeEdit>(2007).isEnabled());
    save();
    EXPECT_EQ(constraint(3), CPolyValue(0));
    EXPECT_EQ(constraint(0), CPolyValue(0));
}

TEST_F(FieldPagesCasesTest, ChangingTheModeShowsOnlyDatesAfterTheEpoch)
{
    for (const int days : { -1, 0, 400 }) {
        open("d date", FieldFormat::Date);
        CPolyValue date;
        date.SetDateValue(std::int64_t(86400) * days);
        setConstraint(0, date);
        setConstraint(3, CPolyValue(0));
        reopen(FieldFormat::Date);
        at<QComboBox>(2006).setCurrentIndex(2);
        const QDate shown = at<QDateTimeEdit>(2007).date();
        EXPECT_EQ(shown,
            days > 0 ? QDateTime::fromSecsSinceEpoch(86400 * days).date() : QDate::currentDate());
    }
}

TEST_F(FieldPagesCasesTest, DatesOfAllYearsCanBePicked)
{
    open("d date", FieldFormat::Date);
    at<QComboBox>(2006).setCurrentIndex(2);
    for (const int year : { 1, 1582, 1899, 1969, 9999 }) {
        const QDateTime picked(QDate(year, 6, 15), QTime(12, 0));
        at<QDateTimeEdit>(2007).setDateTime(picked);
        save();
        EXPECT_EQ(constraint(0).GetDateValue(), picked.toSecsSinceEpoch()) << year;
    }
}

} // namespace
