#include "look.h"

#include "control.h"
#include "desktop/desktop.h"

#include <QFontDatabase>
#include <QRect>
#include <QVariant>
#include <QWidget>

using namespace Qt::StringLiterals;

namespace velcoran::controls {

namespace {

constexpr char kTwipsProperty[] = "twips";
constexpr char kDensityProperty[] = "density";

/// A text that owns its characters. The toolkit keeps the names of fonts for as long as it lives itself; a literal's
/// characters leave the process with this library.
QString copyOf(const QString& text) { return QString(text.constData(), text.size()); }

int edge(base::Twips position, double density) { return position.toPixels(density); }

}  // namespace

QFont makeFont(const FontSpec& spec) {
    const QString family = copyOf(spec.family);
    QStringList families{family};
    if (family == u"Arial"_s) {
        const QString metricTwin = copyOf(u"Liberation Sans"_s);
        families.insert(QFontDatabase::hasFamily(family) ? 1 : 0, metricTwin);
    }
    QFont font(families);  // the default one would start from the application's
    font.setPointSizeF(spec.points);
    font.setBold(spec.isBold);
    return desktop::completed(font);
}

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
