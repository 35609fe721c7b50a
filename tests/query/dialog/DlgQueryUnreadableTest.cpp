// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/query/dialog/QueryDialogTesting.h"

#include "host/gis/Readings.h"

#include <QLabel>

#include <set>

// A host whose files cannot all be read: the user is told, and no answer is passed off as one.

namespace {

class CReadings final : public gis::IReadings {
public:
    std::set<int> unreadable;
    int asked = 0;
    bool IsReadable(gis::CDBTable*, int fieldIndex) override
    {
        ++asked;
        return !unreadable.contains(fieldIndex);
    }
    bool Read(gis::CDBTable*, int, gis::IReadingStop*) override { return true; }
};

class DlgQueryUnreadableTest : public querytest::DlgQueryFixture {
protected:
    enum { Name = 0, Lanes = 2 };
    DlgQueryUnreadableTest()
    {
        m_readings.unreadable = { Lanes };
        m_library.offer(gis::ReadingsExtension, static_cast<gis::IReadings*>(&m_readings));
    }
    static void expectTold(ui::CModalDriver& driver, const char* field)
    {
        driver.box(QStringLiteral("Il campo \"") + QString::fromUtf8(field)
                + QStringLiteral(
                    "\" non può essere letto: il file è danneggiato o non raggiungibile.\n"
                    "Riaprirlo o usarne una copia di riserva."),
            kit::Answer::Ok, [](QMessageBox& box) {
                EXPECT_EQ(box.windowTitle(), QStringLiteral("Attenzione!"));
                EXPECT_EQ(box.icon(), QMessageBox::Warning);
                EXPECT_EQ(box.standardButtons(), QMessageBox::Ok);
            });
    }
    std::string live()
    {
        return m_dialog->findChild<QLabel*>(QStringLiteral("liveLine"))->text().toStdString();
    }

    CReadings m_readings;
};

} // namespace

TEST_F(DlgQueryUnreadableTest, RunningAFilterOnItNamesTheFieldAndShowsNoResult)
{
    open();
    for (const char* text : { "Corsie = 9", "Nome = 'Via Roma' OR [Corsie] >= 0",
             "NOT (Nome = 'x') AND Corsie IS NULL", "Corsie + 1 > Larghezza" }) {
        SCOPED_TRACE(text);
        ui::CModalDriver driver;
        expectTold(driver, "Corsie");

        run(text);

        EXPECT_EQ(driver.stepsTaken(), 1);
        EXPECT_EQ(sheet().currentIndex(), 0);
        EXPECT_EQ(grid(), nullptr);
        EXPECT_EQ(m_feedback.found.back(), 0U) << "nothing is marked in the drawing";
        EXPECT_EQ(filter().text().toStdString(), text);
    }
    EXPECT_TRUE(m_library.changes().empty());
}

TEST_F(DlgQueryUnreadableTest, TheResultThatWasShownBeforeGoesToo)
{
    open();
    run("Nome = 'Via Roma'");
    ASSERT_NE(grid(), nullptr);
    ASSERT_EQ(grid()->model()->rowCount(), 1);
    ui::CModalDriver driver;
    expectTold(driver, "Corsie");

    run("Corsie = 9");

    EXPECT_EQ(grid(), nullptr);
    EXPECT_EQ(m_feedback.found, (std::vector<std::size_t> { 1, 0 }));
}

TEST_F(DlgQueryUnreadableTest, FiltersOnOtherFieldsFindAsEver)
{
    open();

    run("Larghezza > 1 AND Nome LIKE 'Via%'");

    EXPECT_EQ(sheet().currentIndex(), 1);
    ASSERT_NE(grid(), nullptr);
    EXPECT_EQ(grid()->model()->rowCount(), 3);
}

TEST_F(DlgQueryUnreadableTest, AFilterThatFindsNothingIsNoUnreadableField)
{
    open();

    run("Nome = 'Via che manca' AND Boh = 1");

    EXPECT_EQ(sheet().currentIndex(), 1) << "an empty result, and no message";
}

TEST_F(DlgQueryUnreadableTest, AClickOnTheFieldTellsItAndListsNothing)
{
    open();
    click(fields(), Name);
    ASSERT_EQ(values().model()->rowCount(), 2);
    ui::CModalDriver driver;
    expectTold(driver, "Corsie");

    click(fields(), Lanes);

    EXPECT_EQ(driver.stepsTaken(), 1);
    EXPECT_TRUE(rows(values()).isEmpty()) << "not the values of the field before either";
    click(fields(), Name);
    EXPECT_EQ(joined(rows(values())), "Via Po, Via Roma");
}

TEST_F(DlgQueryUnreadableTest, EachClickOnTheFieldTellsItUntilItCanBeRead)
{
    open();
    for (int i = 0; i < 2; ++i) {
        ui::CModalDriver driver;
        expectTold(driver, "Corsie");

        click(fields(), Lanes);

        EXPECT_EQ(driver.stepsTaken(), 1);
    }
    m_readings.unreadable.clear(); // its file came back

    click(fields(), Lanes);

    EXPECT_EQ(joined(rows(values())), "9, 10, 100");
}

TEST_F(DlgQueryUnreadableTest, TheLineUnderTheFilterSaysThatItCannotBeRead)
{
    open();

    ui::typeInto(filter(), QStringLiteral("Corsie >= 10"));
    EXPECT_TRUE(ui::waitUntil([&] { return live() == "il campo Corsie non può essere letto"; }))
        << live();

    filter().selectAll();
    ui::typeInto(filter(), QStringLiteral("Larghezza > 5"));
    EXPECT_TRUE(ui::waitUntil([&] { return live() == "1 entità su 4 soddisfa il filtro"; }))
        << live();
}

TEST_F(DlgQueryUnreadableTest, OverColumnsItIsTheSame)
{
    m_library.offerColumns();
    open();
    ui::typeInto(filter(), QStringLiteral("Corsie >= 10"));
    EXPECT_TRUE(ui::waitUntil([&] { return live() == "il campo Corsie non può essere letto"; }))
        << live();
    ui::CModalDriver driver;
    expectTold(driver, "Corsie");

    QTest::keyClick(&filter(), Qt::Key_Return);

    EXPECT_EQ(driver.stepsTaken(), 1);
    EXPECT_EQ(grid(), nullptr);
}

TEST_F(DlgQueryUnreadableTest, ReadAgainTheFieldIsLikeTheOthers)
{
    open();
    {
        ui::CModalDriver driver;
        expectTold(driver, "Corsie");
        run("Corsie = 9");
    }
    m_readings.unreadable.clear(); // its file came back

    run("Corsie = 9");

    ASSERT_NE(grid(), nullptr);
    EXPECT_EQ(grid()->model()->rowCount(), 2);
    EXPECT_GT(m_readings.asked, 0);
}
