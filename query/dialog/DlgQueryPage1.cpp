// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "query/dialog/DlgQueryPage1.h"

#include "query/dialog/DlgQuerySheet.h"
#include "query/dialog/FilterText.h"
#include "query/dialog/LiveCount.h"

#include "kit/Form.h"

#include "ui_CDlgQueryPage1.h"

CDlgQueryPage1::CDlgQueryPage1(CDlgQuerySheet& sheet)
    : CDlgQueryPageBase(sheet)
    , m_ui(std::make_unique<Ui::CDlgQueryPage1>())
    , m_live(new query::CLiveCount(sheet.Library(), this))
{
    m_ui->setupUi(this);
    kit::preparePage(*this, "CDlgQueryPage1");
    // The text as it is now: the signal's is older where what was pasted has been cleaned.
    connect(m_ui->id2071, &QLineEdit::textChanged, m_live,
        [this] { m_live->setFilter(m_ui->id2071->text()); });
    connect(m_live, &query::CLiveCount::stateChanged, this, &CDlgQueryPage1::renderLive);
}

CDlgQueryPage1::~CDlgQueryPage1() = default;

QString CDlgQueryPage1::FilterText() const
{
    return m_ui->id2071->text();
}

void CDlgQueryPage1::InsertText(const QString& text)
{
    const QLineEdit& edit = *m_ui->id2071;
    const bool hasSelection = edit.hasSelectedText();
    const int start = hasSelection ? edit.selectionStart() : edit.cursorPosition();
    const int end = hasSelection ? edit.selectionEnd() : start;
    const auto result = query::insertIntoFilter(edit.text(), start, end, text);
    m_ui->id2071->setText(result.text);
    m_ui->id2071->setCursorPosition(result.caret);
}

void CDlgQueryPage1::InsertValue(const QString& value)
{
    InsertText(query::filterLiteral(value, m_format));
}

void CDlgQueryPage1::SetTheme(gis::CTheme* theme)
{
    m_live->setTheme(theme);
}

void CDlgQueryPage1::renderLive()
{
    const auto& state = m_live->state();
    m_ui->liveLine->setText(state.text);
    m_ui->id2071->markWrong(state.isWrong ? state.start : 0, state.isWrong ? state.length : 0);
}

void CDlgQueryPage1::SetFieldNames(const QStringList& names)
{
    m_ui->id2071->setFieldNames(names);
}

void CDlgQueryPage1::SetHistory(const QStringList& filters)
{
    m_ui->id2071->setHistory(filters);
}
