#include "form/rules/movement.h"

#include "support/test_data.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

namespace velcoran::form {

namespace {

ControlTest all() {
    return [](Ctl) { return true; };
}
ControlTest allBut(std::set<Ctl> disabled) {
    return [disabled = std::move(disabled)](Ctl control) { return !disabled.contains(control); };
}

const std::set<Ctl> kTotalsMode{Ctl::cmbCategorie,      Ctl::txtTipProdus, Ctl::txtGrupaProdus,
                                Ctl::txtSubGrupaProdus, Ctl::txtCodProdus, Ctl::cmbSortare};

}  // namespace

// What users have in their fingers, while every control is enabled.
TEST(Movement, leadsFromEachControlWhereItAlwaysDid) {
    const struct {
        Ctl from;
        std::optional<Ctl> forward, backward;
    } walk[] = {
        {Ctl::cmbTipRaport, Ctl::chkTotale, std::nullopt},
        {Ctl::chkTotale, Ctl::cmbSortare, Ctl::cmbTipRaport},
        {Ctl::cmbSortare, Ctl::Deladata, Ctl::chkTotale},
        {Ctl::Deladata, Ctl::Ladata, std::nullopt},
        {Ctl::Ladata, Ctl::txtProducator, std::nullopt},
        {Ctl::txtProducator, Ctl::cmbCategorie, Ctl::Ladata},
        {Ctl::cmbCategorie, Ctl::txtTipProdus, Ctl::txtProducator},
        {Ctl::txtTipProdus, Ctl::txtGrupaProdus, Ctl::cmbCategorie},
        {Ctl::txtGrupaProdus, Ctl::txtSubGrupaProdus, Ctl::txtTipProdus},
        {Ctl::txtSubGrupaProdus, Ctl::txtCodProdus, Ctl::txtGrupaProdus},
        {Ctl::txtCodProdus, Ctl::txtTipClient, Ctl::txtSubGrupaProdus},
        {Ctl::txtTipClient, Ctl::txtCatClient, Ctl::txtCodProdus},
        {Ctl::txtCatClient, Ctl::txtCodClient, Ctl::txtTipClient},
        {Ctl::txtCodClient, Ctl::cmbDepozit, Ctl::txtCatClient},
        {Ctl::cmbDepozit, Ctl::txtCodAgent, Ctl::txtCodClient},
        {Ctl::txtCodAgent, Ctl::cmbSelectie, Ctl::cmbDepozit},
        {Ctl::cmbSelectie, Ctl::chkLohn, Ctl::txtCodAgent},
        {Ctl::chkLohn, Ctl::Raport, Ctl::cmbSelectie},
        {Ctl::Raport, Ctl::cmbVizual, Ctl::chkLohn},
        {Ctl::cmbVizual, Ctl::cmdExit, Ctl::Raport},
        {Ctl::cmdExit, std::nullopt, Ctl::cmbVizual},
        {Ctl::cmdViz, Ctl::Command1, Ctl::Command1},
        {Ctl::Command1, std::nullopt, std::nullopt},
    };
    for (const auto& one : walk) {
        EXPECT_EQ(nextFocus(one.from, Direction::forward, all(), all()), one.forward) << static_cast<int>(one.from);
        EXPECT_EQ(nextFocus(one.from, Direction::backward, all(), all()), one.backward) << static_cast<int>(one.from);
    }
}

TEST(Movement, findsItsWayRoundDisabledControls) {
    const struct {
        Ctl from;
        Direction direction;
        std::set<Ctl> disabled;
        std::optional<Ctl> to;
    } cases[] = {
        {Ctl::chkTotale, Direction::forward, kTotalsMode, Ctl::Deladata},
        {Ctl::txtProducator, Direction::forward, kTotalsMode, Ctl::txtTipClient},
        {Ctl::txtTipClient, Direction::backward, kTotalsMode, Ctl::Ladata},
        {Ctl::Ladata, Direction::forward, {Ctl::txtProducator}, Ctl::txtTipProdus},
        {Ctl::Ladata, Direction::forward, {Ctl::txtProducator, Ctl::txtTipProdus}, Ctl::txtTipClient},
        {Ctl::txtTipProdus, Direction::backward, {Ctl::cmbCategorie}, Ctl::Ladata},
        {Ctl::txtTipProdus, Direction::backward, {Ctl::cmbCategorie, Ctl::Ladata, Ctl::Deladata}, Ctl::cmbSortare},
        {Ctl::cmbSortare, Direction::forward, {Ctl::Deladata, Ctl::Ladata}, Ctl::txtProducator},
        {Ctl::txtCodAgent, Direction::backward, {Ctl::cmbDepozit, Ctl::txtCodClient}, Ctl::txtCatClient},
        {Ctl::cmbVizual, Direction::forward, {Ctl::cmdExit}, std::nullopt},
        {Ctl::chkTotale, Direction::backward, {Ctl::cmbTipRaport}, std::nullopt},
    };
    for (const auto& one : cases) {
        const ControlTest test = allBut(one.disabled);
        EXPECT_EQ(nextFocus(one.from, one.direction, test, test), one.to) << static_cast<int>(one.from);
    }
}

TEST(Movement, decidesByKeyAndState) {
    const KeyState middle{.index = 1, .count = 3};
    const KeyState first{.index = 0, .count = 3};
    const KeyState last{.index = 2, .count = 3};
    const KeyState none{.index = -1, .count = 3};
    const KeyState emptyField{.isAtStart = true, .isAtEnd = true};
    const KeyState selected{.isAtStart = true};
    const KeyState typed{.isAtEnd = true, .dataChanged = true};
    const struct {
        Ctl control;
        Key key;
        KeyState state;
        Act act;
    } cases[] = {
        {Ctl::txtCodAgent, Key::Right, emptyField, Act::forward},
        {Ctl::txtCodAgent, Key::Left, emptyField, Act::backward},
        {Ctl::txtCodAgent, Key::Right, selected, Act::leave},
        {Ctl::txtCodAgent, Key::Left, selected, Act::backward},
        {Ctl::txtCodAgent, Key::Left, typed, Act::leave},
        {Ctl::txtCodAgent, Key::Tab, typed, Act::discard},
        {Ctl::txtCodAgent, Key::Up, typed, Act::discard},
        {Ctl::txtCodAgent, Key::Enter, typed, Act::lookup},
        {Ctl::txtCodAgent, Key::Esc, typed, Act::close},
        {Ctl::txtCodAgent, Key::Delete, typed, Act::leave},
        {Ctl::cmbTipRaport, Key::Left, first, Act::backward},
        {Ctl::cmbTipRaport, Key::Up, first, Act::swallow},
        {Ctl::cmbTipRaport, Key::Up, none, Act::leave},
        {Ctl::cmbTipRaport, Key::Down, middle, Act::leave},
        {Ctl::cmbSortare, Key::Down, last, Act::swallow},
        {Ctl::cmbSortare, Key::Delete, last, Act::leave},
        {Ctl::cmbCategorie, Key::Down, last, Act::forward},
        {Ctl::cmbCategorie, Key::Up, first, Act::backward},
        {Ctl::cmbCategorie, Key::Up, middle, Act::leave},
        {Ctl::cmbCategorie, Key::Delete, middle, Act::chooseFirst},
        {Ctl::cmbSelectie, Key::Delete, middle, Act::leave},
        {Ctl::cmbDepozit, Key::Up, middle, Act::previous},
        {Ctl::cmbDepozit, Key::Down, middle, Act::next},
        {Ctl::cmbDepozit, Key::Down, none, Act::next},
        {Ctl::cmbDepozit, Key::Up, none, Act::leave},
        {Ctl::cmbDepozit, Key::Down, last, Act::forward},
        {Ctl::cmbDepozit, Key::Up, first, Act::backward},
        {Ctl::cmbDepozit, Key::Blank, middle, Act::leave},
        {Ctl::chkTotale, Key::Up, {}, Act::leave},
        {Ctl::chkTotale, Key::Blank, {}, Act::leave},
        {Ctl::Deladata, Key::Left, {}, Act::leave},
        {Ctl::chkLohn, Key::Blank, {}, Act::swallow},
        {Ctl::chkLohn, Key::Enter, {}, Act::leave},
        {Ctl::chkLohn, Key::Esc, {}, Act::closeSwallow},
        {Ctl::Raport, Key::Enter, {}, Act::leave},
        {Ctl::Raport, Key::other, {}, Act::swallow},
        {Ctl::cmdExit, Key::Down, {}, Act::forward},
        {Ctl::Command1, Key::Tab, {}, Act::leave},
        {Ctl::CRW, Key::Esc, {}, Act::leave},
    };
    for (const auto& one : cases) {
        EXPECT_EQ(actOf(one.control, one.key, one.state), one.act)
            << layoutOf(one.control).name.toString().toStdString() << " key " << static_cast<int>(one.key);
    }
}

}  // namespace velcoran::form
