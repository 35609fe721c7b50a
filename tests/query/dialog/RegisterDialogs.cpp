// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/support/ui/DialogRegistry.h"
#include "tests/support/ui/ModalDriver.h"
#include "tests/support/ui/SampleTown.h"

#include "query/dialog/DlgQuery.h"

#include <QLineEdit>
#include <QListView>
#include <QTest>

namespace {

ui::DialogEntry::Made makeDialog()
{
    auto library = ui::sampleTown();
    auto dialog = std::make_unique<CDlgQuery>(0, nullptr, library.get());
    return { library, std::move(dialog) };
}

/// With values listed and a filter written; then with its result.
bool showState(QDialog& dialog, int state)
{
    if (state == 1) {
        auto& fields = ui::at<QListView>(dialog, 2068);
        fields.setCurrentIndex(fields.model()->index(1, 0));
        QTest::keyClick(&fields, Qt::Key_Space);
        ui::type(
            dialog, 2071, QStringLiteral("Tipo = 'Strada' AND (Larghezza >= 3.5 OR Corsie > 1)"));
        return true;
    }
    if (state == 2) {
        ui::press(dialog, 2081);
        return true;
    }
    return false;
}

const ui::RegisterDialog registered({ "CDlgQuery", makeDialog, showState });

} // namespace
