#include "window_view.h"

#include <QApplication>
#include <QJsonArray>
#include <QMetaProperty>
#include <QRect>
#include <QWidget>

using namespace Qt::StringLiterals;

namespace velcoran::host {

namespace {

const QString kWindowName = u"RptStoc"_s;
const QString kViewerName = u"CRW"_s;
constexpr char kPlaceProperty[] = "twips";

/// A property with what stands for it where there is no window or the window does not have it. A null default shows
/// nothing at all.
struct Member {
    const char* name;
    QJsonValue whenMissing;
};

const Member kWindowMembers[] = {
    {"loaded", false}, {"visible", false}, {"caption", QString()},    {"maximized", false},
    {"innerWidth", 0}, {"innerHeight", 0}, {"pointer", u"default"_s},
};

const Member kMembers[] = {
    {"sTipRaport", QString()},    {"iAn", 0},
    {"sSoc", QString()},          {"bRaportIncarcat", false},
    {"sCodProdus", QString()},    {"sCodProducator", QString()},
    {"sCodClient", QString()},    {"sCodAgent", QString()},
    {"sCautare", QString()},      {"priza", false},
    {"rptFacturi", QJsonValue()}, {"rsLookup", false},
    {"objMesaje", false},
};

const char* const kViewerMembers[] = {"busy", "options", "hasReport"};

QJsonValue valueOf(const QObject* object, const Member& member) {
    const QVariant value = object == nullptr ? QVariant() : object->property(member.name);
    if (!value.isValid()) return member.whenMissing;
    // A name that is not set reads as an empty text.
    if (member.whenMissing.isNull() && value.toString().isEmpty()) return QJsonValue();
    return QJsonValue::fromVariant(value);
}

template <std::size_t count>
QJsonObject membersOf(const QObject* object, const Member (&members)[count]) {
    QJsonObject values;
    for (const Member& member : members) values.insert(QString::fromLatin1(member.name), valueOf(object, member));
    return values;
}

bool isControl(const QWidget* widget) {
    return !widget->objectName().isEmpty() && widget->property(kPlaceProperty).isValid();
}

/// Number and description of the failure that the viewer shows; null while it shows none.
QJsonValue failureOf(const QWidget* shownViewer) {
    QVariant failure;
    QMetaObject::invokeMethod(const_cast<QWidget*>(shownViewer), "failure", Q_RETURN_ARG(QVariant, failure));
    return failure.isValid() ? QJsonValue::fromVariant(failure) : QJsonValue();
}

QJsonObject controlState(const QWidget* control) {
    QJsonObject state = QJsonObject::fromVariantMap(control->property("controlState").toMap());
    if (control->objectName() == kViewerName) {
        for (const char* member : kViewerMembers)
            state.insert(QString::fromLatin1(member), QJsonValue::fromVariant(control->property(member)));
        state.insert(u"failure"_s, failureOf(control));
    }
    const QRect place = control->property(kPlaceProperty).toRect();
    state.insert(u"left"_s, place.left());
    state.insert(u"top"_s, place.top());
    state.insert(u"width"_s, place.width());
    state.insert(u"height"_s, place.height());
    state.insert(u"visible"_s, !control->isHidden());
    state.insert(u"enabled"_s, !control->testAttribute(Qt::WA_ForceDisabled));
    return state;
}

}  // namespace

QObject* windowObject() {
    for (QWidget* widget : QApplication::topLevelWidgets())
        if (widget->objectName() == kWindowName) return widget;
    return QCoreApplication::instance()->findChild<QObject*>(kWindowName);
}

QWidget* loadedWindow() {
    QObject* object = windowObject();
    if (object == nullptr || !object->property("loaded").toBool()) return nullptr;
    return qobject_cast<QWidget*>(object);
}

QList<QWidget*> controls() {
    const QWidget* window = loadedWindow();
    if (window == nullptr) return {};
    QList<QWidget*> found = window->findChildren<QWidget*>();
    found.removeIf([](const QWidget* widget) { return !isControl(widget); });
    return found;
}

QWidget* findControl(const QString& name) {
    for (QWidget* control : controls())
        if (control->objectName() == name) return control;
    return nullptr;
}

QWidget* viewer() { return findControl(kViewerName); }

bool isViewerBusy() {
    const QWidget* shown = viewer();
    return shown != nullptr && shown->property("busy").toBool();
}

QString focusedControl() {
    const QWidget* window = loadedWindow();
    if (window == nullptr) return {};
    for (const QWidget* widget = QApplication::focusWidget(); widget != nullptr; widget = widget->parentWidget())
        if (isControl(widget) && window->isAncestorOf(widget)) return widget->objectName();
    return {};
}

QJsonObject windowState() {
    const QObject* object = windowObject();
    QJsonObject states;
    for (const QWidget* control : controls()) states.insert(control->objectName(), controlState(control));
    return {{u"window"_s, membersOf(object, kWindowMembers)},
            {u"controls"_s, states},
            {u"members"_s, membersOf(object, kMembers)}};
}

}  // namespace velcoran::host
