// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "query/dialog/DlgQuerySheet.h"

#include "query/dialog/DlgQueryPage1.h"
#include "query/dialog/DlgQueryPage2.h"

CDlgQuerySheet::CDlgQuerySheet(
    std::int64_t drawing, CDravoEng* engine, gis::CLibGis* library, QWidget* parent)
    : QTabWidget(parent)
    , m_drawing(drawing)
    , m_engine(engine)
    , m_library(library)
    , m_page1(new CDlgQueryPage1(*this))
    , m_page2(new CDlgQueryPage2(*this))
{
    setObjectName(QStringLiteral("CDlgQuerySheet"));
    setWindowTitle(QStringLiteral("Query"));
    addTab(m_page1, QStringLiteral("Query"));
    addTab(m_page2, QStringLiteral("Risultato"));
    connect(this, &QTabWidget::currentChanged, this, &CDlgQuerySheet::activate);
}

void CDlgQuerySheet::InsertField(const QString& name)
{
    if (currentIndex() == QueryPage)
        m_page1->InsertText(name);
}

void CDlgQuerySheet::InsertValue(const QString& value)
{
    if (currentIndex() == QueryPage)
        m_page1->InsertValue(value);
}

void CDlgQuerySheet::InsertOperator(const QString& text)
{
    if (currentIndex() == QueryPage)
        m_page1->InsertText(text);
}

void CDlgQuerySheet::SetFieldFormat(gis::FieldFormat format)
{
    if (currentIndex() == QueryPage)
        m_page1->SetFieldFormat(format);
}

QString CDlgQuerySheet::FilterText() const
{
    return m_page1->FilterText();
}

void CDlgQuerySheet::SetTheme(gis::CTheme* theme)
{
    m_theme = theme;
    m_page1->SetTheme(theme);
}

void CDlgQuerySheet::SetResult(std::vector<gis::CEnt*>& found)
{
    m_page2->DropGrid();
    m_found.swap(found);
}

void CDlgQuerySheet::SelectPage(int page)
{
    const int wanted = page == QueryPage ? QueryPage : ResultPage;
    if (currentIndex() == wanted)
        activate(wanted); // no change of page will come that would do it
    else
        setCurrentIndex(wanted);
}

gis::CDBTable* CDlgQuerySheet::Table() const
{
    return m_theme ? m_library->GetTable(m_theme) : nullptr;
}

void CDlgQuerySheet::activate(int page)
{
    if (auto* shown = qobject_cast<CDlgQueryPageBase*>(widget(page)))
        shown->OnSetActive();
}
