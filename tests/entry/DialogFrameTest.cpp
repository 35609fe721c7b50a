// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "entry/DialogFrame.h"

#include "entry/ModuleRecord.h"

#include <QApplication>
#include <QThread>

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>

using namespace entry;

namespace {

class DialogFrameTest : public testing::Test {
protected:
    int m_object = 0;
    bool m_ran = false;

    bool run(const Frame& frame, std::initializer_list<const void*> needed)
    {
        return runDialog(frame, needed, [this] {
            m_ran = true;
            return true;
        });
    }

    static std::unique_ptr<QApplication> application()
    {
        static int argc = 1;
        static char name[] = "entry_test";
        static char* argv[] = { name, nullptr };
        return std::make_unique<QApplication>(argc, argv);
    }
};

TEST_F(DialogFrameTest, RunsTheDialogUnderTheModulesTexts)
{
    const auto app = application();
    kit::ResourceHandle during = nullptr;
    const kit::TextResource other("{}");
    kit::setCurrentResource(&other);

    const bool answer = runDialog({ "F", false }, { &m_object }, [&] {
        during = kit::currentResource();
        return true;
    });
    const auto after = kit::currentResource();
    kit::setCurrentResource(nullptr);

    EXPECT_TRUE(answer);
    EXPECT_EQ(during, moduleRecord().resourceHandle);
    EXPECT_EQ(after, &other);
}

TEST_F(DialogFrameTest, NullObjectsGiveTheCancelledAnswerWithoutADialog)
{
    const auto app = application();

    testing::internal::CaptureStderr();
    EXPECT_FALSE(run({ "FDlgA", false }, { nullptr }));
    EXPECT_FALSE(run({ "FDlgA", false }, { &m_object, nullptr }));
    EXPECT_TRUE(run({ "FImport", true }, { nullptr }));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_FALSE(m_ran);
}

TEST_F(DialogFrameTest, WithoutAnApplicationNoDialogRuns)
{
    ASSERT_EQ(QCoreApplication::instance(), nullptr);

    testing::internal::CaptureStderr();
    EXPECT_FALSE(run({ "FDlgA", false }, { &m_object }));
    EXPECT_TRUE(run({ "FDlgQuery", true }, { &m_object }));
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
        "tematica: FDlgA: the process has no QApplication, no dialog is shown\n"
        "tematica: FDlgQuery: the process has no QApplication, no dialog is shown\n");
    EXPECT_FALSE(m_ran);
}

TEST_F(DialogFrameTest, ACoreApplicationIsNotEnough)
{
    static int argc = 1;
    static char name[] = "entry_test";
    static char* argv[] = { name, nullptr };
    const QCoreApplication app(argc, argv);

    EXPECT_FALSE(run({ "FDlgA", false }, { &m_object }));
    EXPECT_FALSE(m_ran);
}

TEST_F(DialogFrameTest, AnotherThreadThanTheApplicationsRunsNoDialog)
{
    const auto app = application();
    bool answer = false;

    testing::internal::CaptureStderr();
    const std::unique_ptr<QThread> thread(QThread::create([&] {
        answer = run({ "FDlgShow", true }, { &m_object });
    }));
    thread->start();
    thread->wait();

    EXPECT_TRUE(answer);
    EXPECT_FALSE(m_ran);
    EXPECT_NE(testing::internal::GetCapturedStderr().find("another thread"), std::string::npos);
}

TEST_F(DialogFrameTest, AnExceptionEndsAsCancelledAndTheTextsAreBack)
{
    const auto app = application();
    const auto before = kit::currentResource();

    EXPECT_FALSE(runDialog(
        { "FDlgA", false }, { &m_object }, []() -> bool { throw std::runtime_error("dialog"); }));
    EXPECT_TRUE(runDialog({ "FDlgB", true }, { &m_object }, []() -> bool { throw 1; }));
    EXPECT_EQ(kit::currentResource(), before);
}

} // namespace
