// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/gis/Types.h"

class QRect;
class QWidget;

/// A control that edits one row of a table, one editor per field. Owner: the caller, who ends it
/// with `GisTableCtrl_Destroy`.
TEMATICA_HOST_API QWidget* GisTableCtrl_Create(gis::CLibGis* library, gis::CDBTable* table,
    orv::CResultRow* row, const QRect& rectangle, QWidget* parent, int controlId, bool editable);
/// Checks the entries and writes them into the row; false, with a message shown, where one is
/// refused.
TEMATICA_HOST_API bool GisTableCtrl_Commit(QWidget* control, bool showMessages);
TEMATICA_HOST_API void GisTableCtrl_Destroy(QWidget* control);
