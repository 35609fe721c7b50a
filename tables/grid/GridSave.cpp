// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "host/base/Dates.h"
#include "host/base/Numbers.h"

#include "tables/grid/GridContents.h"

#include <algorithm>
#include <cmath>

namespace tables {

namespace {

struct Cell {
    int row = 0;
    int field = 0;
    friend bool operator==(const Cell&, const Cell&) = default;
    friend auto operator<=>(const Cell&, const Cell&) = default;
};

/// One cell compared and written; true when it counts as changed.
bool saveCell(CGridContents& contents, Cell cell)
{
    const GridField& field = contents.field(cell.field);
    orv::CPolyValue stored = contents.storedValue(cell.row, cell.field);
    orv::CPolyValue entered = valueOfCellText(contents.text(cell.row, cell.field), field.format);
    // The first moment of 1970 shows as no date, and a year before 1000 does not read back: such a
    // date is lost only when the user really edits the cell.
    if (stored.GetType() == orv::PolyDate && entered.IsEmpty()
        && !contents.edits(cell.field).contains(cell.row))
        return false;
    if (!(entered != stored))
        return false;
    if (entered.GetType() == orv::PolyDouble)
        return !UgualeA(entered.GetDoubleValue(), stored.GetDoubleValue());
    contents.library()->SetRowValue(contents.row(cell.row), cell.field, entered);
    return true;
}

bool saveEveryCell(CGridContents& contents)
{
    bool isChanged = false;
    for (int row = 0; row < contents.rowCount(); ++row)
        for (int field = 0; field < contents.fieldCount(); ++field)
            isChanged = saveCell(contents, { row, field }) || isChanged;
    return isChanged;
}

bool hasValue(const gis::ColumnChunk& chunk, int i)
{
    return !chunk.validity || (chunk.validity[i / 64] >> (i % 64) & 1);
}

/// Calls `visit(row, value)` for each value of a column, until it answers false.
template <typename Value, typename Visit> void eachValue(const gis::ColumnView& view, Visit visit)
{
    int row = 0;
    for (int k = 0; k < view.chunkCount; ++k) {
        const gis::ColumnChunk& chunk = view.chunks[k];
        const auto* values = static_cast<const Value*>(chunk.values);
        for (int i = 0; i < chunk.rowCount; ++i, ++row)
            if (hasValue(chunk, i) && !visit(row, values[i]))
                return;
    }
}

/// True when the text with so many digits reads back as the number itself, within the tolerance of
/// the comparison. The quick way decides all but doubtful numbers.
bool readsBack(double value, int digits)
{
    static constexpr double powers[] = { 1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9, 1e10 };
    const double scaled = value * powers[digits];
    if (std::abs(scaled) < 4503599627370496.0) { // 2^52: below it a double has a fraction
        const double difference = std::abs(value - std::nearbyint(scaled) / powers[digits]);
        const double tolerance = 1e-9 * std::max(1.0, std::abs(value));
        if (difference < 0.5 * tolerance)
            return true;
        if (difference > 2 * tolerance && digits < 9)
            return false;
    }
    return UgualeA(value, orv::RoundedByText(value, digits));
}

/// What the full loop would find in the cells that nobody edited.
class CUntouchedScan final {
public:
    CUntouchedScan(const CGridContents& contents, std::vector<Cell>& suspects)
        : m_contents(contents)
        , m_suspects(suspects)
    {
    }

    void scan(int field, const gis::ColumnView& view)
    {
        m_field = field;
        switch (view.kind) {
        case gis::ColumnKind::Decimal:
            scanDecimals(view);
            break;
        case gis::ColumnKind::Dictionary:
            scanTexts(view);
            break;
        default:
            break; // integers and yes/no values always read back, and days stay where they do not
        }
    }

    /// True when an untouched decimal differs from its shown text.
    [[nodiscard]] bool hasChangedDecimal() const { return m_hasChangedDecimal; }

private:
    void suspect(int row) { m_suspects.push_back({ row, m_field }); }

    void scanDecimals(const gis::ColumnView& view)
    {
        const int digits = m_contents.field(m_field).decimalDigits;
        const auto& edits = m_contents.edits(m_field);
        eachValue<double>(view, [&](int row, double value) {
            if (!std::isfinite(value))
                suspect(row); // shown as nothing, so it is written as no value
            else if (!m_hasChangedDecimal && !readsBack(value, digits))
                m_hasChangedDecimal = !edits.contains(row);
            return true;
        });
    }

    void scanTexts(const gis::ColumnView& view)
    {
        std::uint32_t emptyCode = view.dictionarySize;
        for (std::uint32_t code = 0; code < view.dictionarySize; ++code)
            if (view.dictionary[code].length == 0)
                emptyCode = code;
        if (emptyCode == view.dictionarySize)
            return;
        eachValue<std::uint32_t>(view, [&](int row, std::uint32_t code) {
            if (code == emptyCode)
                suspect(row); // a text of no bytes becomes no value
            return true;
        });
    }

    const CGridContents& m_contents;
    std::vector<Cell>& m_suspects;
    int m_field = 0;
    bool m_hasChangedDecimal = false;
};

/// The same outcome as `saveEveryCell` from columns: edited cells and those whose own text would
/// not read back are compared and written in fill order, the others cannot differ. Nothing done,
/// false, where the host offers no columns for all fields.
bool saveFromColumns(CGridContents& contents, bool& isChanged)
{
    if (!contents.showsWholeTable())
        return false;
    std::vector<Cell> cells;
    CUntouchedScan scan(contents, cells);
    for (int field = 0; field < contents.fieldCount(); ++field) {
        const auto view = contents.column(field);
        if (!view)
            return false;
        scan.scan(field, *view);
        for (const auto& edit : contents.edits(field))
            cells.push_back({ edit.first, field });
    }
    std::sort(cells.begin(), cells.end());
    cells.erase(std::unique(cells.begin(), cells.end()), cells.end());
    isChanged = scan.hasChangedDecimal();
    for (const Cell cell : cells)
        isChanged = saveCell(contents, cell) || isChanged;
    return true;
}

/// First row of a column without a value; the row count when there is none.
int firstEmptyRow(const gis::ColumnView& view)
{
    int row = 0;
    for (int k = 0; k < view.chunkCount; row += view.chunks[k].rowCount, ++k) {
        const gis::ColumnChunk& chunk = view.chunks[k];
        for (int i = 0; chunk.validity && i < chunk.rowCount; ++i)
            if (!hasValue(chunk, i))
                return row + i;
    }
    return view.rowCount;
}

/// The required field of the first cell, in fill order, that has no value; -1 when all have one.
int findEmptyRequired(const CGridContents& contents)
{
    std::vector<int> slow; // required fields that must be read cell by cell
    Cell first { contents.rowCount(), -1 };
    for (int field = 0; field < contents.fieldCount(); ++field) {
        if (!contents.field(field).isRequired)
            continue;
        const auto view = contents.showsWholeTable() ? contents.column(field) : std::nullopt;
        if (!view)
            slow.push_back(field);
        else if (const int row = firstEmptyRow(*view); row < first.row)
            first = { row, field };
    }
    for (int row = 0; !slow.empty() && row <= first.row && row < contents.rowCount(); ++row)
        for (const int field : slow)
            if (contents.storedValue(row, field).IsEmpty() && Cell { row, field } < first)
                first = { row, field };
    return first.field;
}

} // namespace

GridSaveOutcome saveGrid(CGridContents& contents)
{
    if (!contents.library())
        return { true, -1 };
    bool isChanged = false;
    if (!saveFromColumns(contents, isChanged))
        isChanged = saveEveryCell(contents);
    const int emptyField = findEmptyRequired(contents);
    if (emptyField >= 0)
        return { false, emptyField };
    if (isChanged)
        contents.library()->SetModifiedFlag(true);
    return { true, -1 };
}

} // namespace tables
