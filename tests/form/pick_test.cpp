#include "form/rules/pick.h"

#include "filters/lookup_fields.h"
#include "support/test_data.h"

#include <gtest/gtest.h>

namespace velcoran::form {
namespace {

using namespace Qt::StringLiterals;
using filters::CodeVariable;
using filters::LookupField;

/// Writes down what the picker does, in order.
class RecordingTarget final : public IPickTarget {
public:
    void emptySearchText() override { steps.append(u"empty"_s); }
    void setFieldText(LookupField field, const QString& text) override {
        steps.append(filters::kLookupFields[field].control.toString() + u'=' + text);
    }
    void setCode(CodeVariable code, const QString& value) override {
        const QStringList names{u"sCodProdus"_s, u"sCodClient"_s, u"sCodAgent"_s, u"sCodProducator"_s};
        steps.append(names[static_cast<int>(code)] + u'=' + value);
    }
    void clearDataChanged(LookupField field) override {
        steps.append(filters::kLookupFields[field].control.toString() + u" picked"_s);
    }
    void closePicker() override { steps.append(u"close"_s); }
    void focusControl(QStringView objectName) override { steps.append(u"focus "_s + objectName.toString()); }

    QStringList steps;
};

struct PickCase {
    QString tag;
    QString steps;   // of a pick, after "empty"
    QString cancel;  // field that gets the focus back
};

TEST(Pick, writesBackAndMovesOnByTag) {
    const PickCase cases[] = {
        {u"Tip Produs"_s, u"txtTipProdus=one; txtTipProdus picked; close; focus txtGrupaProdus"_s, u"txtTipProdus"_s},
        {u"Grupa Produs"_s,
         u"txtGrupaProdus=one; txtGrupaProdus picked; close; txtSubGrupaProdus=; txtCodProdus=; "
         u"focus txtSubGrupaProdus"_s,
         u"txtGrupaProdus"_s},
        {u"Subgrupa Produs"_s,
         u"txtSubGrupaProdus=one; txtSubGrupaProdus picked; close; txtCodProdus=; focus txtCodProdus"_s,
         u"txtSubGrupaProdus"_s},
        {u"Coduri Produse"_s, u"txtCodProdus=two; sCodProdus=one; txtCodProdus picked; close; focus txtTipClient"_s,
         u"txtCodProdus"_s},
        {u"Producatori"_s, u"txtProducator=two; sCodProducator=one; txtProducator picked; close; focus cmbCategorie"_s,
         u"txtProducator"_s},
        {u"Tip Client"_s, u"txtTipClient=one; txtTipClient picked; close; focus txtCatClient"_s, u"txtTipClient"_s},
        {u"Categorie Client"_s, u"txtCatClient=one; txtCatClient picked; close; focus txtCodClient"_s,
         u"txtCatClient"_s},
        {u"Clienti"_s, u"txtCodClient=two; sCodClient=one; txtCodClient picked; close; focus cmbDepozit"_s,
         u"txtCodClient"_s},
        {u"Agenti"_s, u"txtCodAgent=two; sCodAgent=one; txtCodAgent picked; close; focus cmbSelectie"_s,
         u"txtCodAgent"_s},
    };
    const auto cell = [](int column) { return column == 1 ? u"one"_s : u"two"_s; };
    for (const PickCase& one : cases) {
        RecordingTarget picked;
        pick(one.tag, cell, picked);
        EXPECT_EQ(picked.steps.join(u"; "), u"empty; "_s + one.steps);
        RecordingTarget cancelled;
        cancelPick(one.tag, cancelled);
        EXPECT_EQ(cancelled.steps.join(u"; "), u"empty; close; focus "_s + one.cancel);
    }
    RecordingTarget unknown;
    pick(u"Furnizori", cell, unknown);
    EXPECT_EQ(unknown.steps, QStringList{u"empty"_s});
}

}  // namespace
}  // namespace velcoran::form
