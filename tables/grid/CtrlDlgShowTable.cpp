// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tables/grid/CtrlDlgShowTable.h"

#include "host/cad/DravoEng.h"
#include "host/gis/Feedback.h"

#include <unordered_set>

namespace tables {

namespace {

gis::IFeedback* feedbackOf(gis::CLibGis* library)
{
    return library ? static_cast<gis::IFeedback*>(library->Extension(gis::FeedbackExtension))
                   : nullptr;
}

void appendCell(std::string& text, std::string_view cell)
{
    if (cell.find_first_of("\t\r\n\"") == std::string_view::npos) {
        text += cell;
        return;
    }
    text += '"';
    for (const char c : cell) {
        if (c == '"')
            text += '"';
        text += c;
    }
    text += '"';
}

} // namespace

CCtrlDlgShowTable::CCtrlDlgShowTable(
    CDravoEng* engine, std::int64_t drawing, gis::CLibGis* library, gis::CDBTable* table)
    : m_engine(engine)
    , m_drawing(drawing)
    , m_contents(library, table)
{
}

void CCtrlDlgShowTable::showRow(int fillRow)
{
    gis::CLibGis* library = m_contents.library();
    gis::IFeedback* feedback = feedbackOf(library);
    if (!library || (!m_engine && !feedback))
        return;
    orv::CResultRow* row = m_contents.row(fillRow);
    gis::CEnt* entity = row ? library->GetEnt(row) : nullptr;
    if (feedback)
        feedback->ShowRow(entity);
    if (m_engine && entity)
        m_engine->CenterViewAt(m_drawing, gis::FCalcXCentPredef(entity),
            gis::FCalcYCentPredef(entity), gis::FCalcZCentPredef(entity));
}

std::vector<int> CCtrlDlgShowTable::rowsSelectedInDrawing()
{
    std::vector<int> found;
    gis::CLibGis* library = m_contents.library();
    std::vector<gis::CEnt*> entities;
    if (gis::IFeedback* feedback = feedbackOf(library))
        feedback->GetSelected(entities);
    std::unordered_set<const orv::CResultRow*> rows;
    for (gis::CEnt* entity : entities)
        if (const orv::CResultRow* row = library->GetRow(entity))
            rows.insert(row);
    for (int i = 0; i < m_contents.rowCount() && found.size() < rows.size(); ++i)
        if (rows.contains(m_contents.row(i)))
            found.push_back(i);
    return found;
}

std::optional<kit::Message> CCtrlDlgShowTable::save()
{
    const auto outcome = saveGrid(m_contents);
    if (outcome.isSaved)
        return std::nullopt;
    kit::Message message { .text = texts::FieldRequired };
    message.argument = m_contents.field(outcome.emptyRequiredField).name;
    return message;
}

kit::Message CCtrlDlgShowTable::outsideBounds()
{
    return { .text = texts::ValueOutsideRange };
}

bool CCtrlDlgShowTable::copyRows(
    const std::vector<int>& fillRows, const StepCheck& goesOn, std::string& text) const
{
    text.clear();
    for (std::size_t k = 0; k < fillRows.size(); ++k) {
        const double fraction = static_cast<double>(k) / static_cast<double>(fillRows.size());
        if (k % 256 == 0 && !goesOn(fraction))
            return false;
        if (k > 0)
            text += '\n';
        for (int field = 0; field < m_contents.fieldCount(); ++field) {
            if (field > 0)
                text += '\t';
            appendCell(text, m_contents.text(fillRows[k], field).View());
        }
    }
    return true;
}

orv::String CCtrlDlgShowTable::cellForCopy(int fillRow, int field) const
{
    std::string text;
    appendCell(text, m_contents.text(fillRow, field).View());
    return orv::String(std::string_view(text));
}

} // namespace tables
