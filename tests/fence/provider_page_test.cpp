#include "filters/statement_cases.h"

#include <QFile>
#include <QRegularExpression>
#include <QSet>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace velcoran::tests {
namespace {

/// Every statement that the window sends, as typed by hand.
QStringList statements() {
    QStringList texts{
        u"SELECT An FROM An"_s,
        u" SELECT str(Depozite.Depozit,len(Depozite.Depozit),0) + ' - ' + Depozite.[Denumire Depozit] FROM Depozite"_s};
    for (const char* file : {"lookups.txt", "report.txt"})
        for (const StatementCase& each : readStatementCases(QString::fromLatin1(file)))
            if (each.text.count(u'\'') % 2 == 0 && each.state.sSoc.isEmpty()) texts.append(each.text);
    return texts;
}

/// The statements' names and words, lower case, without brackets; functions with "(" behind.
QSet<QString> wordsOf(const QStringList& texts) {
    static const QRegularExpression kWord(u"'[^']*'|(\\[[^\\]]*\\]|[A-Za-z_]\\w*)(\\()?"_s);
    QSet<QString> words;
    for (const QString& text : texts)
        for (const QRegularExpressionMatch& match : kWord.globalMatch(text)) {
            if (match.captured(1).isEmpty()) continue;
            words.insert((QString(match.captured(1)).remove(u'[').remove(u']') + match.captured(2)).toLower());
        }
    return words;
}

QStringList codesIn(const QString& text) {
    static const QRegularExpression kCode(u"`([^`]+)`"_s);
    QStringList codes;
    for (const QRegularExpressionMatch& match : kCode.globalMatch(text))
        codes.append(QString(match.captured(1)).remove(u'[').remove(u']'));
    return codes;
}

/// Rows of the table under a heading of the page, each as its cells.
QList<QStringList> rowsUnder(const QString& page, const QString& heading) {
    const QString section = page.section(u"\n## "_s + heading + u'\n', 1).section(u"\n## "_s, 0, 0);
    QList<QStringList> rows;
    for (const QString& line : section.split(u'\n'))
        if (line.startsWith(u"| "_s)) rows.append(line.split(u" | "_s));
    return rows.mid(1);
}

QString page() {
    QFile file(QStringLiteral(VELCORAN_DOCS "/provider.md"));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return QString::fromUtf8(file.readAll());
}

/// Names of the columns of a statement's result.
QStringList resultOf(const QString& statement) {
    static const QRegularExpression kList(u"^\\s*SELECT\\s+(.*?)\\s+FROM\\s"_s,
                                          QRegularExpression::CaseInsensitiveOption);
    QStringList columns;
    int depth = 0;
    QString column;
    for (const QChar character : kList.match(statement).captured(1) + u',') {
        if (character == u'(') ++depth;
        if (character == u')') --depth;
        if (character != u',' || depth > 0) {
            column += character;
            continue;
        }
        static const QRegularExpression kName(u"(\\[[^\\]]*\\]|\\w+)\\s*$"_s);
        columns.append(kName.match(column).captured(1).remove(u'[').remove(u']'));
        column.clear();
    }
    return columns;
}

TEST(ProviderPage, namesEveryWordFunctionTableAndColumnAndNoOther) {
    const QString text = page();
    const QString words = text.section(u"\n## Words\n"_s, 1).section(u"\nOperators:"_s, 0, 0);
    QSet<QString> named;
    for (const QString& word : codesIn(words)) named.insert(word.toLower());
    for (const QStringList& row : rowsUnder(text, u"Functions"_s))
        named.insert(codesIn(row[0]).first().toLower() + u'(');
    named.insert(u"nvarchar"_s);  // of CONVERT
    for (const QStringList& row : rowsUnder(text, u"Tables"_s))
        for (const QString& name : codesIn(row[0] + row[1])) named.insert(name.toLower());
    for (const QStringList& row : rowsUnder(text, u"Results"_s))
        for (const QString& name : codesIn(row[2])) named.insert(name.toLower());
    const QSet<QString> used = wordsOf(statements());
    EXPECT_EQ(qPrintable(QStringList((used - named).values()).join(u' ')), std::string()) << "used, not on the page";
    EXPECT_EQ(qPrintable(QStringList((named - used).values()).join(u' ')), std::string()) << "on the page, not used";
}

TEST(ProviderPage, namesTheResultColumnsOfEveryStatement) {
    QSet<QStringList> named;
    for (const QStringList& row : rowsUnder(page(), u"Results"_s)) named.insert(codesIn(row[2]));
    QSet<QStringList> used;
    for (const QString& statement : statements())
        used.insert(statement.contains(u"str("_s) ? QStringList() : resultOf(statement));
    for (const QStringList& columns : used - named) ADD_FAILURE() << qPrintable(columns.join(u'|'));
    for (const QStringList& columns : named - used) ADD_FAILURE() << "not used: " << qPrintable(columns.join(u'|'));
}

}  // namespace
}  // namespace velcoran::tests
