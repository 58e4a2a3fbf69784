#pragma once

#include "lookup_fields.h"
#include "report_kind.h"

#include <QDate>
#include <QString>
#include <QStringList>

namespace velcoran::filters {

/// What a lookup text field holds.
struct LookupValue {
    QString text;              ///< as it stands, untrimmed
    bool dataChanged = false;  ///< changed since the last pick
};

/// sCodProdus, sCodClient, sCodAgent and sCodProducator.
using Codes = base::EnumArray<QString, CodeVariable, kCodeVariables.size()>;

/// What the filter controls and the members of the window hold, as one plain value: the only input of every statement.
struct FilterState {
    TipRaport sTipRaport;  ///< report kind, as the host gave it
    QString sSoc;          ///< company prefix, as the host gave it
    base::EnumArray<LookupValue, LookupField, kLookupFieldCount> fields;
    Codes codes;
    QString cmbTipRaport;       ///< text of the list
    QString cmbSortare;         ///< text of the list
    int cmbCategorieIndex = 0;  ///< -1 for none
    QString cmbCategorie;
    QStringList depozite;  ///< items of cmbDepozit that are ticked, in the order of the list
    bool chkTotale = false;
    bool chkLohn = false;
    QDate deLaData;
    QDate laData;

    [[nodiscard]] const QString& text(LookupField which) const { return fields[which].text; }
    /// The supplier side: the report kind is exactly "Import". Every other kind is the client side.
    [[nodiscard]] bool isSupplierSide() const { return sTipRaport.kind == ReportKind::Import; }
    [[nodiscard]] bool isExport() const { return sTipRaport.kind == ReportKind::Export; }
};

}  // namespace velcoran::filters
