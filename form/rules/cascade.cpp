#include "cascade.h"

#include "base/enum_table.h"

#include <span>

namespace velcoran::form {

using filters::CodeVariable;
using filters::LookupField;

namespace {

struct Step {
    enum class Kind { emptyField, emptyCode, markChanged, resetCategory, enableProducts, disableProducts };
    Kind kind;
    LookupField field = LookupField::txtProducator;
    CodeVariable code = CodeVariable::sCodProducator;
};

constexpr Step empty(LookupField field) { return {.kind = Step::Kind::emptyField, .field = field}; }
constexpr Step empty(CodeVariable code) { return {.kind = Step::Kind::emptyCode, .code = code}; }
constexpr Step mark(LookupField field) { return {.kind = Step::Kind::markChanged, .field = field}; }
constexpr Step kResetCategory{.kind = Step::Kind::resetCategory};
constexpr Step kEnableProducts{.kind = Step::Kind::enableProducts};
constexpr Step kDisableProducts{.kind = Step::Kind::disableProducts};

constexpr auto kProducer = LookupField::txtProducator;
constexpr auto kType = LookupField::txtTipProdus;
constexpr auto kGroup = LookupField::txtGrupaProdus;
constexpr auto kSubgroup = LookupField::txtSubGrupaProdus;
constexpr auto kProduct = LookupField::txtCodProdus;
constexpr auto kPartnerType = LookupField::txtTipClient;
constexpr auto kPartnerCategory = LookupField::txtCatClient;
constexpr auto kPartner = LookupField::txtCodClient;
constexpr auto kAgent = LookupField::txtCodAgent;

// The order inside a row counts: a field that is emptied runs its own row before the next step.
constexpr Step kOfProducer[] = {mark(kProducer),
                                kResetCategory,
                                empty(kType),
                                empty(kGroup),
                                empty(kSubgroup),
                                empty(kProduct),
                                empty(CodeVariable::sCodProducator)};
constexpr Step kOfType[] = {empty(kGroup), empty(kSubgroup), empty(kProduct), mark(kType)};
constexpr Step kOfGroup[] = {empty(kSubgroup), empty(kProduct), mark(kGroup)};
constexpr Step kOfSubgroup[] = {empty(kProduct), mark(kSubgroup)};
constexpr Step kOfProduct[] = {empty(CodeVariable::sCodProdus), mark(kProduct)};
constexpr Step kOfPartnerType[] = {empty(kPartner), mark(kPartnerType)};
constexpr Step kOfPartnerCategory[] = {empty(kPartner), mark(kPartnerCategory)};
constexpr Step kOfPartner[] = {empty(CodeVariable::sCodClient), mark(kPartner)};
constexpr Step kOfAgent[] = {empty(CodeVariable::sCodAgent), mark(kAgent)};
constexpr Step kOfCategory[] = {empty(kType), empty(kGroup), empty(kSubgroup), empty(kProduct)};
// The product goes first and last: emptied before its type, it is changed once, not by the type's own row.
constexpr Step kOfTotals[] = {kDisableProducts, empty(kProduct), empty(kType),  empty(kGroup),
                              empty(kSubgroup), empty(kProduct), kResetCategory};
constexpr Step kOfDetails[] = {kEnableProducts};

struct FieldCascade {
    LookupField field;
    std::span<const Step> steps;
};
constexpr base::EnumTable<&FieldCascade::field, filters::kLookupFieldCount> kFieldCascades{{{
    {kProducer, kOfProducer},
    {kType, kOfType},
    {kGroup, kOfGroup},
    {kSubgroup, kOfSubgroup},
    {kProduct, kOfProduct},
    {kPartnerType, kOfPartnerType},
    {kPartnerCategory, kOfPartnerCategory},
    {kPartner, kOfPartner},
    {kAgent, kOfAgent},
}}};

struct TriggerCascade {
    Trigger trigger;
    std::span<const Step> steps;
};
constexpr base::EnumTable<&TriggerCascade::trigger, 3> kTriggerCascades{{{
    {Trigger::cmbCategorie, kOfCategory},
    {Trigger::totalsTicked, kOfTotals},
    {Trigger::totalsUnticked, kOfDetails},
}}};

void run(const Step& step, ICascadeTarget& target) {
    switch (step.kind) {
        case Step::Kind::emptyField:
            return target.emptyField(step.field);
        case Step::Kind::emptyCode:
            return target.emptyCode(step.code);
        case Step::Kind::markChanged:
            return target.markChanged(step.field);
        case Step::Kind::resetCategory:
            return target.resetCategory();
        case Step::Kind::enableProducts:
            return target.enableProducts(true);
        case Step::Kind::disableProducts:
            return target.enableProducts(false);
    }
}

}  // namespace

void runCascade(LookupField field, ICascadeTarget& target) {
    for (const Step& step : kFieldCascades[field].steps) run(step, target);
}

void runCascade(Trigger trigger, ICascadeTarget& target) {
    for (const Step& step : kTriggerCascades[trigger].steps) run(step, target);
}

}  // namespace velcoran::form
