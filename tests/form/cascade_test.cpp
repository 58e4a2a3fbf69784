#include "form/rules/cascade.h"

#include "filters/lookup_fields.h"
#include "support/test_data.h"

#include <QStringList>

#include <gtest/gtest.h>

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
        log.append(u"-"_s + filters::controlName(field).toString());
        runCascade(triggerOf(field), *this);
    }
    void emptyCode(filters::CodeVariable code) override {
        constexpr QStringView kNames[] = {u"sCodProdus", u"sCodClient", u"sCodAgent", u"sCodProducator"};
        log.append(u"-"_s + kNames[static_cast<int>(code)].toString());
    }
    void markChanged(filters::LookupField field) override {
        log.append(u"*"_s + filters::controlName(field).toString());
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
        Trigger trigger;
        QString log;
    } cases[] = {
        {Trigger::txtTipProdus, group + u",*txtTipProdus"_s},
        {Trigger::txtGrupaProdus, subgroup + u",*txtGrupaProdus"_s},
        {Trigger::txtSubGrupaProdus, product + u",*txtSubGrupaProdus"_s},
        {Trigger::txtCodProdus, u"-sCodProdus,*txtCodProdus"_s},
        {Trigger::txtProducator, u"*txtProducator,category 0,"_s + type + u",-sCodProducator"_s},
        {Trigger::txtTipClient, partner + u",*txtTipClient"_s},
        {Trigger::txtCatClient, partner + u",*txtCatClient"_s},
        {Trigger::txtCodClient, u"-sCodClient,*txtCodClient"_s},
        {Trigger::txtCodAgent, u"-sCodAgent,*txtCodAgent"_s},
        {Trigger::cmbCategorie, type},
        {Trigger::totalsTicked,
         u"off,"_s + product +
             u",-txtTipProdus,-txtGrupaProdus,-txtSubGrupaProdus,*txtSubGrupaProdus,*txtGrupaProdus,"
             u"*txtTipProdus,category 0"_s},
        {Trigger::totalsUnticked, u"on"_s},
    };
    for (const auto& one : cases) {
        FilledPanel panel;
        runCascade(one.trigger, panel);
        EXPECT_EQ(panel.log.join(u','), one.log) << static_cast<int>(one.trigger);
    }
}

}  // namespace velcoran::form
