#include "db/fence.h"

#include "hostile_texts.h"
#include "oracle.h"
#include "support/test_data.h"

#include <gtest/gtest.h>

#include <random>

using namespace Qt::StringLiterals;

namespace velcoran::db {
namespace {

const QStringList& pieces() {
    static const QStringList list{u"'"_s,          u"''"_s,         u"'a'"_s,    u"\""_s,
                                  u"\"a\""_s,      u"["_s,          u"]"_s,      u"]]"_s,
                                  u"[a]"_s,        u";"_s,          u"-"_s,      u"--"_s,
                                  u"/"_s,          u"*"_s,          u"/*"_s,     u"*/"_s,
                                  u"("_s,          u")"_s,          u"."_s,      u","_s,
                                  u"="_s,          u"\\"_s,         u"{"_s,      u"`"_s,
                                  u"@"_s,          u"#"_s,          u"$"_s,      u"_"_s,
                                  u"+"_s,          u"?"_s,          u":"_s,      u" "_s,
                                  u"\t"_s,         u"\n"_s,         u"0"_s,      u"1"_s,
                                  u"0x"_s,         u"1e"_s,         u"5."_s,     u"e5"_s,
                                  u"a"_s,          u"N"_s,          u"E"_s,      u"x"_s,
                                  u"ă"_s,          u"\u00A0"_s,     u"\u3000"_s, u"\u200B"_s,
                                  u"\U0001F600"_s, u"\U0001D400"_s, u"SELECT"_s, u"select"_s,
                                  u"DELETE"_s,     u"drop"_s,       u"into"_s,   u"union"_s,
                                  u"use"_s,        u"from"_s,       u"WHERE"_s,  u"and"_s,
                                  u"case"_s,       u"END"_s,        u"Kill"_s,   u"conversation"_s,
                                  u"sELECT"_s,     u"exec"_s,       u"order"_s,  u"by"_s};
    return list;
}

QString randomText(std::mt19937& random) {
    QString text = random() % 16 == 0 ? QString() : u"SELECT "_s;
    for (unsigned left = 1 + random() % 12; left > 0; --left) {
        text += pieces()[static_cast<qsizetype>(random() % static_cast<unsigned>(pieces().size()))];
        if (random() % 3 == 0) text += u' ';
    }
    return text;
}

/// One of the window's statements with a few pieces put in, taken out or doubled.
QString mutatedStatement(std::mt19937& random) {
    const auto& statements = tests::windowStatements();
    const auto state = tests::filledState(random() % 2 == 0 ? u"Import"_s : u"Export"_s);
    QString text = statements[static_cast<qsizetype>(random() % static_cast<unsigned>(statements.size()))].build(state);
    for (unsigned left = 1 + random() % 3; left > 0; --left) {
        const auto at = static_cast<qsizetype>(random() % static_cast<unsigned>(text.size()));
        if (random() % 3 == 0)
            text.remove(at, static_cast<qsizetype>(1 + random() % 3));
        else
            text.insert(at, pieces()[static_cast<qsizetype>(random() % static_cast<unsigned>(pieces().size()))]);
    }
    return text;
}

TEST(FenceFuzz, whatPassesIsOnePlainQuestionForAnotherScannerToo) {
    std::mt19937 random(56);
    int passed = 0;
    for (int number = 0; number < 40'000; ++number) {
        const QString text = number % 5 == 0 ? mutatedStatement(random) : randomText(random);
        if (fenceRefusal(text)) continue;
        ++passed;
        ASSERT_EQ(tests::faultOfPassed(text), QString()) << qPrintable(text);
    }
    EXPECT_GT(passed, 1'500) << "too few texts pass to say anything";
}

TEST(FenceFuzz, refusesWhatTheOtherScannerFindsInHostileValues) {
    std::mt19937 random(78);
    for (int number = 0; number < 2'000; ++number) {
        const QString text = u"SELECT a FROM b WHERE c='"_s + tests::hostileValue(true, random) + u"'"_s;
        EXPECT_NE(tests::faultOfPassed(text), QString()) << qPrintable(text) << ": the oracle is blind";
    }
}

}  // namespace
}  // namespace velcoran::db
