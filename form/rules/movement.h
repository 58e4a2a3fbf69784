#pragma once

#include "layout.h"

#include <functional>
#include <optional>
#include <span>

namespace velcoran::form {

/// The keys that the window's handlers tell apart. Shift and the other modifiers play no part: Tab always moves
/// forward.
enum class Key : std::uint8_t { Tab, Enter, Esc, Blank, Left, Up, Right, Down, Delete, other };

/// What a control stands at when a key comes.
struct KeyState {
    bool isAtStart = false;    ///< text box: the selection starts at 0
    bool isAtEnd = false;      ///< text box: the selection starts behind the last character
    bool dataChanged = false;  ///< lookup field: typed over since the last pick
    int index = -1;            ///< list: chosen or current entry
    int count = 0;             ///< list: number of entries
};

/// What a key does.
enum class Act : std::uint8_t {
    leave,         ///< nothing: the key is the control's own
    swallow,       ///< nothing: the key is consumed
    forward,       ///< to the control's forward target
    backward,      ///< to the control's backward target
    discard,       ///< empties a typed text that was not picked; the focus stays
    lookup,        ///< opens the lookup of the field
    chooseFirst,   ///< entry 0 of a list
    previous,      ///< the entry before
    next,          ///< the entry behind
    close,         ///< closes the window; the key is left as it is
    closeSwallow,  ///< closes the window; the key is consumed
};

/// True for the acts that consume their key.
[[nodiscard]] constexpr bool isConsumed(Act act) { return act != Act::leave && act != Act::close; }

enum class Direction : std::uint8_t { forward, backward };

/// Answers about a control: is it enabled, can it take the focus.
using ControlTest = std::function<bool(Ctl)>;

/// The controls with keys of their own, in the order in which the window is walked, cmdViz last.
[[nodiscard]] std::span<const Ctl> controlsWithKeys();
/// The order in which Tab walks the window when every control is enabled.
[[nodiscard]] std::span<const Ctl> forwardOrder();

/// What a key does in a control. A control without keys of its own leaves every key.
[[nodiscard]] Act actOf(Ctl control, Key key, const KeyState& state);

/// The control that gets the focus when it moves on from a control.
/// @param isEnabled     for the targets that depend on what is enabled
/// @param canTakeFocus  a target that cannot take the focus hands on to the next one in the same direction that can
/// @return nothing: the focus stays
[[nodiscard]] std::optional<Ctl> nextFocus(Ctl from, Direction direction, const ControlTest& isEnabled,
                                           const ControlTest& canTakeFocus);

/// A wanted target, or the next control behind or before it that can take the focus.
[[nodiscard]] std::optional<Ctl> focusOrNext(Ctl target, Direction direction, const ControlTest& canTakeFocus);

}  // namespace velcoran::form
