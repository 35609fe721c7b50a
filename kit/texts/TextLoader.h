// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

// The texts of the dialogs by their numbers, byte for byte as in res/texts/it.json. Which table is
// read is switched by the guard that every exported function opens (entry/ResourceGuard.h).

#include "host/base/String.h"

#include <QString>

#include <map>
#include <string>
#include <string_view>

namespace kit {

/// A table of texts by number. Owner, thread: immutable once built; any thread.
class TextResource final {
public:
    /// The module's own table.
    static const TextResource& own();
    /// `json`: one object, number (as text) to text. Anything else gives an empty table.
    explicit TextResource(std::string_view json);

    /// The bytes (UTF-8) of a text; empty for a number that has none. Valid while the table lives.
    [[nodiscard]] std::string_view bytes(int id) const;
    [[nodiscard]] std::size_t size() const { return m_texts.size(); }

private:
    std::map<int, std::string> m_texts;
};

using ResourceHandle = const TextResource*;

/// The table that texts are read from now: the module's own until somebody installs another.
[[nodiscard]] ResourceHandle currentResource();
/// Null goes back to the module's own. Thread: the user interface's.
void setCurrentResource(ResourceHandle handle);

/// A text of the current table; line ends as stored ("\r\n" included).
[[nodiscard]] orv::String textBytes(int id);
[[nodiscard]] QString text(int id);
/// The text with its first "%s" replaced; see `withArgument`.
[[nodiscard]] QString text(int id, const orv::String& argument);

/// `pattern` with the first literal "%s" replaced by `argument`. Never a printf or QString::arg:
/// names are user data, and one called "%1" or "100%s" must appear as it is.
[[nodiscard]] orv::String withArgument(const orv::String& pattern, const orv::String& argument);

} // namespace kit
