// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace ui {

/// One dialog as the common checks want it: how to make it with data as in real work.
struct DialogEntry {
    std::string className;
    /// The dialog together with whatever must live as long as it does (library, engine).
    struct Made {
        std::shared_ptr<void> surroundings;
        std::unique_ptr<QDialog> dialog;
    };
    std::function<Made()> make;
    /// Brings it into its next state to be looked at (another page); false when there is none. The
    /// checks run in each state.
    std::function<bool(QDialog&, int state)> show;
};

/// All dialogs that were registered, in the order of their names.
std::vector<DialogEntry> registeredDialogs();

/// Registers a dialog for the common checks: one object of this type at namespace scope in
/// tests/<module>/<subject>/RegisterDialogs.cpp.
struct RegisterDialog {
    explicit RegisterDialog(DialogEntry entry);
};

} // namespace ui
