#include "chosen_display.h"
#include "commands.h"
#include "demo_window.h"
#include "host/drive/dialogs.h"
#include "host/drive/file_export.h"
#include "host/drive/input/window_input.h"
#include "host/drive/input/window_view.h"
#include "host/drive/viewer_client.h"
#include "host/session/end_watch.h"
#include "host/session/plain_box_watch.h"
#include "host/session/trace.h"

#include "base/error.h"
#include "host/sample_data/sample_data.h"
#include "system/file_name.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QPixmap>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace velcoran::host {

namespace {

const QDate kSampleDay(2026, 7, 15);  // in the working year of the sample
constexpr int kPictureWidth = 1280;
constexpr int kPictureHeight = 860;
constexpr double kPatience = 120;  // seconds for one report

[[noreturn]] void fail(const QString& words) { throw base::Error(base::kProviderFailure, words); }

/// Names a file that was written; one that was not ends the run.
void announce(const QString& path) {
    if (!QFileInfo::exists(path) || QFileInfo(path).size() == 0) fail(path + u" was not written"_s);
    std::printf("%s\n", qPrintable(path));
}

void takePicture(QWidget& window, const QString& path) {
    deliverEvents();
    if (!window.grab().save(path)) fail(path + u" cannot be written"_s);
    announce(path);
}

/// The whole period that the pickers allow, so that the reports are worth looking at.
void choosePeriod() {
    for (const auto& [name, bound] : {std::pair{u"Deladata"_s, u"min"_s}, std::pair{u"Ladata"_s, u"max"_s}}) {
        QWidget* picker = findControl(name);
        if (picker == nullptr) fail(u"the window has no "_s + name);
        const QString value = picker->property("controlState").toMap().value(bound).toString();
        enterDate(*picker, QDate::fromString(value, Qt::ISODate));
    }
}

/// Works one report as a person does, and leaves its pictures and its PDF file in a folder.
void produceReport(DialogScript& dialogs, const QDir& folder, const QString& name) {
    QWidget* window = loadedWindow();
    QWidget* command = findControl(u"Raport"_s);
    if (window == nullptr || command == nullptr) fail(u"the report window did not open"_s);
    resizeWindow(*window, kPictureWidth, kPictureHeight);
    activateWindow(*window);
    choosePeriod();
    takePicture(*window, folder.filePath(name + u"-filters.png"_s));
    clickControl(*command);
    if (!waitForViewer(kPatience)) fail(u"the report took too long"_s);
    failOnMessage(dialogs);
    if (!viewer()->property("hasReport").toBool()) fail(u"no report was produced"_s);
    deliverEvents();
    takePicture(*window, folder.filePath(name + u"-report.png"_s));
    const QString pdf = folder.filePath(name + u".pdf"_s);
    exportFile(dialogs, pdf);
    announce(pdf);
}

/// Both reports without anybody in front of the window.
int produceFiles(ComponentClient& component, const com::Ref<IConnection>& connection, QDate date, const QString& out) {
    const QDir folder(out.isEmpty()
                          ? QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + u"/velcoran/demo"_s
                          : system::fullName(out));
    if (!folder.mkpath(u"."_s)) fail(folder.path() + u" cannot be created"_s);
    const auto dialogs = std::make_shared<DialogScript>();
    registerDialogs(component.hostObjects(), dialogs);
    const PlainBoxWatch watch([dialogs](const QString& text, const QString& title) {
        dialogs->addMessage({text, 0, title, u"platform"_s});
    });
    for (const auto& [kind, name] : {std::pair{u"Import"_s, u"furnizori"_s}, std::pair{u"Export"_s, u"clienti"_s}}) {
        component.incarca(kind, connection, date, QString());
        deliverEvents();
        produceReport(*dialogs, folder, name);
    }
    if (QWidget* window = loadedWindow()) window->close();
    return kStatusDone;
}

}  // namespace

int runDemo(const Options& options) {
    const QTemporaryDir folder;
    if (!folder.isValid()) fail(folder.errorString());
    EndWatch end;
    end.cleanUpBy([path = folder.path()] { QDir(path).removeRecursively(); });
    const QString file = folder.filePath(u"demo.db"_s);
    const SampleOptions sample;
    writeSampleDatabase(file, sample);
    const OpenedConnection source = openSource({file, {}}, openTrace(options.trace));
    end.cancelBy([connection = source.connection] { connection->Cancel(); });
    const QDate date = options.date.isValid() ? options.date : kSampleDay;
    return end.follow([&] {
        ComponentClient component;
        if (!hasDisplay()) return produceFiles(component, source.connection, date, options.out);

        DemoWindow window(component, source.connection, date, QString());
        window.show();
        if (!options.kind.isEmpty()) window.openReport(options.kind);
        return QApplication::exec();
    });
}

}  // namespace velcoran::host
