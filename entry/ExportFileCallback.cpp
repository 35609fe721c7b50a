// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "entry/ExportFileCallback.h"

#include "kit/MessageBox.h"

#include <QApplication>

bool CExportFileCallback::AskOverwrite(const orv::String& path)
{
    const kit::Message question { texts::ShapefileExists, path, kit::BoxButtons::YesNo };
    return FMessageBox(QApplication::activeWindow(), question) == kit::Answer::Yes;
}
