#include "report/data/amount_text.h"
#include "report/data/text_column.h"
#include "report/layout/fonts/font_set.h"
#include "report/layout/fonts/text_fit.h"

#include "support/test_data.h"

#include <QMap>

#include <gtest/gtest.h>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace velcoran;
using namespace velcoran::report;

namespace {

std::u16string_view view(const QString& text) {
    return {reinterpret_cast<const char16_t*>(text.utf16()), static_cast<std::size_t>(text.size())};
}

/// True where a text may be parted: in no pair of surrogates and in front of no mark.
bool isBoundary(const QString& text, qsizetype at) {
    return at == text.size() || !(text[at].isLowSurrogate() || text[at].isMark());
}

}  // namespace

TEST(AmountText, isRoundedHalfAwayFromZeroAndGrouped) {
    struct Case {
        qint64 mantissa;
        int scale;
        const char16_t *amount, *whole, *rate;
    };
    for (const Case& one : {
             Case{0, 0, u"0,00", u"0,00", u"0,0000"},
             Case{-4, 3, u"0,00", u"-0,004", u"-0,0040"},
             Case{-5, 3, u"-0,01", u"-0,005", u"-0,0050"},
             Case{1005, 3, u"1,01", u"1,005", u"1,0050"},
             Case{10049, 4, u"1,00", u"1,0049", u"1,0049"},
             Case{99999, 3, u"100,00", u"99,999", u"99,9990"},
             Case{49750, 4, u"4,98", u"4,975", u"4,9750"},
             Case{49756789, 7, u"4,98", u"4,9756789", u"4,975679"},
             Case{1000, 0, u"1.000,00", u"1.000,00", u"1.000,0000"},
             Case{99999999, 2, u"999.999,99", u"999.999,99", u"999.999,9900"},
             Case{-123456789, 2, u"-1.234.567,89", u"-1.234.567,89", u"-1.234.567,8900"},
             Case{9223372036854775, 0, u"9.223.372.036.854.775,00", u"9.223.372.036.854.775,00",
                  u"9.223.372.036.854.775,0000"},
             Case{9223372036854775807, 18, u"9,22", u"9,223372036854775807", u"9,223372"},
         }) {
        // The same amount through the short arithmetic and through the long one.
        const ShortDecimal amount{one.mantissa, one.scale};
        EXPECT_EQ(amountText(amount), QString::fromUtf16(one.amount)) << one.mantissa;
        EXPECT_EQ(amountText(base::Decimal(amount)), QString::fromUtf16(one.amount)) << one.mantissa;
        EXPECT_EQ(wholeAmountText(base::Decimal(amount)), QString::fromUtf16(one.whole)) << one.mantissa;
        EXPECT_EQ(rateText(amount), QString::fromUtf16(one.rate)) << one.mantissa;
    }
    EXPECT_EQ(countText(999), u"999"_s);
    EXPECT_EQ(countText(1'000'000), u"1.000.000"_s);
}

TEST(TextPool, ranksTextsLikeTheirOrder) {
    const QString beyond = QString::fromUcs4(U"\U0001D400");
    const QList<QStringList> pools{
        {},
        {u"ALFA"_s},
        {u"BETA"_s, u"ALFA"_s},
        {u"ALFA TRADE SRL"_s, u"ALFA"_s},
        {u"ALFA TRADE 2"_s, u"ALFA TRADE 1"_s},
        {u"A"_s, u""_s, u"AA"_s},
        {u"abcdefghZ"_s, u"abcdefghA"_s, u"abcdefgh"_s, u"b"_s},
        {u"xabcdefghiZ"_s, u"xabcdefghiA"_s, u"xb"_s, u"xa"_s},
        {u"a\u0219"_s, u"az"_s, u"a\u00FE"_s, u"a\u00FF"_s, u"a\u00FFb"_s, u"a\u0103"_s},
        {beyond, u"\uFB01"_s, u"\uE000"_s, u"z"_s},
        {beyond + u'b', beyond + u'a', beyond},
    };
    for (const QStringList& texts : pools) {
        TextPool pool;
        QMap<std::uint32_t, QString> byRank;
        QStringList sorted = texts;
        for (const QString& text : texts) EXPECT_NE(pool.intern(view(text)), TextPool::kNull);
        const std::vector<std::uint32_t> ranks = pool.ranks();
        ASSERT_EQ(ranks.size(), texts.size() + 1U);
        EXPECT_EQ(ranks[TextPool::kNull], 0U);
        for (const QString& text : texts) byRank[ranks[pool.intern(view(text))]] = text;
        std::sort(sorted.begin(), sorted.end(),
                  [](const QString& one, const QString& other) { return one.toUcs4() < other.toUcs4(); });
        EXPECT_EQ(byRank.values(), sorted);
    }
}

TEST(TextPool, findsItsTextsAgainHoweverMany) {
    TextPool pool;
    std::vector<std::uint32_t> numbers;
    for (int i = 0; i < 1000; ++i) numbers.push_back(pool.intern(view(u"P%1"_s.arg(i))));
    pool.finish();
    for (int i = 0; i < 1000; ++i) {
        EXPECT_EQ(numbers[static_cast<std::size_t>(i)], static_cast<std::uint32_t>(i + 1));
        EXPECT_EQ(pool.text(numbers[static_cast<std::size_t>(i)]), view(u"P%1"_s.arg(i)));
    }
    EXPECT_EQ(pool.size(), 1001U);
}

TEST(TextFit, partsNoCharacterAndWastesNoRoom) {
    const auto fonts = FontSet::shared();
    const QString texts[] = {u"SOCIETATEA NAȚIONALĂ DE TRANSPORTURI"_s, QString::fromUcs4(U"\U0001D11E").repeated(12),
                             u"e\u0301a\u0323\u0306"_s.repeated(8), u"FARABLANCURI"_s.repeated(3)};
    for (const QString& text : texts) {
        const double whole = fonts->width(text, false);
        EXPECT_EQ(elided(text, whole, false, *fonts), text);
        for (int share = 1; share < 40; ++share) {
            const double room = whole * share / 40;
            const QString shown = elided(text, room, false, *fonts);
            ASSERT_TRUE(shown.endsWith(u'…')) << qPrintable(shown);
            const qsizetype length = shown.size() - 1;
            EXPECT_TRUE(text.startsWith(shown.left(length)));
            EXPECT_FALSE(shown.chopped(1).endsWith(u' ')) << qPrintable(shown);
            EXPECT_TRUE(isBoundary(text, length)) << qPrintable(shown);
            if (length > 0) {
                EXPECT_LE(fonts->width(shown, false), room + 0.01);
            }
            qsizetype more = length + 1;
            while (more < text.size() && (text[more] == u' ' || !isBoundary(text, more))) ++more;
            if (more < text.size()) {
                // Kerning between the last letter and the ellipsis is not reckoned with.
                EXPECT_GT(fonts->width(text.left(more + 1), false) + fonts->width(u"…", false), room - 0.2)
                    << qPrintable(shown);
            }
            qsizetype at = 0;
            for (const QString& line : wrapped(text, room, false, 100, *fonts)) {
                while (at < text.size() && text[at] == u' ') ++at;
                ASSERT_EQ(text.mid(at, line.size()), line);
                at += line.size();
                EXPECT_TRUE(isBoundary(text, at)) << share << ' ' << qPrintable(line);
            }
            EXPECT_EQ(at, text.size()) << qPrintable(text);
        }
    }
    EXPECT_EQ(oneLine(u"a\r\nb\tc\u0085d"_s), u"a b c d"_s);
}
