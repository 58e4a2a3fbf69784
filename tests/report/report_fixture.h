#pragma once

#include "report/layout/document.h"
#include "report/report.h"
#include "support/fake_connection.h"
#include "support/test_data.h"

namespace velcoran::report {

/// A document as the scripted provider gives it; nothing for null.
struct Row {
    tests::FakeCell code = QStringLiteral("F0001");
    tests::FakeCell name = QStringLiteral("ALFA TRADE SRL");
    tests::FakeCell date = QStringLiteral("15/03/2026");
    tests::FakeCell number = QStringLiteral("1001");
    tests::FakeCell net = QStringLiteral("100.00");
    tests::FakeCell tva = QStringLiteral("19.00");
    tests::FakeCell taxe = QStringLiteral("1.00");
    tests::FakeCell gross = QStringLiteral("120.00");
    tests::FakeCell moneda = QStringLiteral("EUR");
    tests::FakeCell rate = QStringLiteral("4.9750");
};

/// Types in which the provider gives amounts and rates.
struct Types {
    ColumnType amount = ColumnType::Decimal64;
    int amountScale = 2;
    ColumnType rate = ColumnType::Decimal64;
    int rateScale = 4;
};

[[nodiscard]] tests::FakeAnswer answerOf(const std::vector<Row>& rows, const Types& types = {});

/// Runs a report to its end.
class ReportRun {
public:
    explicit ReportRun(tests::FakeAnswer answer, const QString& definition = QStringLiteral("CRFacturiImport"),
                       int option = 0);

    /// The data; fails the test when the run failed.
    [[nodiscard]] std::shared_ptr<const ReportData> data();
    [[nodiscard]] RunOutcome outcome();
    [[nodiscard]] std::shared_ptr<const Document> document();
    [[nodiscard]] std::shared_ptr<const Document> document(const PageSetup& setup);
    Report& report() { return m_report; }
    tests::FakeConnection& connection() { return *m_connection; }

private:
    com::Ref<tests::FakeConnection> m_connection;
    Report m_report;
};

/// Partners and documents of a plausible report, always the same.
[[nodiscard]] std::vector<Row> sampleRows(int count, int partners);

/// The moment of printing of all test documents.
[[nodiscard]] QDateTime printTime();

}  // namespace velcoran::report
