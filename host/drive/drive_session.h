#pragma once

#include "dialogs.h"
#include "drive_command.h"
#include "host/session/component_client.h"
#include "host/session/plain_box_watch.h"
#include "recorder.h"
#include "statement_hold.h"

#include "base/error.h"

#include <QByteArray>
#include <QJsonObject>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

namespace velcoran::host {

struct OpenedConnection;

/// Works the report window by a script, line by line. Never throws for what a line says.
class DriveSession {
public:
    /// @param open     opens the host's connection: once here, and once more for each Incarca with a closed one
    /// @param timeout  after which a statement that has brought nothing is cancelled; zero for never
    /// @throws Error when the connection cannot be opened or the component is not found
    explicit DriveSession(std::function<OpenedConnection()> open, std::chrono::milliseconds timeout = {},
                          const QString& libraryPath = {});
    ~DriveSession();

    /// Carries out a line. @return the answer, one line of JSON without its end
    [[nodiscard]] QByteArray answer(const QByteArray& line);
    /// The connection as the window gets it.
    [[nodiscard]] const com::Ref<IConnection>& connection() const { return m_connection; }
    /// True after "quit".
    [[nodiscard]] bool hasQuit() const { return m_hasQuit; }

private:
    /// What happened since the last answer.
    struct Records {
        QList<RecordedStatement> statements;
        QList<RecordedMessage> messages;
        QStringList dialogs;
        std::optional<base::Error> error;
    };
    /// What "during" prepared for the next command.
    struct Prepared {
        QList<DriveCommand> commands;
        double pause = 0;  ///< in seconds
    };
    using Handler = QJsonObject (DriveSession::*)(const DriveCommand&);
    [[nodiscard]] static Handler handlerOf(const QString& name);

    QJsonObject answerWithInterlude(const DriveCommand& command);
    /// @param begin   called before the events that the command left are delivered
    /// @param finish  called before the answer is made
    QJsonObject answerTo(const DriveCommand& command, const std::function<void()>& begin = {},
                         const std::function<void()>& finish = {});
    QJsonObject answerToNested(const DriveCommand& command);
    void settle(double patience);
    void collectRecords();
    void addRecords(QJsonObject& answer);

    QJsonObject incarca(const DriveCommand& command);
    QJsonObject gesture(const DriveCommand& command);
    QJsonObject wait(const DriveCommand& command);
    QJsonObject prepare(const DriveCommand& command);
    QJsonObject formats(const DriveCommand& command);
    QJsonObject view(const DriveCommand& command);
    QJsonObject report(const DriveCommand& command);
    QJsonObject page(const DriveCommand& command);
    QJsonObject screenshot(const DriveCommand& command);
    QJsonObject delay(const DriveCommand& command);
    QJsonObject during(const DriveCommand& command);
    QJsonObject close(const DriveCommand& command);
    QJsonObject state(const DriveCommand& command);
    QJsonObject quit(const DriveCommand& command);

    [[nodiscard]] com::Ref<IConnection> connectionFor(const DriveCommand& command);

    std::function<OpenedConnection()> m_open;
    std::shared_ptr<StatementLog> m_log = std::make_shared<StatementLog>();
    std::shared_ptr<StatementHold> m_hold = std::make_shared<StatementHold>();
    std::chrono::milliseconds m_timeout;
    std::shared_ptr<DialogScript> m_dialogs = std::make_shared<DialogScript>();
    ComponentClient m_component;
    PlainBoxWatch m_plainBoxes;
    com::Ref<IConnection> m_connection;
    std::optional<Prepared> m_prepared;
    Records m_records;
    bool m_hasQuit = false;
};

}  // namespace velcoran::host
