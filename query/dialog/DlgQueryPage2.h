// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "query/dialog/DlgQueryPageBase.h"

#include <memory>
#include <vector>

class CCtrlShowTable;
namespace gis {
class CDBTable;
}

/// "Risultato": the rows of the found entities in a grid that is not edited. The grid is made when
/// the page comes to the front and has none.
class CDlgQueryPage2 final : public CDlgQueryPageBase {
    Q_OBJECT

public:
    explicit CDlgQueryPage2(CDlgQuerySheet& sheet);
    ~CDlgQueryPage2() override;

    void OnSetActive() override;
    void DropGrid();

private:
    std::unique_ptr<CCtrlShowTable> m_grid;
    const gis::CDBTable* m_gridTable = nullptr;
    std::vector<int> m_widths; // in pixels, of the last grid's columns
    const gis::CDBTable* m_widthsOf = nullptr;
    const gis::CDBTable* m_readTable = nullptr; // whose columns have been read from their file
};
