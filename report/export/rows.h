#pragma once

#include "report/data/report_content.h"
#include "report/layout/document.h"
#include "system/work_progress.h"

#include <algorithm>
#include <array>
#include <span>

namespace velcoran::report {

class ExportControl;

/// The columns in the order of the pages: the sums are the last.
[[nodiscard]] std::span<const ColumnRow> pageColumns();
/// All columns in the order of the report statement.
[[nodiscard]] std::span<const ColumnRow> statementColumns();
inline constexpr int kPageColumnCount =
    static_cast<int>(std::ranges::count_if(kColumns, [](const ColumnRow& column) { return column.onPage >= 0; }));
constexpr int kFirstSumColumn = kPageColumnCount - static_cast<int>(kSumCount);

/// A loaded report as the exports read it. Cheap to make; refers to the document.
class ExportSource {
public:
    explicit ExportSource(const Document& document);

    [[nodiscard]] const ReportData::Content& content() const { return m_content; }
    [[nodiscard]] const RowStore& store() const { return m_content.store; }
    [[nodiscard]] const ReportData& data() const { return m_document.data(); }
    [[nodiscard]] bool isTotalsAlone() const { return m_document.texts().request.isTotalsAlone; }
    [[nodiscard]] QString title() const { return m_document.title(); }
    /// Lines on the filters in force; may be empty.
    [[nodiscard]] const QStringList& filters() const { return m_document.texts().request.filters; }
    /// "01/03/2026 - 15/03/2026".
    [[nodiscard]] QString period() const;
    /// Moment of printing, for a document's properties.
    [[nodiscard]] QDateTime made() const { return m_document.printTime(); }
    [[nodiscard]] QString heading(const ColumnRow& column) const;
    /// "FURNIZOR: F0001 ALFA TRADE SRL", "DATA: 15/03/2026".
    [[nodiscard]] QString groupTitle(std::uint32_t group) const;
    /// Rows of a group in the order of the report.
    [[nodiscard]] std::span<const std::uint32_t> rowsOf(std::uint32_t group) const;
    /// A text of a row, empty for null. Not for amounts.
    [[nodiscard]] QStringView text(ColumnRole role, std::uint32_t row) const;
    /// A rate that is no number, as it stands; else empty.
    [[nodiscard]] QStringView oddRate(std::uint32_t row) const;
    /// A cell as the pages show it.
    [[nodiscard]] QString shownText(const ColumnRow& column, std::uint32_t row) const;

private:
    const Document& m_document;
    const ReportData::Content& m_content;
    QString m_partner;
};

/// A line of totals as the pages show it.
struct TotalLine {
    QString label;  ///< "Total documente: 12"
    QString currency;
    std::array<QString, kSumCount> amounts;
};
[[nodiscard]] TotalLine totalLine(const CurrencyTotal& total);
/// "fara curs: 3"; empty when every document has one.
[[nodiscard]] QString withoutRateText(const LeiTotal& lei);

/// Tells how far an export is and ends it with base::Cancelled when it is stopped.
class ExportPace {
public:
    ExportPace(const ExportControl& control, qint64 total);
    /// One more is done.
    void step();
    /// Ends the export if that is asked for.
    void stopIfAsked() const { m_progress.throwIfStopped(); }

private:
    system::WorkProgress& m_progress;
    qint64 m_total;
    qint64 m_done = 0;
};

/// What writes a report with its groups and totals.
class ReportSink {
public:
    virtual ~ReportSink() = default;
    virtual void begin() = 0;
    virtual void beginGroup(const QString& title) = 0;
    virtual void row(std::uint32_t row) = 0;
    virtual void endGroup(const std::vector<CurrencyTotal>& totals) = 0;
    virtual void end() = 0;
};

/// Gives the report to a sink in its order; a report of totals without rows.
void walkReport(const ExportSource& source, ReportSink& sink, ExportControl& control);

}  // namespace velcoran::report
