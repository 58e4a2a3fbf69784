#pragma once

#include "db/connection.h"
#include "db/row_set.h"
#include "filters/filter_state.h"
#include "report/report.h"

#include <QString>

#include <velcoran/mesaje.h>

#include <cstdint>
#include <memory>

namespace velcoran::form {

/// The members of the window. The object outlives its controls: the texts keep their values across a close, the
/// references are released by it.
struct Members {
    db::Connection Priza;
    filters::TipRaport sTipRaport;
    std::int16_t iAn = 0;
    QString sSoc;
    bool bRaportIncarcat = false;
    com::Ref<IMesaje> objMesaje;
    std::unique_ptr<db::RowSet> rsQuery;
    std::shared_ptr<db::RowSet> rsLookup;  ///< shared with the grid, which shows the last lookup that found rows
    std::shared_ptr<report::Report> rptFacturi;
    filters::Codes codes;
    QString sCautare;

    /// Releases what an unload releases, in its order. The host's connection itself stays as it is.
    void release();
};

}  // namespace velcoran::form
