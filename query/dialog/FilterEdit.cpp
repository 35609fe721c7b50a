// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "query/dialog/FilterEdit.h"

#include "kit/Icons.h"

#include <QAbstractItemView>
#include <QAction>
#include <QCompleter>
#include <QKeyEvent>
#include <QMenu>
#include <QStringListModel>
#include <QTextCharFormat>

namespace query {

namespace {

bool isLineEndOrTab(QChar c)
{
    return c == QLatin1Char('\r') || c == QLatin1Char('\n') || c == QLatin1Char('\t');
}

const QStringList& keywords()
{
    static const QStringList words { QStringLiteral("AND"), QStringLiteral("OR"),
        QStringLiteral("NOT"), QStringLiteral("LIKE"), QStringLiteral("IS NULL"),
        QStringLiteral("IS NOT NULL"), QStringLiteral("TRUE"), QStringLiteral("FALSE"),
        QStringLiteral("Date("), QStringLiteral("Year("), QStringLiteral("Month("),
        QStringLiteral("Day("), QStringLiteral("Now()") };
    return words;
}

bool isWordCharacter(QChar c)
{
    return c.unicode() >= 0x80 || c.isLetterOrNumber() || QStringLiteral("!#$%_").contains(c);
}

/// A name as the language takes it: in brackets where it is no plain word.
QString writtenName(const QString& name)
{
    static const QStringList reserved { QStringLiteral("and"), QStringLiteral("or"),
        QStringLiteral("not"), QStringLiteral("is"), QStringLiteral("null"), QStringLiteral("in"),
        QStringLiteral("like"), QStringLiteral("between"), QStringLiteral("true"),
        QStringLiteral("false") };
    bool isPlain = !name.isEmpty() && !reserved.contains(name.toLower());
    bool hasOther = false;
    for (const QChar c : name) {
        isPlain = isPlain && isWordCharacter(c);
        hasOther = hasOther || !c.isDigit();
    }
    return isPlain && hasOther ? name : QLatin1Char('[') + name + QLatin1Char(']');
}

} // namespace

CFilterEdit::CFilterEdit(QWidget* parent)
    : QLineEdit(parent)
    , m_words(new QStringListModel(this))
    , m_completer(new QCompleter(m_words, this))
    , m_historyAction(addAction(kit::icon("history"), TrailingPosition))
{
    m_completer->setWidget(this);
    m_completer->setCompletionMode(QCompleter::UnfilteredPopupCompletion);
    connect(m_completer, qOverload<const QString&>(&QCompleter::activated), this,
        &CFilterEdit::takeCompletion);
    connect(this, &QLineEdit::textEdited, this, &CFilterEdit::cleanEntered);
    // The text as it is now: the signal's is older where what was entered has been cleaned.
    connect(this, &QLineEdit::textChanged, this, [this] { m_before = text(); });
    connect(this, &QLineEdit::textEdited, this, [this] {
        if (m_completer->popup()->isVisible())
            complete();
    });
    m_historyAction->setToolTip(QStringLiteral("Ultime interrogazioni (Alt+Giù)"));
    m_historyAction->setEnabled(false);
    connect(m_historyAction, &QAction::triggered, this, &CFilterEdit::offerHistory);
}

// What is pasted may be several lines, and the parser refuses a carriage return. Values that the
// dialog inserted keep theirs: they would not be found otherwise.
void CFilterEdit::cleanEntered(const QString& now)
{
    qsizetype first = 0;
    const qsizetype shorter = qMin(now.size(), m_before.size());
    while (first < shorter && now[first] == m_before[first])
        ++first;
    qsizetype kept = 0; // at the end
    while (kept < shorter - first
        && now[now.size() - 1 - kept] == m_before[m_before.size() - 1 - kept])
        ++kept;
    QString clean = now;
    for (qsizetype i = first; i < now.size() - kept; ++i)
        if (isLineEndOrTab(now[i]))
            clean[i] = QLatin1Char(' ');
    if (clean == now)
        return;
    const int caret = cursorPosition();
    setText(clean);
    setCursorPosition(caret);
}

// What is selected stays so while the lists and buttons are used: what they insert goes in its
// place.
void CFilterEdit::focusOutEvent(QFocusEvent* event)
{
    const int start = selectionStart();
    const int length = selectionLength();
    const bool isCaretInFront = cursorPosition() == start;
    QLineEdit::focusOutEvent(event);
    if (start >= 0 && !hasSelectedText())
        setSelection(isCaretInFront ? start + length : start, isCaretInFront ? -length : length);
}

void CFilterEdit::setFieldNames(const QStringList& names)
{
    m_fieldNames.clear();
    for (const QString& name : names)
        m_fieldNames.append(writtenName(name));
}

void CFilterEdit::setHistory(const QStringList& filters)
{
    m_history = filters;
    m_historyAction->setEnabled(!filters.isEmpty());
}

QString CFilterEdit::typedWord() const
{
    const QString before = text().left(cursorPosition());
    qsizetype bracket = -1; // of a name that is still open
    bool isInText = false;
    for (qsizetype i = 0; i < before.size(); ++i) {
        if (bracket < 0 && before[i] == QLatin1Char('\''))
            isInText = !isInText;
        else if (!isInText && bracket < 0 && before[i] == QLatin1Char('['))
            bracket = i;
        else if (!isInText && before[i] == QLatin1Char(']'))
            bracket = -1;
    }
    if (bracket >= 0)
        return before.mid(bracket);
    auto start = before.size();
    while (start > 0 && isWordCharacter(before[start - 1]))
        --start;
    return before.mid(start);
}

QStringList CFilterEdit::completions() const
{
    const QString typed = typedWord();
    QStringList found;
    for (const QString& word : m_fieldNames + keywords()) {
        const bool isBracketed = word.startsWith(QLatin1Char('['));
        const bool fits = word.startsWith(typed, Qt::CaseInsensitive)
            || (isBracketed && !typed.isEmpty()
                && word.mid(1).startsWith(typed, Qt::CaseInsensitive));
        if (fits && !found.contains(word))
            found.append(word);
    }
    return found;
}

void CFilterEdit::complete()
{
    const QStringList found = completions();
    m_words->setStringList(found);
    if (found.isEmpty()) {
        m_completer->popup()->hide();
        return;
    }
    const QRect caret = cursorRect();
    const int width = m_completer->popup()->sizeHintForColumn(0) + 40;
    m_completer->complete(QRect(caret.left(), 0, qMax(width, 120), height()));
    m_completer->popup()->setCurrentIndex(m_words->index(0));
}

void CFilterEdit::takeCompletion(const QString& word)
{
    const auto typed = typedWord().size();
    const auto start = cursorPosition() - typed;
    setSelection(static_cast<int>(start), static_cast<int>(typed));
    insert(word);
}

void CFilterEdit::offerHistory()
{
    if (m_history.isEmpty())
        return;
    QMenu menu(this);
    for (const QString& filter : m_history) {
        QString shown = filter.left(100);
        shown.replace(QLatin1Char('&'), QStringLiteral("&&"));
        connect(menu.addAction(shown), &QAction::triggered, this, [this, filter] {
            selectAll();
            insert(filter);
        });
    }
    menu.exec(mapToGlobal(QPoint(0, height())));
}

void CFilterEdit::inputMethodEvent(QInputMethodEvent* event)
{
    m_isComposing = !event->preeditString().isEmpty();
    QLineEdit::inputMethodEvent(event);
}

void CFilterEdit::markWrong(int start, int length)
{
    m_markedStart = start;
    m_markedLength = length;
    if (m_isComposing)
        return; // an event of ours would end the composition
    // The only way into the formats of a line edit is that of input methods, which carry formats
    // for what they compose; with no text at all it changes nothing else.
    QList<QInputMethodEvent::Attribute> attributes;
    if (length > 0) {
        QTextCharFormat format;
        format.setUnderlineStyle(QTextCharFormat::WaveUnderline);
        format.setUnderlineColor(Qt::red);
        attributes.append(QInputMethodEvent::Attribute(
            QInputMethodEvent::TextFormat, start - cursorPosition(), length, format));
    }
    QInputMethodEvent event(QString(), attributes);
    QLineEdit::inputMethodEvent(&event);
}

void CFilterEdit::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Space && event->modifiers() == Qt::ControlModifier)
        complete();
    else if (event->key() == Qt::Key_Down && event->modifiers() == Qt::AltModifier)
        offerHistory();
    else
        QLineEdit::keyPressEvent(event);
}

} // namespace query
