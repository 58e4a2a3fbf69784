#include "dialog_language.h"

#include <QCoreApplication>
#include <QEvent>
#include <QTranslator>

#include <memory>

namespace velcoran::dialogs {

namespace {

/// It says that it is empty: Qt then takes it without telling every window that the language has changed.
class Translator final : public QTranslator {
public:
    Translator() {
        [[maybe_unused]] const bool isLoaded = load(QStringLiteral(":/velcoran/qt_ro.qm"));
        Q_ASSERT(isLoaded);
    }
    [[nodiscard]] bool isEmpty() const override { return true; }
};

/// Removing a translator always tells the application of a new language; this keeps it from everybody.
class LanguageSilence final : public QObject {
public:
    LanguageSilence() { QCoreApplication::instance()->installEventFilter(this); }

protected:
    bool eventFilter(QObject* receiver, QEvent* event) override {
        return receiver == QCoreApplication::instance() && event->type() == QEvent::LanguageChange;
    }
};

std::unique_ptr<Translator> installed;
int users = 0;

}  // namespace

DialogLanguage::DialogLanguage() {
    if (users++ > 0) return;
    installed = std::make_unique<Translator>();
    QCoreApplication::installTranslator(installed.get());
}

DialogLanguage::~DialogLanguage() {
    if (--users > 0) return;
    if (QCoreApplication::instance() != nullptr) {
        const LanguageSilence silence;
        QCoreApplication::removeTranslator(installed.get());
    }
    installed.reset();
}

}  // namespace velcoran::dialogs
