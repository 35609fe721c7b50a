// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "exchange/merge/MergeDecider.h"

#include <optional>

namespace exchange {

/// What to do with every clash of an import, decided beforehand.
enum class ConflictRule {
    Fail, // undecided: the import stops
    Rename, // tables and themes get " (2)", " (3)" and so on
    Merge, // new fields are added, others converted to the existing format; a theme of another
           // geometry or coordinate type is renamed
};

/// A clash that was left undecided.
struct UndecidedConflict {
    bool isTheme = false; // else a table
    orv::String name;
};

/// Decides by one rule, without asking anybody.
class CRuleMergeDecider final : public IMergeDecider {
public:
    explicit CRuleMergeDecider(ConflictRule rule);

    void decideTable(gis::CLibGis& library, gis::CMergeTable& merge, gis::ResultCompare compare,
        std::vector<int>& mapping) override;
    gis::CTheme* decideTheme(gis::CLibGis& library, const ThemeConflict& conflict) override;

    /// The clash that stopped the import, if one did.
    [[nodiscard]] const std::optional<UndecidedConflict>& undecided() const { return m_undecided; }

private:
    ConflictRule m_rule;
    std::optional<UndecidedConflict> m_undecided;
};

} // namespace exchange
