// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "query/dialog/DlgQueryPage1.h"

#include "query/dialog/FilterText.h"

#include "kit/Form.h"

#include "ui_CDlgQueryPage1.h"

CDlgQueryPage1::CDlgQueryPage1(CDlgQuerySheet& sheet)
    : CDlgQueryPageBase(sheet)
    , m_ui(std::make_unique<Ui::CDlgQueryPage1>())
{
    m_ui->setupUi(this);
    kit::preparePage(*this, "CDlgQueryPage1");
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

void CDlgQueryPage1::SetFieldNames(const QStringList& names)
{
    m_ui->id2071->setFieldNames(names);
}

void CDlgQueryPage1::SetHistory(const QStringList& filters)
{
    m_ui->id2071->setHistory(filters);
}
