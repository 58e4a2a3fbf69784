#include "query/validation.h"

#include "support/test_data.h"

#include <gtest/gtest.h>

namespace velcoran::query {
namespace {

using namespace Qt::StringLiterals;
using filters::CodeVariable;
using filters::FilterState;
using filters::LookupField;

struct MessageCase {
    const char* name;
    QList<LookupField> changed;
    QString list;  // null when the report may run
};

TEST(ModifiedFilters, areNamedInOrder) {
    const MessageCase cases[] = {
        {"nothing", {}, {}},
        {"producer", {LookupField::txtProducator}, u"Producator"_s},
        {"type", {LookupField::txtTipProdus}, u"Tip Produs"_s},
        {"group", {LookupField::txtGrupaProdus}, u"Grupa Produs"_s},
        {"subgroup", {LookupField::txtSubGrupaProdus}, u"Subgrupa Produs"_s},
        {"product", {LookupField::txtCodProdus}, u"Cod Produs"_s},
        {"partner type", {LookupField::txtTipClient}, u"Tip Client"_s},
        {"partner category", {LookupField::txtCatClient}, u"Categorie Client"_s},
        {"partner", {LookupField::txtCodClient}, u"Denumire Client"_s},
        {"agent alone", {LookupField::txtCodAgent}, u"Denumire Agent"_s},
        {"producer and agent",
         {LookupField::txtCodAgent, LookupField::txtProducator},
         u"Producator, Denumire Client"_s},
        {"partner and agent",
         {LookupField::txtCodClient, LookupField::txtCodAgent},
         u"Denumire Client, Denumire Client"_s},
        {"all",
         {LookupField::txtProducator, LookupField::txtTipProdus, LookupField::txtGrupaProdus,
          LookupField::txtSubGrupaProdus, LookupField::txtCodProdus, LookupField::txtTipClient,
          LookupField::txtCatClient, LookupField::txtCodClient, LookupField::txtCodAgent},
         u"Producator, Tip Produs, Grupa Produs, Subgrupa Produs, Cod Produs, Tip Client, Categorie Client, "
         u"Denumire Client, Denumire Client"_s},
    };
    for (const MessageCase& one : cases) {
        FilterState state;
        state.sTipRaport = u"Import"_s;
        for (const LookupField field : one.changed) state.fields[field] = {u"x"_s, true};
        const auto message = modifiedFiltersMessage(state);
        ASSERT_EQ(message.has_value(), !one.list.isNull()) << one.name;
        if (!message) continue;
        EXPECT_EQ(*message, u" Urmatoarele filtrari au fost modificate ulterior selectiei:\r\n - "_s + one.list +
                                u"\r\n Pentru a putea continua repetati selectiile! "_s)
            << one.name;
    }
}

TEST(ModifiedFilters, needBothATextAndAChange) {
    FilterState state;
    state.fields[LookupField::txtTipProdus] = {QString(), true};
    state.fields[LookupField::txtCodAgent] = {u"picked"_s, false};
    EXPECT_FALSE(modifiedFiltersMessage(state).has_value());
    state.fields[LookupField::txtTipProdus] = {u"  "_s, true};
    EXPECT_TRUE(modifiedFiltersMessage(state).has_value());
}

TEST(StaleCodes, areThoseOfExactlyEmptyFields) {
    FilterState state;
    EXPECT_EQ(tidyCodes(state), (QList<CodeVariable>{CodeVariable::sCodProdus, CodeVariable::sCodClient,
                                                     CodeVariable::sCodAgent, CodeVariable::sCodProducator}));
    state.fields[LookupField::txtCodClient].text = u" "_s;
    state.fields[LookupField::txtProducator].text = u"Uzina"_s;
    EXPECT_EQ(tidyCodes(state), (QList<CodeVariable>{CodeVariable::sCodProdus, CodeVariable::sCodAgent}));
}

}  // namespace
}  // namespace velcoran::query
