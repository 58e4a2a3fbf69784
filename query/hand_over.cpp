#include "hand_over.h"

#include "db/command.h"
#include "filters_in_force.h"
#include "period.h"
#include "report/layout/definition.h"
#include "report/report.h"
#include "statement.h"

namespace velcoran::query {

using namespace Qt::StringLiterals;

namespace {

constexpr int kMatchByName = 0;
constexpr int kTotalsAlone = 1;

void setTexts(report::Report& report, const QList<TextReplacement>& replacements) {
    for (const TextReplacement& one : replacements) report.setText(one.object, one.text);
}

}  // namespace

HandOver planHandOver(const filters::FilterState& state, QStringView dateSeparator, const QString& caption) {
    HandOver plan;
    plan.fileTitle = caption;
    plan.kind = state.sTipRaport.text;
    if (isPartnerEntry(state.cmbTipRaport)) {
        plan.definition = u"CRFacturiImport"_s;
        plan.isClient = state.cmbTipRaport == u"Client";
        if (plan.isClient) {
            plan.presentationTexts = {
                {u"Text2"_s, u"COD\r\nCLIENT"_s}, {u"Text3"_s, u"DENUMIRE\r\nCLIENT"_s}, {u"Text6"_s, u"CLIENT:"_s}};
        }
    } else {
        plan.definition = u"CRFacturiImportDT"_s;
        plan.isClient = state.isExport();
        if (plan.isClient) plan.presentationTexts = {{u"Text9"_s, u"CLIENT"_s}};
    }
    plan.periodSource = periodSource(state, dateSeparator);
    if (state.isExport()) plan.titleTexts = {{u"Text1"_s, u"RAPORT FACTURI EXTERNE - CLIENTI"_s}};
    plan.filtersInForce = filtersInForce(state);
    if (state.chkTotale) plan.option = kTotalsAlone;
    return plan;
}

void handOver(const HandOver& plan, const db::Connection& priza, const db::Command& cmdRaport,
              std::shared_ptr<report::Report>& rptFacturi) {
    rptFacturi = std::make_shared<report::Report>(report::definitionNamed(plan.definition));
    setTexts(*rptFacturi, plan.presentationTexts);
    rptFacturi->addCommand(priza, cmdRaport);
    rptFacturi->bindFields(kMatchByName);
    rptFacturi->setUnboundFieldSource(u"UnboundString6"_s, plan.periodSource);
    setTexts(*rptFacturi, plan.titleTexts);
    rptFacturi->setFilterLines(plan.filtersInForce);
    rptFacturi->setClient(plan.isClient);
    rptFacturi->setFileTitle(plan.fileTitle);
    rptFacturi->setKind(plan.kind);
    if (plan.option != 0) rptFacturi->setOption(plan.option);
}

}  // namespace velcoran::query
