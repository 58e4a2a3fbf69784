#include "keyboard.h"

#include "filter_panel.h"
#include "filters/lookup_fields.h"

#include <QKeyEvent>

namespace velcoran::form {

namespace {

struct KeyName {
    int qtKey;
    Key key;
};

constexpr KeyName kKeyNames[] = {
    {Qt::Key_Tab, Key::Tab},     {Qt::Key_Backtab, Key::Tab},   {Qt::Key_Return, Key::Enter},
    {Qt::Key_Enter, Key::Enter}, {Qt::Key_Escape, Key::Esc},    {Qt::Key_Space, Key::Blank},
    {Qt::Key_Left, Key::Left},   {Qt::Key_Up, Key::Up},         {Qt::Key_Right, Key::Right},
    {Qt::Key_Down, Key::Down},   {Qt::Key_Delete, Key::Delete},
};

Key keyOf(int qtKey) {
    for (const KeyName& one : kKeyNames) {
        if (one.qtKey == qtKey) return one.key;
    }
    return Key::other;
}

}  // namespace

Keyboard::Keyboard(const ControlTree& controls, HandlerGuard& handlers, FilterPanel& panel,
                   std::function<void(filters::LookupField)> openLookup, std::function<void()> closeForm)
    : m_controls(controls),
      m_handlers(handlers),
      m_panel(panel),
      m_openLookup(std::move(openLookup)),
      m_closeForm(std::move(closeForm)),
      m_reportKeys(controls) {
    for (const Ctl control : controlsWithKeys()) {
        controls::Control::of(&m_controls.widget(control))->setKeyHandler([this, control](QKeyEvent& key) {
            return onKey(control, key.key());
        });
    }
}

bool Keyboard::onKey(Ctl control, int key) {
    bool isDone = false;
    m_handlers.run([&] {
        const Act act = actOf(control, keyOf(key), stateOf(control));
        isDone = isConsumed(act);
        perform(act, control);
    });
    return isDone;
}

void Keyboard::perform(Act act, Ctl control) {
    switch (act) {
        case Act::leave:
        case Act::swallow:
            return;
        case Act::forward:
            return moveOn(control, Direction::forward);
        case Act::backward:
            return moveOn(control, Direction::backward);
        case Act::discard:
            return discard(control);
        case Act::lookup:
            return m_openLookup(*filters::lookupFieldNamed(layoutOf(control).name));
        case Act::chooseFirst:
        case Act::previous:
        case Act::next:
            return chooseEntry(control, act);
        case Act::close:
        case Act::closeSwallow:
            return m_closeForm();
    }
}

/// The emptying runs the field's change, which sets the flag again: the flag comes last.
void Keyboard::discard(Ctl control) {
    const filters::LookupField field = *filters::lookupFieldNamed(layoutOf(control).name);
    m_panel.emptyField(field);
    m_panel.clearDataChanged(field);
}

void Keyboard::chooseEntry(Ctl control, Act act) {
    if (control != Ctl::cmbDepozit) return m_controls.list(control).setIndex(0);
    controls::TickList& warehouses = m_controls.warehouses();
    const int index = warehouses.currentIndex();
    warehouses.setCurrentIndex(act == Act::chooseFirst ? 0 : act == Act::next ? index + 1 : index - 1);
}

void Keyboard::moveOn(Ctl from, Direction direction) {
    const auto isEnabled = [this](Ctl control) { return m_controls.isOwnEnabled(control); };
    if (const auto target = nextFocus(from, direction, isEnabled, canTakeFocus())) focus(*target, direction);
}

void Keyboard::focus(Ctl target, Direction direction) {
    if (const auto control = focusOrNext(target, direction, canTakeFocus()))
        m_controls.widget(*control).setFocus(Qt::OtherFocusReason);
}

ControlTest Keyboard::canTakeFocus() const {
    return [this](Ctl control) { return m_controls.canTakeFocus(control); };
}

KeyState Keyboard::stateOf(Ctl control) const {
    switch (layoutOf(control).kind) {
        case Kind::textBox: {
            const auto& box = m_controls.as<controls::TextBox>(control);
            return {.isAtStart = box.selStart() == 0,
                    .isAtEnd = box.selStart() == box.text().size(),
                    .dataChanged = box.isDataChanged()};
        }
        case Kind::dropDownList:
            return {.index = m_controls.list(control).index(), .count = m_controls.list(control).count()};
        case Kind::tickList:
            return {.index = m_controls.warehouses().currentIndex(), .count = m_controls.warehouses().count()};
        default:
            return {};
    }
}

}  // namespace velcoran::form
