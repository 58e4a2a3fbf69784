#pragma once

#include <QDate>
#include <QString>
#include <QStringList>

#include <array>

namespace velcoran::filters {

/// The nine lookup text fields, in the forward order of the window.
enum class LookupField {
    txtProducator,
    txtTipProdus,
    txtGrupaProdus,
    txtSubGrupaProdus,
    txtCodProdus,
    txtTipClient,
    txtCatClient,
    txtCodClient,
    txtCodAgent
};
constexpr int kLookupFieldCount = 9;

/// The codes of picked values whose fields show names.
enum class CodeVariable { sCodProdus, sCodClient, sCodAgent, sCodProducator };

/// What a lookup text field holds.
struct LookupValue {
    QString text;              ///< as it stands, untrimmed
    bool dataChanged = false;  ///< changed since the last pick
};

/// What the filter controls and the members of the window hold, as one plain value: the only input of every statement.
struct FilterState {
    QString sTipRaport;  ///< report kind, as the host gave it
    QString sSoc;        ///< company prefix, as the host gave it
    std::array<LookupValue, kLookupFieldCount> fields;
    QString sCodProdus, sCodProducator, sCodClient, sCodAgent;
    QString cmbTipRaport;       ///< text of the list
    QString cmbSortare;         ///< text of the list
    int cmbCategorieIndex = 0;  ///< -1 for none
    QString cmbCategorie;
    QStringList depozite;  ///< items of cmbDepozit that are ticked, in the order of the list
    bool chkTotale = false;
    bool chkLohn = false;
    QDate deLaData;
    QDate laData;

    [[nodiscard]] const LookupValue& field(LookupField which) const { return fields[static_cast<std::size_t>(which)]; }
    [[nodiscard]] LookupValue& field(LookupField which) { return fields[static_cast<std::size_t>(which)]; }
    [[nodiscard]] const QString& text(LookupField which) const { return field(which).text; }
    [[nodiscard]] const QString& code(CodeVariable which) const { return const_cast<FilterState*>(this)->code(which); }
    [[nodiscard]] QString& code(CodeVariable which) {
        switch (which) {
            case CodeVariable::sCodProdus:
                return sCodProdus;
            case CodeVariable::sCodClient:
                return sCodClient;
            case CodeVariable::sCodAgent:
                return sCodAgent;
            case CodeVariable::sCodProducator:
                break;
        }
        return sCodProducator;
    }
    /// The supplier side: the report kind is exactly "Import". Every other kind is the client side.
    [[nodiscard]] bool isSupplierSide() const { return sTipRaport == u"Import"; }
    [[nodiscard]] bool isExport() const { return sTipRaport == u"Export"; }
};

}  // namespace velcoran::filters
