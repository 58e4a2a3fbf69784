#pragma once

#include <QString>

#include <cstdint>

namespace velcoran::host {

/// Size and look of the sample: a trading company with suppliers and clients abroad, all of them invented. Equal
/// options give equal rows.
struct SampleOptions {
    std::int64_t documents = 3000;  ///< invoices, 0 and up; partners and products grow along, up to a limit
    std::uint64_t seed = 1;
    int year = 2026;  ///< the working year; dates lie from the December before to the January after it
};

/// Writes an embedded database. The file appears, or takes the place of an older one, only when it is whole.
/// @throws Error kPathAccess when it cannot be written; kInvalidProcedureCall for a negative number of documents or a
///         year outside 1901 to 9998
void writeSampleDatabase(const QString& path, const SampleOptions& options = {});

/// Writes the same rows as a SQL Server script, in UTF-8 with its mark: CREATE TABLE, INSERT in batches, indexes.
/// The script drops nothing: it is meant for an empty database. Errors as above.
void writeSampleScript(const QString& path, const SampleOptions& options = {});

}  // namespace velcoran::host
