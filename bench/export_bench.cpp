// Exports of large reports beside a bare loop that writes the same cells. The argument is the number of rows.
#include "report/data/group_rows.h"
#include "report/data/report_content.h"
#include "report/export/formats.h"
#include "report/export/writers.h"
#include "report/layout/definition.h"
#include "report/layout/document.h"
#include "report/layout/page.h"
#include "report/report.h"

#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QPainter>
#include <QPdfWriter>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>
#include <xlsxwriter.h>

#include <cstdio>
#include <random>

using namespace Qt::StringLiterals;
using namespace velcoran;
using namespace velcoran::report;

namespace {

/// A row as the bare loops take it: ready to be written.
struct BareRow {
    std::string code, name, number, date, currency;
    double day;
    std::int64_t rate;
    std::int64_t amounts[kSumCount];
};

std::vector<BareRow> makeRows(std::int64_t count) {
    std::mt19937 random(7);
    constexpr const char* kCurrencies[] = {"EUR", "USD", "RON", "HUF", "GBP", "CHF"};
    constexpr unsigned kPartners = 500;
    std::vector<BareRow> rows;
    for (std::int64_t i = 0; i < count; ++i) {
        // Partner by partner, as the exports meet them.
        const std::string partner = std::to_string(10'000 + i * kPartners / count);
        const int day = static_cast<int>(random() % 2000);
        const std::int64_t net = random() % 90'000'000;
        rows.push_back({"F" + partner,
                        "ȚARA EXPORT " + partner + " SRL",
                        "EXT " + std::to_string(i),
                        QDate(2020, 1, 1).addDays(day).toString(u"dd/MM/yyyy"_s).toStdString(),
                        kCurrencies[random() % 6],
                        43'831.0 + day,
                        static_cast<std::int64_t>(49'000 + random() % 1000),
                        {net, net * 19 / 100, 0, net * 119 / 100}});
    }
    return rows;
}

std::shared_ptr<const Document> makeDocument(const std::vector<BareRow>& rows) {
    RowStore store;
    store.rowCount = static_cast<std::uint32_t>(rows.size());
    const auto text = [&store](ColumnRole role, const std::string& value) {
        store.texts[static_cast<std::size_t>(role)].append(QString::fromStdString(value).toStdU16String());
    };
    for (const BareRow& row : rows) {
        text(ColumnRole::TipRaport, "Furnizor");
        text(ColumnRole::CodClient, row.code);
        text(ColumnRole::NumeClient, row.name);
        text(ColumnRole::DataDoc, row.date);
        text(ColumnRole::Moneda, row.currency);
        store.numarFactura.append(QString::fromStdString(row.number).toStdU16String());
        for (std::size_t i = 0; i < kSumCount; ++i) {
            const Int128 amount = row.amounts[i];
            store.amounts[i].append(&amount, nullptr, 1, 2);
        }
        const Int128 rate = row.rate;
        store.amounts[kSumCount].append(&rate, nullptr, 1, 4);
    }
    const std::atomic_bool stop = false;
    auto data = std::make_shared<const ReportData>(groupRows(std::move(store), Grouping::Partner, stop));
    const Report report(definitionNamed(u"CRFacturiImport"_s));
    return std::make_shared<const Document>(std::move(data), report.snapshot(), designedSetup(report.definition()),
                                            QDateTime(QDate(2026, 7, 22), QTime(9, 5)));
}

void exportTo(benchmark::State& state, int type) {
    const QTemporaryDir folder;
    const auto document = makeDocument(makeRows(state.range(0)));
    for (auto run : state) {
        ExportControl control;
        exportReport(type, document, folder.filePath(u"raport"_s), control);
    }
}

void bareCsv(benchmark::State& state) {
    const QTemporaryDir folder;
    const std::vector<BareRow> rows = makeRows(state.range(0));
    for (auto run : state) {
        FILE* file = std::fopen(qPrintable(folder.filePath(u"raport"_s)), "wb");
        for (const BareRow& row : rows) {
            const auto& sums = row.amounts;
            std::fprintf(file, "Furnizor;%s;%s;%s;%s;%ld,%02ld;%ld,%02ld;%ld,%02ld;%s;%ld,%04ld;%ld,%02ld\r\n",
                         row.code.c_str(), row.name.c_str(), row.date.c_str(), row.number.c_str(), sums[0] / 100,
                         sums[0] % 100, sums[1] / 100, sums[1] % 100, sums[3] / 100, sums[3] % 100,
                         row.currency.c_str(), row.rate / 10'000, row.rate % 10'000, sums[2] / 100, sums[2] % 100);
        }
        std::fclose(file);
    }
}

void bareXlsx(benchmark::State& state) {
    const QTemporaryDir folder;
    const std::vector<BareRow> rows = makeRows(state.range(0));
    QByteArray path = folder.path().toLocal8Bit();
    for (auto run : state) {
        lxw_workbook_options options{LXW_TRUE, path.data(), LXW_TRUE};
        lxw_workbook* workbook = workbook_new_opt(qPrintable(folder.filePath(u"raport"_s)), &options);
        lxw_worksheet* sheet = workbook_add_worksheet(workbook, nullptr);
        lxw_format* amount = workbook_add_format(workbook);
        format_set_num_format(amount, "#,##0.00");
        lxw_format* date = workbook_add_format(workbook);
        format_set_num_format(date, "dd/mm/yyyy");
        lxw_row_t at = 0;
        for (const BareRow& row : rows) {
            worksheet_write_string(sheet, at, 0, row.code.c_str(), nullptr);
            worksheet_write_string(sheet, at, 1, row.name.c_str(), nullptr);
            worksheet_write_string(sheet, at, 2, row.number.c_str(), nullptr);
            worksheet_write_number(sheet, at, 3, row.day, date);
            worksheet_write_string(sheet, at, 4, row.currency.c_str(), nullptr);
            worksheet_write_number(sheet, at, 5, static_cast<double>(row.rate) / 10'000, amount);
            for (lxw_col_t i = 0; i < kSumCount; ++i) {
                worksheet_write_number(sheet, at, static_cast<lxw_col_t>(6 + i),
                                       static_cast<double>(row.amounts[i]) / 100, amount);
            }
            ++at;
        }
        workbook_close(workbook);
    }
}

/// The reference of the PDF: Qt's own writer, one drawText a cell, the same pages.
void qtPdf(benchmark::State& state) {
    const QTemporaryDir folder;
    const auto document = makeDocument(makeRows(state.range(0)));
    for (auto run : state) {
        QPdfWriter writer(folder.filePath(u"raport"_s));
        writer.setPageSize(QPageSize(QPageSize::A4));
        writer.setPageOrientation(QPageLayout::Landscape);
        writer.setPageMargins({});
        writer.setResolution(1440);  // a unit is a twip
        QPainter painter(&writer);
        for (int number = 1; number <= document->pageCount(); ++number) {
            if (number > 1) writer.newPage();
            const Page page = document->page({number});
            for (const PageItem& item : page.items) {
                if (item.kind != PageItem::Kind::Text) continue;
                QFont font(u"Liberation Sans"_s);
                font.setPointSizeF(static_cast<double>(item.fontSize));
                font.setBold(item.isBold);
                painter.setFont(font);
                painter.drawText(QPointF(item.rect.left.value, item.rect.top.value), item.text);
            }
        }
    }
    state.counters["pages"] = static_cast<double>(document->pageCount());
}

/// A bare write of as many bytes as the export named by its type wrote.
void bareWrite(benchmark::State& state, int type) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"raport"_s);
    ExportControl control;
    exportReport(type, makeDocument(makeRows(state.range(0))), path, control);
    const QByteArray bytes(QFileInfo(path).size(), 'x');
    for (auto run : state) {
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) state.SkipWithError("not written");
    }
    state.counters["bytes"] = static_cast<double>(bytes.size());
}

}  // namespace

BENCHMARK(qtPdf)->Arg(100'000)->Unit(benchmark::kMillisecond)->Iterations(1)->UseRealTime();
BENCHMARK_CAPTURE(exportTo, pdf, kPdf)->Arg(100'000)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(bareWrite, pdf, kPdf)->Arg(100'000)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(bareCsv)->Arg(100'000)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(exportTo, csv, kCsv)->Arg(100'000)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(bareXlsx)->Arg(100'000)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(exportTo, xlsx, kXlsx)->Arg(100'000)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(exportTo, html, kHtml)->Arg(100'000)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(exportTo, odt, kOdt)->Arg(100'000)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(exportTo, text, kPlainText)->Arg(100'000)->Unit(benchmark::kMillisecond)->UseRealTime();

int main(int argc, char** argv) {
    const QGuiApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
