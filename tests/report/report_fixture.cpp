#include "report_fixture.h"

#include "report/layout/definition.h"

#include <gtest/gtest.h>

#include <future>
#include <random>

namespace velcoran::report {

using namespace Qt::StringLiterals;

tests::FakeAnswer answerOf(const std::vector<Row>& rows, const Types& types) {
    tests::FakeAnswer answer;
    const auto amount = [&](const QString& name) { return tests::FakeColumn{name, types.amount, types.amountScale}; };
    answer.columns = {{u"TipRaport"_s},        {u"CODCLIENT"_s},
                      {u"NumeClient"_s},       {u"DataDoc"_s},
                      {u"NumarFactura"_s},     amount(u"ValoareNeta"_s),
                      amount(u"ValoareTVA"_s), amount(u"ValoareBruta"_s),
                      {u"Moneda"_s},           {u"CursValutar"_s, types.rate, types.rateScale},
                      amount(u"ValoareTaxe"_s)};
    for (const Row& row : rows) {
        answer.rows.push_back({u"Furnizor"_s, row.code, row.name, row.date, row.number, row.net, row.tva, row.gross,
                               row.moneda, row.rate, row.taxe});
    }
    return answer;
}

ReportRun::ReportRun(tests::FakeAnswer answer, const QString& definition, int option)
    : m_connection(tests::FakeConnection::create()), m_report(definitionNamed(definition)) {
    m_connection->answer({}, std::move(answer));
    const db::Connection connection(m_connection->asConnection());
    m_report.addCommand(connection, {connection, db::kCommandText, u"SELECT"_s});
    m_report.bindFields();
    m_report.setUnboundFieldSource(u"UnboundString6"_s, u"'= 01/01/2026 - 31/12/2026 ='"_s);
    m_report.setRequest({.isTotalsAlone = option == 1});
}

RunOutcome ReportRun::outcome() {
    std::promise<RunOutcome> promise;
    m_report.start({.answered = {}, .progress = {}, .finished = [&promise](RunOutcome outcome) {
                        promise.set_value(std::move(outcome));
                    }});
    return promise.get_future().get();
}

std::shared_ptr<const ReportData> ReportRun::data() {
    RunOutcome result = outcome();
    if (result.error) ADD_FAILURE() << result.error->what();
    return result.data;
}

std::shared_ptr<const Document> ReportRun::document() { return document(designedSetup(m_report.definition())); }

std::shared_ptr<const Document> ReportRun::document(const PageSetup& setup) {
    return std::make_shared<const Document>(data(), m_report.snapshot(), setup, printTime());
}

std::vector<Row> sampleRows(int count, int partners) {
    std::mt19937 random(20260722);  // the generator's sequence is fixed by its definition
    const QStringList currencies{u"EUR"_s, u"USD"_s, u"RON"_s, u"HUF"_s, u"GBP"_s, u"CHF"_s};
    const auto next = [&random](unsigned limit) { return static_cast<int>(random() % limit); };
    const auto money = [](qint64 bani) { return u"%1.%2"_s.arg(bani / 100).arg(bani % 100, 2, 10, QLatin1Char('0')); };
    std::vector<Row> rows;
    for (int i = 0; i < count; ++i) {
        const int partner = next(static_cast<unsigned>(partners));
        const qint64 net = next(9'000'000) + 100;
        const qint64 tva = net * 19 / 100;
        const qint64 taxe = i % 3 == 0 ? next(9000) : 0;
        Row row;
        row.code = u"F%1"_s.arg(partner, 4, 10, QLatin1Char('0'));
        row.name = partner % 7 == 3 ? u"COMPANIA DE NAVLU ȘI DEPOZITARE MĂRFURI ÎN VRAC %1 SA"_s.arg(partner)
                                    : u"ȚARA EXPORT %1 SRL"_s.arg(partner);
        row.date =
            u"%1/%2/2026"_s.arg(1 + next(28), 2, 10, QLatin1Char('0')).arg(1 + next(12), 2, 10, QLatin1Char('0'));
        row.number = u"EXT %1"_s.arg(100'000 + i);
        row.net = money(net);
        row.tva = money(tva);
        row.taxe = money(taxe);
        row.gross = money(net + tva + taxe);
        row.moneda = currencies[next(6)];
        row.rate = *row.moneda == u"RON" ? tests::FakeCell(u"1"_s) : u"4.9%1"_s.arg(100 + next(100));
        if (i % 50 == 49) row.rate = std::nullopt;
        rows.push_back(std::move(row));
    }
    return rows;
}

QDateTime printTime() { return {QDate(2026, 7, 22), QTime(9, 5)}; }

}  // namespace velcoran::report
