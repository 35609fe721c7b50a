// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "entry/ModuleRecord.h"

#include <gtest/gtest.h>

using namespace entry;

namespace {

class ModuleRecordTest : public testing::Test {
protected:
    void* const m_atLoad = moduleRecord().moduleHandle;
    int m_module = 0;

    void TearDown() override { FModuleEntry(m_atLoad, ModuleAttach); }
};

TEST_F(ModuleRecordTest, LoadingFillsTheRecord)
{
    EXPECT_TRUE(moduleRecord().isInitialised);
    EXPECT_NE(moduleRecord().moduleHandle, nullptr);
    EXPECT_EQ(moduleRecord().resourceHandle, &kit::TextResource::own());
}

TEST_F(ModuleRecordTest, DetachEmptiesTheRecordAndAttachFillsItAgain)
{
    EXPECT_EQ(FModuleEntry(&m_module, ModuleDetach), 1);
    EXPECT_FALSE(moduleRecord().isInitialised);
    EXPECT_EQ(moduleRecord().moduleHandle, nullptr);
    EXPECT_EQ(moduleRecord().resourceHandle, nullptr);

    EXPECT_EQ(FModuleEntry(&m_module, ModuleAttach), 1);
    EXPECT_TRUE(moduleRecord().isInitialised);
    EXPECT_EQ(moduleRecord().moduleHandle, &m_module);
}

TEST_F(ModuleRecordTest, AttachWithoutAHandleFails)
{
    FModuleEntry(&m_module, ModuleDetach);

    EXPECT_EQ(FModuleEntry(nullptr, ModuleAttach), 0);
    EXPECT_FALSE(moduleRecord().isInitialised);
}

TEST_F(ModuleRecordTest, OtherReasonsChangeNothing)
{
    for (const unsigned reason : { 2u, 3u, 4u, 4294967295u }) {
        EXPECT_EQ(FModuleEntry(&m_module, reason), 1);
        EXPECT_EQ(moduleRecord().moduleHandle, m_atLoad) << reason;
    }
}

} // namespace
