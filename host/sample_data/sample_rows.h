#pragma once

#include "sample_data.h"
#include "sample_schema.h"

#include <span>

namespace velcoran::host {

/// Takes the rows of one table after another.
class ISampleSink {
public:
    virtual ~ISampleSink() = default;
    virtual void beginTable(const SampleTable& table) = 0;
    /// @param values  one for each column, in order
    virtual void addRow(std::span<const SampleValue> values) = 0;
    virtual void endTable() = 0;
};

/// How many partners and products a sample of a size has.
struct SampleSize {
    explicit SampleSize(const SampleOptions& options);

    std::int64_t suppliers;
    std::int64_t clients;
    std::int64_t products;
};

/// Name of a partner as its record has it. @param index  from 1
[[nodiscard]] std::string supplierName(const SampleOptions& options, std::int64_t index);
[[nodiscard]] std::string clientName(const SampleOptions& options, std::int64_t index);
/// "F0012", "P00007": a letter and a number of at least so many digits.
[[nodiscard]] std::string sampleCode(const char* letters, std::int64_t number, int digits);

/// Every table but the documents and their lines.
void writeMasterRows(const SampleOptions& options, ISampleSink& sink);
/// Documents, then lines. Needs no more memory for a million than for ten.
void writeDocumentRows(const SampleOptions& options, ISampleSink& sink);

/// All tables in the order of the schema. @throws Error kInvalidProcedureCall for options out of range
void writeAllRows(const SampleOptions& options, ISampleSink& sink);

}  // namespace velcoran::host
