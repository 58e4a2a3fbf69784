#include "query/statement.h"

#include "base/error.h"
#include "filters/codes.h"
#include "filters/statement_cases.h"
#include "query/request.h"
#include "support/test_data.h"

#include <gtest/gtest.h>

#include <random>

namespace velcoran::query {
namespace {

using namespace Qt::StringLiterals;
using filters::FilterState;
using filters::LookupField;

QString statementOf(const FilterState& state) { return assembleStatement(state, buildRequest(state)); }

TEST(Statement, isTheTypedTextLetterByLetter) {
    const auto cases = tests::readStatementCases(u"report.txt"_s);
    EXPECT_GE(cases.size(), 40U);
    for (const tests::StatementCase& one : cases) EXPECT_EQ(statementOf(one.state), one.text) << one.name.toStdString();
}

FilterState detailed(const QString& kind) {
    FilterState state;
    state.sTipRaport = kind;
    state.cmbTipRaport = u"Zi"_s;
    state.deLaData = QDate(2026, 3, 1);
    state.laData = QDate(2026, 3, 15);
    return state;
}

TEST(Request, writesTheCodeOfEachCategoryName) {
    const QStringList names{u"Materiale Stocate cu NIR"_s,
                            u"Materiale Stocate fara NIR"_s,
                            u"Materiale Nestocate"_s,
                            u"Produse Finite"_s,
                            u"Produse Finite in Consignatie"_s,
                            u"Servicii"_s,
                            u"Alte Cheltuieli"_s,
                            u"Mijloace Fixe"_s,
                            u"Produse in Lohn"_s};
    FilterState state = detailed(u"Import"_s);
    state.cmbCategorieIndex = 1;
    for (int fel = 0; fel < names.size(); ++fel) {
        state.cmbCategorie = names[fel];
        EXPECT_EQ(buildRequest(state).sProdus, u" TipuriProduse.Fel="_s + QString::number(fel));
    }
}

TEST(Request, failsOnAWarehouseWithoutItsSeparator) {
    for (const QString& bad : {u"7"_s, u"7-Vama"_s, u"7 -Vama"_s, QString()}) {
        FilterState state = detailed(u"Import"_s);
        state.depozite = {u"1 - Central"_s, bad};
        try {
            static_cast<void>(buildRequest(state));
            ADD_FAILURE() << "accepted " << bad.toStdString();
        } catch (const base::Error& error) {
            EXPECT_EQ(error.number(), 5);
            EXPECT_EQ(error.description(), u"Depozitul „%1” nu are „ - ” după cod."_s.arg(bad));
        }
    }
}

TEST(Request, keepsTheWarehouseListWithItsLeadingBlank) {
    FilterState state = detailed(u"Export"_s);
    EXPECT_EQ(buildRequest(state).sDepozite, QString());
    state.depozite = {u"1 - A"_s, u"4 - B"_s};
    EXPECT_EQ(buildRequest(state).sDepozite, u" (1, 4)");
}

/// A state of any combination, with the pieces that its statement must hold, in their order.
struct Combination {
    FilterState state;
    QStringList pieces;
};

class Combiner {
public:
    explicit Combiner(unsigned seed) : m_random(seed) {}

    Combination next() {
        Combination one;
        FilterState& state = one.state = detailed(choose({u"Import"_s, u"Export"_s, u"import"_s}));
        state.cmbTipRaport = choose({u"Furnizor"_s, u"Client"_s, u"Zi"_s});
        state.cmbSortare = choose({u"Data"_s, u"Numar Document"_s, u"Numar Factura"_s, u"Client"_s});
        state.chkTotale = chance();
        state.chkLohn = chance();
        one.pieces = {u"SELECT "_s, u" FROM "_s, u" WHERE CapDocIntE.EC in ("_s};
        addHeaderFilters(one);
        if (state.chkTotale) one.pieces += period();
        if (isSupplierTable(state)) one.pieces.append(u" AND CapDocIntE.Transferat in ('F','T','S','R') "_s);
        if (!state.chkTotale) addGrouping(one);
        if (state.chkTotale || state.cmbSortare != u"Numar Document") one.pieces.append(u" ORDER BY CapDocIntE."_s);
        return one;
    }

private:
    bool chance() { return (m_random() & 1U) != 0; }
    QString choose(const QStringList& from) { return from[static_cast<qsizetype>(m_random() % 1000U) % from.size()]; }
    static QStringList period() {
        return {u" CapDocIntE.[Data Documentului] >= '2026-03-01'  AND"_s,
                u" CapDocIntE.[Data Documentului] <= '2026-03-15' "_s};
    }
    static bool isSupplierTable(const FilterState& state) {
        const bool followsList = !state.chkTotale && state.cmbTipRaport != u"Zi";
        return followsList ? state.cmbTipRaport == u"Furnizor" : state.isSupplierSide();
    }
    void addHeaderFilters(Combination& one) {
        FilterState& state = one.state;
        if (chance()) {
            state.fields[LookupField::txtTipClient].text = u"t1"_s;
            one.pieces.append(u"]='t1'"_s);
        }
        if (chance()) {
            state.fields[LookupField::txtCatClient].text = u"c1"_s;
            one.pieces.append(u"]='c1'"_s);
        }
        if (chance()) {
            state.fields[LookupField::txtCodClient].text = u"name"_s;
            state.codes[filters::CodeVariable::sCodClient] = u"F1"_s;
            one.pieces.append(u"[Furnizor]='F1'"_s);
        }
        if (chance()) {
            state.depozite = {u"3 - X"_s};
            one.pieces.append(u" in  (3)"_s);
        }
        if (chance()) {
            state.fields[LookupField::txtCodAgent].text = u"agent"_s;
            state.codes[filters::CodeVariable::sCodAgent] = u"9"_s;
            one.pieces.append(u"[Agent]=9"_s);
        }
    }
    void addGrouping(Combination& one) {
        one.pieces += {u" GROUP BY "_s, u" Having"_s};
        one.pieces += period();
        one.pieces.append(u" AND Sum(CASE WHEN  TipuriProduse.Fel in ("_s);
        if (chance()) {
            one.state.fields[LookupField::txtTipProdus].text = u"P1"_s;
            one.pieces.append(u" AND TipuriProduse.[Tip Produs]='P1'"_s);
        }
        if (chance()) {
            one.state.codes[filters::CodeVariable::sCodProducator] = u"PR1"_s;
            one.pieces.append(u" AND CoduriProdus.P='PR1'"_s);
        }
        one.pieces.append(u" THEN 1 ELSE 0 END)>0"_s);
    }

    std::mt19937 m_random;
};

TEST(Statement, holdsItsPiecesOnceAndInOrderWhateverIsCombined) {
    Combiner combiner(20260315);
    for (int i = 0; i < 2000; ++i) {
        const Combination one = combiner.next();
        const QString sql = statementOf(one.state);
        qsizetype place = -1;
        for (const QString& piece : one.pieces) {
            const qsizetype found = sql.indexOf(piece);
            ASSERT_GT(found, place) << piece.toStdString() << " in " << sql.toStdString();
            ASSERT_EQ(sql.indexOf(piece, found + 1), -1) << piece.toStdString() << " twice in " << sql.toStdString();
            place = found;
        }
        ASSERT_EQ(sql.count(u'('), sql.count(u')')) << sql.toStdString();
        ASSERT_EQ(sql.count(u"]='"), one.pieces.filter(u"]='"_s).size()) << sql.toStdString();
    }
}

}  // namespace
}  // namespace velcoran::query
