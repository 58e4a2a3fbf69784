#pragma once

#include "base/units.h"

#include <QString>
#include <QStringList>

namespace velcoran::report {

/// The sheet that a report is laid out for. Margins keep free what the report's objects may not use.
struct PageSetup {
    QString paper;  ///< "A4", "A3", "A5", "Letter", "Legal"
    bool isLandscape = true;
    base::Twips width, height;  ///< of the sheet as it is turned
    base::Twips left, top, right, bottom;

    friend bool operator==(const PageSetup&, const PageSetup&) = default;
};

/// Names of the papers that pageSetup knows, in the order in which a person is offered them.
[[nodiscard]] QStringList paperNames();

/// Set-up of a paper of a known name, upright or turned, with the same margin (567 twips: a centimetre) on all sides.
/// @throws Error kInvalidProcedureCall for an unknown paper
[[nodiscard]] PageSetup pageSetup(const QString& paper, bool isLandscape, base::Twips margin = {567});

}  // namespace velcoran::report
