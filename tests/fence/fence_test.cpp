#include "db/fence.h"

#include "db/connection.h"
#include "filters/statement_cases.h"
#include "hostile_texts.h"
#include "support/fake_connection.h"
#include "support/test_data.h"

#include <gtest/gtest.h>

#include <functional>
#include <random>
#include <set>

using namespace Qt::StringLiterals;

namespace velcoran::db {
namespace {

using filters::FilterState;
using tests::SplicePoint;
using tests::WindowStatement;

TEST(Fence, letsTheWindowsOwnStatementsThrough) {
    for (const char* file : {"lookups.txt", "report.txt"})
        for (const tests::StatementCase& each : tests::readStatementCases(QString::fromLatin1(file))) {
            // A value with an apostrophe breaks the statement; what is left open is refused.
            const bool isWhole = each.text.count(u'\'') % 2 == 0;
            EXPECT_EQ(fenceRefusal(each.text).has_value(), !isWhole) << qPrintable(each.name);
        }
    const QStringList others{
        u"SELECT An FROM An"_s,
        u" SELECT str(Depozite.Depozit,len(Depozite.Depozit),0) + ' - ' + Depozite.[Denumire Depozit] FROM Depozite"_s};
    for (const QString& text : others) EXPECT_EQ(fenceRefusal(text), std::nullopt) << qPrintable(text);
}

TEST(Fence, readsTextsAsTheServerDoes) {
    const char* const passing[] = {
        "select 1",
        "\r\n\tSeLeCt [delete] from [a]]; drop table b] ;\n",
        "SELECT 'it''s; delete from a -- /* {' FROM a",
        "SELECT N'\xc8\x9b' FROM \xc8\x9a\xc4\x83r\xc4\x83",
        "SELECT \"delete\"\"from\" FROM a",
        "SELECT 1.5, .5, 1e5, 1.e-5, 0xAB, -1 FROM a",
        "SELECT p FROM Firma.dbo.CPP",
        "SELECT p FROM [Firma X].dbo.CPP",
        "SELECT p FROM Firma2.Asset.CPP",
        "SELECT p FROM Firma$CPP",
        "SELECT p FROM SRV.Firma.dbo.CPP",
        "SELECT p FROM [srv\\inst].[f'g].dbo.CPP",
        "SELECT p FROM Firma..CPP",
        // values that leave their apostrophes and ask no other question
        "SELECT a FROM b WHERE c='O''Neil'",
        "SELECT a FROM b WHERE c='x' or 'a'='a'",
        "SELECT deleted, selects, uses, intox, _into, x1delete, x@delete, x#delete FROM Setari",
        "SELECT CASE WHEN a=1 THEN CASE WHEN b=1 THEN 1 END ELSE 0 END FROM a",
    };
    for (const char* text : passing) EXPECT_EQ(fenceRefusal(QString::fromUtf8(text)), std::nullopt) << text;
}

/// Texts of one fault each, one subject a group.
const char* const kRefused[] = {
    // no question at the start
    "",
    " ",
    ";",
    "An",
    "SELECT1",
    "(SELECT 1)",
    ";SELECT 1",
    "EXEC a",
    "WITH a AS (SELECT 1) SELECT 1",

    "\xef\xbc\xb3\xef\xbc\xa5\xef\xbc\xac\xef\xbc\xa5\xef\xbc\xa3\xef\xbc\xb4 1",
    "\xc5\xbf"
    "elect 1",
    // more than one
    "SELECT 1; SELECT 2",
    "SELECT 1 SELECT 2",
    "SELECT 1;;",
    "SELECT 1; x",
    "SELECT 1;\xc2\xa0",
    "SELECT (SELECT 1)",
    "SELECT 1 FROM a WHERE b IN (select b from c)",
    "SELECT 1 UNION ALL SELECT 2",
    // words behind numbers, texts and names without a blank
    "SELECT 1 DELETE FROM a",
    "SELECT 1DELETE FROM a",
    "SELECT 1.DELETE FROM a",
    "SELECT 1.5DELETE FROM a",
    "SELECT .5DELETE a",
    "SELECT 1e5DELETE a",
    "SELECT 1.e5DELETE a",
    "SELECT 1e+5DELETE a",
    "SELECT 0x1FDROP TABLE a",
    "SELECT 'a'DELETE FROM a",
    "SELECT [a]DELETE FROM a",
    "SELECT \"a\"DELETE FROM a",
    "SELECT (1)DELETE a",
    "SELECT 1FROM a",
    "SELECT 1END",
    "SELECT $1DELETE a",
    "SELECT 1@a",
    "SELECT 1.e@a",
    "SELECT $.5DELETE a",
    "SELECT 0x\\\nAKILL 5",
    "SELECT \\1",
    // words of other statements and clauses
    "SELECT * INTO b FROM a",
    "SELECT TOP 1 a FROM b",
    "SELECT DISTINCT a FROM b",
    "SELECT a FROM b LEFT JOIN c ON 1=1",
    "SELECT a FROM OPENROWSET('a','b','c')",
    "SELECT a FROM OPENQUERY(s,'x')",
    "SELECT a FROM b WITH (NOLOCK)",
    "SELECT a FROM b FOR XML AUTO",
    "SELECT a FROM b OPTION (RECOMPILE)",
    "SELECT a FROM b USE master",
    "SELECT a FROM b WAITFOR DELAY '1'",
    "SELECT a FROM b EXEC c",
    "SELECT EXISTS (a)",
    "SELECT a FROM b PIVOT (c)",
    "SELECT a COLLATE x FROM b",
    "SELECT CURRENT_USER",
    "SELECT a FROM b SHUTDOWN",
    "SELECT a FROM b GOTO x",
    "SELECT a FROM b KILL 5",
    "SELECT a.delete FROM b",
    "SELECT a FROM b END CONVERSATION 'x'",
    "SELECT CASE WHEN 1=1 THEN 1 END END CONVERSATION 'x' FROM a",
    // comments and signs
    "SELECT 1 -- x",
    "SELECT 1--2",
    "SELECT 1 /* x */",
    "SELECT 1 /* /* */",
    "SELECT 1/**/FROM a",
    "SELECT {fn now()}",
    "SELECT 1 }",
    "SELECT `a`",
    "SELECT @a",
    "SELECT @@version",
    "SELECT $$a$$",
    // what is left open
    "SELECT 'a",
    "SELECT 'a''",
    "SELECT '''",
    "SELECT [a",
    "SELECT [a]]",
    "SELECT a]",
    "SELECT \"a",
    "SELECT \"a\"\"",
    "SELECT [a]]] DELETE FROM [b]",
    "SELECT [a]]]]] DELETE b",
    "SELECT 'a''''' DELETE b",
    "SELECT '' DELETE b WHERE ''",
    "SELECT '''' DELETE b",
    // what is glued to a text: other servers read it in their own way
    "SELECT E'\\'' DELETE b --'",
    "SELECT x'ab'",
    // blanks and signs beyond ASCII, controls
    "SELECT 1\xc2\xa0"
    "FROM a",
    "SELECT 1\xe3\x80\x80"
    "FROM a",
    "SELECT 1\xe2\x80\x8b"
    "FROM a",
    "SELECT 1\xef\xbc\x9b"
    "2",
    "SELECT \xe2\x80\x99 a",
    "SELECT 1\v2",
    "SELECT 1\f2",
    "SELECT \x01",
    "SELECT \x7f",
    "SELECT \xc2\x85 1",
    // words in other letters: full-width, a dotless i
    "SELECT 1 \xef\xbc\xa4\xef\xbc\xa5\xef\xbc\xac\xef\xbc\xa5\xef\xbc\xb4\xef\xbc\xa5 a",
    "SELECT 1 \xc4\xb1nto a",
};

TEST(Fence, refusesWhatIsNotOnePlainQuestion) {
    for (const char* text : kRefused) {
        const auto refusal = fenceRefusal(QString::fromUtf8(text));
        ASSERT_TRUE(refusal) << text;
        EXPECT_TRUE(refusal->startsWith(u"Interogarea a fost oprită înainte de a ajunge la baza de date: ")) << text;
    }
    EXPECT_TRUE(fenceRefusal(u"\uFEFFSELECT 1"_s)) << "a byte order mark";
    EXPECT_TRUE(fenceRefusal(u"SELECT 1 "_s + QChar(0) + u"FROM a"_s));
    EXPECT_TRUE(fenceRefusal(u"SELECT 1 "_s + QChar(0xD800) + u"FROM a"_s)) << "half of a surrogate pair";
}

QString anyOf(const QStringList& list, std::mt19937& random) {
    return list[static_cast<qsizetype>(random() % static_cast<unsigned>(list.size()))];
}

/// Anything but an apostrophe.
QString harmlessText(std::mt19937& random) {
    static const QStringList pieces{
        u"--"_s,     u"/*"_s,      u"*/"_s,     u";"_s,     u"]"_s,          u"]]"_s,
        u"["_s,      u"\""_s,      u"{"_s,      u"}"_s,     u"`"_s,          u"\\"_s,
        u"SELECT"_s, u" union "_s, u"/"_s,      u"%"_s,     u"_"_s,          u" "_s,
        u"$"_s,      u"1"_s,       u"\t\r\n"_s, u"ăâîșț"_s, u"\u00A0"_s,     u"\u2019"_s,
        u"\u02BC"_s, u"\uFF07"_s,  u"abc"_s,    u"@x"_s,    u"#"_s,          u"?"_s,
        u"(("_s,     u"))"_s,      u" - "_s,    u"\0"_s,    u"\U0001F600"_s, u"delete from Agenti"_s};
    QString text;
    for (unsigned left = random() % 8; left > 0; --left)
        text += random() % 4 == 0 ? QString(QChar(static_cast<char16_t>(random() % 0x10000))) : anyOf(pieces, random);
    return text.remove(u'\'');
}

FilterState harmlessState(std::mt19937& random) {
    FilterState state = tests::filledState(
        anyOf({u"Import"_s, u"Export"_s, u"Profit"_s, u"NIR"_s, u"import"_s, u"Achizitii"_s, u""_s}, random));
    for (const SplicePoint& point : tests::splicePoints())
        if (point.isQuoted && random() % 3 != 0) point.put(state, harmlessText(random));
    if (random() % 2 == 0) state.cmbCategorieIndex = 0;
    state.sSoc = anyOf({u""_s, u"Firma.dbo."_s, u"[Firma X].dbo."_s, u"Firma2.Asset."_s, u"Firma$"_s, u"[Fir]]ma'].."_s,
                        u"[srv\\1].Firma.dbo."_s, u"Țara.dbo."_s, u"\"Firma\"."_s},
                       random);
    state.codes[filters::CodeVariable::sCodAgent] =
        anyOf({u"7"_s, u"12"_s, u"-3"_s, u" 4 "_s, u"1.5"_s, u"1e2"_s}, random);
    state.depozite.clear();
    for (unsigned left = random() % 4; left > 0; --left)
        state.depozite.append(QString::number(random() % 1000) + u" - "_s + harmlessText(random));
    state.chkLohn = random() % 2 == 0;
    state.cmbSortare = anyOf({u"Data"_s, u"Numar Factura"_s, u"Furnizor"_s, u"Client"_s, u"altceva"_s}, random);
    return state;
}

TEST(Fence, letsAnyValueWithoutAnApostropheThrough) {
    std::mt19937 random(12);
    for (int number = 0; number < 10'000; ++number) {
        const FilterState state = harmlessState(random);
        for (const WindowStatement& statement : tests::windowStatements()) {
            const QString text = statement.build(state);
            ASSERT_EQ(fenceRefusal(text), std::nullopt)
                << number << qPrintable(u": "_s + statement.name + u": "_s + text);
        }
    }
}

/// Every statement into which the values of quoted, or of bare, places go, with that value there. @return how many
template <class Check>
int spliceEverywhere(const QString& value, bool isQuoted, Check check) {
    int count = 0;
    for (const QString& kind : QStringList{u"Import"_s, u"Export"_s})
        for (const SplicePoint& point : tests::splicePoints()) {
            if (point.isQuoted != isQuoted) continue;
            FilterState state = tests::filledState(kind);
            FilterState spliced = state;
            point.put(state, u"xyz"_s);
            point.put(spliced, value);
            for (const WindowStatement& statement : tests::windowStatements()) {
                if (!statement.build(state).contains(u"xyz")) continue;
                check(kind + u", "_s + point.name + u", "_s + statement.name, statement.build(spliced));
                ++count;
            }
        }
    return count;
}

TEST(Fence, refusesEveryValueThatBreaksOut) {
    constexpr std::size_t kValues = 400;
    constexpr int kQuotedPlaces = 86, kBarePlaces = 16;
    std::mt19937 random(34);
    for (const bool isQuoted : {true, false}) {
        std::set<QString> values;
        int count = 0;
        while (values.size() < kValues) {
            const QString value = tests::hostileValue(isQuoted, random);
            if (!values.insert(value).second) continue;
            count += spliceEverywhere(value, isQuoted, [&](const QString& where, const QString& text) {
                EXPECT_TRUE(fenceRefusal(text)) << qPrintable(value + u" in "_s + where + u": "_s + text);
            });
        }
        EXPECT_EQ(count, static_cast<int>(kValues) * (isQuoted ? kQuotedPlaces : kBarePlaces));
    }
    for (const QString& value : tests::oddQuotes())
        spliceEverywhere(value, true, [&](const QString& where, const QString& text) {
            EXPECT_TRUE(fenceRefusal(text)) << qPrintable(value + u" in "_s + where + u": "_s + text);
        });
}

TEST(FencedConnection, keepsARefusedTextFromTheProvider) {
    const auto provider = tests::FakeConnection::create();
    provider->answer(QString(), {.columns = {{u"An"_s, ColumnType::Int64}}, .rows = {{u"2026"_s}}});
    const Connection connection(fenceConnection(provider->asConnection()));
    const QString hostile = u"SELECT An FROM An DELETE FROM An"_s;
    const std::function<void()> ways[] = {[&] { (void)connection.execute(hostile); },
                                          [&] { (void)connection.openRowset(hostile); },
                                          [&] { (void)connection.prepare(hostile); }};
    for (const auto& way : ways) {
        try {
            way();
            ADD_FAILURE() << "the text has passed";
        } catch (const base::Error& error) {
            EXPECT_EQ(error.number(), base::kStatementError);
            EXPECT_TRUE(error.description().contains(u"DELETE")) << error.what();
        }
    }
    EXPECT_TRUE(provider->calls().isEmpty());
    EXPECT_NE(connection.execute(u"SELECT An FROM An"_s).fetch(), nullptr);
    EXPECT_EQ(provider->calls().size(), 1);
    EXPECT_TRUE(connection.isFreeThreaded());
    EXPECT_FALSE(fenceConnection({}));
}

}  // namespace
}  // namespace velcoran::db
