#include "db/row_set.h"

#include "support/direct_call_runner.h"
#include "support/fake_connection.h"
#include "support/test_data.h"

#include <gtest/gtest.h>

namespace velcoran::db {
namespace {

using namespace Qt::StringLiterals;
using tests::FakeConnection;

template <class Call>
std::int32_t errorNumber(Call call) {
    try {
        call();
    } catch (const base::Error& error) {
        return error.number();
    }
    return 0;
}

class RowSetTest : public testing::Test {
protected:
    RowSetTest() {
        fake->answer(
            u"groups"_s,
            {.columns = {{u"Grupa Produs"_s}, {u"Cod"_s, ColumnType::Int64}},
             .rows = {{u"ALIM"_s, u"7"_s}, {u"AMBA"_s, u"120"_s}, {std::nullopt, std::nullopt}, {u"Șarpe"_s, u"12"_s}},
             .blockRows = 2});
    }
    RowSet open(const QString& text) {
        RowSet rows;
        rows.open(Connection(fake->asConnection()), text, runner);
        return rows;
    }
    static QStringList column(const RowSet& rows, int number) {
        QStringList texts;
        for (qsizetype row = 0; row < rows.recordCount(); ++row) texts.append(rows.cell(row, number));
        return texts;
    }

    com::Ref<FakeConnection> fake = FakeConnection::create();
    tests::DirectCallRunner runner;
};

TEST_F(RowSetTest, walksAcrossBlocksToTheEnd) {
    RowSet rows = open(u"groups"_s);
    EXPECT_EQ(rows.columns(), (QStringList{u"Grupa Produs"_s, u"Cod"_s}));
    QStringList seen;
    for (; !rows.isEof(); rows.moveNext()) seen.append(rows.field(0).value_or(u"<null>"_s));
    EXPECT_EQ(seen, (QStringList{u"ALIM"_s, u"AMBA"_s, u"<null>"_s, u"Șarpe"_s}));
    EXPECT_EQ(errorNumber([&] { rows.moveNext(); }), base::kNoCurrentRecord);
    EXPECT_EQ(errorNumber([&] { static_cast<void>(rows.field(0)); }), base::kNoCurrentRecord);
    rows.moveFirst();
    EXPECT_EQ(rows.field(1), u"7"_s);
    EXPECT_EQ(fake->calls(), (QList<tests::FakeCall>{{u"recordset"_s, u"groups"_s}}));
}

TEST_F(RowSetTest, filterSelectsRowsAndFailsWithoutEffect) {
    RowSet rows = open(u"groups"_s);
    rows.moveNext();
    rows.setFilter(u"[Grupa Produs] Like 'a%'"_s);
    EXPECT_EQ(column(rows, 0), (QStringList{u"ALIM"_s, u"AMBA"_s}));
    EXPECT_EQ(rows.field(0), u"ALIM"_s);
    for (const QString& bad : {u"[Grupa Produs] Like 'a'%'"_s, u"[Grupa] Like 'a%'"_s, u"[Grupa ] Produs] Like 'a%'"_s})
        EXPECT_EQ(errorNumber([&] { rows.setFilter(bad); }), base::kInvalidProcedureCall) << bad.toStdString();
    EXPECT_EQ(rows.filter(), u"[Grupa Produs] Like 'a%'"_s);
    EXPECT_EQ(rows.recordCount(), 2);

    rows.setFilter(u"[cod] like '12%'"_s);
    EXPECT_EQ(column(rows, 0), (QStringList{u"AMBA"_s, u"Șarpe"_s}));
    rows.setFilter(u"[Grupa Produs] Like 'zz%'"_s);
    EXPECT_TRUE(rows.isEof());
    EXPECT_EQ(errorNumber([&] { rows.moveFirst(); }), base::kNoCurrentRecord);
    rows.setFilter(u"[Grupa Produs] Like '%'"_s);
    EXPECT_EQ(rows.recordCount(), 3) << "a null passes no filter";
    rows.setFilter(QString());
    EXPECT_EQ(column(rows, 0), (QStringList{u"ALIM"_s, u"AMBA"_s, QString(), u"Șarpe"_s}));
}

TEST_F(RowSetTest, showsEveryTypeAsPeopleReadIt) {
    fake->answer(
        u"types"_s,
        {.columns = {{u"a"_s, ColumnType::Int64},
                     {u"b"_s, ColumnType::Decimal64, 4},
                     {u"c"_s, ColumnType::Decimal128, 6},
                     {u"d"_s, ColumnType::Double},
                     {u"e"_s, ColumnType::DateTime},
                     {u"f"_s}},
         .rows = {{u"-12"_s, u"-0.5"_s, u"12345678901234567890123456789.25"_s, u"0.1"_s, u"2026-07-31"_s, u"ș"_s},
                  {u"0"_s, u"100"_s, u"-7"_s, u"100000"_s, u"1969-12-31 23:59:58"_s, QString()}}});
    const RowSet rows = open(u"types"_s);
    const QStringList first{
        u"-12"_s, u"-0.5"_s, u"12345678901234567890123456789.25"_s, u"0.1"_s, u"2026-07-31 00:00:00"_s, u"ș"_s};
    const QStringList second{u"0"_s, u"100"_s, u"-7"_s, u"100000"_s, u"1969-12-31 23:59:58"_s, QString()};
    for (int i = 0; i < 6; ++i) {
        EXPECT_EQ(rows.cell(0, i), first[i]);
        EXPECT_EQ(rows.cell(1, i), second[i]);
    }
}

TEST_F(RowSetTest, closedOrFailedRowSetRefusesEveryCall) {
    RowSet rows = open(u"groups"_s);
    fake->answer(u"broken"_s, {.columns = {{u"x"_s}},
                               .rows = {{u"1"_s}, {u"2"_s}},
                               .blockRows = 1,
                               .fetchError = base::Error(base::kProviderFailure, u"connection lost"_s),
                               .fetchErrorAt = 1});
    EXPECT_EQ(errorNumber([&] { rows.open(Connection(fake->asConnection()), u"broken"_s, runner); }),
              base::kProviderFailure);
    EXPECT_FALSE(rows.isOpen());
    EXPECT_EQ(errorNumber([&] { static_cast<void>(rows.recordCount()); }), base::kOperationOnClosedObject);
    EXPECT_EQ(errorNumber([&] { rows.setFilter(QString()); }), base::kOperationOnClosedObject);
    EXPECT_EQ(errorNumber([&] { rows.moveNext(); }), base::kOperationOnClosedObject);
}

TEST_F(RowSetTest, connectionErrorsKeepNumberAndWords) {
    EXPECT_EQ(errorNumber([&] { static_cast<void>(Connection().execute(u"groups"_s)); }), base::kObjectNotSet);
    fake->answer(u"bad"_s, {.openError = base::Error(base::kStatementError, u"near \"x\": syntax error"_s)});
    try {
        static_cast<void>(Connection(fake->asConnection()).prepare(u"bad"_s));
        ADD_FAILURE();
    } catch (const base::Error& error) {
        EXPECT_EQ(error.number(), base::kStatementError);
        EXPECT_EQ(error.description(), u"near \"x\": syntax error"_s);
    }
    fake->close();
    EXPECT_EQ(errorNumber([&] { open(u"groups"_s); }), base::kInvalidConnection);
    EXPECT_EQ(errorOf(com::kUnspecifiedFailure, nullptr).number(), base::kProviderFailure);
    EXPECT_EQ(errorOf(com::resultOfNumber(5), nullptr).number(), base::kInvalidProcedureCall);
}

}  // namespace
}  // namespace velcoran::db
