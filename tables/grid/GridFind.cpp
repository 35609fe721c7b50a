// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tables/grid/GridFind.h"

#include "kit/texts/QtText.h"

#include <algorithm>

namespace tables {

namespace {

constexpr int StepRows = 512;
enum : std::uint8_t { NotLookedAt, No, Yes };

/// True when numbers, dates or yes/no values of this format can show the text at all.
bool canShow(gis::FieldFormat format, const QString& sought)
{
    const auto consistsOf = [&](QLatin1String characters) {
        return std::all_of(
            sought.begin(), sought.end(), [&](QChar c) { return characters.contains(c); });
    };
    switch (format) {
    case gis::FieldFormat::Integer:
        return consistsOf(QLatin1String("-0123456789"));
    case gis::FieldFormat::Decimal:
        return consistsOf(QLatin1String("-.0123456789"));
    case gis::FieldFormat::Date:
        return consistsOf(QLatin1String("/-0123456789"));
    default:
        return true;
    }
}

} // namespace

CGridFinder::CGridFinder(const CGridModel& model, const QString& sought)
    : m_model(model)
    , m_sought(sought)
{
    m_columns.resize(static_cast<std::size_t>(model.contents().fieldCount()));
    for (int field = 0; field < model.contents().fieldCount(); ++field)
        prepare(field);
}

bool CGridFinder::containsSought(std::string_view text) const
{
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()))
        .contains(m_sought, Qt::CaseInsensitive);
}

void CGridFinder::prepare(int field)
{
    const CGridContents& contents = m_model.contents();
    auto& hits = m_columns[static_cast<std::size_t>(field)];
    const auto view = contents.column(field);
    if (view && !canShow(contents.field(field).format, m_sought)) {
        // Edited cells of such a column show numbers and dates as well: what was read, not what was
        // typed.
        hits.kind = ColumnHits::Kind::Never;
    } else if (view && view->kind == gis::ColumnKind::Dictionary && contents.showsWholeTable()) {
        hits.kind = ColumnHits::Kind::ByCode;
        hits.view = view;
        hits.codes.resize(view->dictionarySize, NotLookedAt);
    }
}

bool CGridFinder::matches(int fillRow, int field)
{
    auto& hits = m_columns[static_cast<std::size_t>(field)];
    const CGridContents& contents = m_model.contents();
    if (hits.kind == ColumnHits::Kind::Never)
        return false;
    if (hits.kind == ColumnHits::Kind::ByCode && !contents.edits(field).contains(fillRow)) {
        const auto& chunk = hits.view->chunks[fillRow / gis::ColumnChunkRows];
        const int i = fillRow % gis::ColumnChunkRows;
        if (chunk.validity && !(chunk.validity[i / 64] >> (i % 64) & 1))
            return false;
        const std::uint32_t code = static_cast<const std::uint32_t*>(chunk.values)[i];
        std::uint8_t& known = hits.codes[code];
        if (known == NotLookedAt)
            known = containsSought(hits.view->dictionary[code].View()) ? Yes : No;
        return known == Yes;
    }
    return containsSought(contents.text(fillRow, field).View());
}

GridPlace CGridFinder::find(
    GridPlace from, FindDirection direction, const std::function<bool(double)>& goesOn)
{
    const int rows = m_model.rowCount();
    const int fields = m_model.columnCount();
    m_wasStopped = false;
    if (rows == 0 || fields == 0 || m_sought.isEmpty())
        return {};
    const bool isForward = direction == FindDirection::Forward;
    GridPlace at = from.isFound()
        ? from
        : GridPlace { isForward ? rows - 1 : 0, isForward ? fields - 1 : 0 };
    const auto total = static_cast<std::int64_t>(rows) * fields;
    for (std::int64_t step = 0; step < total; ++step) {
        at.field += isForward ? 1 : -1;
        if (at.field < 0 || at.field >= fields) {
            at.field = isForward ? 0 : fields - 1;
            at.viewRow = (at.viewRow + (isForward ? 1 : rows - 1)) % rows;
            const double fraction = static_cast<double>(step) / static_cast<double>(total);
            if (at.viewRow % StepRows == 0 && !goesOn(fraction)) {
                m_wasStopped = true;
                return {};
            }
        }
        if (matches(m_model.fillRow(at.viewRow), at.field))
            return at;
    }
    return {};
}

} // namespace tables
