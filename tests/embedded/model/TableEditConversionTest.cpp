// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "host/gis/TableEdit.h"

#include "embedded/model/Library.h"
#include "tests/support/Describe.h"
#include "tests/support/LibraryNotation.h"

#include "host/base/Numbers.h"
#include "host/base/ChangeManager.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

using embedded::FindingCode;
using embedded::Library;
using gis::CCtrlDlgTableEdit;
using gis::CLibGis;
using gis::FieldFormat;
using support::makeLibrary;

struct ConversionCase {
    const char* from; // field and rows in the notation
    FieldFormat to;
    const char* rows; // one value a line
};

class TableEditConversionTest : public testing::TestWithParam<ConversionCase> { };

TEST_P(TableEditConversionTest, CellsAreConvertedAndComeBackByUndo)
{
    orv::CChangeTransactionManager changes;
    const auto library = makeLibrary(GetParam().from, &changes);
    gis::CDBTable* table = library->GetTable(0);
    const std::string before = support::printTable(*table);
    CCtrlDlgTableEdit edit(library.get(), table);

    edit.SetFieldFormat(edit.GetCurField(0), GetParam().to);
    ASSERT_TRUE(edit.Commit());
    std::string rows = support::printRows(*table);
    rows.erase(
        std::remove_if(rows.begin(), rows.end(), [](char c) { return c == '(' || c == ')'; }),
        rows.end());

    EXPECT_EQ(rows, GetParam().rows);
    changes.Undo();
    EXPECT_EQ(support::printTable(*table), before);
}

INSTANTIATE_TEST_SUITE_P(Conversions, TableEditConversionTest,
    testing::Values(
        ConversionCase { "table T (a text); rows T: (' 12 '), ('2.5'), ('1e3'), ('12 m'), ('-'),"
                         "('2147483648'), ('-3'), (-)",
            FieldFormat::Integer, "12\n3\n1000\n-\n-\n-\n-3\n-\n" },
        ConversionCase { "table T (a text); rows T: ('2.5'), ('.5'), ('1,5'), ('x1'), ('1e400')",
            FieldFormat::Decimal, "2.5\n0.5\n-\n-\n-\n" },
        ConversionCase {
            "table T (a text); rows T: ('S\xC3\xAC'), ('no'), ('TRUE'), ('False'), ('1'),"
            "('0'), ('forse'), ('2')",
            FieldFormat::Boolean, "yes\nno\nyes\nno\nyes\nno\n-\n-\n" },
        ConversionCase { "table T (a text); rows T: ('5/3/2016'), ('31/02/2020'), ('2020-01-02')",
            FieldFormat::Date, "05/03/2016\n-\n-\n" },
        ConversionCase { "table T (a text); rows T: ('alfa'), ('12'), (-)", FieldFormat::List,
            "'alfa'\n'12'\n-\n" },
        ConversionCase {
            "table T (a list ('7', 'b')); rows T: ('7'), ('b')", FieldFormat::Integer, "7\n-\n" },
        ConversionCase { "table T (a decimal 3); rows T: (1.5), (2), (1.0005), (-)",
            FieldFormat::Text, "'1.500'\n'2.000'\n'1.000'\n-\n" },
        ConversionCase { "table T (a decimal 2); rows T: (2.5), (-2.5), (2.4), (2147483647.4),"
                         "(2147483647.5), (-2147483648.4), (-2147483648.5)",
            FieldFormat::Integer, "3\n-3\n2\n2147483647\n-\n-2147483648\n-\n" },
        ConversionCase { "table T (a decimal 2); rows T: (1), (0), (0.5)", FieldFormat::Boolean,
            "yes\nno\n-\n" },
        ConversionCase { "table T (a decimal 2); rows T: (1.5)", FieldFormat::Date, "-\n" },
        ConversionCase { "table T (a integer); rows T: (-7), (2147483647)", FieldFormat::Decimal,
            "-7\n2147483647\n" },
        ConversionCase { "table T (a integer); rows T: (-7)", FieldFormat::Text, "'-7'\n" },
        ConversionCase {
            "table T (a integer); rows T: (1), (0), (7)", FieldFormat::Boolean, "yes\nno\n-\n" },
        ConversionCase { "table T (a boolean); rows T: (yes), (no), (-)", FieldFormat::Text,
            "'S\xC3\xAC'\n'No'\n-\n" },
        ConversionCase {
            "table T (a boolean); rows T: (yes), (no)", FieldFormat::Integer, "-\n-\n" },
        ConversionCase { "table T (a date); rows T: (05/03/2016), (01/01/1950)", FieldFormat::Text,
            "'05/03/2016'\n'01/01/1950'\n" },
        ConversionCase { "table T (a date); rows T: (05/03/2016)", FieldFormat::Decimal, "-\n" }));

/// Findings as `code field count`, codes of structure changes by their letter: (c)onverted,
/// (e)mptied, (u)nchanged; a warning has an exclamation mark.
std::string printReport(const embedded::Report& report)
{
    std::string out;
    for (const auto& finding : report.findings) {
        out += finding.code == FindingCode::CellsConverted ? "c"
            : finding.code == FindingCode::CellsEmptied    ? "e"
            : finding.code == FindingCode::CellsUnchanged  ? "u"
                                                           : "?";
        out += finding.severity == embedded::FindingSeverity::Warning ? "! " : " ";
        out += finding.subject + " " + support::describe(finding.count) + "\n";
    }
    return out;
}

TEST(TableEditCostTest, TheReportSaysWhatBecameOfTheCells)
{
    const auto library = makeLibrary("table T (a text, b integer, c text);"
                                     "rows T: ('1', 1, 'x'), ('due', 2, -), ('tre', -, 'z')");
    CCtrlDlgTableEdit edit(library.get(), library->GetTable(0));
    edit.SetFieldFormat(edit.GetCurField(0), FieldFormat::Integer);
    edit.SetFieldFormat(edit.GetCurField(1), FieldFormat::Text);
    edit.SetFieldFormat(edit.GetCurField(2), FieldFormat::List);
    edit.SetFieldName(edit.GetCurField(2), "lista");

    ASSERT_TRUE(edit.Commit());

    EXPECT_EQ(printReport(Library::of(library.get())->lastReport()),
        "c a 1\ne! a 2\nu a 0\nc b 2\ne b 0\nu b 0\nc lista 0\ne lista 0\nu lista 2\n");
}

TEST(TableEditCostTest, TheStepIsNamedAfterWhatWasLost)
{
    orv::CChangeTransactionManager changes;
    const auto library = makeLibrary("table Strade (Quota text, Corsie text, nota text);"
                                     "rows Strade: ('alta', 'due', '1'), ('bassa', '2', '2')",
        &changes);
    CCtrlDlgTableEdit edit(library.get(), library->GetTable(0));
    for (int i = 0; i < 3; ++i)
        edit.SetFieldFormat(edit.GetCurField(i), FieldFormat::Decimal);

    ASSERT_TRUE(edit.Commit());

    EXPECT_EQ(changes.UndoName(),
        orv::String("Struttura di Strade: 2 valori non convertibili in Quota, "
                    "1 valore non convertibile in Corsie"));
}

TEST(TableEditCostTest, ACommitWithoutFormatChangesHasAnEmptyReport)
{
    const auto library = makeLibrary("table T (a text)");
    CCtrlDlgTableEdit edit(library.get(), library->GetTable(0));
    Library::of(library.get())->beginReport().add({});
    edit.SetFieldName(edit.GetCurField(0), "b");

    ASSERT_TRUE(edit.Commit());

    EXPECT_TRUE(Library::of(library.get())->lastReport().findings.empty());
}

TEST(TableEditCostTest, NumbersWithoutDigitsAreEmptiedAndCountedAsSuch)
{
    orv::CChangeTransactionManager changes;
    const auto library
        = makeLibrary("table T (a decimal 2); rows T: (1), (1), (1), (1.5), (-)", &changes);
    gis::CDBTable* table = library->GetTable(0);
    table->columnForWriting(0).setDecimal(0, std::nan(""));
    table->columnForWriting(0).setDecimal(1, std::numeric_limits<double>::infinity());
    table->columnForWriting(0).setDecimal(2, -std::numeric_limits<double>::infinity());
    CCtrlDlgTableEdit edit(library.get(), table);
    edit.SetFieldFormat(edit.GetCurField(0), FieldFormat::Text);

    ASSERT_TRUE(edit.Commit());

    EXPECT_EQ(support::printRows(*table), "(-)\n(-)\n(-)\n('1.50')\n(-)\n");
    EXPECT_EQ(table->column(0).emptyCount(), 4) << "no value, not a text of no characters";
    EXPECT_EQ(printReport(Library::of(library.get())->lastReport()), "c a 1\ne! a 3\nu a 0\n");
    ASSERT_TRUE(changes.Undo());
    EXPECT_TRUE(std::isnan(table->column(0).decimalAt(0)));
}

/// The tables that the findings of a report are about, in order.
std::vector<std::string> tablesOf(const embedded::Report& report)
{
    std::vector<std::string> names;
    for (const auto& finding : report.findings)
        if (names.empty() || names.back() != finding.detail)
            names.push_back(finding.detail);
    return names;
}

TEST(TableEditCostTest, StructuresChangedInOneStepAreOneReport)
{
    orv::CChangeTransactionManager changes;
    const auto library = makeLibrary("table Strade (a text); rows Strade: ('1');"
                                     "table Case (b text, c text); rows Case: ('due', '2')",
        &changes);
    Library& model = *Library::of(library.get());
    const auto change = [&](const char* name, FieldFormat format) {
        gis::CDBTable* table = library->FindTable(name);
        CCtrlDlgTableEdit edit(library.get(), table);
        edit.SetFieldFormat(edit.GetCurField(0), format);
        EXPECT_TRUE(edit.Commit());
    };
    {
        const orv::ChangeStep step(&changes, "Strutture");
        model.beginReport(); // as who opens a step for several changes does
        change("Strade", FieldFormat::Integer);
        change("Case", FieldFormat::Integer);
    }
    EXPECT_EQ(tablesOf(model.lastReport()), (std::vector<std::string> { "Strade", "Case" }));
    EXPECT_EQ(printReport(model.lastReport()), "c a 1\ne a 0\nu a 0\nc b 0\ne! b 1\nu b 0\n");

    change("Case", FieldFormat::Decimal);
    EXPECT_EQ(tablesOf(model.lastReport()), std::vector<std::string> { "Case" });
    change("Strade", FieldFormat::Decimal);
    EXPECT_EQ(tablesOf(model.lastReport()), std::vector<std::string> { "Strade" });
    EXPECT_EQ(changes.UndoName(), orv::String("Struttura di Strade"));
}

/// Goes on until it was asked so many times; keeps what it was told.
class CCountingProgress final : public embedded::IProgress {
public:
    explicit CCountingProgress(int allowed)
        : m_allowed(allowed)
    {
    }
    bool advance(double fraction) override
    {
        fractions.push_back(fraction);
        return static_cast<int>(fractions.size()) <= m_allowed;
    }
    std::vector<double> fractions;

private:
    int m_allowed;
};

std::unique_ptr<gis::CLibGis> libraryOfNumbers(int rows, orv::CChangeTransactionManager& changes)
{
    support::LibraryPlan plan = support::planFrom("table T (a text, b text)");
    for (int i = 0; i < rows; ++i)
        plan.tables[0].rows.push_back(
            { orv::CPolyValue(orv::String::ValueOf(i)), orv::CPolyValue("x") });
    auto library = std::make_unique<gis::CLibGis>(&changes);
    support::fillLibrary(*library, plan);
    return library;
}

TEST(TableEditCostTest, CancelledMeansUntouched)
{
    orv::CChangeTransactionManager changes;
    const auto library = libraryOfNumbers(70000, changes);
    gis::CDBTable* table = library->GetTable(0);
    for (const int allowed : { 0, 1, 3 }) {
        CCountingProgress progress(allowed);
        Library::of(library.get())->setProgress(&progress);
        CCtrlDlgTableEdit edit(library.get(), table);
        edit.SetFieldFormat(edit.GetCurField(0), FieldFormat::Integer);
        edit.SetFieldFormat(edit.GetCurField(1), FieldFormat::Decimal);

        EXPECT_FALSE(edit.Commit());

        EXPECT_EQ(library->GetFieldFormat(library->GetField(table, 0)), FieldFormat::Text);
        EXPECT_FALSE(changes.CanUndo());
        EXPECT_FALSE(library->GetModifiedFlag());
        EXPECT_EQ(edit.GetFieldFormat(edit.GetCurField(0)), FieldFormat::Integer)
            << "still pending";
    }
    Library::of(library.get())->setProgress(nullptr);
}

TEST(TableEditCostTest, ProgressGrowsOverAllColumns)
{
    orv::CChangeTransactionManager changes;
    const auto library = libraryOfNumbers(70000, changes);
    CCountingProgress progress(1 << 20);
    Library::of(library.get())->setProgress(&progress);
    CCtrlDlgTableEdit edit(library.get(), library->GetTable(0));
    edit.SetFieldFormat(edit.GetCurField(0), FieldFormat::Integer);
    edit.SetFieldFormat(edit.GetCurField(1), FieldFormat::Decimal);

    ASSERT_TRUE(edit.Commit());

    EXPECT_TRUE(std::is_sorted(progress.fractions.begin(), progress.fractions.end()));
    ASSERT_FALSE(progress.fractions.empty());
    EXPECT_GT(progress.fractions.back(), 0.5);
    EXPECT_LE(progress.fractions.back(), 1.0);
    Library::of(library.get())->setProgress(nullptr);
}

/// More rows than a chunk holds, more different texts than one thread converts, some cells missing.
class LongConversionTest : public testing::TestWithParam<FieldFormat> { };

TEST_P(LongConversionTest, EveryCellIsConvertedWhateverItsChunk)
{
    constexpr int rows = 150'001;
    const FieldFormat format = GetParam();
    orv::CChangeTransactionManager changes;
    CLibGis library(&changes);
    gis::CDBTable* table = library.CreateTable("T");
    table->addField("a", FieldFormat::Text);
    table->addRows(rows);
    embedded::Column texts(gis::ColumnKind::Dictionary);
    for (int row = 0; row < rows; ++row) {
        if (row % 7 == 3)
            texts.appendEmpty();
        else if (row % 11 == 5)
            texts.appendText("nessuno " + std::to_string(row)); // becomes no value
        else if (format == FieldFormat::Boolean)
            texts.appendText(row % 2 == 0 ? "no" : "TRUE");
        else if (format == FieldFormat::Date)
            texts.appendText(std::to_string(1 + row % 28) + "/" + std::to_string(1 + row % 12) + "/"
                + std::to_string(1500 + row % 3000));
        else
            texts.appendText(std::to_string(row - 70'000));
    }
    table->setColumn(0, std::move(texts));
    changes.Clear();
    CCtrlDlgTableEdit edit(&library, table);
    edit.SetFieldFormat(edit.GetCurField(0), format);
    ASSERT_TRUE(edit.Commit());

    int wrong = 0;
    for (int row = 0; row < rows; ++row) {
        orv::CPolyValue value;
        library.GetRowValue(table->row(row), 0, value);
        bool isRight = false;
        if (row % 7 == 3 || row % 11 == 5) {
            isRight = value.IsEmpty();
        } else if (format == FieldFormat::Boolean) {
            isRight = value == orv::CPolyValue(row % 2 != 0);
        } else if (format == FieldFormat::Date) {
            char text[16];
            orv_sprintf(
                text, sizeof text, "%02d/%02d/%d", 1 + row % 28, 1 + row % 12, 1500 + row % 3000);
            isRight = value.GetStringValue() == orv::String(text);
        } else {
            isRight = format == FieldFormat::Integer ? value == orv::CPolyValue(row - 70'000)
                                                     : value == orv::CPolyValue(row - 70'000.0);
        }
        wrong += isRight ? 0 : 1;
    }
    EXPECT_EQ(wrong, 0);

    // Rows that come later go behind the last chunk.
    table->addRows(1);
    EXPECT_EQ(table->column(0).rowCount(), rows + 1);
    EXPECT_FALSE(table->column(0).hasValue(rows));
    EXPECT_EQ(table->column(0).hasValue(rows - 1), (rows - 1) % 7 != 3 && (rows - 1) % 11 != 5);
}

INSTANTIATE_TEST_SUITE_P(Formats, LongConversionTest,
    testing::Values(
        FieldFormat::Boolean, FieldFormat::Integer, FieldFormat::Decimal, FieldFormat::Date));

} // namespace
