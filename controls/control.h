#pragma once

#include "base/units.h"
#include "font_spec.h"
#include "placement.h"

#include <QChar>
#include <QEvent>
#include <QVariantMap>
#include <QWidget>

#include <functional>
#include <memory>
#include <optional>

class QFocusEvent;
class QKeyEvent;

namespace velcoran::controls {

/// Called first for every key press that reaches a control, Tab and Backtab included, before anything of the control's
/// own. @return true when the key is consumed: it then has no further effect. May destroy the control.
using KeyHandler = std::function<bool(QKeyEvent& key)>;

/// Called when the control has gained (true) or lost (false) the focus. Opening its own list, calendar or menu is no
/// loss. Inside gained, the control has already done its own part (a text box has selected its text).
using FocusHandler = std::function<void(bool isGained)>;

/// What every control of the window serves beside its widget. A colour that was never set is not the control's own: it
/// is drawn with a fixed default and is not in controlState.
class Control {
public:
    virtual ~Control();
    Control(const Control&) = delete;
    Control& operator=(const Control&) = delete;

    /// The control that a widget is, or null.
    [[nodiscard]] static Control* of(QWidget* widget);
    [[nodiscard]] QWidget* widget() const { return m_widget; }

    [[nodiscard]] std::optional<base::Colour> backColour() const { return m_back; }
    [[nodiscard]] std::optional<base::Colour> foreColour() const { return m_fore; }
    [[nodiscard]] std::optional<base::Colour> borderColour() const { return m_border; }
    void setBackColour(base::Colour colour);
    void setForeColour(base::Colour colour);
    void setBorderColour(base::Colour colour);
    void setFontSpec(const FontSpec& spec);

    void setKeyHandler(KeyHandler handler) { m_keyHandler = std::move(handler); }
    void setFocusHandler(FocusHandler handler) { m_focusHandler = std::move(handler); }

    /// The members of the window's state that this kind of control has, colours as "0xBBGGRR"; not place, visibility
    /// and enabled state, which every widget has.
    [[nodiscard]] virtual QVariantMap controlState() const = 0;

    /// Called by placeTwips after the density of the control changed.
    virtual void densityChanged();

protected:
    explicit Control(QWidget* widget);

    /// Called after a colour, the font or the own enabled state changed: palettes of inner parts follow.
    virtual void lookChanged();
    /// Offers a key press to the handler. @return true when it is consumed or the control is gone
    bool offerKey(QKeyEvent& key);
    /// Offers a focus event to the handler when it is a true change of the focus.
    void offerFocus(const QFocusEvent& event);
    /// Takes what belongs to this class out of the event stream: key presses, their shortcut overrides, focus changes.
    /// @return true when the event is done
    bool filterEvent(QEvent& event);
    [[nodiscard]] bool hasKeyHandler() const { return static_cast<bool>(m_keyHandler); }

    /// The enabled property of the control itself: a control in a disabled frame keeps its look.
    [[nodiscard]] bool isOwnEnabled() const;
    [[nodiscard]] QColor back(QRgb fallback) const;
    [[nodiscard]] QColor fore(QRgb fallback) const;
    [[nodiscard]] QColor border(QRgb fallback) const;
    /// Foreground, greyed while the control is disabled.
    [[nodiscard]] QColor textColour(QRgb fallback) const;
    /// backColor and foreColor, where set.
    [[nodiscard]] QVariantMap colourState() const;
    [[nodiscard]] QStyle& controlStyle() const { return *m_style; }

private:
    void applyFont();

    QWidget* m_widget;
    std::shared_ptr<QStyle> m_style;
    std::optional<base::Colour> m_back, m_fore, m_border;
    FontSpec m_fontSpec;
    KeyHandler m_keyHandler;
    FocusHandler m_focusHandler;
    bool m_hasFocus = false;
};

/// A widget class that is a control: routes keys and focus, and keeps Tab from moving the focus by itself while a key
/// handler is set.
template <class Base>
class ControlOf : public Base, public Control {
public:
    explicit ControlOf(QWidget* parent) : Base(parent), Control(this) {}

protected:
    bool event(QEvent* event) override {
        if (filterEvent(*event)) return true;
        return Base::event(event);
    }
    void focusInEvent(QFocusEvent* event) override {
        Base::focusInEvent(event);
        offerFocus(*event);
    }
    void focusOutEvent(QFocusEvent* event) override {
        Base::focusOutEvent(event);
        offerFocus(*event);
    }
    void changeEvent(QEvent* event) override {
        Base::changeEvent(event);
        if (event->type() == QEvent::EnabledChange) lookChanged();
    }
    bool focusNextPrevChild(bool isNext) override { return !hasKeyHandler() && Base::focusNextPrevChild(isNext); }
};

}  // namespace velcoran::controls
