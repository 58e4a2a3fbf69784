#include "font_spec.h"

#include "desktop/desktop.h"

#include <QFontDatabase>

using namespace Qt::StringLiterals;

namespace velcoran::controls {

namespace {

/// A text that owns its characters. Qt keeps the names of fonts for as long as it lives itself; a literal's
/// characters leave the process with this library.
QString copyOf(const QString& text) { return QString(text.constData(), text.size()); }

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

}  // namespace velcoran::controls
