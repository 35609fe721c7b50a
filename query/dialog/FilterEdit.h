// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QLineEdit>
#include <QStringList>

class QCompleter;
class QStringListModel;

namespace query {

/// The edit of the filter: one line in which pasted line ends and tabs become blanks; Ctrl+Space
/// completes keywords and field names, Alt+Down (or the button at its end) offers the last filters.
class CFilterEdit final : public QLineEdit {
    Q_OBJECT

public:
    explicit CFilterEdit(QWidget* parent = nullptr);

    void setFieldNames(const QStringList& names);
    void setHistory(const QStringList& filters);

    /// Underlines a part of the text, in red waves; nothing for length 0. The text and what is
    /// selected stay.
    void markWrong(int start, int length);
    [[nodiscard]] int markedStart() const { return m_markedStart; }
    [[nodiscard]] int markedLength() const { return m_markedLength; }

    /// Words that may stand where the caret is, by what was typed of them; for the pop-up and
    /// tests.
    [[nodiscard]] QStringList completions() const;

protected:
    void focusOutEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;

private:
    void cleanEntered(const QString& now);
    [[nodiscard]] QString typedWord() const;
    void complete();
    void takeCompletion(const QString& word);
    void offerHistory();

    QStringListModel* m_words;
    QCompleter* m_completer;
    QStringList m_fieldNames;
    QStringList m_history;
    QAction* m_historyAction;
    bool m_isComposing = false; // a letter of several keystrokes is being put together
    int m_markedStart = 0;
    int m_markedLength = 0;
    QString m_before; // the text before it is changed
};

} // namespace query
