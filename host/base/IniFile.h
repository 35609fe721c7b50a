// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/base/String.h"

#include <memory>

/// The host's settings file: sections with keys and raw values (a backslash is a backslash).
/// Errors: a missing or unreadable file or key gives the default; a failed write leaves the file as
/// it was. A file that is no settings file is not written over; values with line ends or with
/// blanks at their ends, which would not read back, are refused. Owner, thread: one object per use;
/// writes replace the file as a whole, at once.
class TEMATICA_HOST_API CIniFile final {
public:
    /// The host's own file.
    CIniFile();
    explicit CIniFile(const orv::String& path);
    CIniFile(const CIniFile&) = delete;
    CIniFile& operator=(const CIniFile&) = delete;
    ~CIniFile();

    [[nodiscard]] long GetLong(
        const orv::String& section, const orv::String& key, long defaultValue) const;
    [[nodiscard]] orv::String GetString(
        const orv::String& section, const orv::String& key, const orv::String& defaultValue) const;
    bool WriteLong(const orv::String& section, const orv::String& key, long value);
    bool WriteString(const orv::String& section, const orv::String& key, const orv::String& value);

private:
    class Impl;
    std::unique_ptr<Impl> m_impl;
};
