#pragma once

#include <velcoran/com.h>
#include <velcoran/dialogs.h>

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>
#include <QVariantMap>

#include <memory>
#include <optional>

namespace velcoran::host {

/// A message that was shown.
struct RecordedMessage {
    QString text;
    int style = 0;
    QString title;
    QString source;  ///< "clsMesaje", or "platform" for a plain message box
};

/// One format of the export dialog.
struct Format {
    int type = 0;
    QString name;
    QString extension;
};

/// What happens to the dialogs of a window that nobody sits in front of: messages are taken as read, the other dialogs
/// get the answer that was prepared for them and are cancelled without one. Everything is recorded.
class DialogScript {
public:
    /// Prepares the answer to the next dialog of a kind, in place of one that is still unused.
    /// @param dialog  "export", "print" or "printersetup"
    /// @param answer  "cancel"; export: "format", "file"; print: "file", "from", "to", "copies"; printersetup: "paper",
    ///                "orientation" ("portrait", "landscape")
    void prepare(const QString& dialog, const QVariantMap& answer);
    /// Notes that a dialog was opened. @return its answer; without one, or with "cancel", nothing
    [[nodiscard]] std::optional<QVariantMap> open(const QString& dialog);
    void addMessage(const RecordedMessage& message);

    [[nodiscard]] QList<RecordedMessage> takeMessages();
    [[nodiscard]] QStringList takeDialogs();

private:
    QHash<QString, QVariantMap> m_answers;
    QList<RecordedMessage> m_messages;
    QStringList m_dialogs;
};

/// The format with a name, in any letter case; the extension serves as well.
[[nodiscard]] const Format* findFormat(const QList<Format>& formats, const QString& name);

/// Registers the message class and the dialogs of a script with the component. The objects keep the script alive.
void registerDialogs(com::IHostObjects& objects, const std::shared_ptr<DialogScript>& script);

}  // namespace velcoran::host
