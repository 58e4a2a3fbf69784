#include "placement.h"

#include "control.h"

#include <QRect>
#include <QVariant>
#include <QWidget>

namespace velcoran::controls {

namespace {

constexpr char kTwipsProperty[] = "twips";
constexpr char kDensityProperty[] = "density";

int edge(base::Twips position, double density) { return position.toPixels(density); }

}  // namespace

void placeTwips(QWidget* widget, base::TwipsRect place, double density) {
    const bool isDensityNew = widget->property(kDensityProperty).toDouble() != density;
    widget->setProperty(kTwipsProperty,
                        QRect(place.left.value, place.top.value, place.width.value, place.height.value));
    widget->setProperty(kDensityProperty, density);
    const int left = edge(place.left, density);
    const int top = edge(place.top, density);
    const int right = edge(place.left + place.width, density);
    const int bottom = edge(place.top + place.height, density);
    widget->setGeometry(left, top, right - left, bottom - top);
    Control* control = Control::of(widget);
    if (control != nullptr && isDensityNew) control->densityChanged();
}

base::TwipsRect twipsOf(const QWidget* widget) {
    const QVariant stored = widget->property(kTwipsProperty);
    if (stored.isValid()) {
        const QRect place = stored.toRect();
        return {{place.x()}, {place.y()}, {place.width()}, {place.height()}};
    }
    const double density = densityOf(widget);
    const QRect place = widget->geometry();
    return {base::Twips::fromPixels(place.x(), density), base::Twips::fromPixels(place.y(), density),
            base::Twips::fromPixels(place.width(), density), base::Twips::fromPixels(place.height(), density)};
}

double densityOf(const QWidget* widget) {
    const double density = widget->property(kDensityProperty).toDouble();
    return density > 0 ? density : widget->logicalDpiX();
}

}  // namespace velcoran::controls
