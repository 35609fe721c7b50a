// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "query/dialog/DlgQueryPageBase.h"

#include "host/gis/Types.h"

#include <memory>

namespace query {
class CLiveCount;
}
namespace Ui {
class CDlgQueryPage1;
}

/// "Query": the edit of the filter with the line under it that says what the filter would find.
class CDlgQueryPage1 final : public CDlgQueryPageBase {
    Q_OBJECT

public:
    explicit CDlgQueryPage1(CDlgQuerySheet& sheet);
    ~CDlgQueryPage1() override;

    [[nodiscard]] QString FilterText() const;
    /// At the caret, or in the place of every occurrence of the selected text.
    void InsertText(const QString& text);
    /// Written as the language wants it for a field of the format stored last.
    void InsertValue(const QString& value);
    void SetFieldFormat(gis::FieldFormat format) { m_format = format; }

    /// The theme whose entities the line under the edit counts.
    void SetTheme(gis::CTheme* theme);
    void SetFieldNames(const QStringList& names);
    void SetHistory(const QStringList& filters);

private:
    void renderLive();

    std::unique_ptr<Ui::CDlgQueryPage1> m_ui;
    query::CLiveCount* m_live;
    gis::FieldFormat m_format = gis::FieldFormat::Text;
};
