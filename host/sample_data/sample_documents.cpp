#include "base/error.h"
#include "sample_random.h"
#include "sample_rows.h"
#include "sample_words.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <optional>

namespace velcoran::host {

namespace {

enum DocumentStream : std::uint64_t { kDocumentStream = 11, kLineStream, kRateStream };

/// The odd records, each once in so many documents.
constexpr std::int64_t kUnknownPartner = 173;
constexpr std::int64_t kWithoutLines = 61;
constexpr std::int64_t kRateMissing = 307;
constexpr std::int64_t kRateZero = 353;
constexpr std::int64_t kNameMissing = 419;
/// Partners of this number are known under a second name on some documents.
constexpr std::int64_t kPartnerOfTwoNames = 4;

constexpr int kDocumentDigits = 7;
constexpr std::int64_t kMostLines = 11;
constexpr std::int64_t kVatPercent = 21;
constexpr int kSupplierPercent = 47;

constexpr std::int64_t kImport = 63;
constexpr std::int64_t kTemporaryImport = 89;
constexpr std::int64_t kExport = 13;
constexpr std::int64_t kTemporaryExport = 79;
constexpr std::int64_t kOtherKinds[] = {10, 12, 14, 21, 64, 99};

constexpr const char* kTransferred[] = {"F", "T", "S", "R"};
constexpr const char* kNotTransferred[] = {"", "A", "N", "X"};

struct Day {
    int year, month, day;
};

/// Calendar day of a number of days since 1 March 0000 in the proleptic calendar, counted in eras of 400 years.
Day dayOf(std::int64_t number) {
    const std::int64_t era = number / 146097;
    const std::int64_t ofEra = number % 146097;
    const std::int64_t yearOfEra = (ofEra - ofEra / 1460 + ofEra / 36524 - ofEra / 146096) / 365;
    const std::int64_t ofYear = ofEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const std::int64_t shifted = (5 * ofYear + 2) / 153;
    const auto day = static_cast<int>(ofYear - (153 * shifted + 2) / 5 + 1);
    const auto month = static_cast<int>(shifted < 10 ? shifted + 3 : shifted - 9);
    return {static_cast<int>(yearOfEra + era * 400 + (month <= 2 ? 1 : 0)), month, day};
}

/// 1 December of a year, in the same count.
std::int64_t numberOfDecemberFirst(std::int64_t year) {
    constexpr std::int64_t kMarchToDecember = 275;
    return 365 * year + year / 4 - year / 100 + year / 400 + kMarchToDecember;
}

/// From 1 December before a year to 31 January after it.
constexpr std::int64_t kDaysOfSample = 31 + 365 + 31;

std::string dateText(std::int64_t number, SampleRandom& random) {
    const Day day = dayOf(number);
    char text[64];
    std::snprintf(text, sizeof text, "%04d-%02d-%02d", day.year, day.month, day.day);
    std::string result = text;
    constexpr int kPercentWithTime = 10;
    if (random.isChance(kPercentWithTime)) {
        const std::int64_t second = random.between(6 * 3600, 23 * 3600);
        std::snprintf(text, sizeof text, " %02d:%02d:%02d", static_cast<int>(second / 3600),
                      static_cast<int>(second / 60 % 60), static_cast<int>(second % 60));
        result += text;
    }
    return result;
}

bool isOdd(std::int64_t number, std::int64_t oneIn) { return number % oneIn == oneIn / 2; }

/// Whether a document is a supplier's, and the code that says so: both writers of a table must agree on it.
struct Identity {
    bool isSupplier;
    std::string code;
};

Identity identityOf(const SampleOptions& options, std::int64_t number) {
    SampleRandom random(options.seed, kDocumentStream, static_cast<std::uint64_t>(number));
    const bool isSupplier = random.isChance(kSupplierPercent);
    return {isSupplier, sampleCode(isSupplier ? "FI" : "FE", number, kDocumentDigits)};
}

std::int64_t kindOf(bool isSupplier, SampleRandom& random) {
    constexpr int kOtherPercent = 6;
    constexpr int kTemporaryPercent = 18;
    if (random.isChance(kOtherPercent)) return random.pick(kOtherKinds);
    const bool isTemporary = random.isChance(kTemporaryPercent);
    if (isSupplier) return isTemporary ? kTemporaryImport : kImport;
    return isTemporary ? kTemporaryExport : kExport;
}

struct Partner {
    std::string code;
    SampleValue name;
};

Partner partnerOf(const SampleOptions& options, std::int64_t number, bool isSupplier, SampleRandom& random) {
    const SampleSize size(options);
    const std::int64_t index = random.between(1, isSupplier ? size.suppliers : size.clients);
    const bool isOldName = random.isChance(40);
    const char* letter = isSupplier ? "F" : "M";
    if (isOdd(number, kUnknownPartner))
        return {sampleCode(letter, 9999, 4), std::string(isSupplier ? "FURNIZOR NECUNOSCUT" : "CLIENT NECUNOSCUT")};
    Partner partner{sampleCode(letter, index, 4),
                    isSupplier ? supplierName(options, index) : clientName(options, index)};
    if (index == kPartnerOfTwoNames && isOldName)
        partner.name = std::string(isSupplier ? "VECHEA NAVĂ IMPORT SRL" : "VECHEA NAVĂ EXPORT SRL");
    if (isOdd(number, kNameMissing)) partner.name = std::monostate();
    return partner;
}

/// Rate of a currency on a day: the same on every document of that day.
SampleValue rateOf(const SampleOptions& options, std::int64_t number, std::size_t currency, std::int64_t day) {
    if (isOdd(number, kRateMissing)) return std::monostate();
    if (isOdd(number, kRateZero)) return SampleAmount{0, 4};
    const SampleCurrency& money = sampleCurrencies()[currency];
    SampleRandom random(options.seed, kRateStream + currency, static_cast<std::uint64_t>(day));
    return SampleAmount{random.between(money.lowRate, money.highRate), 4};
}

struct Amounts {
    SampleAmount net, vat, taxes;
};

Amounts amountsOf(std::int64_t factor, SampleRandom& random) {
    std::int64_t net = random.between(15'000, 5'000'000) * factor;
    const bool isReturned = random.isChance(1);
    if (isReturned) net = -net / 10;
    const bool hasVat = random.isChance(55);
    const std::int64_t product = net * kVatPercent;
    const std::int64_t vat = hasVat ? (product + (product < 0 ? -50 : 50)) / 100 : 0;
    const std::int64_t taxes = random.isChance(40) ? random.between(100, 20'000) * factor : 0;
    return {{net, 2}, {vat, 2}, {isReturned ? 0 : taxes, 2}};
}

std::array<SampleValue, 13> documentRow(const SampleOptions& options, std::int64_t number) {
    const Identity identity = identityOf(options, number);
    SampleRandom random(options.seed, kDocumentStream, static_cast<std::uint64_t>(number));
    random.next();  // the identity took the first
    const std::int64_t kind = kindOf(identity.isSupplier, random);
    const Partner partner = partnerOf(options, number, identity.isSupplier, random);
    const std::int64_t day = numberOfDecemberFirst(options.year - 1) + random.between(0, kDaysOfSample - 1);
    const std::string date = dateText(day, random);
    const std::size_t currency = static_cast<std::size_t>(random.between(0, std::ssize(sampleCurrencies()) - 1));
    const Amounts amounts = amountsOf(sampleCurrencies()[currency].factor, random);
    const std::int64_t agent = random.isChance(10) ? 0 : random.pick(sampleAgents()).code;
    const char* transferred = random.isChance(78) ? random.pick(kTransferred) : random.pick(kNotTransferred);
    return {identity.code,
            kind,
            partner.code,
            partner.name,
            date,
            amounts.net,
            amounts.vat,
            amounts.taxes,
            std::string(sampleCurrencies()[currency].sign),
            rateOf(options, number, currency, day),
            random.pick(sampleWarehouses()).code,
            agent,
            std::string(transferred)};
}

void writeLines(const SampleOptions& options, std::int64_t number, ISampleSink& sink) {
    if (isOdd(number, kWithoutLines)) return;
    const std::string document = identityOf(options, number).code;
    const std::int64_t products = SampleSize(options).products;
    SampleRandom random(options.seed, kLineStream, static_cast<std::uint64_t>(number));
    const std::int64_t count = random.between(1, kMostLines);
    for (std::int64_t line = 0; line < count; ++line) {
        const bool isUnknown = random.isChance(1);
        const std::int64_t product = isUnknown ? 99999 : random.between(1, products);
        const SampleValue row[] = {document, sampleCode("P", product, 5)};
        sink.addRow(row);
    }
}

}  // namespace

void writeDocumentRows(const SampleOptions& options, ISampleSink& sink) {
    sink.beginTable(sampleTable("CapDocIntE"));
    for (std::int64_t number = 1; number <= options.documents; ++number) sink.addRow(documentRow(options, number));
    sink.endTable();
    sink.beginTable(sampleTable("Linii DocIntE"));
    for (std::int64_t number = 1; number <= options.documents; ++number) writeLines(options, number, sink);
    sink.endTable();
}

}  // namespace velcoran::host
