#include "lookup_request.h"

#include "builders.h"
#include "lookup_tags.h"

namespace velcoran::lookup {

using filters::FilterState;
using filters::LookupField;

namespace {

using Builder = QString (*)(const FilterState&);

/// In the order of LookupField.
constexpr std::array<Builder, filters::kLookupFieldCount> kBuilders{
    producerStatement,        productTypeStatement, productGroupStatement,
    productSubgroupStatement, productStatement,     partnerTypeStatement,
    partnerCategoryStatement, partnerStatement,     agentStatement};

}  // namespace

QString closedPattern(const QString& text) { return QString(text).replace(u'/', u'%'); }

QString openPattern(const QString& text) { return text.contains(u'/') ? closedPattern(text) : text + u'%'; }

LookupRequest buildLookup(LookupField field, const FilterState& state) {
    const auto index = static_cast<std::size_t>(field);
    const LookupWords& words = kLookupWords[index];
    return {kBuilders[index](state), (state.isSupplierSide() ? words.supplierCaption : words.caption).toString(),
            words.tag.toString()};
}

}  // namespace velcoran::lookup
