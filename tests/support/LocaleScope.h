// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <clocale>
#include <string>

namespace support {

/// The process's locale for a scope, by name.
class LocaleScope final {
public:
    explicit LocaleScope(const char* name)
        : m_before(std::setlocale(LC_ALL, nullptr))
        , m_isSet(std::setlocale(LC_ALL, name) != nullptr)
    {
    }
    LocaleScope(const LocaleScope&) = delete;
    LocaleScope& operator=(const LocaleScope&) = delete;
    ~LocaleScope() { std::setlocale(LC_ALL, m_before.c_str()); }
    /// False when the system does not have the locale.
    [[nodiscard]] bool isSet() const { return m_isSet; }

private:
    std::string m_before;
    bool m_isSet;
};

} // namespace support
