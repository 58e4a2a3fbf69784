#include "sample_rows.h"

#include "base/error.h"
#include "sample_random.h"
#include "sample_words.h"

#include <algorithm>
#include <vector>

namespace velcoran::host {

using namespace Qt::StringLiterals;

namespace {

/// Streams of the random numbers, one for each kind of record.
enum RecordStream : std::uint64_t { kSupplierStream = 1, kClientStream, kProductStream };

constexpr int kPartnerDigits = 4;
constexpr int kProductDigits = 5;
constexpr int kTypesPerCategory = 3;
constexpr int kSubgroupsPerGroup = 4;
/// Every so many-th product has no type, and so appears in no lookup and no grouped report.
constexpr std::int64_t kProductWithoutType = 97;
constexpr int kInactivePercent = 25;

/// Names that every sample has, to be found by hand: an apostrophe, letters with marks, more than thirty characters.
constexpr const char* kFirstSuppliers[] = {"D'ORIZONT IMPORT SRL", "COMPANIA DE NAVLU ȘI DEPOZITARE MARE SA",
                                           "ȘTIUCA ȚĂRMULUI SRL"};
constexpr const char* kFirstClients[] = {"L'HORIZON TRADE SARL", "SOCIETATEA DE DISTRIBUȚIE ȘI EXPORT SUD SA",
                                         "ÎNFRĂȚIREA COM SRL"};

std::string partnerName(std::span<const char* const> firstNames, const SampleOptions& options, RecordStream stream,
                        std::int64_t index) {
    if (index <= static_cast<std::int64_t>(firstNames.size())) return firstNames[static_cast<std::size_t>(index - 1)];
    SampleRandom random(options.seed, stream, static_cast<std::uint64_t>(index));
    return companyName(random.next());
}

void writeEntries(ISampleSink& sink, const char* table, std::span<const SampleEntry> entries) {
    sink.beginTable(sampleTable(table));
    for (const SampleEntry& entry : entries) {
        const SampleValue row[] = {std::string(entry.code), std::string(entry.text)};
        sink.addRow(row);
    }
    sink.endTable();
}

void writeYearAndWarehouses(const SampleOptions& options, ISampleSink& sink) {
    sink.beginTable(sampleTable("An"));
    const SampleValue year[] = {std::int64_t{options.year}};
    sink.addRow(year);
    sink.endTable();
    sink.beginTable(sampleTable("Depozite"));
    for (const SampleWarehouse& one : sampleWarehouses()) {
        const SampleValue row[] = {one.code, std::string(one.name)};
        sink.addRow(row);
    }
    sink.endTable();
}

void writeAgentsAndProducers(ISampleSink& sink) {
    sink.beginTable(sampleTable("Agenti"));
    for (const SampleAgent& agent : sampleAgents()) {
        const SampleValue row[] = {agent.code, std::string(agent.name), std::int64_t{agent.isInactive ? 1 : 0}};
        sink.addRow(row);
    }
    sink.endTable();
    sink.beginTable(sampleTable("CPP"));
    std::int64_t number = 0;
    for (const char* name : sampleProducers()) {
        const SampleValue row[] = {sampleCode("PR", ++number, 3), std::string(name)};
        sink.addRow(row);
    }
    sink.endTable();
}

void writeTypes(ISampleSink& sink) {
    sink.beginTable(sampleTable("TipuriProduse"));
    std::int64_t category = 0;
    for (const char* prefix : sampleTypePrefixes()) {
        for (int number = 1; number <= kTypesPerCategory; ++number) {
            const SampleValue row[] = {sampleCode(prefix, number, 1), category};
            sink.addRow(row);
        }
        ++category;
    }
    sink.endTable();
}

void writeSubgroups(ISampleSink& sink) {
    sink.beginTable(sampleTable("Subgrupeprodus"));
    const auto groups = sampleGroups();
    for (const SampleEntry& group : groups.first(groups.size() - 1)) {
        for (int number = 1; number <= kSubgroupsPerGroup; ++number) {
            const SampleValue row[] = {sampleCode(group.code, number, 2), std::string(group.code),
                                       std::string(group.text) + " sortiment " + std::to_string(number)};
            sink.addRow(row);
        }
    }
    sink.endTable();
}

void writeProducts(const SampleOptions& options, ISampleSink& sink) {
    sink.beginTable(sampleTable("CoduriProdus"));
    const std::int64_t count = SampleSize(options).products;
    const auto groups = sampleGroups();
    const auto producers = static_cast<std::int64_t>(sampleProducers().size());
    for (std::int64_t number = 1; number <= count; ++number) {
        SampleRandom random(options.seed, kProductStream, static_cast<std::uint64_t>(number));
        const std::string name = productName(random.next());
        SampleValue type = sampleCode(random.pick(sampleTypePrefixes()), random.between(1, kTypesPerCategory), 1);
        if (number % kProductWithoutType == 0) type = std::monostate();
        const SampleEntry& group = random.pick(groups.first(groups.size() - 1));
        const SampleValue row[] = {sampleCode("P", number, kProductDigits), name, type,
                                   sampleCode(group.code, random.between(1, kSubgroupsPerGroup), 2),
                                   sampleCode("PR", random.between(1, producers), 3)};
        sink.addRow(row);
    }
    sink.endTable();
}

struct PartnerTable {
    const char* table;
    const char* letter;
    RecordStream stream;
    std::span<const SampleEntry> types;
    std::span<const SampleEntry> categories;
    std::string (*name)(const SampleOptions&, std::int64_t);
};

void writePartners(const SampleOptions& options, ISampleSink& sink, const PartnerTable& partners, std::int64_t count) {
    sink.beginTable(sampleTable(partners.table));
    for (std::int64_t number = 1; number <= count; ++number) {
        SampleRandom random(options.seed, partners.stream, static_cast<std::uint64_t>(number));
        random.next();  // the name took the first
        const SampleEntry& type = random.pick(partners.types);
        const SampleEntry& category = random.pick(partners.categories);
        const bool isInactive = number > 3 && random.isChance(kInactivePercent);
        const SampleValue row[] = {sampleCode(partners.letter, number, kPartnerDigits), partners.name(options, number),
                                   std::string(type.code), std::string(category.code),
                                   std::int64_t{isInactive ? 1 : 0}};
        sink.addRow(row);
    }
    sink.endTable();
}

}  // namespace

SampleSize::SampleSize(const SampleOptions& options)
    : suppliers(std::min<std::int64_t>(70 + options.documents / 60, 5000)),
      clients(std::min<std::int64_t>(110 + options.documents / 40, 8000)),
      products(std::min<std::int64_t>(560 + options.documents / 8, 20000)) {}

std::string sampleCode(const char* letters, std::int64_t number, int digits) {
    std::string text = std::to_string(number);
    const auto missing = std::max<std::int64_t>(0, digits - static_cast<std::int64_t>(text.size()));
    return letters + std::string(static_cast<std::size_t>(missing), '0') + text;
}

std::string supplierName(const SampleOptions& options, std::int64_t index) {
    return partnerName(kFirstSuppliers, options, kSupplierStream, index);
}

std::string clientName(const SampleOptions& options, std::int64_t index) {
    return partnerName(kFirstClients, options, kClientStream, index);
}

void writeMasterRows(const SampleOptions& options, ISampleSink& sink) {
    writeYearAndWarehouses(options, sink);
    writeAgentsAndProducers(sink);
    writeTypes(sink);
    writeEntries(sink, "GrupeProdus", sampleGroups());
    writeSubgroups(sink);
    writeProducts(options, sink);
    writeEntries(sink, "Tip Furnizor", sampleSupplierTypes());
    writeEntries(sink, "Categorie Furnizor", sampleSupplierCategories());
    writeEntries(sink, "Tip Client", sampleClientTypes());
    writeEntries(sink, "Categorie Client", sampleClientCategories());
    const SampleSize size(options);
    writePartners(options, sink,
                  {"Furnizori", "F", kSupplierStream, sampleSupplierTypes(), sampleSupplierCategories(), supplierName},
                  size.suppliers);
    writePartners(options, sink,
                  {"Magazine", "M", kClientStream, sampleClientTypes(), sampleClientCategories(), clientName},
                  size.clients);
}

void writeAllRows(const SampleOptions& options, ISampleSink& sink) {
    if (options.documents < 0 || options.year < 1901 || options.year > 9998)
        throw base::Error(base::kInvalidProcedureCall, u"The number of documents or the year is out of range"_s);
    writeMasterRows(options, sink);
    writeDocumentRows(options, sink);
}

}  // namespace velcoran::host
