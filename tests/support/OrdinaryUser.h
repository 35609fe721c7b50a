// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>

#include <unistd.h>

namespace support {

/// While it lives the process has the rights of an ordinary user, who owns the folder: an
/// administrator may write everywhere, so that rights could not be tested. Does nothing for one who
/// is an ordinary user already.
class OrdinaryUserScope final {
public:
    explicit OrdinaryUserScope(const std::filesystem::path& folder)
        : m_before(::geteuid())
    {
        if (m_before != 0)
            return;
        give(folder);
        for (const auto& entry : std::filesystem::recursive_directory_iterator(folder))
            give(entry.path());
        m_isOrdinary = m_isOrdinary && ::seteuid(Nobody) == 0;
    }
    OrdinaryUserScope(const OrdinaryUserScope&) = delete;
    OrdinaryUserScope& operator=(const OrdinaryUserScope&) = delete;
    ~OrdinaryUserScope()
    {
        if (m_before == 0 && ::seteuid(0) != 0)
            ::_exit(99); // the tests after this one must not run as somebody else
    }
    [[nodiscard]] bool isOrdinary() const { return m_isOrdinary; }

private:
    static constexpr uid_t Nobody = 65534;
    void give(const std::filesystem::path& path)
    {
        m_isOrdinary = ::chown(path.c_str(), Nobody, static_cast<gid_t>(-1)) == 0 && m_isOrdinary;
    }

    uid_t m_before;
    bool m_isOrdinary = true;
};

} // namespace support
