// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "entry/ResourceGuard.h"

#include "kit/texts/TextIds.h"

#include <gtest/gtest.h>

#include <stdexcept>

using entry::ResourceGuard;

namespace {

class ResourceGuardTest : public testing::Test {
protected:
    const kit::TextResource m_german { R"({"14109":"Achtung!"})" };
    const kit::TextResource m_french { R"({"14109":"Attention !"})" };

    static std::string caption() { return kit::textBytes(texts::Attention).Bytes(); }
};

TEST_F(ResourceGuardTest, InstallsATableForItsScope)
{
    const auto before = kit::currentResource();
    {
        const ResourceGuard guard(&m_german);

        EXPECT_EQ(caption(), "Achtung!");
        EXPECT_EQ(guard.saved(), before);
        EXPECT_EQ(guard.current(), &m_german);
    }

    EXPECT_EQ(kit::currentResource(), before);
    EXPECT_EQ(caption(), "Attenzione!");
}

TEST_F(ResourceGuardTest, ANullHandleSavesNothingAndSwitchesNothing)
{
    const ResourceGuard outer(&m_german);
    {
        const ResourceGuard guard(nullptr);
        EXPECT_EQ(guard.saved(), nullptr);
        EXPECT_EQ(guard.current(), &m_german);
        // What somebody else installs meanwhile stays: there is nothing to put back.
        kit::setCurrentResource(&m_french);
    }

    EXPECT_EQ(caption(), "Attention !");
}

TEST_F(ResourceGuardTest, NestedGuardsPutBackInOrder)
{
    const ResourceGuard first(&m_german);
    {
        const ResourceGuard second(&m_french);
        {
            const ResourceGuard third(&m_german);
            EXPECT_EQ(caption(), "Achtung!");
        }
        EXPECT_EQ(caption(), "Attention !");
    }

    EXPECT_EQ(caption(), "Achtung!");
}

TEST_F(ResourceGuardTest, AnExceptionPutsTheTableBack)
{
    const auto before = kit::currentResource();

    try {
        const ResourceGuard guard(&m_german);
        throw std::runtime_error("dialog");
    } catch (const std::runtime_error&) {
    }

    EXPECT_EQ(kit::currentResource(), before);
}

} // namespace
