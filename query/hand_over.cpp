#include "hand_over.h"

#include "db/command.h"
#include "filters_in_force.h"
#include "period.h"
#include "report/layout/definition.h"
#include "report/report.h"
#include "statement.h"

namespace velcoran::query {

using namespace Qt::StringLiterals;
using report::Grouping;

namespace {

void setTexts(report::Report& report, const QList<TextReplacement>& replacements) {
    for (const TextReplacement& one : replacements) report.setText(one.object, one.text);
}

}  // namespace

HandOver planHandOver(const filters::FilterState& state, QStringView dateSeparator, const QString& caption) {
    HandOver plan;
    plan.request = {.presentation = isPartnerEntry(state.cmbTipRaport) ? Grouping::Partner : Grouping::Day,
                    .isTotalsAlone = state.chkTotale,
                    .kind = state.sTipRaport.text,
                    .fileTitle = caption,
                    .filters = filtersInForce(state)};
    if (plan.request.presentation == Grouping::Partner) {
        plan.definition = u"CRFacturiImport"_s;
        plan.request.isClient = state.cmbTipRaport == u"Client";
        if (plan.request.isClient) {
            plan.presentationTexts = {
                {u"Text2"_s, u"COD\r\nCLIENT"_s}, {u"Text3"_s, u"DENUMIRE\r\nCLIENT"_s}, {u"Text6"_s, u"CLIENT:"_s}};
        }
    } else {
        plan.definition = u"CRFacturiImportDT"_s;
        plan.request.isClient = state.isExport();
        if (plan.request.isClient) plan.presentationTexts = {{u"Text9"_s, u"CLIENT"_s}};
    }
    plan.periodSource = periodSource(state, dateSeparator);
    if (state.isExport()) plan.titleTexts = {{u"Text1"_s, u"RAPORT FACTURI EXTERNE - CLIENTI"_s}};
    return plan;
}

void handOver(const HandOver& plan, const db::Connection& priza, const db::Command& cmdRaport,
              std::shared_ptr<report::Report>& rptFacturi) {
    rptFacturi = std::make_shared<report::Report>(report::definitionNamed(plan.definition));
    setTexts(*rptFacturi, plan.presentationTexts);
    rptFacturi->addCommand(priza, cmdRaport);
    rptFacturi->bindFields();
    rptFacturi->setUnboundFieldSource(u"UnboundString6"_s, plan.periodSource);
    setTexts(*rptFacturi, plan.titleTexts);
    rptFacturi->setRequest(plan.request);
}

}  // namespace velcoran::query
