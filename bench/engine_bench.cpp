// Grouping, layout, pages and PDF of large reports. The first argument of each measurement is the number of rows, the
// second the number of partners.
#include "report/data/group_rows.h"
#include "report/export/pdf/pdf.h"
#include "report/layout/definition.h"
#include "report/layout/document.h"
#include "report/layout/search.h"
#include "report/report.h"
#include "system/work_progress.h"

#include <QBuffer>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>

#include <benchmark/benchmark.h>

#include <random>

using namespace Qt::StringLiterals;
using namespace velcoran;
using namespace velcoran::report;

namespace {

std::u16string_view view(const QString& text) {
    return {reinterpret_cast<const char16_t*>(text.utf16()), static_cast<std::size_t>(text.size())};
}

RowStore makeRows(int rows, int partners) {
    std::mt19937 random(7);
    const QStringList currencies{u"EUR"_s, u"USD"_s, u"RON"_s, u"HUF"_s, u"GBP"_s, u"CHF"_s};
    RowStore store;
    store.rowCount = static_cast<std::uint32_t>(rows);
    const auto text = [&store](ColumnRole role, const QString& value) {
        store.texts[static_cast<std::size_t>(role)].append(view(value));
    };
    for (int row = 0; row < rows; ++row) {
        const int partner = static_cast<int>(random() % static_cast<unsigned>(partners));
        text(ColumnRole::TipRaport, u"Furnizor"_s);
        text(ColumnRole::CodClient, u"F%1"_s.arg(partner));
        text(ColumnRole::NumeClient, u"ȚARA EXPORT %1 SRL"_s.arg(partner));
        text(ColumnRole::DataDoc, QDate(2020, 1, 1).addDays(random() % 2000).toString(u"dd/MM/yyyy"_s));
        text(ColumnRole::Moneda, currencies[static_cast<qsizetype>(random() % 6)]);
        store.numarFactura.append(view(u"EXT %1"_s.arg(row)));
        const Int128 net = random() % 90'000'000;
        const Int128 values[] = {net, net * 19 / 100, 0, net * 119 / 100};
        for (std::size_t i = 0; i < kSumCount; ++i) store.amounts[i].append(&values[i], nullptr, 1, 2);
        const Int128 rate = 49'000 + random() % 1000;
        store.amounts[kSumCount].append(&rate, nullptr, 1, 4);
    }
    return store;
}

std::shared_ptr<const ReportData> makeData(RowStore rows) {
    const std::atomic_bool stop = false;
    return std::make_shared<const ReportData>(groupRows(std::move(rows), Grouping::Partner, stop));
}

std::shared_ptr<const Document> makeDocument(std::shared_ptr<const ReportData> data) {
    const Report report(definitionNamed(u"CRFacturiImport"_s));
    return std::make_shared<const Document>(std::move(data), report.snapshot(), designedSetup(report.definition()),
                                            QDateTime(QDate(2026, 7, 22), QTime(9, 5)));
}

std::shared_ptr<const Document> makeDocument(const benchmark::State& state) {
    return makeDocument(makeData(makeRows(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)))));
}

void groupAndPaginate(benchmark::State& state) {
    for (auto run : state) {
        state.PauseTiming();
        RowStore rows = makeRows(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
        state.ResumeTiming();
        const auto data = makeData(std::move(rows));
        const auto document = makeDocument(data);
        benchmark::DoNotOptimize(document->pageCount());
        state.PauseTiming();
        state.counters["bytes a row"] = static_cast<double>(data->memoryUsed()) / static_cast<double>(state.range(0));
        state.counters["pages"] = document->pageCount();
        state.ResumeTiming();
    }
}

void makeLastPage(benchmark::State& state) {
    const auto document = makeDocument(state);
    for (auto run : state) benchmark::DoNotOptimize(document->page({document->pageCount() - 1}).items.size());
}

void paintMiddlePage(benchmark::State& state) {
    const auto document = makeDocument(state);
    QImage image(1123, 794, QImage::Format_RGB32);  // A4 turned, at 96 dots an inch
    for (auto run : state) {
        image.fill(Qt::white);
        QPainter painter(&image);
        paintPage(painter, document->page({document->pageCount() / 2 + 1}), 96.0 / 1440);
    }
}

void writePdf(benchmark::State& state) {
    const auto document = makeDocument(state);
    system::WorkProgress progress;
    for (auto run : state) {
        QBuffer buffer;
        buffer.open(QIODevice::WriteOnly);
        exportPdf(*document, buffer, progress);
        state.counters["bytes a page"] = static_cast<double>(buffer.size()) / document->pageCount();
    }
    state.counters["pages"] = document->pageCount();
}

void countHits(benchmark::State& state) {
    const auto document = makeDocument(state);
    const std::atomic_bool stop = false;
    for (auto run : state) benchmark::DoNotOptimize(Search(document, u"nicaieri"_s).count(stop));
}

BENCHMARK(groupAndPaginate)->Args({1'000'000, 2'000})->Args({1'000'000, 200'000})->Unit(benchmark::kMillisecond);
BENCHMARK(makeLastPage)->Args({1'000'000, 2'000})->Unit(benchmark::kMicrosecond);
BENCHMARK(paintMiddlePage)->Args({100'000, 2'000})->Unit(benchmark::kMillisecond);
BENCHMARK(writePdf)->Args({100'000, 2'000})->Unit(benchmark::kMillisecond);
BENCHMARK(countHits)->Args({1'000'000, 2'000})->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
    const QGuiApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
