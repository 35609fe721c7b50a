// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/tables/fields/PageTesting.h"

using gis::FieldFormat;
using orv::CPolyValue;

namespace {

using FieldPagesTest = fieldstest::FieldPages;

TEST_F(FieldPagesTest, YesNoOffersNoneYesAndNoAndWritesTheirNumbers)
{
    open("b boolean", FieldFormat::Boolean);
    auto* combo = &at<QComboBox>(2005);
    EXPECT_EQ(items(*combo),
        (QStringList { QStringLiteral("Nessuno"), QStringLiteral("Sì"), QStringLiteral("No") }));
    EXPECT_EQ(combo->currentText(), QStringLiteral("Nessuno"));
    for (const auto& [row, value] : { std::pair { 0, 2 }, { 1, 1 }, { 2, 0 } }) {
        combo->setCurrentIndex(row);
        save();
        EXPECT_EQ(constraint(0), CPolyValue(value));
        reopen(FieldFormat::Boolean);
        combo = &at<QComboBox>(2005);
        EXPECT_EQ(combo->currentIndex(), row);
    }
    combo->setCurrentIndex(-1);
    save();
    EXPECT_TRUE(constraint(0).IsEmpty());
    setConstraint(0, CPolyValue(7));
    reopen(FieldFormat::Boolean);
    EXPECT_EQ(at<QComboBox>(2005).currentIndex(), -1);
}

TEST_F(FieldPagesTest, AnyTextIsADefaultTextAndTheFourthElementStays)
{
    open("t text", FieldFormat::Text);
    setConstraint(3, CPolyValue(42));
    reopen(FieldFormat::Text);
    for (const QString& text : { QStringLiteral("%s"), QStringLiteral("<b>à</b> & 😀"),
             QString(10'000, QLatin1Char('x')), QString() }) {
        at<QLineEdit>(2021).setText(text);
        save();
        EXPECT_EQ(kit::toQt(constraint(0).GetStringValue()), text);
        EXPECT_EQ(constraint(3), CPolyValue(42));
    }
}

TEST_F(FieldPagesTest, AComputedTextHasNoDefault)
{
    open("t text from name", FieldFormat::Text);
    EXPECT_FALSE(at<QLineEdit>(2021).isEnabled());
    controller->SetFieldType(field, gis::FieldType::FromUser);
    page->RefreshFromField();
    EXPECT_TRUE(at<QLineEdit>(2021).isEnabled());
}

TEST_F(FieldPagesTest, IntegersShowWhatIsSetAndSaveWhatIsRight)
{
    open("n integer min 1 max 7", FieldFormat::Integer);
    EXPECT_EQ(textOf(2012), QString());
    EXPECT_EQ(textOf(2013), QStringLiteral("1"));
    EXPECT_EQ(textOf(2014), QStringLiteral("7"));

    ui::type(*page, 2012, QStringLiteral("8"));
    save({ texts::DefaultOutsideRange });
    EXPECT_EQ(constraint(0), CPolyValue(orv::UnsetInteger));
    ui::type(*page, 2012, QStringLiteral("2"));
    ui::type(*page, 2013, QStringLiteral("3"));
    ui::type(*page, 2014, QStringLiteral("1"));
    save({ texts::RangeIncongruent, texts::DefaultOutsideRange });
    EXPECT_EQ(constraint(1), CPolyValue(1));
    EXPECT_EQ(constraint(2), CPolyValue(7));
    ui::type(*page, 2013, QStringLiteral("99999999999"));
    ui::type(*page, 2014, QStringLiteral("5.0"));
    ui::type(*page, 2012, QStringLiteral("uno"));
    save({ texts::DefaultInvalid, texts::MinimumInvalid, texts::MaximumInvalid });
    EXPECT_EQ(constraint(1), CPolyValue(1));
}

TEST_F(FieldPagesTest, DecimalsShowTheirDigitsAndTellTooMany)
{
    open("x decimal 2 default 1.5 min 0 max 9", FieldFormat::Decimal);
    EXPECT_EQ(textOf(2008), QStringLiteral("1.50"));
    EXPECT_EQ(textOf(2009), QStringLiteral("0.00"));
    EXPECT_EQ(textOf(2011), QStringLiteral("2"));

    at<QLineEdit>(2011).setFocus();
    at<QLineEdit>(2011).selectAll();
    QTest::keyClicks(&at<QLineEdit>(2011), QStringLiteral("-2a5"));
    EXPECT_EQ(textOf(2011), QStringLiteral("25")) << "digits only";
    ui::type(*page, 2008, QStringLiteral("1,5"));
    ui::type(*page, 2009, QStringLiteral("5"));
    ui::type(*page, 2010, QStringLiteral("5"));
    save({ texts::DefaultInvalid, texts::DigitsTooMany, texts::RangeIncongruent });
    EXPECT_EQ(constraint(0), CPolyValue(1.5));
    EXPECT_EQ(constraint(1), CPolyValue(0.0));
    EXPECT_EQ(constraint(2), CPolyValue(9.0));
    EXPECT_EQ(constraint(3), CPolyValue(10));
}

TEST_F(FieldPagesTest, AComputedDecimalKeepsItsDigitsEditable)
{
    open("x decimal 2 from area", FieldFormat::Decimal);
    for (const int id : { 2008, 2009, 2010 })
        EXPECT_FALSE(at<QLineEdit>(id).isEnabled());
    EXPECT_TRUE(at<QLineEdit>(2011).isEnabled());
}

TEST_F(FieldPagesTest, AddingKeepsOneOfEachAndRenamingTakesAnything)
{
    open("l list ('Alfa')", FieldFormat::List);
    ui::type(*page, 2017, QStringLiteral("Beta"));
    ui::press(*page, 2018);
    EXPECT_EQ(textOf(2017), QString());
    EXPECT_TRUE(at<QLineEdit>(2017).hasFocus());
    ui::type(*page, 2017, QStringLiteral("Alfa"));
    ui::press(*page, 2018);
    EXPECT_EQ(textOf(2017), QString());
    ui::press(*page, 2018);
    ui::type(*page, 2017, QStringLiteral("alfa"));
    ui::press(*page, 2018);
    EXPECT_EQ(listed(),
        (QStringList { QStringLiteral("Alfa"), QStringLiteral("Beta"), QStringLiteral("alfa") }));
    EXPECT_EQ(items(at<QComboBox>(2015)),
        (QStringList {
            QString(), QStringLiteral("Alfa"), QStringLiteral("Beta"), QStringLiteral("alfa") }));

    at<QListWidget>(2016).setCurrentRow(1);
    EXPECT_EQ(textOf(2017), QStringLiteral("Beta"));
    ui::type(*page, 2017, QString());
    ui::press(*page, 2020);
    EXPECT_EQ(
        listed(), (QStringList { QStringLiteral("Alfa"), QString(), QStringLiteral("alfa") }));
    save();
    EXPECT_EQ(constraint(3).GetNoArrayElements(), 3u);
    EXPECT_EQ(constraint(3).GetStringValue(1), orv::String());
}

TEST_F(FieldPagesTest, TheDefaultIsFoundWithoutRegardToCaseAndTheFirstOneCounts)
{
    open("l list ('alfa', 'ALFA', 'beta') default 'ALFA'", FieldFormat::List);
    EXPECT_EQ(at<QComboBox>(2015).currentText(), QStringLiteral("alfa"));
    save();
    EXPECT_EQ(constraint(0), CPolyValue("alfa"));
}

TEST_F(FieldPagesTest, ADefaultFollowsItsRenamedValueAndGoesWithADeletedOne)
{
    open("l list ('a', 'b') default 'b'", FieldFormat::List);
    at<QListWidget>(2016).setCurrentRow(1);
    ui::type(*page, 2017, QStringLiteral("c"));
    ui::press(*page, 2020);
    EXPECT_EQ(at<QComboBox>(2015).currentText(), QStringLiteral("c"));
    ui::press(*page, 2019);
    EXPECT_EQ(listed(), QStringList { QStringLiteral("a") });
    EXPECT_EQ(at<QComboBox>(2015).currentText(), QString());
    save();
    EXPECT_EQ(constraint(0).GetStringValue(), orv::String());
}

TEST_F(FieldPagesTest, WithoutASelectionNothingIsDeletedOrRenamed)
{
    open("l list ('a', 'b')", FieldFormat::List);
    ui::type(*page, 2017, QStringLiteral("x"));
    ui::press(*page, 2019);
    ui::press(*page, 2020);
    EXPECT_EQ(listed(), (QStringList { QStringLiteral("a"), QStringLiteral("b") }));
}

TEST_F(FieldPagesTest, ATypedDefaultIsTakenAsItStands)
{
    open("l list ('Alfa', 'Beta')", FieldFormat::List);
    QLineEdit& edit = *at<QComboBox>(2015).lineEdit();
    edit.selectAll();
    QTest::keyClicks(&edit, QStringLiteral("al"));
    save();
    EXPECT_EQ(constraint(0), CPolyValue("al")) << "nothing completes it";
    EXPECT_EQ(constraint(3).GetNoArrayElements(), 2u);
}

TEST_F(FieldPagesTest, ADateGivenByTheUserIsShownAndSaved)
{
    open("d date", FieldFormat::Date);
    auto* combo = &at<QComboBox>(2006);
    EXPECT_EQ(items(*combo),
        (QStringList { QStringLiteral("Nessuna"), QStringLiteral("Data Odierna"),
            QStringLiteral("Da Utente") }));
    EXPECT_EQ(combo->currentIndex(), 0);
    EXPECT_FALSE(at<QDateTimeEdit>(2007).isEnabled());

    combo->setCurrentIndex(2);
    EXPECT_TRUE(at<QDateTimeEdit>(2007).isEnabled());
    const QDateTime given(QDate(1999, 12, 31), QTime(14, 30, 5));
    at<QDateTimeEdit>(2007).setDateTime(given);
    save();
    EXPECT_EQ(constraint(0).GetType(), orv::PolyDate);
    EXPECT_EQ(constraint(0).GetDateValue(), given.toSecsSinceEpoch()) << "its time of day stays";
    EXPECT_EQ(constraint(3), CPolyValue(2));

    reopen(FieldFormat::Date);
    EXPECT_EQ(at<QComboBox>(2006).currentIndex(), 2);
    EXPECT_EQ(at<QDateTimeEdit>(2007).text(), QStringLiteral("31/12/1999"));
    at<QComboBox>(2006).setCurrentIndex(0);
    save();
    EXPECT_EQ(constraint(0), CPolyValue(0));
    EXPECT_EQ(constraint(3), CPolyValue(0));
}

TEST_F(FieldPagesTest, TodayIsTheMomentInWhichItWasChosen)
{
    open("d date", FieldFormat::Date);
    const qint64 before = QDateTime::currentSecsSinceEpoch();
    at<QComboBox>(2006).setCurrentIndex(1);
    EXPECT_FALSE(at<QDateTimeEdit>(2007).isEnabled());
    save();
    EXPECT_EQ(constraint(3), CPolyValue(1));
    EXPECT_GE(constraint(0).GetDateValue(), before);
    EXPECT_LE(constraint(0).GetDateValue(), QDateTime::currentSecsSinceEpoch());
}

TEST_F(FieldPagesTest, ADateBeforeTheEpochIsNotShownAtTheStart)
{
    open("d date", FieldFormat::Date);
    CPolyValue early;
    early.SetDateValue(-86400);
    setConstraint(0, early);
    setConstraint(3, CPolyValue(2));
    reopen(FieldFormat::Date);
    EXPECT_EQ(at<QDateTimeEdit>(2007).date(), QDate::currentDate());
}

TEST_F(FieldPagesTest, APageWhoseFieldHasAnotherFormatNowSavesNothing)
{
    for (const auto& [notation, format] : { std::pair { "f text default 'x'", FieldFormat::Text },
             { "f boolean", FieldFormat::Boolean }, { "f integer", FieldFormat::Integer },
             { "f decimal 2", FieldFormat::Decimal }, { "f list ('a')", FieldFormat::List },
             { "f date", FieldFormat::Date } }) {
        open(notation, format);
        controller->SetFieldFormat(
            field, format == FieldFormat::Text ? FieldFormat::Date : FieldFormat::Text);
        CPolyValue before[gis::ConstraintCount];
        controller->GetFieldConstraints(field, before);
        save();
        for (int i = 0; i < gis::ConstraintCount; ++i)
            EXPECT_EQ(constraint(i), before[i]) << notation;
    }
}

TEST_F(FieldPagesTest, TheRequiredFlagIsWrittenAtOnce)
{
    open("t text", FieldFormat::Text);
    page->SetRequested(true);
    EXPECT_TRUE(controller->IsFieldRequested(field));
    page->SetRequested(false);
    EXPECT_FALSE(controller->IsFieldRequested(field));
}

} // namespace
