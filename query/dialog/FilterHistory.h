// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/base/String.h"

#include <QStringList>

namespace query {

/// The last filters that were run on each theme, newest first, kept in the host's settings file.
/// Shape: at most `MostFilters` a theme, none twice. Themes are told apart by their names.
/// Errors: where the settings cannot be written, nothing is kept.
class CFilterHistory final {
public:
    static constexpr int MostFilters = 10;

    [[nodiscard]] QStringList filtersOf(const orv::String& themeName) const;
    void remember(const orv::String& themeName, const QString& filter);
};

} // namespace query
