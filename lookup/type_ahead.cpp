#include "type_ahead.h"

#include "db/row_set.h"
#include "filters/fragments.h"

namespace velcoran::lookup {

using filters::joinFragments;

TypeAhead typeCharacter(const TypeAhead& state, QStringView character) {
    constexpr QStringView kSeparator = u" - ";
    return {joinFragments({state.sCautare, character}),
            joinFragments({state.caption, state.sCautare.isEmpty() ? kSeparator : QStringView(), character})};
}

TypeAhead restartTypeAhead(QStringView tag) { return {QString(), tag.toString()}; }

QString filterText(QStringView header, QStringView sCautare) {
    return joinFragments({u"[", header, u"] Like '", sCautare, u"%'"});
}

bool typeAhead(TypeAhead& state, QStringView character, QStringView header, QStringView tag, db::RowSet& rsLookup) {
    state = typeCharacter(state, character);
    try {
        rsLookup.setFilter(filterText(header, state.sCautare));
        if (rsLookup.recordCount() == 0) {
            rsLookup.setFilter(QString());
            state = restartTypeAhead(tag);
        }
        return true;
    } catch (...) {
        return false;
    }
}

}  // namespace velcoran::lookup
