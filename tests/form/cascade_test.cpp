#include "form/rules/cascade.h"

#include "filters/lookup_fields.h"
#include "support/test_data.h"

#include <QStringList>

#include <gtest/gtest.h>

#include <variant>

namespace velcoran::form {

using namespace Qt::StringLiterals;

namespace {

/// A panel whose every field holds text, so that every emptying is a change that runs its own cascade.
class FilledPanel final : public ICascadeTarget {
public:
    FilledPanel() { m_isFilled.fill(true); }

    void emptyField(filters::LookupField field) override {
        bool& isFilled = m_isFilled[static_cast<std::size_t>(field)];
        if (!std::exchange(isFilled, false)) return;
        log.append(u"-"_s + filters::kLookupFields[field].control.toString());
        runCascade(field, *this);
    }
    void emptyCode(filters::CodeVariable code) override {
        constexpr QStringView kNames[] = {u"sCodProdus", u"sCodClient", u"sCodAgent", u"sCodProducator"};
        log.append(u"-"_s + kNames[static_cast<int>(code)].toString());
    }
    void markChanged(filters::LookupField field) override {
        log.append(u"*"_s + filters::kLookupFields[field].control.toString());
    }
    void resetCategory() override { log.append(u"category 0"_s); }
    void enableProducts(bool isEnabled) override { log.append(isEnabled ? u"on"_s : u"off"_s); }

    QStringList log;

private:
    std::array<bool, filters::kLookupFieldCount> m_isFilled{};
};

}  // namespace

TEST(Cascade, runsEachRowInItsOrder) {
    const QString product = u"-txtCodProdus,-sCodProdus,*txtCodProdus"_s;
    const QString subgroup = u"-txtSubGrupaProdus,"_s + product + u",*txtSubGrupaProdus"_s;
    const QString group = u"-txtGrupaProdus,"_s + subgroup + u",*txtGrupaProdus"_s;
    const QString type = u"-txtTipProdus,"_s + group + u",*txtTipProdus"_s;
    const QString partner = u"-txtCodClient,-sCodClient,*txtCodClient"_s;
    const struct {
        std::variant<filters::LookupField, Trigger> trigger;
        QString log;
    } cases[] = {
        {filters::LookupField::txtTipProdus, group + u",*txtTipProdus"_s},
        {filters::LookupField::txtGrupaProdus, subgroup + u",*txtGrupaProdus"_s},
        {filters::LookupField::txtSubGrupaProdus, product + u",*txtSubGrupaProdus"_s},
        {filters::LookupField::txtCodProdus, u"-sCodProdus,*txtCodProdus"_s},
        {filters::LookupField::txtProducator, u"*txtProducator,category 0,"_s + type + u",-sCodProducator"_s},
        {filters::LookupField::txtTipClient, partner + u",*txtTipClient"_s},
        {filters::LookupField::txtCatClient, partner + u",*txtCatClient"_s},
        {filters::LookupField::txtCodClient, u"-sCodClient,*txtCodClient"_s},
        {filters::LookupField::txtCodAgent, u"-sCodAgent,*txtCodAgent"_s},
        {Trigger::cmbCategorie, type},
        {Trigger::totalsTicked,
         u"off,"_s + product +
             u",-txtTipProdus,-txtGrupaProdus,-txtSubGrupaProdus,*txtSubGrupaProdus,*txtGrupaProdus,"
             u"*txtTipProdus,category 0"_s},
        {Trigger::totalsUnticked, u"on"_s},
    };
    for (const auto& one : cases) {
        FilledPanel panel;
        std::visit([&panel](auto trigger) { runCascade(trigger, panel); }, one.trigger);
        EXPECT_EQ(panel.log.join(u','), one.log);
    }
}

}  // namespace velcoran::form
