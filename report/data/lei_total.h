#pragma once

#include "report_content.h"

namespace velcoran::report {

/// Total of all documents in lei: gross amount times rate, exact, summed, then rounded once to two decimals, half away
/// from zero. RON, LEI and ROL count one to one; a document in another currency whose rate is null, zero or no number
/// is left out and counted. A null amount adds nothing.
/// @throws Error kOverflow beyond 256 bits
[[nodiscard]] LeiTotal leiTotal(const RowStore& store);

}  // namespace velcoran::report
