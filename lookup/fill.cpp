#include "fill.h"

#include "db/row_set.h"

namespace velcoran::lookup {

qsizetype openLookup(db::RowSet& rsLookup, const db::Connection& priza, const QString& sql, db::ICallRunner& runner) {
    rsLookup = db::RowSet();
    try {
        rsLookup.open(priza, sql, runner);
        return rsLookup.recordCount();
    } catch (const base::Cancelled&) {
        throw;
    } catch (...) {
        return 0;
    }
}

ColumnWidths columnWidths(QStringView caption) {
    constexpr base::Twips kFixed{10};
    if (caption == u"Coduri Produse") return {kFixed, {1700}, {4700}, base::Twips{0}};
    if (caption == u"Tipuri Produse") return {kFixed, {2000}, {4400}, std::nullopt};
    return {kFixed, {1700}, {4700}, std::nullopt};
}

}  // namespace velcoran::lookup
