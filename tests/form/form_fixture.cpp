#include "form_fixture.h"

#include "com/object.h"

#include <QWindow>

namespace velcoran::tests {

using namespace Qt::StringLiterals;

namespace {

/// Notes whether a double click gets past the application's filters.
class Door final : public QObject {
public:
    bool eventFilter(QObject*, QEvent* event) override {
        isPassed = isPassed || event->type() == QEvent::MouseButtonDblClick;
        return false;
    }
    bool isPassed = false;
};

class RecordingMesaje final : public com::Object<IMesaje> {
public:
    explicit RecordingMesaje(RecordingSurroundings& surroundings) : m_surroundings(surroundings) {}

    com::HResult Afiseaza(com::Bstr text, std::int16_t stil, std::int16_t, com::Bstr titlu, std::int32_t, std::int32_t,
                          std::int32_t*) override {
        m_surroundings.messages.append({com::toQString(text), stil, com::toQString(titlu)});
        if (m_surroundings.whileShowing) m_surroundings.whileShowing();
        return com::kOk;
    }

private:
    RecordingSurroundings& m_surroundings;
};

}  // namespace

void PrintTo(const ShownMessage& message, std::ostream* stream) {
    *stream << message.title.toStdString() << " (" << message.style << "): " << message.text.toStdString();
}

com::Ref<IMesaje> RecordingSurroundings::newMesaje() {
    return com::Ref<IMesaje>(com::makeObject<RecordingMesaje>(*this).get());
}

FormTest::FormTest() {
    const FakeAnswer twoRows{.columns = {{u"Cod"_s}, {u"Denumire"_s}},
                             .rows = {{u"C1"_s, u"ALFA"_s}, {u"C2"_s, u"BETA"_s}}};
    connection->answer(QString(), twoRows);
    connection->answer(
        u"FROM Depozite"_s,
        {.columns = {{u"Depozit"_s}},
         .rows = {{u"1 - Central"_s}, {u"4 - Vama"_s}, {u"7 - Hala"_s}, {u"9 - Sud"_s}, {u"12 - Nord"_s}}});
    answerYear(u"2003"_s);
}

void FormTest::answerYear(const FakeCell& year, ColumnType type) {
    connection->answer(u"SELECT An FROM An"_s, {.columns = {{u"An"_s, type}}, .rows = {{year}}});
}

void FormTest::setUpFor(const QString& kind, QDate date, const QString& soc) {
    window.setPriza(db::Connection(connection->asConnection()));
    window.Incarca(kind, date, soc);
    QCoreApplication::processEvents();
}

std::optional<base::Error> FormTest::failureOf(const QString& kind, QDate date) {
    try {
        setUpFor(kind, date);
    } catch (const base::Error& error) {
        QCoreApplication::processEvents();
        return error;
    }
    return std::nullopt;
}

QString FormTest::focus() {
    for (const QWidget* widget = QApplication::focusWidget(); widget != nullptr; widget = widget->parentWidget()) {
        if (form::controlNamed(widget->objectName()).has_value()) return widget->objectName();
    }
    return {};
}

void FormTest::press(int key, Qt::KeyboardModifiers modifiers) {
    QTest::keyClick(QApplication::focusWidget(), static_cast<Qt::Key>(key), modifiers);
}

QWidget* FormTest::keyReceiver() {
    QWidget* popup = QApplication::activePopupWidget();
    if (popup == nullptr) return QApplication::focusWidget();
    return popup->focusWidget() != nullptr ? popup->focusWidget() : popup;
}

void FormTest::hold(int key, const QString& text, int repeats) {
    for (int press = 0; press <= repeats; ++press) {
        QWidget* receiver = keyReceiver();
        if (receiver == nullptr) return;
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier, text, press > 0);
        QApplication::sendEvent(receiver, &event);
    }
}

bool FormTest::doubleClick(QWidget* widget, QPoint place) {
    const QPoint global = widget->mapToGlobal(place);
    QTest::mouseClick(widget, Qt::LeftButton, {}, place);
    QCoreApplication::processEvents();
    QWindow* target = window.windowHandle();
    QMouseEvent second(QEvent::MouseButtonDblClick, target->mapFromGlobal(global), global, Qt::LeftButton,
                       Qt::LeftButton, Qt::NoModifier);
    Door door;
    target->installEventFilter(&door);
    QApplication::sendEvent(target, &second);
    QMouseEvent release(QEvent::MouseButtonRelease, target->mapFromGlobal(global), global, Qt::LeftButton, Qt::NoButton,
                        Qt::NoModifier);
    QApplication::sendEvent(target, &release);
    return door.isPassed;
}

void FormTest::type(const QString& text) {
    for (const QChar character : text)
        QTest::sendKeyEvent(QTest::Click, QApplication::focusWidget(), Qt::Key_unknown, QString(character),
                            Qt::NoModifier);
}

void FormTest::setPicked(const char* name, const QString& text) {
    box(name)->setText(text);
    box(name)->setDataChanged(false);
}

QStringList FormTest::statements() {
    QStringList texts;
    for (const FakeCall& call : connection->calls()) texts.append(call.via + u": "_s + call.text);
    connection->clearCalls();
    return texts;
}

}  // namespace velcoran::tests
