// A host's own connection, over rows that it has in memory: every interface of velcoran/connection.h, nothing but
// public headers.
#pragma once

#include "counted.h"

#include <velcoran/connection.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace hosts {

namespace com = velcoran::com;

/// A column of texts, of amounts in hundredths, or of days since 1970; one of the lists is filled.
struct Column {
    std::u16string name;
    std::vector<std::u16string> texts;
    std::vector<std::int64_t> hundredths;
    std::vector<std::int64_t> days;
};

/// The rows of one statement, handed over in a single block.
class Statement final : public Counted<velcoran::IStatement> {
public:
    explicit Statement(std::vector<Column> columns);

    com::HResult Columns(const velcoran::ColumnDescription** columns, std::uint32_t* count) override {
        *columns = m_descriptions.data();
        *count = static_cast<std::uint32_t>(m_descriptions.size());
        return com::kOk;
    }
    com::HResult Run() override {
        m_isRead = false;
        return com::kOk;
    }
    com::HResult Fetch(std::uint32_t maxRows, const velcoran::RowBlock** block) override {
        m_block.rowCount = m_isRead ? 0 : std::min(m_rows, maxRows);
        m_isRead = true;
        *block = &m_block;
        return m_block.rowCount == 0 ? com::kFalse : com::kOk;
    }
    com::HResult Cancel() override { return com::kOk; }

private:
    struct Values {
        std::u16string characters;
        std::vector<std::uint32_t> offsets;
        std::vector<std::int64_t> numbers;
    };
    velcoran::ColumnType keep(const Column& column, Values& values);

    std::vector<Column> m_columns;
    std::vector<Values> m_values;
    std::vector<velcoran::ColumnDescription> m_descriptions;
    std::vector<velcoran::ColumnBlock> m_blocks;
    velcoran::RowBlock m_block{};
    std::uint32_t m_rows = 0;
    bool m_isRead = false;
};

inline Statement::Statement(std::vector<Column> columns)
    : Counted({velcoran::IRows::kId, velcoran::IStatement::kId}),
      m_columns(std::move(columns)),
      m_values(m_columns.size()) {
    for (std::size_t index = 0; index < m_columns.size(); ++index) {
        const Column& column = m_columns[index];
        Values& values = m_values[index];
        const velcoran::ColumnType type = keep(column, values);
        const bool isText = type == velcoran::ColumnType::Text;
        const std::int32_t scale = type == velcoran::ColumnType::Decimal64 ? 2 : 0;
        m_descriptions.push_back({column.name.data(), static_cast<std::uint32_t>(column.name.size()), type, scale});
        m_blocks.push_back({type, scale, nullptr,
                            isText ? static_cast<const void*>(values.characters.data()) : values.numbers.data(),
                            isText ? values.offsets.data() : nullptr});
        m_rows = static_cast<std::uint32_t>(isText ? column.texts.size() : values.numbers.size());
    }
    m_block = {m_rows, static_cast<std::uint32_t>(m_blocks.size()), m_blocks.data()};
}

inline velcoran::ColumnType Statement::keep(const Column& column, Values& values) {
    constexpr std::int64_t kMicrosecondsOfDay = 86'400'000'000;
    if (!column.hundredths.empty()) {
        values.numbers = column.hundredths;
        return velcoran::ColumnType::Decimal64;
    }
    if (!column.days.empty()) {
        for (const std::int64_t day : column.days) values.numbers.push_back(day * kMicrosecondsOfDay);
        return velcoran::ColumnType::DateTime;
    }
    values.offsets.push_back(0);
    for (const std::u16string& text : column.texts) {
        values.characters += text;
        values.offsets.push_back(static_cast<std::uint32_t>(values.characters.size()));
    }
    return velcoran::ColumnType::Text;
}

/// Answers the statements of the window's set-up and of one report; anything else has no rows.
class FixedConnection final : public Counted<velcoran::IConnection> {
public:
    FixedConnection() : Counted({velcoran::IConnection::kId}) {}

    std::int32_t State() override { return velcoran::kStateOpen; }
    com::HResult Execute(com::Bstr text, velcoran::IRows** rows) override {
        *rows = new Statement(columnsFor(com::viewOf(text)));
        return com::kOk;
    }
    com::HResult OpenRowset(com::Bstr text, std::int32_t, std::int32_t, std::int32_t, velcoran::IRows** rows) override {
        return Execute(text, rows);
    }
    com::HResult Prepare(com::Bstr text, velcoran::IStatement** statement) override {
        *statement = new Statement(columnsFor(com::viewOf(text)));
        return com::kOk;
    }
    com::HResult Cancel() override { return com::kOk; }

private:
    static std::vector<Column> columnsFor(std::u16string_view text) {
        const auto names = [text](std::u16string_view name) { return text.find(name) != std::u16string_view::npos; };
        if (names(u"CapDocIntE")) return reportColumns();
        if (names(u"Depozite")) return {{u"", {u"1 - Central", u"2 - București"}, {}, {}}};
        if (names(u"FROM An")) return {{u"An", {u"2026"}, {}, {}}};
        return {{u"Cod", {}, {}, {}}, {u"Denumire", {}, {}, {}}};
    }
    static std::vector<Column> reportColumns() {
        return {{u"TipRaport", {u"1", u"1"}, {}, {}},
                {u"CodClient", {u"F1", u"F2"}, {}, {}},
                {u"NumeClient", {u"Țesături Moderne", u"Nordhaus GmbH"}, {}, {}},
                {u"DataDoc", {}, {}, {20500, 20501}},
                {u"NumarFactura", {u"A 17", u"A 18"}, {}, {}},
                {u"ValoareNeta", {}, {10000, 20000}, {}},
                {u"ValoareTVA", {}, {1900, 3800}, {}},
                {u"ValoareBruta", {}, {11900, 23800}, {}},
                {u"Moneda", {u"EUR", u"RON"}, {}, {}},
                {u"CursValutar", {}, {497, 100}, {}},
                {u"ValoareTaxe", {}, {1, 1}, {}}};
    }
};

}  // namespace hosts
