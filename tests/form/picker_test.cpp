#include "form_fixture.h"

namespace velcoran::tests {

using namespace Qt::StringLiterals;

class PickerTest : public FormTest {
protected:
    PickerTest() {
        setUpFor(u"Import"_s);
        statements();
    }
    controls::Grid* grid() { return find<controls::Grid>("Grid"); }
    void open(const char* field, const QString& typed = {}) {
        giveFocus(field);
        type(typed);
        press(Qt::Key_Return);
    }
};

TEST_F(PickerTest, eachPickWritesItsFieldAndMovesOn) {
    const struct {
        const char* field;
        const char* caption;
        QString text;
        const char* code;
        const char* next;
    } cases[] = {
        {"txtProducator", "Producatori", u"BETA"_s, "sCodProducator", "cmbCategorie"},
        {"txtTipProdus", "Tipuri Produse", u"C2"_s, nullptr, "txtGrupaProdus"},
        {"txtGrupaProdus", "Grupa Produs", u"C2"_s, nullptr, "txtSubGrupaProdus"},
        {"txtSubGrupaProdus", "Subgrupa Produs", u"C2"_s, nullptr, "txtCodProdus"},
        {"txtCodProdus", "Coduri Produse", u"BETA"_s, "sCodProdus", "txtTipClient"},
        {"txtTipClient", "Tip Furnizor", u"C2"_s, nullptr, "txtCatClient"},
        {"txtCatClient", "Categorie Furnizor", u"C2"_s, nullptr, "txtCodClient"},
        {"txtCodClient", "Furnizori", u"BETA"_s, "sCodClient", "cmbDepozit"},
        {"txtCodAgent", "Agenti", u"BETA"_s, "sCodAgent", "cmbSelectie"},
    };
    for (const auto& one : cases) {
        SCOPED_TRACE(one.field);
        open(one.field, u"x"_s);
        EXPECT_EQ(statements().size(), 1);
        EXPECT_TRUE(isShown("fraGrid"));
        EXPECT_EQ(frame("fraGrid")->property("twips").toRect(), QRect(150, 100, 7170, 3435));
        EXPECT_EQ(caption("fraGrid"), QString::fromLatin1(one.caption));
        EXPECT_FALSE(frame("frmEnable")->isEnabled());
        EXPECT_EQ(focus(), u"Grid"_s);
        press(Qt::Key_Down);
        press(Qt::Key_Return);
        EXPECT_FALSE(isShown("fraGrid"));
        EXPECT_TRUE(frame("frmEnable")->isEnabled());
        EXPECT_EQ(box(one.field)->text(), one.text);
        EXPECT_FALSE(dataChanged(one.field));
        if (one.code != nullptr) {
            EXPECT_EQ(member(one.code), u"C2"_s);
        }
        EXPECT_EQ(focus(), QString::fromLatin1(one.next));
    }
    box("txtCodProdus")->setText(u"z"_s);
    EXPECT_EQ(member("sCodProdus"), QString());
}

TEST_F(PickerTest, pickOfAGroupEmptiesWhatDependsOnIt) {
    setPicked("txtSubGrupaProdus", u"S"_s);
    setPicked("txtCodProdus", u"P"_s);
    setPicked("txtGrupaProdus", u"C1"_s);
    box("txtSubGrupaProdus")->setText(u"S"_s);
    open("txtGrupaProdus");
    QTest::mouseClick(grid()->viewport(), Qt::LeftButton, {},
                      grid()->viewport()->mapFrom(grid(), grid()->cellRect(1, 1).center()));
    EXPECT_EQ(box("txtGrupaProdus")->text(), u"C1"_s);
    EXPECT_EQ(box("txtSubGrupaProdus")->text(), QString());
    press(Qt::Key_Tab);
    EXPECT_EQ(focus(), u"txtSubGrupaProdus"_s) << "the first Tab only resets the flag";
    press(Qt::Key_Tab);
    EXPECT_EQ(focus(), u"txtCodProdus"_s);
}

TEST_F(PickerTest, theNextControlMayBeDisabled) {
    find<controls::CheckBox>("chkTotale")->setValue(true);
    open("txtProducator");
    press(Qt::Key_Return);
    EXPECT_EQ(focus(), u"txtTipClient"_s);
}

TEST_F(PickerTest, typingNarrowsAndEscLeavesTheFieldAlone) {
    open("txtTipProdus", u"a"_s);
    const QVariantList all = grid()->controlState()[u"rows"_s].toList();
    press(Qt::Key_Right);
    type(u"be"_s);
    EXPECT_EQ(caption("fraGrid"), u"Tipuri Produse - be"_s);
    EXPECT_EQ(grid()->rows(), 1);
    EXPECT_EQ(member("sCautare"), u"be"_s);
    type(u"q"_s);
    EXPECT_EQ(caption("fraGrid"), u"Tip Produs"_s);
    EXPECT_EQ(grid()->controlState()[u"rows"_s].toList(), all);
    EXPECT_EQ(member("sCautare"), QString());
    type(u"'x"_s);
    EXPECT_EQ(caption("fraGrid"), u"Tip Produs - 'x"_s);
    EXPECT_EQ(grid()->rows(), 2);
    press(Qt::Key_Escape);
    EXPECT_EQ(focus(), u"txtTipProdus"_s);
    EXPECT_EQ(box("txtTipProdus")->text(), u"a"_s);
    EXPECT_TRUE(dataChanged("txtTipProdus"));
    EXPECT_EQ(member("sCautare"), QString());
}

TEST_F(PickerTest, nothingFoundOrAFailureIsOneMessage) {
    const FakeAnswer answers[] = {{.columns = {{u"Cod"_s}, {u"Denumire"_s}}},
                                  {.openError = base::Error(base::kStatementError, u"syntax"_s)},
                                  {.columns = {{u"Cod"_s}}, .rows = {{u"1"_s}}, .fetchError = base::Error(5, u"x"_s)}};
    for (const FakeAnswer& answer : answers) {
        connection->answer(u"FROM Agenti"_s, answer);
        open("txtCodAgent", u"x"_s);
        EXPECT_EQ(surroundings.messages, QList<ShownMessage>({{u"Nu s-au gasit Inregistrari !!"_s, 16, u"Agenti"_s}}));
        EXPECT_FALSE(isShown("fraGrid"));
        EXPECT_TRUE(frame("frmEnable")->isEnabled());
        EXPECT_EQ(focus(), u"txtCodAgent"_s);
        EXPECT_EQ(box("txtCodAgent")->text(), u"x"_s);
        EXPECT_EQ(member("rsLookup"), u"true"_s);
        surroundings.messages.clear();
        box("txtCodAgent")->setText({});
    }
}

TEST_F(PickerTest, theOpenGridKeepsTheFocus) {
    open("txtTipProdus");
    QTest::mouseClick(find<QWidget>("cmdViz"), Qt::LeftButton);
    EXPECT_EQ(focus(), u"Grid"_s);
    giveFocus("Command1");
    EXPECT_EQ(focus(), u"Grid"_s);
    press(Qt::Key_Tab);
    EXPECT_EQ(focus(), u"Grid"_s);
    press(Qt::Key_Escape);
    giveFocus("cmdViz");
    EXPECT_EQ(focus(), u"cmdViz"_s);
}

TEST_F(PickerTest, typedTextOutlivesTheWindow) {
    open("txtTipProdus");
    type(u"c"_s);
    window.CloseForm();
    EXPECT_EQ(member("sCautare"), u"c"_s);
    setUpFor(u"Import"_s);
    open("txtTipProdus");
    type(u"2"_s);
    EXPECT_EQ(caption("fraGrid"), u"Tipuri Produse2"_s);
    EXPECT_EQ(grid()->rows(), 1);
}

TEST_F(PickerTest, aCallClosesTheOpenPickerAsEscDoes) {
    giveFocus("txtTipClient");
    press(Qt::Key_Return);
    ASSERT_TRUE(isShown("fraGrid"));
    type(u"a"_s);
    setUpFor(u"Export"_s);
    EXPECT_FALSE(isShown("fraGrid"));
    EXPECT_TRUE(find<QWidget>("frmEnable")->isEnabled());
    EXPECT_EQ(focus(), u"txtTipClient"_s);
    EXPECT_EQ(member("sCautare"), QString());
    EXPECT_EQ(box("txtTipClient")->text(), QString());
}

}  // namespace velcoran::tests
