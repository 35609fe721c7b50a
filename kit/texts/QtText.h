// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

// The one pair of functions by which text crosses between the host and Qt. Host text is UTF-8,
// never the system's code page, so that a name looks the same on every machine.

#include "host/base/String.h"

#include <QString>

namespace kit {

[[nodiscard]] inline QString toQt(const orv::String& text)
{
    return QString::fromUtf8(text.Data(), text.Length());
}

[[nodiscard]] inline orv::String fromQt(const QString& text)
{
    const QByteArray bytes = text.toUtf8();
    return orv::String(std::string_view(bytes.constData(), static_cast<std::size_t>(bytes.size())));
}

/// The text of an edit that was filled with `before`: its own bytes where nothing was typed, also
/// those that are no UTF-8.
[[nodiscard]] inline orv::String fromQt(const QString& text, const orv::String& before)
{
    return text == toQt(before) ? before : fromQt(text);
}

} // namespace kit
