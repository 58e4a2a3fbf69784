#include "oracle.h"

#include <QRegularExpression>
#include <QSet>
#include <QStringList>

namespace velcoran::tests {

using namespace Qt::StringLiterals;

namespace {

/// Reserved words that may not follow SELECT.
const char kForbidden[] =
    "add all alter any authorization backup begin break browse bulk cascade check checkpoint close clustered coalesce "
    "collate column commit compute constraint contains containstable continue create cross current current_date "
    "current_time current_timestamp current_user cursor database dbcc deallocate declare default delete deny disk "
    "distinct distributed double drop dump errlvl escape except exec execute exists exit external fetch file "
    "fillfactor "
    "for foreign freetext freetexttable full function goto grant holdlock identity identity_insert identitycol if "
    "index "
    "insert intersect into key kill left lineno load merge national nocheck nonclustered nullif of off offsets open "
    "opendatasource openquery openrowset openxml option outer over percent pivot plan precision primary print proc "
    "procedure public raiserror read readtext reconfigure references replication restore restrict return revert revoke "
    "right rollback rowcount rowguidcol rule save schema securityaudit semantickeyphrasetable "
    "semanticsimilaritydetailstable semanticsimilaritytable session_user set setuser shutdown some statistics "
    "system_user table tablesample textsize to top tran transaction trigger truncate try_convert tsequal union unique "
    "unpivot update updatetext use user values varying view waitfor while with within writetext";

const QRegularExpression& tokens() {
    static const QRegularExpression expression(
        uR"((?<blank>[ \t\r\n]+)|(?<bad>--|/\*|[{}`@\\])|(?<text>[Nn]?'(?:[^']|'')*'|"(?:[^"]|"")*"))"
        uR"(|(?<name>\[(?:[^\]]|\]\])*\])|(?<number>0[xX][0-9A-Fa-f]*|(?:[0-9]+(?:\.[0-9]*)?|\.[0-9]+)(?:[eE][+-]?[0-9]*)?))"
        uR"(|(?<word>[\p{L}_#][\p{L}0-9_@#$]*)|(?<end>;)|(?<sign>[!-~]))"_s,
        QRegularExpression::DotMatchesEverythingOption | QRegularExpression::UseUnicodePropertiesOption);
    return expression;
}

}  // namespace

QString faultOfPassed(const QString& text) {
    // Expressions match no text with half of a surrogate pair in it.
    const QString statement = QString::fromStdU32String(text.toStdU32String());
    static const QStringList words = QString::fromLatin1(kForbidden).split(u' ');
    static const QSet<QString> forbidden(words.begin(), words.end());
    QStringList found;
    bool isEnded = false;
    int cases = 0;
    for (qsizetype at = 0; at < statement.size();) {
        const auto match = tokens().match(statement, at, QRegularExpression::NormalMatch,
                                          QRegularExpression::AnchorAtOffsetMatchOption);
        if (!match.hasMatch()) return u"no token at %1"_s.arg(at);
        at = match.capturedEnd();
        if (match.hasCaptured(u"blank")) continue;
        if (isEnded) return u"text behind the end"_s;
        if (match.hasCaptured(u"bad")) return u"a sign: "_s + match.captured();
        isEnded = match.hasCaptured(u"end");
        const QString token = match.captured().toLower();
        if (found.isEmpty() && token != u"select") return u"no question"_s;
        found.append(match.hasCaptured(u"word") ? token : u"."_s);
        if (!match.hasCaptured(u"word")) continue;
        if (forbidden.contains(token)) return u"a word: "_s + token;
        cases += token == u"case" ? 1 : token == u"end" ? -1 : 0;
        if (cases < 0) return u"an end of its own"_s;
    }
    return found.count(u"select"_s) == 1 ? QString() : u"another number of questions"_s;
}

}  // namespace velcoran::tests
