// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

class QDialog;
class QWidget;

namespace kit {

/// Runs a dialog modally to the whole application; true when it ended with OK.
/// A dialog without a parent stays above the window that was active, in its middle, without being
/// owned by it. The wait cursor steps aside meanwhile.
bool runModal(QDialog& dialog);

/// Moves a dialog to the middle of another window, inside the screen with all its edges; a dialog
/// larger than the screen gets the screen's size.
void moveOver(QDialog& dialog, const QWidget& owner);

} // namespace kit
