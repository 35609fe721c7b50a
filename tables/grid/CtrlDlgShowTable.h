// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "tables/grid/GridContents.h"
#include "tables/grid/GridOrder.h"

#include "kit/MessageBox.h"

class CDravoEng;

namespace tables {

/// The logic of the attribute grid, without a window: what it holds, what follows the current row,
/// how it is saved.
class CCtrlDlgShowTable final {
public:
    /// The engine may be null: then nothing is centred.
    CCtrlDlgShowTable(
        CDravoEng* engine, std::int64_t drawing, gis::CLibGis* library, gis::CDBTable* table);

    [[nodiscard]] CGridContents& contents() { return m_contents; }

    /// The current row changed (-1: none): the drawing is centred on its entity and the host told
    /// to highlight it. Rows without an entity centre nothing.
    void showRow(int fillRow);
    /// Fill rows, ascending, of the entities that are selected in the drawing.
    [[nodiscard]] std::vector<int> rowsSelectedInDrawing();

    /// Saves; the refusal to be shown when a required value is missing, nothing when it was saved.
    [[nodiscard]] std::optional<kit::Message> save();
    /// The refusal of an entry beyond the field's bounds.
    [[nodiscard]] static kit::Message outsideBounds();

    /// Rows as tab-separated text, one line each, texts with tabs or line ends in quotes as sheets
    /// read them; false when it was stopped.
    bool copyRows(
        const std::vector<int>& fillRows, const StepCheck& goesOn, std::string& text) const;

    /// One cell's text as `copyRows` writes it.
    [[nodiscard]] orv::String cellForCopy(int fillRow, int field) const;

private:
    CDravoEng* m_engine;
    std::int64_t m_drawing;
    CGridContents m_contents;
};

} // namespace tables
