// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "query/dialog/FilterCheck.h"

#include "query/language/FilterParser.h"

#include <QStringList>

namespace query {

namespace {

QString fromBytes(std::string_view bytes)
{
    return QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size()));
}

/// What could stand there, most telling things first; a value or a comparison could nearly always
/// be continued by an operator too, which says nothing.
QString expectation(const ExpectedAt& expected)
{
    if (expected.value || expected.condition)
        return QStringLiteral("un valore");
    QStringList words;
    if (expected.pattern)
        words << QStringLiteral("un testo tra apici");
    if (expected.nullWord)
        words << QStringLiteral("NULL");
    if (expected.comparison)
        words << QStringLiteral("un confronto");
    if (expected.likeOrIs)
        words << QStringLiteral("LIKE") << QStringLiteral("IS");
    if (expected.connective)
        words << QStringLiteral("AND") << QStringLiteral("OR");
    if (expected.comma)
        words << QStringLiteral("una virgola");
    if (expected.closingParenthesis)
        words << QStringLiteral("una parentesi chiusa");
    if (words.isEmpty())
        return expected.end ? QStringLiteral("la fine del filtro") : QString();
    const QString last = words.takeLast();
    return words.isEmpty() ? last : words.join(QStringLiteral(", ")) + QStringLiteral(" o ") + last;
}

/// "atteso", in the gender of what follows.
QString expectedWord(const QString& expected)
{
    const bool isFeminine
        = expected.startsWith(QStringLiteral("una ")) || expected.startsWith(QStringLiteral("la "));
    return isFeminine ? QStringLiteral("attesa ") : QStringLiteral("atteso ");
}

bool endsInNumber(std::string_view token)
{
    return !token.empty() && token.back() >= '0' && token.back() <= '9';
}

/// Slips that have a better name than what the grammar expects.
QString knownSlip(const ParseOutcome& outcome)
{
    if (outcome.failure == ParseFailure::StackOverflow)
        return QStringLiteral("troppe parentesi una dentro l'altra");
    if (outcome.failure == ParseFailure::OutOfMemory)
        return QStringLiteral("il filtro è troppo lungo per la memoria disponibile");
    if (outcome.isTextOpen())
        return QStringLiteral("il testo non ha l'apice di chiusura");
    if (outcome.isNameOpen())
        return QStringLiteral("il nome non ha la parentesi quadra di chiusura");
    if (outcome.unexpectedToken == "," && endsInNumber(outcome.precedingToken))
        return QStringLiteral("nei decimali si scrive il punto, non la virgola");
    if (outcome.unexpectedToken.starts_with('"'))
        return QStringLiteral("i testi si scrivono tra apici: 'testo'");
    return {};
}

QString messageOf(std::string_view text, const ParseOutcome& outcome)
{
    QString message = knownSlip(outcome);
    if (message.isEmpty()) {
        const QString expected = expectation(expectedAfter(text, outcome.errorPosition - 1));
        message = expected.isEmpty() ? QStringLiteral("il filtro non è valido")
                                     : expectedWord(expected) + expected;
        if (!outcome.precedingToken.empty())
            message += QStringLiteral(" dopo ") + shortened(fromBytes(outcome.precedingToken));
    }
    if (outcome.isShortened())
        message += QStringLiteral(" (Esegui userebbe solo: ")
            + shortened(
                fromBytes(text.substr(static_cast<std::size_t>(outcome.conditionPosition - 1),
                    static_cast<std::size_t>(outcome.conditionBytes))))
            + QLatin1Char(')');
    return message;
}

} // namespace

QString shortened(const QString& text)
{
    constexpr int MostLetters = 60;
    if (text.size() <= MostLetters)
        return text;
    const int whole = text[MostLetters - 1].isHighSurrogate() ? MostLetters - 1 : MostLetters;
    return text.left(whole) + QStringLiteral("…");
}

FilterCheck checkFilter(const QString& text)
{
    const QByteArray bytes = text.toUtf8();
    const std::string_view view(bytes.constData(), static_cast<std::size_t>(bytes.size()));
    const ParseOutcome outcome = parseFilter(view, ErrorReport::Silent);
    FilterCheck check;
    check.isFilter = outcome.status == 0 && outcome.root;
    if (check.isFilter || text.trimmed().isEmpty())
        return check;
    check.message = messageOf(view, outcome);
    const auto marked
        = outcome.unexpectedToken.empty() ? outcome.precedingToken : outcome.unexpectedToken;
    if (!marked.empty()) {
        check.start = static_cast<int>(
            QString::fromUtf8(bytes.constData(), marked.data() - bytes.constData()).size());
        check.length = static_cast<int>(fromBytes(marked).size());
    }
    return check;
}

} // namespace query
