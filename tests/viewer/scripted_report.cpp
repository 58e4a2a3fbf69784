#include "scripted_report.h"

#include "report/layout/definition.h"
#include "report/report.h"

using namespace Qt::StringLiterals;

namespace velcoran::tests {

FakeAnswer reportRows(int partners, int documentsEach) {
    FakeAnswer answer;
    for (const QString& name : {u"TipRaport"_s, u"CodClient"_s, u"NumeClient"_s, u"DataDoc"_s, u"NumarFactura"_s})
        answer.columns.append({name, ColumnType::Text, 0});
    for (const QString& name : {u"ValoareNeta"_s, u"ValoareTVA"_s, u"ValoareBruta"_s})
        answer.columns.append({name, ColumnType::Decimal64, 3});
    answer.columns.append({u"Moneda"_s, ColumnType::Text, 0});
    answer.columns.append({u"CursValutar"_s, ColumnType::Decimal64, 4});
    answer.columns.append({u"ValoareTaxe"_s, ColumnType::Decimal64, 3});
    for (int partner = 1; partner <= partners; ++partner) {
        const QString code = u"F%1"_s.arg(partner, 4, 10, QChar(u'0'));
        for (int document = 1; document <= documentsEach; ++document)
            answer.rows.push_back({u"Import"_s, code, u"FIRMA %1 SRL"_s.arg(code), u"15/03/2026"_s,
                                   u"%1-%2"_s.arg(code).arg(document), u"1000.125"_s, u"0"_s, u"1000.125"_s, u"EUR"_s,
                                   u"4.95"_s, u"0"_s});
    }
    return answer;
}

std::shared_ptr<report::Report> scriptedReport(const com::Ref<FakeConnection>& connection, FakeAnswer answer) {
    connection->answer({}, std::move(answer));
    const db::Connection used(connection->asConnection());
    auto report = std::make_shared<report::Report>(report::definitionNamed(u"CRFacturiImport"_s));
    report->addCommand(used, {used, db::kCommandText, u"SELECT"_s});
    report->bindFields();
    report->setUnboundFieldSource(u"UnboundString6"_s, u"'= 01/03/2026 - 31/03/2026 ='"_s);
    return report;
}

std::shared_ptr<report::Report> scriptedReport(FakeAnswer answer) {
    return scriptedReport(FakeConnection::create(), std::move(answer));
}

}  // namespace velcoran::tests
