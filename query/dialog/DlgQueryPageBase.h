// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

class CDlgQuerySheet;

/// What the two pages of the query's sheet have in common: the sheet whose data they show.
class CDlgQueryPageBase : public QWidget {
    Q_OBJECT

public:
    explicit CDlgQueryPageBase(CDlgQuerySheet& sheet);

    /// The page comes to the front.
    virtual void OnSetActive();

protected:
    [[nodiscard]] CDlgQuerySheet& sheet() const { return m_sheet; }

private:
    CDlgQuerySheet& m_sheet;
};
