// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/embedded/store/LibraryImage.h"
#include "tests/embedded/store/RandomLibrary.h"
#include "tests/embedded/store/StoreTesting.h"
#include "tests/support/LibraryNotation.h"

#include "host/gis/TableEdit.h"

#include <gtest/gtest.h>

#include <array>
#include <random>

using namespace storetest;
using embedded::ErrorCode;
using embedded::OpenMode;

namespace {

class DamageTest : public testing::Test {
protected:
    std::string saved()
    {
        gis::CLibGis library;
        CRandomLibrary(7).fill(library);
        EXPECT_TRUE(embedded::saveLibraryAs(library, path).ok());
        return bytesOf(path);
    }
    /// A table of many rows; a page of its first field is overwritten.
    void saveWithADamagedPage()
    {
        const auto library = support::makeLibrary("table T (a text, b text); rows T: ('x', 'y')");
        gis::CDBTable* table = embedded::Library::of(library.get())->tables()[0];
        table->addRows(20000);
        for (int row = 0; row < table->rowCount(); ++row)
            table->columnForWriting(0).setText(row, "testo numero " + std::to_string(row));
        ASSERT_TRUE(embedded::saveLibraryAs(*library, path).ok());
        std::string damaged = bytesOf(path);
        const std::size_t page = 4096 * 60;
        ASSERT_GT(damaged.size(), page + 4096);
        std::fill_n(damaged.begin() + static_cast<std::ptrdiff_t>(page), 4096, '\x55');
        writeBytes(path, damaged);
    }
    /// Opens whatever the file is and reads all of it: an error or a library, never a crash.
    bool opensAndReads()
    {
        embedded::Report report;
        auto library = embedded::openLibrary(path, OpenMode::Read, nullptr, report);
        if (!library)
            return false;
        const auto loaded = embedded::Library::of(library.value().get())->loadAll();
        return loaded.ok() && !imageOf(*library.value()).empty();
    }

    CTemporaryFolder folder;
    std::string path = folder.file("a.gpkg");
};

} // namespace

TEST_F(DamageTest, WhatIsNoLibraryIsSaidToBeWhatItIs)
{
    EXPECT_EQ(refusal(folder.file("nowhere.gpkg")).code, ErrorCode::FileNotFound);
    EXPECT_EQ(refusal(folder.path().string()).code, ErrorCode::NotAFile);
    writeBytes(path, "");
    EXPECT_EQ(refusal(path).code, ErrorCode::EmptyFile);
    writeBytes(path, "PK\x03\x04 and so on");
    EXPECT_EQ(refusal(path).code, ErrorCode::NotALibrary);
    EXPECT_EQ(refusal(path).detail, "a zip archive");
    writeBytes(path, std::string(5000, 'x'));
    EXPECT_EQ(refusal(path).code, ErrorCode::NotALibrary);
    EXPECT_FALSE(embedded::isGeoPackage(path));
}

TEST_F(DamageTest, ADatabaseOfAnotherKindIsNoLibrary)
{
    saved();
    runSql(path, "DROP TABLE gpkg_contents");

    EXPECT_EQ(refusal(path).code, ErrorCode::NotALibrary);
}

TEST_F(DamageTest, ANewerFormatIsRefusedAndAnOlderOneRead)
{
    saved();
    EXPECT_TRUE(embedded::isGeoPackage(path));
    runSql(path, "UPDATE tematica_library SET value = 99 WHERE key = 'format_version'");
    EXPECT_EQ(refusal(path).code, ErrorCode::NewerFormat);
    EXPECT_EQ(refusal(path, OpenMode::Write).detail, "99");
    runSql(path, "UPDATE tematica_library SET value = 'x' WHERE key = 'format_version'");
    EXPECT_EQ(refusal(path).code, ErrorCode::DamagedFile);
}

TEST_F(DamageTest, ShortFilesAreRefused)
{
    const std::string whole = saved();
    for (std::size_t length = 1; length < whole.size(); length += length < 200 ? 7 : 1999) {
        writeBytes(path, whole.substr(0, length));
        EXPECT_FALSE(opensAndReads()) << length;
    }
}

TEST_F(DamageTest, FilesWithWrongBytesNeverCrash)
{
    const std::string whole = saved();
    std::mt19937 random(1);
    for (int round = 0; round < 400; ++round) {
        std::string damaged = whole;
        for (int hits = static_cast<int>(random() % 40); hits >= 0; --hits)
            damaged[random() % damaged.size()] = static_cast<char>(random());
        writeBytes(path, damaged);
        static_cast<void>(opensAndReads());
    }
}

TEST_F(DamageTest, WrongBytesInTheTablesOfOursNeverCrash)
{
    std::mt19937 random(2);
    const std::string whole = saved();
    for (int round = 0; round < 150; ++round) {
        writeBytes(path, whole);
        // Values of any kind in any column of our own tables.
        static constexpr std::array Tables = { "tematica_tables", "tematica_fields",
            "tematica_parts", "tematica_themes", "tematica_classes", "tematica_entity_order",
            "tematica_rings", "tematica_links", "tematica_layers", "tematica_marks" };
        static constexpr std::array Values = { "-1", "9223372036854775807", "'x'", "1.5",
            "x'FFFFFFFFFF'", "'1-99999999'", "randomblob(20)", "0" };
        const std::string table = Tables[random() % Tables.size()];
        const std::string columns = sqlAnswer(
            path, "SELECT group_concat(name, ' ') FROM pragma_table_info('" + table + "')");
        std::vector<std::string> names;
        for (std::size_t from = 0; from < columns.size();) {
            const std::size_t to = std::min(columns.find(' ', from), columns.size());
            names.push_back(columns.substr(from, to - from));
            from = to + 1;
        }
        sqlAnswer(path,
            "UPDATE OR IGNORE " + table + " SET " + names[random() % names.size()] + " = "
                + Values[random() % Values.size()] + " WHERE random() % 2");
        static_cast<void>(opensAndReads());
    }
}

TEST_F(DamageTest, ATableOrThemeWithoutANumberOfItsOwnIsDamage)
{
    const std::string whole = saved();
    for (const std::string table : { "tematica_tables", "tematica_themes" }) {
        const std::string free = "CREATE TABLE free AS SELECT * FROM " + table + ";DROP TABLE "
            + table + ";ALTER TABLE free RENAME TO " + table;
        writeBytes(path, whole);
        runSql(path, free); // without the rules that would refuse what follows
        ASSERT_TRUE(opensAndReads()) << "the file is as good as before";
        const std::string unruled = bytesOf(path);
        const std::string first = "(SELECT min(rowid) FROM " + table + ")";
        for (const std::string& spoilt :
            { "UPDATE " + table + " SET id = NULL WHERE rowid = " + first,
                "UPDATE " + table + " SET id = 0 WHERE rowid = " + first,
                "UPDATE " + table + " SET id = -7 WHERE rowid = " + first,
                "UPDATE " + table + " SET id = 'x' WHERE rowid = " + first,
                "INSERT INTO " + table + " SELECT * FROM " + table + " WHERE rowid = " + first }) {
            SCOPED_TRACE(spoilt);
            writeBytes(path, unruled);
            runSql(path, spoilt);
            const embedded::Error error = refusal(path);
            EXPECT_EQ(error.code, ErrorCode::DamagedFile);
            EXPECT_EQ(error.subject, path);
            EXPECT_NE(error.detail.find("without a number of its own"), std::string::npos)
                << error.detail;
            EXPECT_EQ(refusal(path, OpenMode::Write).code, ErrorCode::DamagedFile);
        }
    }
}

TEST_F(DamageTest, AReadThatFailedIsNeverSavedAsEmptyCells)
{
    saveWithADamagedPage();

    const auto library = opened(path, OpenMode::Write);
    ASSERT_TRUE(library);
    orv::CPolyValue value("z");
    library->SetRowValue(library->GetRow(library->GetTable(0), 0), 1, value);
    library->GetRowValue(library->GetRow(library->GetTable(0), 0), 0, value);

    const auto again = embedded::saveLibrary(*library);
    ASSERT_FALSE(again.ok());
    EXPECT_EQ(again.error().code, ErrorCode::DamagedFile);
    EXPECT_FALSE(embedded::saveLibraryAs(*library, folder.file("b.gpkg")).ok());
    EXPECT_FALSE(std::filesystem::exists(folder.file("b.gpkg")));
}

TEST_F(DamageTest, AFieldWithoutItsCellsThatUndoBringsBackIsNotSavedElsewhereEither)
{
    saveWithADamagedPage();
    orv::CChangeTransactionManager changes;
    embedded::Report report;
    const auto library = embedded::openLibrary(path, OpenMode::Write, &changes, report);
    ASSERT_TRUE(library.ok());
    gis::CLibGis& facade = *library.value();
    gis::CCtrlDlgTableEdit edit(&facade, facade.GetTable(0));
    edit.DeleteField(edit.GetCurField(0)); // both lie in the damaged page
    edit.DeleteField(edit.GetCurField(0));
    ASSERT_TRUE(edit.Commit());
    const std::string elsewhere = folder.file("b.gpkg");
    ASSERT_TRUE(embedded::saveLibraryAs(facade, elsewhere).ok());

    ASSERT_TRUE(changes.Undo());

    const auto again = embedded::saveLibrary(facade);
    ASSERT_FALSE(again.ok()) << "its cells are in neither file";
    EXPECT_EQ(again.error().code, ErrorCode::ReadFailed);
    EXPECT_EQ(again.error().subject, elsewhere);
    ASSERT_TRUE(changes.Redo());
    EXPECT_TRUE(embedded::saveLibrary(facade).ok());
}
