#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace velcoran::host {

/// A code and what it stands for.
struct SampleEntry {
    const char* code;
    const char* text;
};

struct SampleAgent {
    std::int64_t code;
    const char* name;
    bool isInactive;
};

struct SampleWarehouse {
    std::int64_t code;
    const char* name;
};

struct SampleCurrency {
    const char* sign;
    std::int64_t lowRate;   ///< ten-thousandths of a leu
    std::int64_t highRate;  ///< the same
    std::int64_t factor;    ///< amounts are so many times as large as in euro
};

[[nodiscard]] std::span<const SampleWarehouse> sampleWarehouses();
[[nodiscard]] std::span<const SampleAgent> sampleAgents();
[[nodiscard]] std::span<const char* const> sampleProducers();
[[nodiscard]] std::span<const SampleEntry> sampleGroups();
[[nodiscard]] std::span<const SampleEntry> sampleSupplierTypes();
[[nodiscard]] std::span<const SampleEntry> sampleSupplierCategories();
[[nodiscard]] std::span<const SampleEntry> sampleClientTypes();
[[nodiscard]] std::span<const SampleEntry> sampleClientCategories();
[[nodiscard]] std::span<const SampleCurrency> sampleCurrencies();

/// Prefixes of the product types, one for each category code in order.
[[nodiscard]] std::span<const char* const> sampleTypePrefixes();

/// Name of an invented company, drawn from a number.
[[nodiscard]] std::string companyName(std::uint64_t draw);
/// Name of a product, drawn from a number.
[[nodiscard]] std::string productName(std::uint64_t draw);

}  // namespace velcoran::host
