#include "members.h"

#include <utility>

namespace velcoran::form {

/// All of them leave the members first: what is released belongs to the host and may call back.
void Members::release() {
    auto report = std::move(rptFacturi);
    auto connection = std::exchange(Priza, db::Connection());
    auto query = std::move(rsQuery);
    auto lookup = std::move(rsLookup);
    auto mesaje = std::exchange(objMesaje, nullptr);
    report.reset();
    connection = db::Connection();
    query.reset();
    lookup.reset();
    mesaje = nullptr;
}

}  // namespace velcoran::form
