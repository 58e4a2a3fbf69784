#include "own_style.h"

#include "qt_inside.h"

#include <QProxyStyle>
#include <QStyleFactory>
#include <QWidget>

namespace velcoran::desktop {

namespace {

/// Menus and lists that open over the window take the keys at once, without effects that need a timer.
class OwnStyle final : public QProxyStyle {
public:
    OwnStyle() : QProxyStyle(QStyleFactory::create(QStringLiteral("Fusion"))) {}

    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* returned) const override {
        switch (hint) {
            case SH_Widget_Animation_Duration:
            case SH_ScrollBar_Transient:
                return 0;
            case SH_ItemView_MovementWithoutUpdatingSelection:
                return 1;
            default:
                return QProxyStyle::styleHint(hint, option, widget, returned);
        }
    }
};

}  // namespace

std::shared_ptr<QStyle> ownStyle() {
    static std::weak_ptr<QStyle> shared;
    std::shared_ptr<QStyle> style = shared.lock();
    if (!style) {
        style = std::make_shared<OwnStyle>();
        shared = style;
    }
    return style;
}

void keepStyle(QWidget& widget, QStyle& style) {
    if (widget.style() != &style && !inside::setStyle(widget, style)) {
        // Qt's own way, once: a wrapped style is another one whenever it is looked at.
        if (!widget.testAttribute(Qt::WA_SetStyle)) widget.setStyle(&style);
        return;
    }
    widget.setAttribute(Qt::WA_SetStyle, false);    // with it a change of parent would wrap the style again
    widget.setAttribute(Qt::WA_StyleSheet, false);  // it would keep the parent's palette and font from the widget
}

}  // namespace velcoran::desktop
