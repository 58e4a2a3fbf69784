#include "db/sqlite/dialect.h"

#include "db/sqlite/tokens.h"
#include "support/test_data.h"

#include <random>

#include <gtest/gtest.h>

namespace velcoran::sqlite {
namespace {

using namespace Qt::StringLiterals;

struct RewriteCase {
    const char* text;
    const char* expected;
};

TEST(Dialect, rewritesConversionsAndTextSums) {
    constexpr RewriteCase kCases[] = {
        {"CONVERT(NVARCHAR,CapDocIntE.[Data Documentului],103) AS DataDoc",
         "day_text(CapDocIntE.[Data Documentului]) AS DataDoc"},
        {"convert ( nvarchar ( 10 ) , d , 103 )", "day_text ( d , 10)"},
        {"Convert(NVarChar(10),d,103)", "day_text(d, 10)"},
        {"CONVERT(NVARCHAR(MAX),f(a,b),103)", "day_text(f(a,b))"},
        {"CONVERT(NVARCHAR,CONVERT(NVARCHAR,d,103),103)", "day_text(day_text(d))"},
        {"str(D.D,len(D.D),0) + ' - ' + D.[Denumire]", "str(D.D,len(D.D),0) || ' - ' || D.[Denumire]"},
        {"a + b + 'x'", "a || b || 'x'"},
        {"(a + 'x') + b", "(a || 'x') || b"},
        {"CONVERT(NVARCHAR,d,103)+a", "day_text(d)||a"},
        {"CASE WHEN a+b>0 THEN 'x' ELSE c END + d", "CASE WHEN a+b>0 THEN 'x' ELSE c END || d"},
        {"a/*+*/+--'\n'x'", "a/*+*/||--'\n'x'"},
    };
    for (const RewriteCase& one : kCases)
        EXPECT_EQ(rewrite(QString::fromUtf8(one.text)), QString::fromUtf8(one.expected));
}

TEST(Dialect, leavesTheRestAsItIs) {
    for (const char* text : {
             "Avg(CapDocIntE.[Valoare Neta]+ CapDocIntE.[Valoare TVA]+CapDocIntE.[Valoare Taxe]) AS ValoareBruta",
             "len('a') + 1",
             "len(a + b) + 1",
             "a + b = 'x'",
             "'x' = a + b",
             "a IN ('x') AND b + c > 1",
             "CASE a WHEN 'x' THEN 1 END + b",
             "1e+5, 1.5E+3, .5e+1, +1, a - +b",
             "[it's] + [a + 'b']",
             "\"a'\" + b",
             "CONVERT(NVARCHAR,d,104)",
             "CONVERT(INT,d,103)",
             "CONVERT(NVARCHAR,d)",
             "CONVERT(NVARCHAR,d,103",
             "convert",
             "'CONVERT(NVARCHAR,d,103)'",
             "a + 'x",
             "a + [x",
             "/* a + 'x'",
             "))) + (((",
             "END END CASE",
             "",
         })
        EXPECT_EQ(rewrite(QString::fromUtf8(text)), QString::fromUtf8(text));
}

TEST(Dialect, namesColumnsAsTheStatementWritesThem) {
    EXPECT_EQ(writtenColumnNames(u" SELECT DISTINCT S.[SubGrupa Produs], p as Cod, f(a,b), d /* x */ FROM t, u"_s),
              (QStringList{u"SubGrupa Produs"_s, QString(), QString(), u"d"_s}));
    EXPECT_EQ(writtenColumnNames(u"SELECT 1, a"_s), (QStringList{QString(), u"a"_s}));
    EXPECT_EQ(writtenColumnNames(u"SELECT *, a FROM t"_s), QStringList());
    EXPECT_EQ(writtenColumnNames(u"WITH x AS (SELECT 1) SELECT a FROM x"_s), QStringList());
}

TEST(Dialect, knowsAnEmptyRest) {
    EXPECT_TRUE(isEmptyStatement(u" ;; -- SELECT 1\n /* x */ ;"));
    EXPECT_TRUE(isEmptyStatement(u""));
    EXPECT_FALSE(isEmptyStatement(u"; SELECT 1"));
    EXPECT_FALSE(isEmptyStatement(u"'"));
}

TEST(Tokens, cutAsTheDatabaseDoes) {
    const QList<Token> tokens = tokenize(u"a.[b c]<>'d''e' 1.5e-3||\"f\"\"g\"--h");
    QStringList texts;
    for (const Token& token : tokens) texts.append(token.text.toString());
    EXPECT_EQ(texts, (QStringList{u"a"_s, u"."_s, u"[b c]"_s, u"<>"_s, u"'d''e'"_s, u" "_s, u"1.5e-3"_s, u"||"_s,
                                  u"\"f\"\"g\""_s, u"--h"_s}));
}

QString mutated(QString text, std::mt19937& random) {
    static const QString kPieces[] = {u"'"_s,  u"["_s,  u"]"_s,   u"("_s,        u")"_s,        u"+"_s,  u","_s,
                                      u"--"_s, u"/*"_s, u"*/"_s,  u" CASE "_s,   u" END "_s,    u"\""_s, u"103"_s,
                                      u"ș"_s,  u"\n"_s, u"1e+"_s, u"CONVERT("_s, u"NVARCHAR"_s, u"||"_s, u"0x"_s};
    for (unsigned change = random() % 4 + 1; change > 0; --change) {
        const auto at = static_cast<qsizetype>(random() % static_cast<unsigned>(text.size() + 1));
        const auto length = static_cast<qsizetype>(random() % 6);
        switch (random() % 3) {
            case 0:
                text.insert(at, kPieces[random() % std::size(kPieces)]);
                break;
            case 1:
                text.remove(at, length);
                break;
            default:
                text.insert(at, text.mid(static_cast<qsizetype>(random() % static_cast<unsigned>(text.size() + 1)),
                                         length * 4));
        }
    }
    return text;
}

TEST(Tokens, mutatedStatementsKeepEveryCharacter) {
    const QString seeds[] = {
        u" SELECT str(D.D,len(D.D),0) + ' - ' + D.[Denumire Depozit] FROM D WHERE a Like '[a-z]%' -- end"_s,
        u"SELECT CONVERT(NVARCHAR(10),C.[Data],103) AS d, Avg(a+b) /* c */ FROM [T t] GROUP BY CONVERT(NVARCHAR,d,103)"_s,
        u"CASE WHEN [F]=0 THEN 'a''b' ELSE \"c\" + `d` END + 1.5e+3 || x"_s};
    std::mt19937 random(20260731);  // the same mutations on every run
    for (int round = 0; round < 15000; ++round) {
        const QString text = mutated(seeds[static_cast<std::size_t>(round) % std::size(seeds)], random);
        QString joined;
        for (const Token& token : tokenize(text)) {
            ASSERT_FALSE(token.text.isEmpty());
            joined += token.text;
        }
        ASSERT_EQ(joined, text);
        const QString once = rewrite(text);
        if (once.contains(u"convert", Qt::CaseInsensitive)) continue;
        ASSERT_EQ(rewrite(once), once) << text.toStdString();
    }
}

}  // namespace
}  // namespace velcoran::sqlite
