#pragma once

#include <QDate>
#include <QString>
#include <QStringList>

namespace velcoran::host {

/// What a scheduled report is of, and what it is narrowed by. Empty texts do not narrow.
struct ExportRequest {
    QString kind;    ///< "Import" or "Export"
    QString prefix;  ///< company prefix
    QDate from, to;
    bool isByDay = false;
    bool hasTotals = false;
    bool hasTemporary = false;
    QString sort, category;
    QString type, group, subgroup, product, producer;
    QString partnerType, partnerCategory, partner, agent;
    QStringList warehouses;
    QString out;
};

}  // namespace velcoran::host
