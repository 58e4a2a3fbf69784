#include "movement.h"

#include "layout_table.h"

#include <algorithm>

namespace velcoran::form {

using filters::LookupField;

namespace {

// --- where to --------------------------------------------------------------------------------------------------------

using TargetChoice = std::optional<Ctl> (*)(const ControlTest& isEnabled);

std::optional<Ctl> sortOrFirstDate(const ControlTest& isEnabled) {
    return isEnabled(Ctl::cmbSortare) ? Ctl::cmbSortare : Ctl::Deladata;
}

std::optional<Ctl> firstFilter(const ControlTest& isEnabled) {
    if (isEnabled(Ctl::txtProducator)) return Ctl::txtProducator;
    return isEnabled(Ctl::txtTipProdus) ? Ctl::txtTipProdus : Ctl::txtTipClient;
}

/// Passes over the producer on purpose: behind a disabled category lies the end date.
std::optional<Ctl> backFromProductType(const ControlTest& isEnabled) {
    for (const Ctl control :
         {Ctl::cmbCategorie, Ctl::Ladata, Ctl::Deladata, Ctl::cmbSortare, Ctl::chkTotale, Ctl::cmbTipRaport}) {
        if (isEnabled(control)) return control;
    }
    return std::nullopt;
}

/// The same: with the product filters disabled, the way back from the partners ends on the end date.
std::optional<Ctl> backFromPartnerType(const ControlTest& isEnabled) {
    return isEnabled(Ctl::txtCodProdus) ? Ctl::txtCodProdus : Ctl::Ladata;
}

/// A fixed control, one chosen by what is enabled, or none.
struct Target {
    constexpr Target() = default;
    constexpr Target(Ctl control) : fixed(control) {}
    constexpr Target(TargetChoice choice) : choose(choice) {}

    std::optional<Ctl> fixed;
    TargetChoice choose = nullptr;
};

// --- which key -------------------------------------------------------------------------------------------------------

enum class When : std::uint8_t { always, atStart, atEnd, atFirst, atLast, belowFirst, aboveLast };

struct KeyRow {
    Key key;
    When when;
    Act act;
};

constexpr KeyRow kFieldKeys[] = {
    {Key::Enter, When::always, Act::lookup}, {Key::Down, When::always, Act::forward},
    {Key::Tab, When::always, Act::forward},  {Key::Right, When::atEnd, Act::forward},
    {Key::Up, When::always, Act::backward},  {Key::Left, When::atStart, Act::backward},
    {Key::Esc, When::always, Act::close},
};
constexpr KeyRow kStayingListKeys[] = {
    {Key::Enter, When::always, Act::forward}, {Key::Tab, When::always, Act::forward},
    {Key::Right, When::always, Act::forward}, {Key::Esc, When::always, Act::close},
    {Key::Up, When::atFirst, Act::swallow},   {Key::Down, When::atLast, Act::swallow},
    {Key::Left, When::always, Act::backward},
};
constexpr KeyRow kLeavingListKeys[] = {
    {Key::Down, When::atLast, Act::forward}, {Key::Enter, When::always, Act::forward},
    {Key::Tab, When::always, Act::forward},  {Key::Right, When::always, Act::forward},
    {Key::Up, When::atFirst, Act::backward}, {Key::Left, When::always, Act::backward},
    {Key::Esc, When::always, Act::close},
};
constexpr KeyRow kCategoryKeys[] = {
    {Key::Down, When::atLast, Act::forward},       {Key::Enter, When::always, Act::forward},
    {Key::Tab, When::always, Act::forward},        {Key::Right, When::always, Act::forward},
    {Key::Up, When::atFirst, Act::backward},       {Key::Left, When::always, Act::backward},
    {Key::Delete, When::always, Act::chooseFirst}, {Key::Esc, When::always, Act::close},
};
constexpr KeyRow kWarehouseKeys[] = {
    {Key::Down, When::atLast, Act::forward},       {Key::Enter, When::always, Act::forward},
    {Key::Tab, When::always, Act::forward},        {Key::Right, When::always, Act::forward},
    {Key::Up, When::atFirst, Act::backward},       {Key::Left, When::always, Act::backward},
    {Key::Up, When::belowFirst, Act::previous},    {Key::Down, When::aboveLast, Act::next},
    {Key::Delete, When::always, Act::chooseFirst}, {Key::Esc, When::always, Act::close},
};
constexpr KeyRow kTotalsKeys[] = {
    {Key::Enter, When::always, Act::forward}, {Key::Tab, When::always, Act::forward},
    {Key::Right, When::always, Act::forward}, {Key::Left, When::always, Act::backward},
    {Key::Esc, When::always, Act::close},
};
constexpr KeyRow kDateKeys[] = {
    {Key::Enter, When::always, Act::forward},
    {Key::Tab, When::always, Act::forward},
    {Key::Esc, When::always, Act::close},
};
constexpr KeyRow kButtonKeys[] = {
    {Key::Tab, When::always, Act::forward},  {Key::Right, When::always, Act::forward},
    {Key::Down, When::always, Act::forward}, {Key::Left, When::always, Act::backward},
    {Key::Up, When::always, Act::backward},  {Key::Esc, When::always, Act::closeSwallow},
    {Key::Enter, When::always, Act::leave},  {Key::Blank, When::always, Act::leave},
};
/// Like a button, but the blank is swallowed: the box is ticked with the mouse alone.
constexpr KeyRow kTemporaryKeys[] = {
    {Key::Tab, When::always, Act::forward},  {Key::Right, When::always, Act::forward},
    {Key::Down, When::always, Act::forward}, {Key::Left, When::always, Act::backward},
    {Key::Up, When::always, Act::backward},  {Key::Esc, When::always, Act::closeSwallow},
    {Key::Enter, When::always, Act::leave},
};

// --- the rows --------------------------------------------------------------------------------------------------------

/// What happens to keys that no row names.
enum class Others : std::uint8_t { leave, swallow };

struct MoveRow {
    Ctl from;
    std::span<const KeyRow> keys;
    Others others;
    Target forward;
    Target backward;
};

/// The row of a lookup field, from its neighbours.
/// @param backward  in place of a fixed control
consteval MoveRow fieldRow(LookupField field, TargetChoice backward = nullptr) {
    const filters::LookupFieldRow& row = filters::kLookupFields[field];
    return {controlOfName(row.control), kFieldKeys, Others::leave, controlOfName(row.forward),
            backward != nullptr ? Target(backward) : Target(controlOfName(row.backward))};
}

constexpr MoveRow kMoves[] = {
    {Ctl::cmbTipRaport, kStayingListKeys, Others::leave, Ctl::chkTotale, {}},
    {Ctl::chkTotale, kTotalsKeys, Others::leave, sortOrFirstDate, Ctl::cmbTipRaport},
    {Ctl::cmbSortare, kStayingListKeys, Others::leave, Ctl::Deladata, Ctl::chkTotale},
    {Ctl::Deladata, kDateKeys, Others::leave, Ctl::Ladata, {}},
    {Ctl::Ladata, kDateKeys, Others::leave, firstFilter, {}},
    fieldRow(LookupField::txtProducator),
    {Ctl::cmbCategorie, kCategoryKeys, Others::leave, Ctl::txtTipProdus, Ctl::txtProducator},
    fieldRow(LookupField::txtTipProdus, backFromProductType),
    fieldRow(LookupField::txtGrupaProdus),
    fieldRow(LookupField::txtSubGrupaProdus),
    fieldRow(LookupField::txtCodProdus),
    fieldRow(LookupField::txtTipClient, backFromPartnerType),
    fieldRow(LookupField::txtCatClient),
    fieldRow(LookupField::txtCodClient),
    {Ctl::cmbDepozit, kWarehouseKeys, Others::leave, Ctl::txtCodAgent, Ctl::txtCodClient},
    fieldRow(LookupField::txtCodAgent),
    {Ctl::cmbSelectie, kLeavingListKeys, Others::leave, Ctl::chkLohn, Ctl::txtCodAgent},
    {Ctl::chkLohn, kTemporaryKeys, Others::swallow, Ctl::Raport, Ctl::cmbSelectie},
    {Ctl::Raport, kButtonKeys, Others::swallow, Ctl::cmbVizual, Ctl::chkLohn},
    {Ctl::cmbVizual, kButtonKeys, Others::swallow, Ctl::cmdExit, Ctl::Raport},
    {Ctl::cmdExit, kButtonKeys, Others::swallow, {}, Ctl::cmbVizual},
    {Ctl::cmdViz, kButtonKeys, Others::swallow, Ctl::Command1, Ctl::Command1},
};

constexpr std::size_t kWalkLength = std::size(kMoves) - 1;  // all but cmdViz

constexpr auto kFroms = [] {
    std::array<Ctl, std::size(kMoves)> froms{};
    std::ranges::transform(kMoves, froms.begin(), &MoveRow::from);
    return froms;
}();

const MoveRow* rowOf(Ctl control) {
    const auto* row = std::ranges::find(kMoves, control, &MoveRow::from);
    return row == std::end(kMoves) ? nullptr : row;
}

bool holds(When when, const KeyState& state) {
    switch (when) {
        case When::always:
            return true;
        case When::atStart:
            return state.isAtStart;
        case When::atEnd:
            return state.isAtEnd;
        case When::atFirst:
            return state.index == 0;
        case When::atLast:
            return state.index == state.count - 1;
        case When::belowFirst:
            return state.index > 0;
        case When::aboveLast:
            return state.index < state.count;
    }
    return false;
}

bool isMove(Act act) { return act == Act::forward || act == Act::backward; }

}  // namespace

std::span<const Ctl> controlsWithKeys() { return kFroms; }

std::span<const Ctl> forwardOrder() { return controlsWithKeys().first(kWalkLength); }

Act actOf(Ctl control, Key key, const KeyState& state) {
    const MoveRow* row = rowOf(control);
    if (row == nullptr) return Act::leave;
    for (const KeyRow& one : row->keys) {
        if (one.key != key || !holds(one.when, state)) continue;
        return isMove(one.act) && state.dataChanged ? Act::discard : one.act;
    }
    return row->others == Others::swallow ? Act::swallow : Act::leave;
}

std::optional<Ctl> nextFocus(Ctl from, Direction direction, const ControlTest& isEnabled,
                             const ControlTest& canTakeFocus) {
    const MoveRow* row = rowOf(from);
    if (row == nullptr) return std::nullopt;
    const Target& target = direction == Direction::forward ? row->forward : row->backward;
    const std::optional<Ctl> wanted = target.choose != nullptr ? target.choose(isEnabled) : target.fixed;
    if (!wanted.has_value()) return std::nullopt;
    return focusOrNext(*wanted, direction, canTakeFocus);
}

std::optional<Ctl> focusOrNext(Ctl target, Direction direction, const ControlTest& canTakeFocus) {
    if (canTakeFocus(target)) return target;
    const std::span<const Ctl> order = forwardOrder();
    const auto place = std::ranges::find(order, target);
    if (place == order.end()) return std::nullopt;
    if (direction == Direction::forward) {
        const auto next = std::find_if(place + 1, order.end(), canTakeFocus);
        return next == order.end() ? std::nullopt : std::optional(*next);
    }
    const auto before = std::find_if(std::reverse_iterator(place), order.rend(), canTakeFocus);
    return before == order.rend() ? std::nullopt : std::optional(*before);
}

}  // namespace velcoran::form
