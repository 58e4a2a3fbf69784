#include "db/row_set.h"
#include "lookup/fill.h"
#include "lookup/grid_model.h"
#include "lookup/type_ahead.h"
#include "support/direct_call_runner.h"
#include "support/fake_connection.h"
#include "support/test_data.h"

#include <gtest/gtest.h>

namespace velcoran::lookup {
namespace {

using namespace Qt::StringLiterals;

class PickerTest : public testing::Test {
protected:
    PickerTest() {
        fake->answer(u"groups"_s, {.columns = {{u"Grupa Produs"_s}, {u"Descriere"_s}},
                                   .rows = {{u"ABA"_s, u"Xenon"_s}, {u"Abc"_s, u"Alfa"_s}, {u"B"_s, u"Abur"_s}}});
        fake->answer(u"none"_s, {.columns = {{u"Grupa Produs"_s}}});
    }
    qsizetype open(const QString& sql) { return openLookup(rows, db::Connection(fake->asConnection()), sql, runner); }

    com::Ref<tests::FakeConnection> fake = tests::FakeConnection::create();
    tests::DirectCallRunner runner;
    db::RowSet rows;
};

/// Stops every statement, as the window's own runner does when the window is closed.
class StoppingRunner final : public db::ICallRunner {
public:
    void run(const db::Connection&, std::function<void()>) override { throw base::Cancelled(); }
};

TEST_F(PickerTest, everyFailureCountsAsNoRows) {
    EXPECT_EQ(open(u"groups"_s), 3);
    EXPECT_EQ(open(u"none"_s), 0);
    EXPECT_EQ(open(u"groups"_s), 3);
    EXPECT_EQ(open(u"broken"_s), 0);
    EXPECT_FALSE(rows.isOpen()) << "the rows of the lookup before were left";
    EXPECT_EQ(openLookup(rows, db::Connection(), u"groups"_s, runner), 0);
    StoppingRunner stopping;
    EXPECT_THROW(static_cast<void>(openLookup(rows, db::Connection(), u"groups"_s, stopping)), base::Cancelled);
}

struct Key {
    QString character;
    QString header;
    QString sCautare;
    QString caption;
    qsizetype rowCount;
};

TEST_F(PickerTest, typingNarrowsAndAFailedMatchStartsAnew) {
    ASSERT_EQ(open(u"groups"_s), 3);
    const Key keys[] = {
        {u"a"_s, u"Grupa Produs"_s, u"a"_s, u"Tipuri - a"_s, 2},
        {u"b"_s, u"Grupa Produs"_s, u"ab"_s, u"Tipuri - ab"_s, 2},
        {u"C"_s, u"Grupa Produs"_s, u"abC"_s, u"Tipuri - abC"_s, 1},
        {u"z"_s, u"Grupa Produs"_s, u""_s, u"Tag"_s, 3},
        {u"a"_s, u"Descriere"_s, u"a"_s, u"Tag - a"_s, 2},
        // A quote: typed, but the rows stay, and so it goes on.
        {u"'"_s, u"Descriere"_s, u"a'"_s, u"Tag - a'"_s, 2},
        {u"x"_s, u"Descriere"_s, u"a'x"_s, u"Tag - a'x"_s, 2},
    };
    TypeAhead state{QString(), u"Tipuri"_s};
    for (const Key& key : keys) {
        typeAhead(state, key.character, key.header, u"Tag", rows);
        EXPECT_EQ(state, (TypeAhead{key.sCautare, key.caption})) << key.character.toStdString();
        EXPECT_EQ(rows.recordCount(), key.rowCount) << key.character.toStdString();
    }
}

TEST_F(PickerTest, aTextKeptFromAnEarlierWindowGoesOnWithoutSeparator) {
    ASSERT_EQ(open(u"groups"_s), 3);
    TypeAhead state{u"a"_s, u"Grupa Produs"_s};
    EXPECT_TRUE(typeAhead(state, u"b", u"Grupa Produs", u"Grupa Produs", rows));
    EXPECT_EQ(state, (TypeAhead{u"ab"_s, u"Grupa Produsb"_s}));
    EXPECT_EQ(rows.filter(), u"[Grupa Produs] Like 'ab%'");
}

TEST_F(PickerTest, aHeaderThatIsNoColumnEndsTheKeySilently) {
    ASSERT_EQ(open(u"groups"_s), 3);
    TypeAhead state{QString(), u"Grupa Produs"_s};
    EXPECT_FALSE(typeAhead(state, u"\b", QString(), u"Grupa Produs", rows));
    EXPECT_EQ(state, (TypeAhead{u"\b"_s, u"Grupa Produs - \b"_s}));
    EXPECT_EQ(rows.recordCount(), 3);
}

TEST_F(PickerTest, theModelShowsTheRowsThatPass) {
    GridModel model;
    EXPECT_EQ(model.rowCount(), 0);
    ASSERT_EQ(open(u"groups"_s), 3);
    model.setRowSet(&rows);
    EXPECT_EQ(model.rowCount(), 3);
    EXPECT_EQ(model.columnCount(), 2);
    EXPECT_EQ(model.headerData(1, Qt::Horizontal).toString(), u"Descriere");
    EXPECT_EQ(model.data(model.index(2, 0)).toString(), u"B");

    const QModelIndex last = model.index(2, 1);
    rows.setFilter(u"[Descriere] Like 'a%'"_s);
    EXPECT_FALSE(model.data(last).isValid()) << "a paint before the refresh read beyond the rows";
    model.refresh();
    EXPECT_EQ(model.rowCount(), 2);
    EXPECT_EQ(model.data(model.index(1, 0)).toString(), u"B");

    rows.close();
    EXPECT_FALSE(model.data(model.index(0, 0)).isValid());
    model.refresh();
    EXPECT_EQ(model.rowCount(), 0);
}

TEST(ColumnWidths, followTheCaption) {
    const auto widths = [](QStringView caption) {
        const ColumnWidths of = columnWidths(caption);
        return QList<int>{of.fixed.value, of.first.value, of.second.value, of.third ? of.third->value : -1};
    };
    EXPECT_EQ(widths(u"Coduri Produse"), (QList<int>{10, 1700, 4700, 0}));
    EXPECT_EQ(widths(u"Tipuri Produse"), (QList<int>{10, 2000, 4400, -1}));
    EXPECT_EQ(widths(u"Tip Produs"), (QList<int>{10, 1700, 4700, -1}));
}

}  // namespace
}  // namespace velcoran::lookup
