#include "commands.h"

#include "host/drive/drive_loop.h"
#include "host/drive/drive_session.h"
#include "host/drive/input/window_view.h"
#include "host/session/component_client.h"
#include "host/session/end_watch.h"
#include "host/session/silence_watch.h"
#include "host/session/trace.h"

#include "base/error.h"
#include "db/connection.h"
#include "host/sample_data/sample_data.h"

#include <QApplication>
#include <QEvent>
#include <QTimer>
#include <QWidget>

#include <cstdio>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace velcoran::host {

namespace {

/// Ends the application when the report window is closed, however that happens.
class EndOfWindow : public QObject {
public:
    explicit EndOfWindow(QWidget& window) : QObject(&window) { window.installEventFilter(this); }

    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Hide)
            QTimer::singleShot(0, qApp, [] {
                if (loadedWindow() == nullptr) QCoreApplication::quit();
            });
        return false;
    }
};

int callLibrary(const char* entryPoint) {
    const com::ActivatedClass component = com::findClass(QString::fromUtf16(kProgIdVelcoran), libraryBesideProgram());
    const com::HResult result = component.library->call(entryPoint);
    if (com::succeeded(result)) return kStatusDone;
    throw db::errorOf(result, component.factory.get());
}

}  // namespace

int runOpen(const Options& options) {
    EndWatch end;
    const OpenedConnection source = openSource(options.source, openTrace(options.trace));
    end.cancelBy([connection = source.connection] { connection->Cancel(); });
    return end.follow([&] {
        ComponentClient component;
        const QDate date = options.date.isValid() ? options.date : QDate::currentDate();
        component.incarca(options.kind, source.connection, date, options.prefix);
        QWidget* window = loadedWindow();
        if (window == nullptr) return kStatusDone;
        new EndOfWindow(*window);
        return QApplication::exec();
    });
}

int runDriveCommand(const Options& options) {
    EndWatch end(STDOUT_FILENO);
    DriveSession session(
        [source = options.source, trace = openTrace(options.trace)] { return openSource(source, trace); },
        milliseconds(options.timeout));
    end.cancelBy([connection = session.connection()] { connection->Cancel(); });
    return runDrive(session, end);
}

int runSampleDatabase(const Options& options) {
    const EndWatch end(-1, std::chrono::milliseconds(0));
    SampleOptions sample;
    if (options.documents > 0) sample.documents = options.documents;
    if (options.seed > 0) sample.seed = static_cast<decltype(sample.seed)>(options.seed);
    if (options.isSampleScript)
        writeSampleScript(options.sampleFile, sample);
    else
        writeSampleDatabase(options.sampleFile, sample);
    return kStatusDone;
}

int runRegister(const Options&) { return callLibrary("DllRegisterServer"); }

int runUnregister(const Options&) { return callLibrary("DllUnregisterServer"); }

}  // namespace velcoran::host
