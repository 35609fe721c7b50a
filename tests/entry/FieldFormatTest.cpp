// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tematica/Dialogs.h"

#include "kit/texts/TextLoader.h"

#include <gtest/gtest.h>

#include <climits>

namespace {

std::string nameOf(int format)
{
    return OrvFieldFormatToString(static_cast<gis::FieldFormat>(format)).Bytes();
}

TEST(FieldFormatTest, EveryFormatHasItsName)
{
    const char* names[] = { "Testo", "Si/No", "Numerico", "Decimale", "Lista", "Data" };

    for (int format = 0; format < 6; ++format)
        EXPECT_EQ(nameOf(format), names[format]);
}

TEST(FieldFormatTest, OtherValuesHaveNone)
{
    for (const int format : { 6, -1, 100, INT_MAX, INT_MIN })
        EXPECT_EQ(nameOf(format), "") << format;
}

TEST(FieldFormatTest, NamesAreTheModulesWhateverTableIsInstalled)
{
    const kit::TextResource other(R"({"14118":"Text"})");
    kit::setCurrentResource(&other);
    const auto name = nameOf(0);
    const bool isPutBack = kit::currentResource() == &other;
    kit::setCurrentResource(nullptr);

    EXPECT_EQ(name, "Testo");
    EXPECT_TRUE(isPutBack);
}

} // namespace
