// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "kit/texts/TextIds.h"

#include "host/base/String.h"

#include <QString>

#include <optional>

class QWidget;

namespace kit {

enum class BoxIcon { None, Information, Exclamation, Question, Stop };
enum class BoxButtons { Ok, OkCancel, YesNo, YesNoCancel };
enum class Answer { Ok, Yes, No, Cancel };

/// A refusal or question as a controller states it: the number of its text and what stands for
/// "%s". Shape: the defaults are the house's refusal (caption "Attenzione!", exclamation mark, OK).
struct Message {
    int text = 0;
    std::optional<orv::String> argument = std::nullopt;
    BoxButtons buttons = BoxButtons::Ok;
    int caption = texts::Attention;
    BoxIcon icon = BoxIcon::Exclamation;
};

} // namespace kit

/// The one place where message boxes are made: plain text whatever it holds, Italian buttons
/// whatever the system's language, the first button the default, Escape the most harmless one (No,
/// then Annulla, then OK). The wait cursor steps aside while the box is shown. Shape: "\r\n" shows
/// as a line end; the text itself stays as it is.
kit::Answer FMessageBox(QWidget* parent, const QString& text, const QString& caption,
    kit::BoxIcon icon, kit::BoxButtons buttons);
kit::Answer FMessageBox(QWidget* parent, const kit::Message& message);
