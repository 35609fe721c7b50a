// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/embedded/store/StoreTesting.h"
#include "tests/support/LibraryNotation.h"

#include <gtest/gtest.h>

#include <csignal>
#include <random>
#include <set>
#include <sys/wait.h>
#include <unistd.h>

using namespace storetest;
using embedded::OpenMode;

namespace {

constexpr int Rows = 3000;

enum class Way { InPlace, Replacing };

/// A process that saves again and again, each time with another text in every row.
[[noreturn]] void saveForEver(const std::string& path, Way way)
{
    embedded::Report report;
    auto library = embedded::openLibrary(path, OpenMode::Write, nullptr, report);
    if (!library)
        ::_exit(1);
    gis::CLibGis& facade = *library.value();
    auto& model = *embedded::Library::of(&facade);
    for (int round = 1;; ++round) {
        gis::CDBTable* table = model.tables()[0];
        for (int row = 0; row < table->rowCount(); ++row)
            model.setCell(table->row(row), 0,
                orv::CPolyValue(orv::String(std::string_view("giro " + std::to_string(round)))));
        const auto saved = way == Way::InPlace ? embedded::saveLibrary(facade)
                                               : embedded::saveLibraryAs(facade, path);
        if (!saved)
            ::_exit(2);
    }
}

std::set<std::string> textsIn(const std::string& path)
{
    std::set<std::string> texts;
    const auto library = opened(path);
    if (!library)
        return texts;
    gis::CDBTable* table = embedded::Library::of(library.get())->tables()[0];
    EXPECT_EQ(table->rowCount(), Rows);
    for (int row = 0; row < table->rowCount(); ++row)
        texts.insert(std::string(table->column(0).textAt(row)));
    return texts;
}

class KillTest : public testing::TestWithParam<Way> { };

} // namespace

TEST_P(KillTest, AKilledProcessLeavesOneWholeState)
{
    const CTemporaryFolder folder;
    const std::string path = folder.file("a.gpkg");
    auto library = support::makeLibrary("table T (a text)");
    embedded::Library::of(library.get())->tables()[0]->addRows(Rows);
    for (int row = 0; row < Rows; ++row)
        embedded::Library::of(library.get())
            ->tables()[0]
            ->columnForWriting(0)
            .setText(row, "vecchio");
    ASSERT_TRUE(embedded::saveLibraryAs(*library, path).ok());
    library.reset();
    std::mt19937 random(11);
    std::set<std::string> states;
    for (int round = 0; round < 25; ++round) {
        const pid_t child = ::fork();
        if (child == 0)
            saveForEver(path, GetParam());
        ::usleep(5000 + static_cast<unsigned>(random() % 150000));
        ::kill(child, SIGKILL);
        int status = 0;
        ::waitpid(child, &status, 0);
        ASSERT_TRUE(WIFSIGNALED(status)) << "the process ended by itself: " << WEXITSTATUS(status);

        const auto texts = textsIn(path);
        ASSERT_EQ(texts.size(), 1u) << "half of a save is in the file";
        states.insert(*texts.begin());
        ASSERT_EQ(sqlAnswer(path, "PRAGMA integrity_check"), "ok");
    }
    EXPECT_GT(states.size(), 1u) << "no save ever came through";
}

INSTANTIATE_TEST_SUITE_P(Ways, KillTest, testing::Values(Way::InPlace, Way::Replacing));
