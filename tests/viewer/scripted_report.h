#pragma once

#include "support/fake_connection.h"

#include <memory>

namespace velcoran::report {
class Report;
}

namespace velcoran::tests {

/// Rows as the report statement gives them: so many partners with so many documents each.
[[nodiscard]] FakeAnswer reportRows(int partners, int documentsEach);
/// A report by partners over a connection that answers so, prepared and bound.
[[nodiscard]] std::shared_ptr<report::Report> scriptedReport(const com::Ref<FakeConnection>& connection,
                                                             FakeAnswer answer);
[[nodiscard]] std::shared_ptr<report::Report> scriptedReport(FakeAnswer answer);

}  // namespace velcoran::tests
