// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "query/dialog/CtrlDlgQuery.h"
#include "query/dialog/FilterHistory.h"

#include <QDialog>

class CDravoEng;
class CDlgQuerySheet;
class QAbstractItemView;
namespace Ui {
class CDlgQuery;
}
namespace kit {
class CHandleListModel;
}
namespace query {
class CValueListModel;
}

/// "Query": a filter over the attributes of a theme, put together by clicking fields, values and
/// operators; "Esegui" shows the found entities' rows in the sheet's second page.
class CDlgQuery final : public QDialog {
    Q_OBJECT

public:
    CDlgQuery(
        std::int64_t drawing, CDravoEng* engine, gis::CLibGis* library, QWidget* parent = nullptr);
    ~CDlgQuery() override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void bindLists();
    void bindOperators();
    void fillThemes();
    void onThemeChanged();
    void renderTheme();
    void onFieldClicked(QAbstractItemView* clicked);
    bool readColumns(const std::vector<int>& fields, QAbstractItemView* clicked = nullptr);
    void putButtonsLast();
    void tellUnreadable(const QString& field);
    void onFieldDoubleClicked();
    void onValueDoubleClicked();
    void onRun();
    void rememberPending();

    std::unique_ptr<Ui::CDlgQuery> m_ui;
    query::CCtrlDlgQuery m_query;
    query::CFilterHistory m_history;
    struct AskedFilter {
        orv::String theme;
        QString filter;
    };
    std::unique_ptr<AskedFilter> m_pending; // ran, and still to be remembered
    kit::CHandleListModel* m_fields;
    query::CValueListModel* m_values;
    CDlgQuerySheet* m_sheet;
    bool m_isFieldClicked = false; // and not yet answered
};
