#include "file_export.h"

#include "dialogs.h"
#include "host/drive/input/window_input.h"
#include "host/drive/input/window_view.h"
#include "viewer_client.h"

#include "base/error.h"
#include "system/file_name.h"

#include <QFileInfo>
#include <QRegularExpression>

#include <velcoran/mesaje.h>

#include <stdexcept>

using namespace Qt::StringLiterals;

namespace velcoran::host {

namespace {

/// The report engine's own two formats are offered and never written.
bool isOwnFormat(int type) { return type == 1 || type == 33; }

[[noreturn]] void fail(const QString& words) { throw base::Error(base::kPathAccess, words); }

/// A failed run says its number and its description run together.
[[noreturn]] void fail(const RecordedMessage& message) {
    static const QRegularExpression kNumberFirst(uR"(^(-?\d{1,10})(\D.*)$)"_s,
                                                 QRegularExpression::DotMatchesEverythingOption);
    const QString words = message.text.simplified();
    const QRegularExpressionMatch match = kNumberFirst.match(words);
    if (message.style == kStilError && match.hasMatch())
        throw base::Error(match.captured(1).toInt(), match.captured(2).trimmed());
    throw std::runtime_error(system::nameBytes(words).toStdString());
}

}  // namespace

void failOnMessage(DialogScript& dialogs) {
    const QList<RecordedMessage> messages = dialogs.takeMessages();
    if (!messages.isEmpty()) fail(messages.first());
}

void exportFile(DialogScript& dialogs, const QString& path) {
    const QString ending = QFileInfo(path).suffix();
    const QList<Format> formats = exportFormats();
    const Format* format = findFormat(formats, ending);
    if (format == nullptr || isOwnFormat(format->type)) fail(u"%1: there is no format \"%2\""_s.arg(path, ending));
    (void)dialogs.takeDialogs();
    dialogs.prepare(u"export"_s, {{u"format"_s, ending}, {u"file"_s, path}});
    actOnViewer(u"export"_s);
    // The command returns when the file stands, or when the window has said why it does not.
    failOnMessage(dialogs);
    if (!dialogs.takeDialogs().contains(u"export"_s) || viewer() == nullptr) fail(path + u" was not written"_s);
    deliverEvents();
}

}  // namespace velcoran::host
