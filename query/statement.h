#pragma once

#include "filters/filter_state.h"

#include <QString>
#include <QStringView>

namespace velcoran::query {

struct Request;

/// The three shapes of the report's statement. All return the same eleven columns, one row a document.
enum class Variant { Partner, Day, Total };

/// Total when chkTotale is ticked, Partner for the entries "Client" and "Furnizor" of cmbTipRaport, Day otherwise.
[[nodiscard]] Variant chooseVariant(const filters::FilterState& state);

/// True for the entries of cmbTipRaport that present the report per partner: "Client" and "Furnizor".
[[nodiscard]] bool isPartnerEntry(QStringView tipRaport);

/// The statement of a run, whole.
[[nodiscard]] QString assembleStatement(const filters::FilterState& state, const Request& request);

}  // namespace velcoran::query
