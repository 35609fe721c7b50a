// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include <tematica/Dialogs.h>

#include <host/gis/LibGis.h>
#include <host/gis/TableEdit.h>

#include <QApplication>
#include <QTimer>
#include <QWidget>

#include <cstdio>
#include <cstring>

namespace {

/// A table with one field of each format, named after it.
gis::CDBTable* makeTable(gis::CLibGis& library)
{
    gis::CDBTable* table = library.CreateTable("Strade");
    gis::CCtrlDlgTableEdit structure(&library, table);
    for (int format = 0; format < 6; ++format) {
        const auto fieldFormat = static_cast<gis::FieldFormat>(format);
        const orv::String name = OrvFieldFormatToString(fieldFormat);
        structure.AppendField(name, fieldFormat);
        std::printf("%s\n", name.Data());
    }
    return structure.Commit() ? table : nullptr;
}

/// Closes the dialog as soon as it stands: for a check without anybody at the screen.
void closeTheDialog()
{
    if (QWidget* dialog = QApplication::activeModalWidget())
        dialog->close();
    else
        QTimer::singleShot(20, closeTheDialog);
}

} // namespace

int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    if (argc > 1 && std::strcmp(argv[1], "--check") == 0)
        QTimer::singleShot(0, closeTheDialog);

    gis::CLibGis library; // the default host's data, in memory
    gis::CDBTable* table = makeTable(library);
    if (!table)
        return 1;
    return FDlgShowTableGIS(&library, table) ? 0 : 1;
}
