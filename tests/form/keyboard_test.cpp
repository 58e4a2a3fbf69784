#include "form/rules/movement.h"
#include "form_fixture.h"

#include <QMenu>
#include <QWindow>

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

TEST_F(KeyboardTest, enterAndEscActOnThePressAlone) {
    const struct {
        const char* name;
        const char* from;
        std::function<void()> prepare;
        int key;
        const char* focus;
    } cases[] = {
        {"a list moves on once", "cmbTipRaport", {}, Qt::Key_Return, "chkTotale"},
        {"the keypad's too", "cmbTipRaport", {}, Qt::Key_Enter, "chkTotale"},
        {"a date moves on once", "Deladata", {}, Qt::Key_Return, "Ladata"},
        {"a lookup opens and picks nothing", "txtGrupaProdus", {}, Qt::Key_Return, "Grid"},
        {"an open picker is picked once", "txtTipProdus", [this] { press(Qt::Key_Return); }, Qt::Key_Return,
         "txtGrupaProdus"},
        {"an open picker closes alone", "txtTipProdus", [this] { press(Qt::Key_Return); }, Qt::Key_Escape,
         "txtTipProdus"},
        {"an open list is taken and stays", "cmbSortare", [this] { press(Qt::Key_F4); }, Qt::Key_Return, "cmbSortare"},
        {"an open list closes alone", "cmbSortare", [this] { press(Qt::Key_F4); }, Qt::Key_Escape, "cmbSortare"},
        {"an open calendar is taken and stays", "Ladata", [this] { press(Qt::Key_F4); }, Qt::Key_Return, "Ladata"},
        {"an open calendar closes alone", "Ladata", [this] { press(Qt::Key_F4); }, Qt::Key_Escape, "Ladata"},
        {"nothing by nothing", "chkLohn", {}, Qt::Key_Return, "chkLohn"},
    };
    for (const auto& one : cases) {
        SCOPED_TRACE(one.name);
        giveFocus(one.from);
        if (one.prepare) one.prepare();
        QCoreApplication::processEvents();
        hold(one.key, one.key == Qt::Key_Escape ? u"\x1B"_s : u"\r"_s, 7);
        QCoreApplication::processEvents();
        EXPECT_TRUE(window.isLoaded());
        EXPECT_EQ(focus(), QString::fromLatin1(one.focus));
        EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
        if (isShown("fraGrid")) press(Qt::Key_Escape);
    }
}

TEST_F(KeyboardTest, aHeldEscClosesTheWindowOnceAndAHeldEnterShowsOneMessage) {
    box("txtCodAgent")->setText(u"x"_s);
    giveFocus("Raport");
    int shown = 0;
    surroundings.whileShowing = [&] {
        ++shown;
        hold(Qt::Key_Return, u"\r"_s, 2);
    };
    QKeyEvent repeat(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, u"\r"_s, true);
    QApplication::sendEvent(find<QWidget>("Raport"), &repeat);
    EXPECT_EQ(shown, 0);
    surroundings.whileShowing = nullptr;
    giveFocus("txtCodAgent");
    QKeyEvent esc(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier, u"\x1B"_s, true);
    QApplication::sendEvent(find<QWidget>("txtCodAgent"), &esc);
    EXPECT_TRUE(window.isLoaded());
    press(Qt::Key_Escape);
    EXPECT_FALSE(window.isLoaded());
}

TEST_F(KeyboardTest, otherKeysRepeat) {
    giveFocus("cmbTipRaport");
    hold(Qt::Key_Tab, u"\t"_s, 2);
    EXPECT_EQ(focus(), u"Deladata"_s);
    find<controls::TickList>("cmbDepozit")->setCurrentIndex(0);
    giveFocus("cmbDepozit");
    hold(Qt::Key_Down, {}, 2);
    EXPECT_EQ(find<controls::TickList>("cmbDepozit")->currentIndex(), 3);
    giveFocus("txtCodAgent");
    hold(Qt::Key_A, u"a"_s, 2);
    EXPECT_EQ(box("txtCodAgent")->text(), u"aaa"_s);
}

TEST_F(KeyboardTest, withAltAloneNothingIsTypedAnywhere) {
    find<QWidget>("frmEnable")->hide();
    for (const char* name : {"crwSearchBox", "crwPageBox", "crwZoom"}) {
        auto* edit = find<QWidget>(name);
        edit->setEnabled(true);
        const QString before = edit->property("text").toString() + edit->property("currentText").toString();
        QTest::sendKeyEvent(QTest::Click, edit, Qt::Key_7, u"7"_s, Qt::AltModifier);
        EXPECT_EQ(edit->property("text").toString() + edit->property("currentText").toString(), before) << name;
    }
    find<QWidget>("frmEnable")->show();
    const struct {
        const char* control;
        int key;
        QString text;
    } cases[] = {{"txtCodAgent", Qt::Key_Semicolon, u";"_s}, {"txtCodAgent", Qt::Key_A, u"a"_s},
                 {"txtCodAgent", Qt::Key_unknown, u"😀"_s},   {"chkTotale", Qt::Key_Space, u" "_s},
                 {"cmbDepozit", Qt::Key_Space, u" "_s},      {"cmbDepozit", Qt::Key_7, u"7"_s},
                 {"cmbSortare", Qt::Key_N, u"n"_s},          {"Deladata", Qt::Key_3, u"3"_s}};
    for (const auto& one : cases) {
        giveFocus(one.control);
        const QVariantMap before = controls::Control::of(find<QWidget>(one.control))->controlState();
        QTest::sendKeyEvent(QTest::Click, find<QWidget>(one.control), static_cast<Qt::Key>(one.key), one.text,
                            Qt::AltModifier);
        EXPECT_EQ(controls::Control::of(find<QWidget>(one.control))->controlState(), before) << one.control;
    }
    giveFocus("txtTipProdus");
    press(Qt::Key_Return);
    QTest::sendKeyEvent(QTest::Click, find<QWidget>("Grid"), Qt::Key_B, u"b"_s, Qt::AltModifier);
    EXPECT_EQ(member("sCautare"), QString());
}

TEST_F(KeyboardTest, acceleratorsActWhereTheirControlCanBeWorked) {
    const auto alt = [this](Qt::Key key) {
        QTest::keyClick(window.windowHandle(), key, Qt::AltModifier);
        QCoreApplication::processEvents();
    };
    auto* temporary = find<controls::CheckBox>("chkLohn");
    alt(Qt::Key_T);
    EXPECT_TRUE(temporary->value());
    EXPECT_EQ(focus(), u"chkLohn"_s);
    giveFocus("cmbSortare");
    press(Qt::Key_F4);
    QCoreApplication::processEvents();
    alt(Qt::Key_T);
    EXPECT_TRUE(list("cmbSortare")->isOpen()) << "an open list keeps its keys";
    QTest::keyClick(keyReceiver(), Qt::Key_Escape);
    QCoreApplication::processEvents();
    giveFocus("txtTipProdus");
    press(Qt::Key_Return);
    alt(Qt::Key_T);
    alt(Qt::Key_D);
    EXPECT_TRUE(temporary->value()) << "not under the open picker";
    EXPECT_EQ(focus(), u"Grid"_s);
    press(Qt::Key_Escape);
    alt(Qt::Key_V);
    EXPECT_FALSE(isShown("frmEnable"));
    alt(Qt::Key_T);
    alt(Qt::Key_I);
    EXPECT_TRUE(temporary->value());
    EXPECT_TRUE(window.isLoaded()) << "nor hidden with the panel";
    alt(Qt::Key_D);
    EXPECT_TRUE(isShown("frmEnable"));
    EXPECT_EQ(focus(), u"cmbTipRaport"_s);
}

TEST_F(KeyboardTest, controlsWithoutKeysFollowTheTabOrder) {
    const struct {
        bool isPanelShown;
        const char* from;
        Qt::Key key;
        const char* to;
    } cases[] = {
        {true, "Command1", Qt::Key_Tab, "cmdViz"},        {true, "Command1", Qt::Key_Backtab, "cmdExit"},
        {true, "CRW", Qt::Key_Tab, "cmbTipRaport"},       {true, "CRW", Qt::Key_Backtab, "cmdViz"},
        {false, "Command1", Qt::Key_Tab, "cmdViz"},       {false, "Command1", Qt::Key_Backtab, "CRW"},
        {false, "CRW", Qt::Key_Tab, "Command1"},          {false, "CRW", Qt::Key_Backtab, "cmdViz"},
        {false, "crwSearchBox", Qt::Key_Tab, "Command1"}, {false, "crwTree", Qt::Key_Backtab, "cmdViz"},
    };
    find<QWidget>("crwTree")->show();
    find<QWidget>("crwSearch")->setEnabled(true);
    for (const auto& one : cases) {
        find<QWidget>("frmEnable")->setVisible(one.isPanelShown);
        giveFocus(one.from);
        press(one.key, one.key == Qt::Key_Backtab ? Qt::ShiftModifier : Qt::NoModifier);
        EXPECT_EQ(focus(), QString::fromLatin1(one.to)) << one.from << ' ' << one.isPanelShown << ' ' << one.key;
    }
}

TEST_F(KeyboardTest, aMoveGoesOnPastWhatCannotTakeTheFocus) {
    const struct {
        const char* from;
        int key;
        QList<const char*> disabled;
        const char* to;
    } cases[] = {
        {"cmbTipRaport", Qt::Key_Tab, {"chkTotale"}, "cmbSortare"},
        {"cmbTipRaport", Qt::Key_Tab, {"chkTotale", "cmbSortare"}, "Deladata"},
        {"txtCatClient", Qt::Key_Up, {"txtTipClient"}, "txtCodProdus"},
        {"txtCatClient", Qt::Key_Up, {"txtTipClient", "txtCodProdus", "txtSubGrupaProdus"}, "txtGrupaProdus"},
        {"cmbSelectie", Qt::Key_Down, {"chkLohn", "Raport"}, "cmbVizual"},
        {"cmbVizual", Qt::Key_Tab, {"cmdExit"}, "cmbVizual"},
        {"chkTotale", Qt::Key_Left, {"cmbTipRaport"}, "chkTotale"},
    };
    for (const auto& one : cases) {
        giveFocus(one.from);
        for (const char* name : one.disabled) find<QWidget>(name)->setEnabled(false);
        QKeyEvent key(QEvent::KeyPress, one.key, Qt::NoModifier);
        key.ignore();
        QApplication::sendEvent(find<QWidget>(one.from), &key);
        EXPECT_EQ(focus(), QString::fromLatin1(one.to)) << one.from;
        EXPECT_TRUE(key.isAccepted()) << "consumed in any case";
        for (const char* name : one.disabled) find<QWidget>(name)->setEnabled(true);
    }
}

TEST_F(KeyboardTest, anOpenListTakenByTabMovesOnWithItsChange) {
    setPicked("txtTipProdus", u"T"_s);
    giveFocus("cmbCategorie");
    press(Qt::Key_F4);
    QTest::keyClick(keyReceiver(), Qt::Key_S);
    EXPECT_EQ(box("txtTipProdus")->text(), u"T"_s) << "nothing has changed yet";
    QTest::keyClick(keyReceiver(), Qt::Key_Escape);
    EXPECT_EQ(box("txtTipProdus")->text(), u"T"_s);
    EXPECT_EQ(focus(), u"cmbCategorie"_s);
    press(Qt::Key_F4);
    QTest::keyClick(keyReceiver(), Qt::Key_S);
    QTest::keyClick(keyReceiver(), Qt::Key_Tab);
    EXPECT_EQ(list("cmbCategorie")->text(), u"Servicii"_s);
    EXPECT_EQ(box("txtTipProdus")->text(), QString());
    EXPECT_EQ(focus(), u"txtTipProdus"_s);
    giveFocus("cmbCategorie");
    press(Qt::Key_F4);
    QTest::keyClick(keyReceiver(), Qt::Key_Delete);
    EXPECT_EQ(list("cmbCategorie")->text(), u"Servicii"_s);
    QTest::keyClick(keyReceiver(), Qt::Key_Return);
    EXPECT_EQ(list("cmbCategorie")->index(), 0);
    EXPECT_EQ(focus(), u"cmbCategorie"_s);
}

TEST_F(KeyboardTest, theSecondPressOfADoubleClickThatClosedSomethingIsSwallowed) {
    giveFocus("txtTipClient");
    press(Qt::Key_Return);
    auto* grid = find<controls::Grid>("Grid");
    auto* totals = find<controls::CheckBox>("chkTotale");
    const QPoint overTotals = grid->viewport()->mapFromGlobal(totals->mapToGlobal(totals->rect().center()));
    ASSERT_EQ(grid->indexAt(overTotals).row(), 1) << "the second row lies over the box";
    EXPECT_FALSE(doubleClick(grid->viewport(), overTotals));
    EXPECT_FALSE(isShown("fraGrid"));
    EXPECT_EQ(box("txtTipClient")->text(), u"C2"_s);
    EXPECT_EQ(focus(), u"txtCatClient"_s) << "and not where the mouse is";
    EXPECT_FALSE(totals->value());
    auto* hide = find<QWidget>("cmbVizual");
    EXPECT_FALSE(doubleClick(hide, hide->rect().center())) << "the page behind the panel";
    EXPECT_EQ(focus(), u"CRW"_s);
    auto* exit = find<QWidget>("cmdViz");
    QTest::mouseClick(exit, Qt::LeftButton);
    EXPECT_TRUE(isShown("frmEnable")) << "a new click works";
    EXPECT_TRUE(doubleClick(totals, totals->rect().center()));
}

TEST_F(KeyboardTest, everyTextBoxHasTheSameMenu) {
    const QStringList wanted{u"&Anulează"_s, u"&Refă"_s,  u"&Decupează"_s,    u"&Copiază"_s,
                             u"&Lipește"_s,  u"Șterge"_s, u"Selectează tot"_s};
    find<QWidget>("crwSearch")->setEnabled(true);
    for (const char* name : {"txtCodAgent", "crwSearchBox"}) {
        auto* edit = find<QWidget>(name);
        QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint(3, 3), edit->mapToGlobal(QPoint(3, 3)));
        QApplication::sendEvent(edit, &event);
        auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        ASSERT_NE(menu, nullptr) << name;
        QStringList texts;
        for (const QAction* action : menu->actions())
            if (!action->isSeparator()) texts += action->text().section(u'\t', 0, 0);
        EXPECT_EQ(texts, wanted) << name;
        menu->close();
    }
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
