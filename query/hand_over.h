#pragma once

#include "filters/filter_state.h"
#include "report/layout/report_request.h"

#include <QList>
#include <QString>
#include <QStringView>

#include <memory>

namespace velcoran::db {
class Connection;
struct Command;
}  // namespace velcoran::db

namespace velcoran::report {
class Report;
}  // namespace velcoran::report

namespace velcoran::query {

/// A text object of a definition and the text that it gets.
struct TextReplacement {
    QString object;
    QString text;
    friend bool operator==(const TextReplacement&, const TextReplacement&) = default;
};

/// What a run does to a fresh report, member by member in the order of its steps.
struct HandOver {
    QString definition;                        ///< "CRFacturiImport" or "CRFacturiImportDT"
    QList<TextReplacement> presentationTexts;  ///< before the data source is added
    QString periodSource;                      ///< source of UnboundString6
    QList<TextReplacement> titleTexts;         ///< after the fields are bound
    report::ReportRequest request;
};

/// The choice of definition, texts and option. The partner headings follow the list text "Client", the day heading and
/// the title the report kind "Export": two tests on purpose, a kind that is neither keeps the designed texts.
/// @param dateSeparator  systemDateSeparator() @param caption  of the window, which names the kind
[[nodiscard]] HandOver planHandOver(const filters::FilterState& state, QStringView dateSeparator,
                                    const QString& caption = {});

/// Makes the report of a plan and prepares it for the viewer: texts, data source, binding, period, title, option.
/// @param rptFacturi  gets the new instance first of all and keeps it when a later step fails
/// @throws Error of the engine and of the provider
void handOver(const HandOver& plan, const db::Connection& priza, const db::Command& cmdRaport,
              std::shared_ptr<report::Report>& rptFacturi);

}  // namespace velcoran::query
