// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <clocale>

#include <locale.h>

namespace support {

/// The thread's locale for a scope, by name; the process's own stays.
class LocaleScope final {
public:
    explicit LocaleScope(const char* name)
        : m_locale(newlocale(LC_ALL_MASK, name, nullptr))
    {
        if (m_locale)
            m_before = uselocale(m_locale);
    }
    LocaleScope(const LocaleScope&) = delete;
    LocaleScope& operator=(const LocaleScope&) = delete;
    ~LocaleScope()
    {
        if (!m_locale)
            return;
        uselocale(m_before);
        freelocale(m_locale);
    }
    /// False when the system does not have the locale.
    [[nodiscard]] bool isSet() const { return m_locale != nullptr; }

private:
    locale_t m_locale;
    locale_t m_before = nullptr;
};

} // namespace support
