// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>

class QDialog;
class QWidget;

namespace ui {

// Common checks of shown dialogs; each gives one line for each thing that is wrong.

/// Inputs (edits, combo boxes, views, spin boxes, buttons without a text) without an accessible
/// name.
QStringList inputsWithoutName(const QDialog& dialog);
/// Controls that can have the focus but are not reached by Tab.
QStringList notReachedByTab(QDialog& dialog);
/// Labels, buttons, group boxes and tabs that show less than their whole text.
QStringList clippedTexts(const QDialog& dialog);
/// Auto-default buttons, and default buttons beyond the first.
QStringList wrongDefaults(const QDialog& dialog);

/// Collects Qt's warnings while it lives.
class WarningCollector final {
public:
    WarningCollector();
    WarningCollector(const WarningCollector&) = delete;
    WarningCollector& operator=(const WarningCollector&) = delete;
    ~WarningCollector();
    [[nodiscard]] QStringList warnings() const;
};

} // namespace ui
