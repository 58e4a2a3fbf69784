#include "viewer_client.h"

#include "host/drive/input/window_input.h"
#include "host/drive/input/window_view.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>
#include <QWidget>

using namespace Qt::StringLiterals;

namespace velcoran::host {

QVariant actOnViewer(const QString& action, const QVariantMap& arguments) {
    QVariant answer;
    if (QWidget* shown = viewer())
        QMetaObject::invokeMethod(shown, "act", Q_RETURN_ARG(QVariant, answer), Q_ARG(QString, action),
                                  Q_ARG(QVariantMap, arguments));
    return answer;
}

QJsonValue shownReport() {
    QVariant report;
    if (QWidget* shown = viewer()) QMetaObject::invokeMethod(shown, "report", Q_RETURN_ARG(QVariant, report));
    return report.isValid() ? QJsonValue::fromVariant(report) : QJsonValue();
}

QStringList pageLines(int page) {
    QStringList lines;
    if (QWidget* shown = viewer())
        QMetaObject::invokeMethod(shown, "pageLines", Q_RETURN_ARG(QStringList, lines), Q_ARG(int, page));
    return lines;
}

std::optional<base::Error> loadFailure() {
    QVariant failure;
    if (QWidget* shown = viewer()) QMetaObject::invokeMethod(shown, "failure", Q_RETURN_ARG(QVariant, failure));
    if (!failure.isValid()) return std::nullopt;
    const QVariantMap members = failure.toMap();
    return base::Error(members.value(u"number"_s).toInt(), members.value(u"description"_s).toString());
}

QList<Format> exportFormats() {
    QList<Format> formats;
    for (const QVariant& each : actOnViewer(u"formats"_s).toList()) {
        const QVariantMap format = each.toMap();
        formats.append({format.value(u"type"_s).toInt(), format.value(u"name"_s).toString(),
                        format.value(u"extension"_s).toString()});
    }
    return formats;
}

bool waitUntil(const std::function<bool()>& isDone, double seconds) {
    constexpr int kLookEvery = 5;  // milliseconds
    QElapsedTimer elapsed;
    elapsed.start();
    deliverEvents();
    QEventLoop loop;
    QTimer look;
    QObject::connect(&look, &QTimer::timeout, &loop, [&] {
        if (isDone() || static_cast<double>(elapsed.elapsed()) >= seconds * 1000) loop.quit();
    });
    look.start(kLookEvery);
    if (!isDone()) loop.exec();
    return isDone();
}

bool waitForViewer(double seconds) {
    return waitUntil([] { return !isViewerBusy(); }, seconds);
}

}  // namespace velcoran::host
