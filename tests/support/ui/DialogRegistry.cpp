// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/support/ui/DialogRegistry.h"

#include <algorithm>

namespace ui {

namespace {

std::vector<DialogEntry>& entries()
{
    static std::vector<DialogEntry> all;
    return all;
}

} // namespace

std::vector<DialogEntry> registeredDialogs()
{
    auto all = entries();
    std::sort(all.begin(), all.end(),
        [](const auto& left, const auto& right) { return left.className < right.className; });
    return all;
}

RegisterDialog::RegisterDialog(DialogEntry entry)
{
    entries().push_back(std::move(entry));
}

} // namespace ui
