// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT

#include "host/base/ChangeManager.h"

#include "host/base/LibGen.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>

namespace {

using orv::CChangeTransactionManager;
using orv::ChangeStep;

/// A text that changes by a letter at its end, so that order shows.
class Letters {
public:
    explicit Letters(CChangeTransactionManager& manager)
        : m_manager(manager)
    {
    }
    void append(char letter);
    std::string text;

private:
    CChangeTransactionManager& m_manager;
};

class AppendedLetter final : public orv::IChange {
public:
    AppendedLetter(Letters& letters, char letter)
        : m_letters(letters)
        , m_letter(letter)
    {
    }
    void Undo() override
    {
        // As a model does: what it changes now, it tells the manager again.
        ASSERT_EQ(m_letters.text.back(), m_letter);
        m_letters.text.pop_back();
    }
    void Redo() override { m_letters.append(m_letter); }

private:
    Letters& m_letters;
    char m_letter;
};

void Letters::append(char letter)
{
    text += letter;
    m_manager.Record(std::make_unique<AppendedLetter>(*this, letter));
}

class ChangeManagerTest : public testing::Test {
protected:
    void step(const char* name, const std::string& appended)
    {
        const ChangeStep scope(&manager, name);
        for (const char letter : appended)
            letters.append(letter);
    }
    CChangeTransactionManager manager;
    Letters letters { manager };
};

TEST_F(ChangeManagerTest, ANewManagerHasNothingToTakeBack)
{
    EXPECT_FALSE(manager.CanUndo());
    EXPECT_FALSE(manager.CanRedo());
    EXPECT_FALSE(manager.Undo());
    EXPECT_FALSE(manager.Redo());
    EXPECT_EQ(manager.UndoName().View(), "");
    EXPECT_EQ(manager.RedoName().View(), "");
    EXPECT_FALSE(manager.IsStepOpen());
}

TEST_F(ChangeManagerTest, AStepIsTakenBackAndMadeAgainAsAWhole)
{
    step("uno", "ab");
    step("due", "cd");

    EXPECT_EQ(manager.UndoName().View(), "due");
    EXPECT_TRUE(manager.Undo());
    EXPECT_EQ(letters.text, "ab");
    EXPECT_EQ(manager.RedoName().View(), "due");
    EXPECT_TRUE(manager.Undo());
    EXPECT_EQ(letters.text, "");
    EXPECT_FALSE(manager.Undo());
    EXPECT_TRUE(manager.Redo());
    EXPECT_TRUE(manager.Redo());
    EXPECT_EQ(letters.text, "abcd");
    EXPECT_FALSE(manager.Redo());
}

TEST_F(ChangeManagerTest, AChangeOutsideStepsIsAStepOfItsOwn)
{
    letters.append('a');
    letters.append('b');

    EXPECT_TRUE(manager.Undo());
    EXPECT_EQ(letters.text, "a");
    EXPECT_EQ(manager.UndoName().View(), "");
}

TEST_F(ChangeManagerTest, AnEmptyStepLeavesNoTrace)
{
    step("uno", "a");
    manager.Undo();
    const auto position = manager.Position();

    step("niente", "");

    EXPECT_FALSE(manager.CanUndo());
    EXPECT_TRUE(manager.CanRedo());
    EXPECT_EQ(manager.Position(), position);
}

TEST_F(ChangeManagerTest, OnlyTheOutermostStepCounts)
{
    manager.BeginStep("fuori");
    step("dentro", "a");
    EXPECT_TRUE(manager.IsStepOpen());
    step("dentro", "b");
    manager.EndStep();

    EXPECT_FALSE(manager.IsStepOpen());
    EXPECT_EQ(manager.UndoName().View(), "fuori");
    EXPECT_TRUE(manager.Undo());
    EXPECT_EQ(letters.text, "");
}

TEST_F(ChangeManagerTest, ACancelledStepIsTakenBackFromAnyDepth)
{
    step("prima", "a");
    const auto position = manager.Position();
    {
        const ChangeStep outer(&manager, "fuori");
        letters.append('b');
        const ChangeStep inner(&manager, "dentro");
        letters.append('c');
        manager.CancelStep();
        EXPECT_FALSE(manager.IsStepOpen());
    }

    EXPECT_EQ(letters.text, "a");
    EXPECT_EQ(manager.Position(), position);
    EXPECT_EQ(manager.UndoName().View(), "prima");
    manager.CancelStep();
    manager.EndStep();
    EXPECT_EQ(letters.text, "a");
}

TEST_F(ChangeManagerTest, AnOpenStepCanBeTakenBackInPart)
{
    {
        const ChangeStep outer(&manager, "fuori");
        letters.append('a');
        const std::size_t held = manager.OpenChangeCount();
        letters.append('b');
        letters.append('c');
        const auto before = manager.Position();

        manager.TakeBackTo(held);

        EXPECT_EQ(letters.text, "a");
        EXPECT_EQ(manager.OpenChangeCount(), 1U);
        EXPECT_NE(manager.Position(), before);
        manager.TakeBackTo(5);
        EXPECT_EQ(letters.text, "a");
    }
    EXPECT_EQ(manager.OpenChangeCount(), 0U);
    manager.TakeBackTo(0);
    EXPECT_EQ(letters.text, "a");
    EXPECT_TRUE(manager.Undo());
    EXPECT_EQ(letters.text, "");
}

TEST_F(ChangeManagerTest, ANewChangeForgetsWhatCouldBeMadeAgain)
{
    step("uno", "a");
    step("due", "b");
    manager.Undo();

    step("tre", "c");

    EXPECT_FALSE(manager.CanRedo());
    EXPECT_EQ(manager.RedoName().View(), "");
    EXPECT_EQ(letters.text, "ac");
}

TEST_F(ChangeManagerTest, StepsAreRenamedWhileOpenAndAfter)
{
    manager.RenameStep("nessuno");
    manager.BeginStep("uno");
    letters.append('a');
    manager.RenameStep("Modifica");
    manager.EndStep();
    EXPECT_EQ(manager.UndoName().View(), "Modifica");

    manager.RenameStep("Compila");

    EXPECT_EQ(manager.UndoName().View(), "Compila");
    manager.Undo();
    EXPECT_EQ(manager.RedoName().View(), "Compila");
}

TEST_F(ChangeManagerTest, NothingIsTakenBackWhileAStepIsOpen)
{
    step("uno", "a");
    const ChangeStep open(&manager, "due");

    EXPECT_FALSE(manager.CanUndo());
    EXPECT_FALSE(manager.Undo());
    EXPECT_EQ(letters.text, "a");
}

TEST_F(ChangeManagerTest, TheLastChangeOfAnOpenStepCanGrow)
{
    EXPECT_EQ(manager.LastChange(), nullptr);
    letters.append('x');
    EXPECT_EQ(manager.LastChange(), nullptr);

    manager.BeginStep("uno");
    EXPECT_EQ(manager.LastChange(), nullptr);
    auto change = std::make_unique<AppendedLetter>(letters, 'y');
    const orv::IChange* recorded = change.get();
    letters.text += 'y';
    manager.Record(std::move(change));
    EXPECT_EQ(manager.LastChange(), recorded);
    manager.EndStep();

    EXPECT_EQ(manager.LastChange(), nullptr);
}

TEST_F(ChangeManagerTest, APositionMeansOneState)
{
    const auto start = manager.Position();
    step("uno", "a");
    const auto one = manager.Position();
    step("due", "b");
    const auto two = manager.Position();
    EXPECT_LT(start, one);
    EXPECT_LT(one, two);

    manager.Undo();
    EXPECT_EQ(manager.Position(), one);
    manager.Redo();
    EXPECT_EQ(manager.Position(), two);
    manager.Undo();
    manager.Undo();
    EXPECT_EQ(manager.Position(), start);

    // Another way to a state two steps on: the same number of steps, but other contents.
    step("uno", "x");
    EXPECT_NE(manager.Position(), one);
    step("due", "y");
    EXPECT_NE(manager.Position(), two);
}

TEST_F(ChangeManagerTest, AnOpenStepWithChangesIsAStateOfItsOwn)
{
    const auto start = manager.Position();
    manager.BeginStep("uno");
    EXPECT_EQ(manager.Position(), start);
    letters.append('a');
    const auto during = manager.Position();
    EXPECT_NE(during, start);
    letters.append('b');
    EXPECT_NE(manager.Position(), during);
    manager.EndStep();
    EXPECT_NE(manager.Position(), start);
}

TEST_F(ChangeManagerTest, ClearingForgetsStepsButNotTheState)
{
    step("uno", "a");
    const auto saved = manager.Position();

    manager.Clear();

    EXPECT_FALSE(manager.CanUndo());
    EXPECT_EQ(manager.Position(), saved);
    step("due", "b");
    EXPECT_NE(manager.Position(), saved);
    manager.Undo();
    EXPECT_EQ(manager.Position(), saved);
}

/// A change that runs what a test gives it when it is taken back.
class Probe final : public orv::IChange {
public:
    explicit Probe(std::function<void()> act)
        : m_act(std::move(act))
    {
    }
    void Undo() override { m_act(); }
    void Redo() override { m_act(); }

private:
    std::function<void()> m_act;
};

TEST_F(ChangeManagerTest, ReplayingIsToldAndNotRecordedNorNested)
{
    int plays = 0;
    manager.Record(std::make_unique<Probe>([&] {
        ++plays;
        EXPECT_TRUE(manager.IsReplaying());
        EXPECT_FALSE(manager.Undo());
        manager.Record(std::make_unique<Probe>([] {}));
    }));

    EXPECT_FALSE(manager.IsReplaying());
    EXPECT_TRUE(manager.Undo());
    EXPECT_FALSE(manager.IsReplaying());
    EXPECT_FALSE(manager.CanUndo());
    EXPECT_TRUE(manager.Redo());
    EXPECT_EQ(plays, 2);
}

TEST_F(ChangeManagerTest, NoChangeAndNoManagerAreHarmless)
{
    manager.Record(nullptr);
    EXPECT_FALSE(manager.CanUndo());
    const ChangeStep none(nullptr, "niente");
}

TEST(LibGenTest, TheModifiedMarkIsKept)
{
    CLibGen library;
    EXPECT_FALSE(library.GetModifiedFlag());
    library.SetModifiedFlag(true);
    EXPECT_TRUE(library.GetModifiedFlag());
    library.SetModifiedFlag(false);
    EXPECT_FALSE(library.GetModifiedFlag());
    ORVNotifySource().Notify(1, 2, nullptr);
}

} // namespace
