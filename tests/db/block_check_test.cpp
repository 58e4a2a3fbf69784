#include "db/row_set.h"

#include "support/test_data.h"

#include "com/object.h"

#include <gtest/gtest.h>

namespace velcoran::db {
namespace {

using namespace Qt::StringLiterals;

/// Rows of a foreign provider: two columns, and one block as the test fills it.
class ForeignRows final : public com::Object<IRows> {
public:
    com::HResult Columns(const ColumnDescription** columns, std::uint32_t* count) override {
        *columns = m_descriptions;
        *count = 2;
        return com::kOk;
    }
    com::HResult Fetch(std::uint32_t, const RowBlock** block) override {
        *block = &m_block;
        return m_result;
    }
    com::HResult Cancel() override { return com::kOk; }

    static constexpr std::uint32_t kRows = 3;
    std::int64_t m_numbers[kRows] = {1, 2, 3};
    std::uint32_t m_offsets[kRows + 1] = {0, 1, 1, 3};
    ColumnBlock m_columns[3] = {{ColumnType::Decimal64, 2, nullptr, m_numbers, nullptr},
                                {ColumnType::Text, 0, nullptr, u"abc", m_offsets},
                                {ColumnType::Int64, 0, nullptr, m_numbers, nullptr}};
    RowBlock m_block{kRows, 2, m_columns};
    com::HResult m_result = com::kOk;

private:
    ColumnDescription m_descriptions[2] = {{u"Valoare", 7, ColumnType::Decimal64, 2}, {u"Cod", 3, ColumnType::Text, 0}};
};

struct BrokenCase {
    const char* name;
    void (*breakIt)(ForeignRows& rows);
    QString words;  ///< in the description
};

TEST(BlockCheck, refusesWhatNoReaderCouldUse) {
    const BrokenCase cases[] = {
        {"no values", [](ForeignRows& rows) { rows.m_columns[0].values = nullptr; }, u"Valoare: valorile lipsesc"_s},
        {"no texts", [](ForeignRows& rows) { rows.m_columns[1].values = nullptr; }, u"Cod: textele lipsesc"_s},
        {"no offsets", [](ForeignRows& rows) { rows.m_columns[1].offsets = nullptr; },
         u"Cod: pozițiile textelor lipsesc"_s},
        {"descending", [](ForeignRows& rows) { rows.m_offsets[1] = 2; }, u"Cod: pozițiile textelor nu sunt"_s},
        {"descending at the end", [](ForeignRows& rows) { rows.m_offsets[3] = 0; },
         u"Cod: pozițiile textelor nu sunt"_s},
        {"far away", [](ForeignRows& rows) { rows.m_offsets[3] = 0xFFFFFFF0; },
         u"Cod: pozițiile textelor sunt prea mari"_s},
        {"unknown type", [](ForeignRows& rows) { rows.m_columns[0].type = static_cast<ColumnType>(7); },
         u"Valoare: tipul 7"_s},
        {"no type", [](ForeignRows& rows) { rows.m_columns[1].type = {}; }, u"Cod: tipul 0"_s},
        {"negative scale", [](ForeignRows& rows) { rows.m_columns[0].scale = -1; }, u"Valoare: numărul de zecimale"_s},
        {"large scale", [](ForeignRows& rows) { rows.m_columns[0].scale = 39; }, u"Valoare: numărul de zecimale"_s},
        {"a column more", [](ForeignRows& rows) { rows.m_block.columnCount = 3; }, u"numărul de coloane este 3"_s},
        {"a column less", [](ForeignRows& rows) { rows.m_block.columnCount = 1; }, u"numărul de coloane este 1"_s},
        {"no columns", [](ForeignRows& rows) { rows.m_block.columns = nullptr; }, u"coloanele lipsesc"_s},
        {"too many rows", [](ForeignRows& rows) { rows.m_block.rowCount = Rows::kMaxBlockRows + 1; },
         u"numărul de rânduri este 4097"_s},
        {"rows with the end", [](ForeignRows& rows) { rows.m_result = com::kFalse; }, u"după sfârșit"_s},
    };
    for (const BrokenCase& one : cases) {
        const auto foreign = com::makeObject<ForeignRows>();
        one.breakIt(*foreign);
        try {
            static_cast<void>(Rows(com::Ref<IRows>(foreign.get())).fetch());
            ADD_FAILURE() << one.name;
        } catch (const base::Error& error) {
            EXPECT_EQ(error.number(), base::kTypeMismatch) << one.name;
            EXPECT_TRUE(error.description().contains(one.words)) << one.name << ": " << error.what();
        }
    }
}

TEST(BlockCheck, letsThroughWhatTheContractAllows) {
    const BrokenCase cases[] = {
        {"as it is", [](ForeignRows&) {}, {}},
        {"empty texts without a buffer",
         [](ForeignRows& rows) {
             std::fill(std::begin(rows.m_offsets), std::end(rows.m_offsets), 5);
             rows.m_columns[1].values = nullptr;
         },
         {}},
        {"another type than described",
         [](ForeignRows& rows) {
             rows.m_columns[1] = {ColumnType::Int64, -1, nullptr, rows.m_numbers, nullptr};
         },
         {}},
    };
    for (const BrokenCase& one : cases) {
        const auto foreign = com::makeObject<ForeignRows>();
        one.breakIt(*foreign);
        const RowBlock* block = nullptr;
        EXPECT_NO_THROW(block = Rows(com::Ref<IRows>(foreign.get())).fetch(ForeignRows::kRows)) << one.name;
        EXPECT_EQ(block, &foreign->m_block) << one.name;
    }
}

}  // namespace
}  // namespace velcoran::db
