#pragma once

#include "report/data/report_data.h"

#include <QString>
#include <QStringList>

namespace velcoran::report {

/// What was asked for when a report was made.
struct ReportRequest {
    Grouping presentation = Grouping::Partner;
    bool isTotalsAlone = false;  ///< group and report totals, no documents
    bool isClient = false;       ///< the partners are clients, not suppliers
    QString kind = {};           ///< in the words of whoever made it: it comes back with a document that is opened
    QString fileTitle = {};      ///< what files of the report are called by default, without period and ending
    QStringList filters = {};    ///< lines on what narrows it, which exports put above the rows; pages do not show them
};

}  // namespace velcoran::report
