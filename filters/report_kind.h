#pragma once

#include <QString>
#include <QStringView>

#include <cstdint>

namespace velcoran::filters {

/// What a report is of. Two kinds are set up by hosts; the other four narrow the lookups of products alone.
enum class ReportKind : std::uint8_t { Import, Export, Achizitii, Vanzari, Profit, Nir, Other };
constexpr std::size_t kReportKindCount = 7;

/// The kind of a host's text, compared exactly; Other for one that is none.
[[nodiscard]] ReportKind reportKindOf(QStringView text);

/// The report kind as the host gave it, read once.
struct TipRaport {
    TipRaport() = default;
    TipRaport(const QString& given) : text(given), kind(reportKindOf(given)) {}

    QString text;
    ReportKind kind = ReportKind::Other;
};

}  // namespace velcoran::filters
