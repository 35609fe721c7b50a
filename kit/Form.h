// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "kit/DialogUnits.h"

#include <QDialog>
#include <QString>
#include <QWidget>

class QComboBox;
class QLineEdit;
class QPushButton;

namespace kit {

inline constexpr int IdOk = 1;
inline constexpr int IdCancel = 2;
inline constexpr int IdGrid = 1000;

/// "id2067" for 2067: the object name of a control that has a number.
[[nodiscard]] QString controlName(int id);

/// A control by its number, looked up inside one page since numbers repeat; null when it is not
/// there or is of another type.
template <typename Widget> [[nodiscard]] Widget* control(const QWidget& page, int id)
{
    return page.findChild<Widget*>(controlName(id));
}

/// The same manners for every dialog, once its form is set up: object name, preferred size, no
/// auto-default buttons and button `defaultId` the only default (0: none), Return on a focused
/// button presses that button, names for assistive technology from the labels' buddies, labels that
/// show text as it is, lists to choose from as wide as the form, no help button in the title.
void prepareDialog(
    QDialog& dialog, const char* className, DialogUnits preferred, int defaultId = IdOk);

/// The same for a page, which has neither size nor default of its own.
void preparePage(QWidget& page, const char* className);

/// Return on the button, when it has the focus, presses it, as users expect; with auto-default off
/// the dialog would press its default button instead.
void pressWithReturn(QPushButton& button);

/// The cross that empties an edit, in a picture of ours: the toolkit's own has too few pixels for
/// fine screens.
void addClearButton(QLineEdit& edit);

/// A list to choose from that is as wide as its form: after its longest entry it would make the
/// window wider than the screen.
void keepFormWidth(QComboBox& combo);

/// Puts a control that is made at run time where the form has its placeholder, which is hidden.
void placeOver(QWidget* placeholder, QWidget* control);

} // namespace kit
