#include "form/form_fixture.h"
#include "form/movement.h"

namespace velcoran::tests {

using namespace Qt::StringLiterals;

class KeyboardTest : public FormTest {
protected:
    KeyboardTest() { setUpFor(u"Import"_s); }
    void expectFocusAfter(const char* from, int key, const char* to, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        giveFocus(from);
        press(key, modifiers);
        EXPECT_EQ(focus(), QString::fromLatin1(to)) << from << " key " << key;
    }
};

TEST_F(KeyboardTest, tabWalksTheWholeWindow) {
    giveFocus("cmbTipRaport");
    const auto order = form::forwardOrder();
    for (std::size_t i = 1; i < order.size(); ++i) {
        press(i % 2 == 0 ? Qt::Key_Tab : Qt::Key_Backtab, i % 2 == 0 ? Qt::NoModifier : Qt::ShiftModifier);
        EXPECT_EQ(focus(), form::layoutOf(order[i]).name.toString());
    }
    press(Qt::Key_Tab);
    EXPECT_EQ(focus(), u"cmdExit"_s);
}

// Each key that moves the focus in the table moves it in the window, to the table's target, in both modes.
TEST_F(KeyboardTest, theWindowMovesAsItsTableSays) {
    const struct {
        form::Key key;
        int pressed;
    } keys[] = {{form::Key::Tab, Qt::Key_Tab},     {form::Key::Left, Qt::Key_Left}, {form::Key::Up, Qt::Key_Up},
                {form::Key::Right, Qt::Key_Right}, {form::Key::Down, Qt::Key_Down}, {form::Key::Enter, Qt::Key_Return}};
    const auto isUsable = [this](form::Ctl control) {
        return window.findChild<QWidget*>(form::layoutOf(control).name.toString())->isEnabled();
    };
    int moves = 0;
    for (const bool isTotals : {false, true}) {
        find<controls::CheckBox>("chkTotale")->setValue(isTotals);
        for (const form::Ctl from : form::controlsWithKeys()) {
            if (!isUsable(from)) continue;
            const QString name = form::layoutOf(from).name.toString();
            const QByteArray latin = name.toLatin1();
            for (const auto& one : keys) {
                giveFocus(latin);
                const QVariantMap now = controls::Control::of(find<QWidget>(latin))->controlState();
                const form::KeyState state{.isAtStart = true,
                                           .isAtEnd = true,
                                           .index = now.value(u"index"_s, -1).toInt(),
                                           .count = static_cast<int>(now.value(u"items"_s).toList().size())};
                const form::Act act = form::actOf(from, one.key, state);
                if (act != form::Act::forward && act != form::Act::backward) continue;
                const auto direction = act == form::Act::forward ? form::Direction::forward : form::Direction::backward;
                const auto target = form::nextFocus(from, direction, isUsable, isUsable);
                press(one.pressed);
                EXPECT_EQ(focus(), target ? form::layoutOf(*target).name.toString() : name)
                    << latin.constData() << " key " << one.pressed << " totals " << isTotals;
                ++moves;
            }
        }
    }
    EXPECT_GT(moves, 130);
}

TEST_F(KeyboardTest, movesByTheKeysOfEachControl) {
    const struct {
        const char* from;
        int key;
        const char* to;
    } cases[] = {
        {"cmbTipRaport", Qt::Key_Left, "cmbTipRaport"}, {"cmbTipRaport", Qt::Key_Right, "chkTotale"},
        {"cmbTipRaport", Qt::Key_Enter, "chkTotale"},   {"chkTotale", Qt::Key_Return, "cmbSortare"},
        {"chkTotale", Qt::Key_Down, "chkTotale"},       {"cmbSortare", Qt::Key_Up, "cmbSortare"},
        {"cmbSortare", Qt::Key_Left, "chkTotale"},      {"Deladata", Qt::Key_Return, "Ladata"},
        {"Deladata", Qt::Key_Left, "Deladata"},         {"txtProducator", Qt::Key_Up, "Ladata"},
        {"cmbCategorie", Qt::Key_Up, "txtProducator"},  {"txtTipProdus", Qt::Key_Left, "cmbCategorie"},
        {"txtTipClient", Qt::Key_Up, "txtCodProdus"},   {"txtCodClient", Qt::Key_Down, "cmbDepozit"},
        {"cmbDepozit", Qt::Key_Up, "txtCodClient"},     {"cmbDepozit", Qt::Key_Down, "cmbDepozit"},
        {"cmbSelectie", Qt::Key_Down, "chkLohn"},       {"chkLohn", Qt::Key_Return, "chkLohn"},
        {"chkLohn", Qt::Key_Up, "cmbSelectie"},         {"Raport", Qt::Key_Left, "chkLohn"},
        {"cmbVizual", Qt::Key_Down, "cmdExit"},         {"cmdExit", Qt::Key_Right, "cmdExit"},
        {"cmdExit", Qt::Key_Up, "cmbVizual"},           {"cmdViz", Qt::Key_Down, "Command1"},
        {"cmdViz", Qt::Key_Left, "Command1"},
    };
    for (const auto& one : cases) expectFocusAfter(one.from, one.key, one.to);
}

TEST_F(KeyboardTest, aTypedValueIsThrownAwayFirst) {
    giveFocus("txtCodAgent");
    type(u"x"_s);
    press(Qt::Key_Tab);
    EXPECT_EQ(focus(), u"txtCodAgent"_s);
    EXPECT_EQ(box("txtCodAgent")->text(), QString());
    EXPECT_FALSE(dataChanged("txtCodAgent"));
    press(Qt::Key_Tab);
    EXPECT_EQ(focus(), u"cmbSelectie"_s);
}

TEST_F(KeyboardTest, arrowsLeaveATextAtItsEdges) {
    setPicked("txtTipProdus", u"ABC"_s);
    expectFocusAfter("txtTipProdus", Qt::Key_Left, "cmbCategorie");
    expectFocusAfter("txtTipProdus", Qt::Key_Right, "txtTipProdus");
    press(Qt::Key_Right);
    EXPECT_EQ(focus(), u"txtGrupaProdus"_s);
}

TEST_F(KeyboardTest, totalsModeChangesTheWay) {
    find<controls::CheckBox>("chkTotale")->setValue(true);
    expectFocusAfter("chkTotale", Qt::Key_Tab, "Deladata");
    expectFocusAfter("txtProducator", Qt::Key_Tab, "txtTipClient");
    expectFocusAfter("txtTipClient", Qt::Key_Up, "Ladata");
}

TEST_F(KeyboardTest, listsKeepTheirOwnKeys) {
    auto* warehouses = find<controls::TickList>("cmbDepozit");
    const struct {
        int start, key, index;
    } cases[] = {{2, Qt::Key_Up, 1}, {2, Qt::Key_Down, 3}, {3, Qt::Key_Delete, 0}};
    for (const auto& one : cases) {
        giveFocus("cmbDepozit");
        warehouses->setCurrentIndex(one.start);
        press(one.key);
        EXPECT_EQ(warehouses->currentIndex(), one.index);
    }
    EXPECT_TRUE(warehouses->ticked().isEmpty());
    warehouses->setCurrentIndex(4);
    press(Qt::Key_Down);
    EXPECT_EQ(focus(), u"txtCodAgent"_s);

    list("cmbCategorie")->setIndex(4);
    setPicked("txtTipProdus", u"T"_s);
    giveFocus("cmbCategorie");
    press(Qt::Key_Delete);
    EXPECT_EQ(list("cmbCategorie")->index(), 0);
    EXPECT_EQ(box("txtTipProdus")->text(), QString());
    press(Qt::Key_Down);
    EXPECT_EQ(list("cmbCategorie")->index(), 1);
    EXPECT_EQ(focus(), u"cmbCategorie"_s);
}

TEST_F(KeyboardTest, theBlankDoesNotTickTheTemporaryDocuments) {
    giveFocus("chkLohn");
    press(Qt::Key_Space);
    EXPECT_FALSE(find<controls::CheckBox>("chkLohn")->value());
    giveFocus("chkTotale");
    press(Qt::Key_Space);
    EXPECT_TRUE(find<controls::CheckBox>("chkTotale")->value());
}

}  // namespace velcoran::tests
