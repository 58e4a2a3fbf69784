#include "filters_in_force.h"

#include "filters/fragments.h"

#include <optional>
#include <span>

namespace velcoran::query {

using namespace Qt::StringLiterals;
using filters::CodeVariable;
using filters::FilterState;
using filters::LookupField;

namespace {

/// A lookup field as a line: its label on each side and, where its name stands for a code, the code.
struct FieldLine {
    LookupField field;
    QStringView supplierLabel;
    QStringView clientLabel;
    std::optional<CodeVariable> code;
};

constexpr FieldLine kProducer{LookupField::txtProducator, u"Producator", u"Producator", CodeVariable::sCodProducator};
constexpr FieldLine kProductLines[] = {
    {LookupField::txtTipProdus, u"Tip de Produse", u"Tip de Produse", std::nullopt},
    {LookupField::txtGrupaProdus, u"Grupa de Produse", u"Grupa de Produse", std::nullopt},
    {LookupField::txtSubGrupaProdus, u"Subgrupa de Produse", u"Subgrupa de Produse", std::nullopt},
    {LookupField::txtCodProdus, u"Denumire Produs", u"Denumire Produs", CodeVariable::sCodProdus},
};
constexpr FieldLine kPartnerLines[] = {
    {LookupField::txtTipClient, u"Tip Furnizor", u"Tip Client", std::nullopt},
    {LookupField::txtCatClient, u"Categorie Furnizor", u"Categorie Client", std::nullopt},
    {LookupField::txtCodClient, u"Denumire Furnizor", u"Denumire Client", CodeVariable::sCodClient},
    {LookupField::txtCodAgent, u"Agent", u"Agent", CodeVariable::sCodAgent},
};

class Lines {
public:
    explicit Lines(const FilterState& state) : m_state(state) {}

    void add(QStringView label, const QString& value) { m_lines.append(u"%1: %2"_s.arg(label, value)); }
    void add(const FieldLine& line) {
        QStringList value{m_state.text(line.field).trimmed()};
        if (line.code) value.append(u"(%1)"_s.arg(m_state.code(*line.code).trimmed()));
        value.removeAll(QString());
        add(m_state.isSupplierSide() ? line.supplierLabel : line.clientLabel, value.join(u' '));
    }
    void add(const QString& line) { m_lines.append(line); }
    void addFilledIn(std::span<const FieldLine> fields) {
        for (const FieldLine& line : fields)
            if (filters::isPresent(m_state.text(line.field))) add(line);
    }
    [[nodiscard]] const QStringList& all() const { return m_lines; }

private:
    const FilterState& m_state;
    QStringList m_lines;
};

}  // namespace

// A filter is in force where the statement has its condition: the producer by its code, every other field by its text,
// and no product at all in a total report.
QStringList filtersInForce(const FilterState& state) {
    Lines lines(state);
    if (!state.chkTotale) {
        if (!state.sCodProducator.isEmpty()) lines.add(kProducer);
        if (state.cmbCategorieIndex != 0) lines.add(u"Categorie de Produse", state.cmbCategorie);
        lines.addFilledIn(kProductLines);
    }
    lines.addFilledIn(kPartnerLines);
    if (!state.depozite.isEmpty()) lines.add(u"Depozite", state.depozite.join(u", "_s));
    if (state.chkLohn)
        lines.add(state.isSupplierSide() ? u"Inclusiv importurile temporare"_s : u"Inclusiv exporturile temporare"_s);
    return lines.all();
}

}  // namespace velcoran::query
