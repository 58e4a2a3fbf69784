#include "db/fence.h"
#include "lookup/lookup_request.h"
#include "report/request.h"
#include "report/statement.h"

#include "db/connection.h"
#include "support/fake_connection.h"

#include <QRegularExpression>

#include <gtest/gtest.h>

#include <random>
#include <vector>

using namespace Qt::StringLiterals;

namespace velcoran::tests {
namespace {

using filters::FilterState;
using filters::LookupField;

constexpr QStringView kKinds[] = {u"Import", u"Export", u"import", u"Profit", u"NIR", u"Achizitii"};
constexpr QStringView kPrefixes[] = {u"", u"Firma2.dbo.", u"[Firma Nouă].dbo.", u"[a]]b]..", u"Ștefan.", u"\"Firma\"."};
constexpr QStringView kPieces[] = {u"a",        u"ALIM", u"--", u"/*", u"*/", u";",  u"]", u"[",  u"]]",     u"{",
                                   u"\"",       u"`",    u"%",  u"_",  u"/",  u" ",  u"ș", u"😀",  u"\u00A0", u"DELETE",
                                   u" SELECT ", u"\n",   u"1",  u"@x", u"#t", u"\\", u"'", u"＇", u"\u02BC"};

class States {
public:
    explicit States(unsigned seed) : m_random(seed) {}

    std::size_t below(std::size_t count) { return std::uniform_int_distribution<std::size_t>(0, count - 1)(m_random); }
    QString text(bool hasApostrophes = false) {
        QString text;
        for (std::size_t left = below(6); left > 0; --left) {
            const QStringView piece = kPieces[below(std::size(kPieces))];
            if (hasApostrophes || piece != u"'") text += piece.toString();
        }
        return text;
    }
    FilterState state() {
        FilterState state;
        state.sTipRaport = kKinds[below(std::size(kKinds))].toString();
        state.sSoc = kPrefixes[below(std::size(kPrefixes))].toString();
        for (filters::LookupValue& field : state.fields)
            if (below(2) == 0) field.text = text();
        for (QString* code : {&state.sCodProdus, &state.sCodProducator, &state.sCodClient}) *code = text();
        state.sCodAgent = QString::number(below(1000));
        state.cmbTipRaport = below(2) == 0 ? u"Zi"_s : u"Furnizor"_s;
        state.cmbSortare = below(2) == 0 ? u"Data"_s : u"Numar Document"_s;
        state.cmbCategorieIndex = static_cast<int>(below(2));
        state.cmbCategorie = state.cmbCategorieIndex == 0 ? QString() : u"Servicii"_s;
        for (std::size_t left = below(3); left > 0; --left)
            state.depozite.append(QString::number(below(200)) + u" - "_s + text());
        state.chkTotale = below(2) == 0;
        state.chkLohn = below(2) == 0;
        state.deLaData = QDate(2026, 3, 1);
        state.laData = QDate(2026, 3, 15);
        return state;
    }

private:
    std::mt19937 m_random;
};

QStringList statementsOf(const FilterState& state) {
    QStringList statements{report::assembleStatement(state, report::buildRequest(state))};
    for (int field = 0; field < filters::kLookupFieldCount; ++field)
        statements.append(lookup::buildLookup(static_cast<LookupField>(field), state).Sql);
    return statements;
}

TEST(Fence, letsTheWindowsStatementsThroughWhateverIsTyped) {
    States states(7);
    for (int round = 0; round < 10'000; ++round)
        for (const QString& statement : statementsOf(states.state()))
            ASSERT_EQ(db::fenceRefusal(statement), std::nullopt) << qPrintable(statement);
    for (const QStringView own :
         {u"SELECT An FROM An",
          u" SELECT str(Depozite.Depozit,len(Depozite.Depozit),0) + ' - ' + Depozite.[Denumire Depozit] FROM Depozite",
          u"SELECT a FROM b ; \r\n"})
        EXPECT_EQ(db::fenceRefusal(own), std::nullopt);
}

/// What a text must not bring into a statement that it breaks out of.
constexpr QStringView kHarm[] = {
    u"DELETE FROM Agenti",
    u"delete Agenti",
    u";DELETE Agenti",
    u"; drop table Agenti",
    u"UPDATE Agenti SET Inactiv=1",
    u"INSERT Agenti VALUES (1)",
    u"UNION SELECT 1",
    u"UNION ALL SELECT name FROM sys.objects",
    u"EXEC xp_cmdshell",
    u"EXECUTE ('x')",
    u"USE master",
    u"OPENROWSET('a','b','c')",
    u"OPENQUERY(x,'y')",
    u"WAITFOR DELAY '0:0:9'",
    u"SHUTDOWN",
    u"KILL 53",
    u"TRUNCATE TABLE Agenti",
    u"MERGE x",
    u"INTO x",
    u"FOR XML AUTO",
    u"WITH (TABLOCKX)",
    u"OPTION (RECOMPILE)",
    u"--",
    u"-- DELETE",
    u"/* x */",
    u"/* /* x */ */",
    u"{fn user()}",
    u"`x`",
    u"[x",
    u"]",
    u"x]] ]",
    u"\"x",
    u"1DELETE Agenti",
    u"1.DELETE Agenti",
    u"1.5e3DELETE Agenti",
    u"1eDELETE Agenti",
    u"$5DELETE Agenti",
    u"0xDELETE",
    u"ＤＥＬＥＴＥ Agenti",
    u"; SELECT 1",
    u"(SELECT 1)",
    u"x ; y",
    u"\u00A0DELETE",
    u"😀",
    u"×",
    u"\u0001",
};

/// The state in which a text was typed into one field, or stands in the database as one code.
std::vector<FilterState> splicesOf(const QString& text) {
    FilterState state;
    state.sTipRaport = u"Import"_s;
    state.cmbTipRaport = u"Furnizor"_s;
    state.deLaData = state.laData = QDate(2026, 3, 1);
    std::vector<FilterState> states;
    for (std::size_t field = 0; field < state.fields.size(); ++field) {
        states.push_back(state);
        states.back().fields[field].text = text;
    }
    for (QString FilterState::*code :
         {&FilterState::sCodProdus, &FilterState::sCodProducator, &FilterState::sCodClient}) {
        states.push_back(state);
        for (filters::LookupValue& field : states.back().fields) field.text = u"a"_s;
        states.back().*code = text;
    }
    return states;
}

TEST(Fence, keepsEveryTextOutThatBreaksOut) {
    constexpr QStringView kBreaks[] = {u"'", u"')", u"'))", u"x' ", u"''' ", u"' OR 1=1 "};
    int tried = 0;
    for (const QStringView harm : kHarm) {
        EXPECT_TRUE(db::fenceRefusal(u"SELECT An FROM An "_s + harm.toString())) << qPrintable(harm.toString());
        // Inside a statement a later bracket closes it: the statement is broken, and does no harm.
        if (harm.contains(u'[') || harm.contains(u'"')) continue;
        // The agent's code stands without quotes: nothing has to be broken out of.
        FilterState unquoted = splicesOf(u"a"_s).back();
        unquoted.sCodAgent = u"1 "_s + harm.toString();
        EXPECT_TRUE(db::fenceRefusal(statementsOf(unquoted).front())) << qPrintable(unquoted.sCodAgent);
        for (const QStringView breaks : kBreaks) {
            for (const QStringView closing : {u"--", u"", u" AND ('", u" OR '"}) {
                const QString text = breaks.toString() + QChar(u' ') + harm.toString() + closing.toString();
                for (const FilterState& state : splicesOf(text)) {
                    for (const QString& statement : statementsOf(state)) {
                        if (!statement.contains(text)) continue;  // another field's, or the slashes are wildcards
                        ++tried;
                        EXPECT_TRUE(db::fenceRefusal(statement)) << qPrintable(statement);
                    }
                }
            }
        }
    }
    EXPECT_GT(tried, 5000);
    for (const QStringView text : {u"", u"  ", u";", u"DELETE FROM Agenti", u"(SELECT 1)", u"SELECTED", u"'SELECT'",
                                   u"EXEC x", u"SELECT 'a", u"SELECT [a", u"SELECT \"a", u"SELECT 'a''"})
        EXPECT_TRUE(db::fenceRefusal(text)) << qPrintable(text.toString());
}

/// Another reading of the same rules, by patterns: what it takes for words outside texts and names.
QStringList wordsOutside(QString statement) {
    static const QRegularExpression kEnclosed(u"'(?:[^']|'')*'|\\[(?:[^\\]]|\\]\\])*\\]|\"(?:[^\"]|\"\")*\""_s);
    static const QRegularExpression kWord(u"[A-Za-z_]+"_s);
    statement.replace(kEnclosed, u" "_s);
    QStringList words;
    for (auto hits = kWord.globalMatch(statement); hits.hasNext();) words.append(hits.next().captured().toUpper());
    return words;
}

TEST(Fence, whatPassesIsOneQuestionInAnotherReadingToo) {
    static const QStringList kNever{u"DELETE"_s, u"UPDATE"_s, u"INSERT"_s, u"DROP"_s, u"UNION"_s, u"EXEC"_s, u"INTO"_s};
    States states(11);
    int passed = 0;
    for (int round = 0; round < 3000; ++round) {
        FilterState state = states.state();
        state.field(static_cast<LookupField>(states.below(filters::kLookupFieldCount))).text = states.text(true);
        state.sCodClient = states.text(true);
        for (const QString& statement : statementsOf(state)) {
            if (db::fenceRefusal(statement)) continue;
            ++passed;
            const QStringList words = wordsOutside(statement);
            ASSERT_EQ(words.count(u"SELECT"_s), 1) << qPrintable(statement);
            for (const QString& never : kNever) ASSERT_FALSE(words.contains(never)) << qPrintable(statement);
        }
    }
    EXPECT_GT(passed, 500);
}

TEST(Fence, refusesBeforeTheConnectionHears) {
    const auto inner = FakeConnection::create();
    inner->answer({}, {});
    const db::Connection fenced(db::fenceConnection(com::Ref<IConnection>(inner.get())));
    for (const auto& call : {std::function([&] { (void)fenced.execute(u"DELETE FROM Agenti"_s); }),
                             std::function([&] { (void)fenced.openRowset(u"SELECT 1 DELETE Agenti"_s); }),
                             std::function([&] { (void)fenced.prepare(u"SELECT 1; SELECT 2"_s); })}) {
        try {
            call();
            ADD_FAILURE() << "no error";
        } catch (const base::Error& error) {
            EXPECT_EQ(error.number(), base::kStatementError);
            EXPECT_TRUE(error.description().startsWith(u"Interogarea a fost oprită"_s));
        }
    }
    EXPECT_TRUE(inner->calls().isEmpty());
    EXPECT_NO_THROW((void)fenced.execute(u"SELECT An FROM An"_s));
    EXPECT_FALSE(inner->calls().isEmpty());
    EXPECT_FALSE(db::fenceConnection({}));
}

}  // namespace
}  // namespace velcoran::tests
