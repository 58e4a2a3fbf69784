#include "drive_session.h"

#include "drive_gestures.h"
#include "host/drive/input/window_input.h"
#include "host/drive/input/window_view.h"
#include "host/session/data_source.h"
#include "host/session/silence_watch.h"
#include "interlude.h"
#include "viewer_client.h"

#include <velcoran/mesaje.h>

#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QPixmap>
#include <QWidget>

#include <algorithm>
#include <chrono>
#include <limits>
#include <utility>

using namespace Qt::StringLiterals;

namespace velcoran::host {

namespace {

QJsonValue errorValue(const std::optional<base::Error>& error) {
    if (!error) return {};
    return QJsonObject{{u"number"_s, error->number()}, {u"description"_s, error->description()}};
}

/// In seconds: a cancelled statement ends soon; a driver that does not answer is not waited for.
constexpr double kPatienceAfterCancel = 2;
/// A stop is not seen as a cancel where the statement has not begun, or where the window cancels a little later.
constexpr double kPatienceAfterStop = 0.1;

/// True for what may stop a statement or a report that loads.
bool mayStop(const DriveCommand& command) {
    return command.name == u"close" || command.text("key") == u"Esc" || command.text("action") == u"stop";
}

/// Everything that reaches the host's connection is recorded, also what is refused behind it; what waits for a delay is
/// running, and its wait counts for the watch.
com::Ref<IConnection> decorate(const com::Ref<IConnection>& connection, const std::shared_ptr<StatementHold>& hold,
                               std::chrono::milliseconds timeout, const std::shared_ptr<StatementLog>& log) {
    return recordConnection(watchConnection(holdConnection(connection, hold), timeout), log);
}

}  // namespace

DriveSession::DriveSession(std::function<OpenedConnection()> open, std::chrono::milliseconds timeout,
                           const QString& libraryPath)
    : m_open(std::move(open)),
      m_timeout(timeout),
      m_component(libraryPath),
      m_plainBoxes([dialogs = m_dialogs](const QString& text, const QString& title) {
          dialogs->addMessage({text, kStilPlain, title, u"platform"_s});
      }),
      m_connection(decorate(m_open().connection, m_hold, m_timeout, m_log)) {
    registerDialogs(m_component.hostObjects(), m_dialogs);
}

DriveSession::~DriveSession() {
    if (QWidget* window = loadedWindow()) window->close();
    deliverEvents();
}

DriveSession::Handler DriveSession::handlerOf(const QString& name) {
    struct Row {
        const char16_t* name;
        Handler handler;
    };
    static constexpr Row kHandlers[] = {
        {u"incarca", &DriveSession::incarca}, {u"wait", &DriveSession::wait},
        {u"answer", &DriveSession::prepare},  {u"formats", &DriveSession::formats},
        {u"viewer", &DriveSession::view},     {u"report", &DriveSession::report},
        {u"page", &DriveSession::page},       {u"screenshot", &DriveSession::screenshot},
        {u"delay", &DriveSession::delay},     {u"during", &DriveSession::during},
        {u"close", &DriveSession::close},     {u"state", &DriveSession::state},
        {u"quit", &DriveSession::quit},
    };
    const auto* row = std::find_if(std::begin(kHandlers), std::end(kHandlers),
                                   [&name](const Row& each) { return name == each.name; });
    return row == std::end(kHandlers) ? &DriveSession::gesture : row->handler;
}

QByteArray DriveSession::answer(const QByteArray& line) {
    QJsonObject answer;
    const auto parsed = parseCommand(line);
    if (const auto* refusal = std::get_if<Refusal>(&parsed))
        answer = {{u"ok"_s, false}, {u"why"_s, refusal->why}};
    else
        answer = answerWithInterlude(std::get<DriveCommand>(parsed));
    return QJsonDocument(answer).toJson(QJsonDocument::Compact);
}

QJsonObject DriveSession::answerWithInterlude(const DriveCommand& command) {
    const std::optional<Prepared> prepared = std::exchange(m_prepared, std::nullopt);
    if (!prepared) return answerTo(command);
    // A report that loaded before is none of this command's, unless it waits for it.
    const bool isWait = command.name == u"wait";
    bool isOwnReport = isWait || !isViewerBusy();
    const auto loads = [&isOwnReport] {
        isOwnReport = isOwnReport || !isViewerBusy();
        return isOwnReport && isViewerBusy();
    };
    Interlude interlude(
        prepared->commands, prepared->pause, [&] { return m_log->isRunning() || loads(); },
        [this](const DriveCommand& nested) { return answerToNested(nested); });
    const auto begin = [&] {
        if (interlude.answers().isEmpty()) interlude.look();
    };
    QJsonObject answer = answerTo(command, begin, [&] {
        if (!isWait && loads()) waitForViewer(std::numeric_limits<double>::infinity());
    });
    answer.insert(u"during"_s, interlude.answers());
    answer.insert(u"left"_s, interlude.left());
    return answer;
}

/// What was recorded up to here belongs to the command that runs.
QJsonObject DriveSession::answerToNested(const DriveCommand& command) {
    collectRecords();
    const Records outer = std::exchange(m_records, {});
    QJsonObject answer = answerTo(command);
    m_records = outer;
    return answer;
}

QJsonObject DriveSession::answerTo(const DriveCommand& command, const std::function<void()>& begin,
                                   const std::function<void()>& finish) {
    QJsonObject answer;
    try {
        const int cancels = m_log->cancels();
        try {
            answer = (this->*handlerOf(command.name))(command);
        } catch (const NothingToDo&) {
            answer = {};
        }
        if (begin) begin();
        deliverEvents();
        if (m_log->cancels() != cancels)
            settle(kPatienceAfterCancel);
        else if (mayStop(command))
            settle(kPatienceAfterStop);
        if (finish) finish();
        addRecords(answer);
    } catch (const Refusal& refusal) {
        answer = {{u"ok"_s, false}, {u"why"_s, refusal.why}};
    } catch (const std::exception& exception) {
        answer = {{u"ok"_s, false}, {u"why"_s, QString::fromUtf8(exception.what())}};
    }
    return answer;
}

/// What a command stopped has ended when it is answered, so that the answer does not hang on the speed of a thread.
void DriveSession::settle(double patience) {
    waitUntil([this] { return !m_log->isRunning() && !isViewerBusy(); }, patience);
    deliverEvents();
}

void DriveSession::collectRecords() {
    m_records.statements += m_log->take();
    m_records.messages += m_dialogs->takeMessages();
    m_records.dialogs += m_dialogs->takeDialogs();
}

void DriveSession::addRecords(QJsonObject& answer) {
    collectRecords();
    const Records records = std::exchange(m_records, {});
    QJsonArray statements;
    for (const RecordedStatement& each : records.statements)
        statements.append(QJsonObject{{u"via"_s, each.via}, {u"text"_s, each.text}});
    QJsonArray messages;
    for (const RecordedMessage& each : records.messages)
        messages.append(QJsonObject{
            {u"text"_s, each.text}, {u"style"_s, each.style}, {u"title"_s, each.title}, {u"source"_s, each.source}});
    const QString focus = focusedControl();
    answer.insert(u"ok"_s, true);
    answer.insert(u"focus"_s, focus.isEmpty() ? QJsonValue() : QJsonValue(focus));
    answer.insert(u"sql"_s, statements);
    answer.insert(u"messages"_s, messages);
    answer.insert(u"dialogs"_s, QJsonArray::fromStringList(records.dialogs));
    answer.insert(u"error"_s, errorValue(records.error));
}

com::Ref<IConnection> DriveSession::connectionFor(const DriveCommand& command) {
    const QJsonValue wish = command.members[u"connection"_s];
    if (wish.isBool() && !wish.toBool()) return {};
    if (wish.isString()) {
        OpenedConnection closed = m_open();
        closed.close();
        return decorate(closed.connection, m_hold, m_timeout, m_log);
    }
    return m_connection;
}

QJsonObject DriveSession::incarca(const DriveCommand& command) {
    const QDate date = QDate::fromString(command.text("date"), Qt::ISODate);
    const com::Ref<IConnection> connection = connectionFor(command);
    try {
        m_component.incarca(command.text("kind"), connection, date, command.text("soc"));
    } catch (const base::Error& error) {
        m_records.error = error;
    }
    deliverEvents();
    if (QWidget* window = loadedWindow()) activateWindow(*window);
    return {};
}

QJsonObject DriveSession::gesture(const DriveCommand& command) {
    makeGesture(command);
    return {};
}

QJsonObject DriveSession::wait(const DriveCommand& command) {
    constexpr double kUsual = 600;
    QElapsedTimer elapsed;
    elapsed.start();
    const bool isDone = waitForViewer(command.seconds("seconds", kUsual));
    return {{u"seconds"_s, static_cast<double>(elapsed.elapsed()) / 1000}, {u"timedOut"_s, !isDone}};
}

QJsonObject DriveSession::prepare(const DriveCommand& command) {
    const QString dialog = command.text("dialog");
    if (!QStringList{u"export"_s, u"print"_s, u"printersetup"_s}.contains(dialog)) refuse(u"no dialog "_s + dialog);
    const bool isCancelled = command.members[u"cancel"_s].toBool();
    if (dialog == u"export" && !isCancelled && !command.has("format")) refuse(u"\"format\" is missing"_s);
    m_dialogs->prepare(dialog, command.members.toVariantMap());
    return {};
}

QJsonObject DriveSession::formats(const DriveCommand&) {
    QJsonArray formats;
    for (const Format& each : exportFormats())
        formats.append(QJsonObject{{u"name"_s, each.name}, {u"type"_s, each.type}, {u"extension"_s, each.extension}});
    return {{u"formats"_s, formats}};
}

QJsonObject DriveSession::view(const DriveCommand& command) { return workViewer(command); }

QJsonObject DriveSession::report(const DriveCommand&) { return {{u"report"_s, shownReport()}}; }

QJsonObject DriveSession::page(const DriveCommand& command) {
    return {{u"lines"_s, QJsonArray::fromStringList(pageLines(command.whole("number")))}};
}

QJsonObject DriveSession::screenshot(const DriveCommand& command) {
    QWidget* window = loadedWindow();
    if (window == nullptr) refuse(u"the window is not loaded"_s);
    if (!window->grab().save(command.text("file"))) refuse(u"the picture could not be written"_s);
    return {};
}

QJsonObject DriveSession::delay(const DriveCommand& command) {
    m_hold->holdNext(milliseconds(command.seconds("seconds")));
    return {};
}

QJsonObject DriveSession::during(const DriveCommand& command) {
    const auto nested = nestedCommands(command);
    if (const auto* refusal = std::get_if<Refusal>(&nested)) throw *refusal;
    m_prepared = Prepared{std::get<QList<DriveCommand>>(nested), command.seconds("after")};
    return {};
}

QJsonObject DriveSession::close(const DriveCommand&) {
    if (QWidget* window = loadedWindow()) window->close();
    return {};
}

QJsonObject DriveSession::state(const DriveCommand&) {
    deliverEvents();
    return {{u"state"_s, windowState()}};
}

QJsonObject DriveSession::quit(const DriveCommand&) {
    m_hasQuit = true;
    return {};
}

}  // namespace velcoran::host
