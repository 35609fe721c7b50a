// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/gis/LibGis.h"

#include <QDialog>

#include <memory>

namespace Ui {
class CDlgInputNameTable;
}

/// "Nome tabella": asks for a table's name; OK only with one that the library allows.
class CDlgInputNameTable final : public QDialog {
    Q_OBJECT

public:
    explicit CDlgInputNameTable(QWidget* parent = nullptr);
    ~CDlgInputNameTable() override;

    /// The library, which must outlive the dialog, and the name to begin with.
    void Init(gis::CLibGis* library, const orv::String& name);
    /// The name as it was when OK was pressed last.
    void GetName(orv::String& name) const;

    void accept() override;

private:
    std::unique_ptr<Ui::CDlgInputNameTable> m_ui;
    gis::CLibGis* m_library = nullptr;
    orv::String m_oldName;
    orv::String m_name;
};
