// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/gis/LibGis.h"

#include <QTabWidget>

#include <vector>

class CDravoEng;
class CDlgQueryPage1;
class CDlgQueryPage2;

/// The sheet "Query" with its two pages, inside the query dialog. Owns the pages and its own list
/// of found entities; library, engine and theme are the host's. Insertions and the field's format
/// are taken only while the page "Query" is in front.
class CDlgQuerySheet final : public QTabWidget {
    Q_OBJECT

public:
    enum Page { QueryPage = 0, ResultPage = 1 };

    CDlgQuerySheet(std::int64_t drawing, CDravoEng* engine, gis::CLibGis* library, QWidget* parent);

    void InsertField(const QString& name);
    void InsertValue(const QString& value);
    void InsertOperator(const QString& text);
    void SetFieldFormat(gis::FieldFormat format);
    /// Whatever page is in front.
    [[nodiscard]] QString FilterText() const;
    void SetTheme(gis::CTheme* theme);
    /// The grid of the last result goes; the next one is made when the page is shown. `found` gets
    /// what was found before, for its memory.
    void SetResult(std::vector<gis::CEnt*>& found);
    /// 0 the page "Query", any other value "Risultato". Selecting the page that is in front already
    /// activates it again.
    void SelectPage(int page);

    [[nodiscard]] CDlgQueryPage1& FilterPage() const { return *m_page1; }
    [[nodiscard]] std::int64_t Drawing() const { return m_drawing; }
    [[nodiscard]] CDravoEng* Engine() const { return m_engine; }
    [[nodiscard]] gis::CLibGis* Library() const { return m_library; }
    /// The table of the current theme; null when there is none.
    [[nodiscard]] gis::CDBTable* Table() const;
    [[nodiscard]] const std::vector<gis::CEnt*>& Found() const { return m_found; }

private:
    void activate(int page);

    std::int64_t m_drawing;
    CDravoEng* m_engine;
    gis::CLibGis* m_library;
    gis::CTheme* m_theme = nullptr;
    std::vector<gis::CEnt*> m_found;
    CDlgQueryPage1* m_page1; // owned as child windows
    CDlgQueryPage2* m_page2;
};
