#include "host/drive_session.h"

#include "host/data_source.h"
#include "host/viewer_client.h"
#include "host/window_input.h"
#include "host/window_view.h"

#include <velcoran/mesaje.h>

#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QPixmap>
#include <QWidget>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace velcoran::host {

namespace {

/// In pixels: a picture of that side takes a gigabyte. One that finds no memory ends the process inside the toolkit.
constexpr int kMaxWindowSide = 16384;

[[noreturn]] void refuse(const QString& why) { throw Refusal{why}; }

/// Thrown where a person could not do it either: the window is closed, the row is not there. The command is answered as
/// one that changed nothing.
struct NothingToDo {};

QWidget& wantedControl(const QString& name) {
    if (loadedWindow() == nullptr) throw NothingToDo();
    QWidget* control = findControl(name);
    if (control == nullptr) refuse(u"no control "_s + name);
    return *control;
}

void wantKind(const QWidget& control, const char* function) {
    if (control.metaObject()->indexOfMethod(function) < 0)
        refuse(u"%1 is the wrong kind of control"_s.arg(control.objectName()));
}

QJsonValue errorValue(const std::optional<base::Error>& error) {
    if (!error) return {};
    return QJsonObject{{u"number"_s, error->number()}, {u"description"_s, error->description()}};
}

// --- commands of one control
// ------------------------------------------------------------------------------------------

void focusControl(const DriveCommand& command, QWidget& control) {
    Q_UNUSED(command)
    giveFocus(control);
}

void clickIt(const DriveCommand& command, QWidget& control) {
    if (!command.has("row") && !command.has("column")) return clickControl(control);
    wantKind(control, "cellRect(int,int)");
    if (!clickCell(control, command.whole("row"), command.whole("column", 1))) throw NothingToDo();
}

void pickEntry(const DriveCommand& command, QWidget& control) {
    wantKind(control, "choose(int)");
    if (!chooseEntry(control, command.whole("index"))) throw NothingToDo();
}

void tickIt(const DriveCommand& command, QWidget& control) {
    if (!command.has("index")) {
        if (!control.inherits("QCheckBox")) refuse(u"\"index\" is missing"_s);
        return clickControl(control);
    }
    wantKind(control, "rowRect(int)");
    if (!clickRow(control, command.whole("index"))) throw NothingToDo();
}

void setDate(const DriveCommand& command, QWidget& control) {
    wantKind(control, "enter(QDate)");
    enterDate(control, QDate::fromString(command.text("value"), Qt::ISODate));
}

struct ControlRow {
    const char16_t* name;
    void (*act)(const DriveCommand&, QWidget&);
};
constexpr ControlRow kControlCommands[] = {
    {u"focus", focusControl}, {u"click", clickIt}, {u"pick", pickEntry}, {u"tick", tickIt}, {u"date", setDate},
};

// --- viewer
// -----------------------------------------------------------------------------------------------------------

struct ActionRow {
    const char* name;
    const char* wanted[3];
};
constexpr ActionRow kActions[] = {
    {"export", {}},
    {"print", {}},
    {"first", {}},
    {"previous", {}},
    {"next", {}},
    {"last", {}},
    {"zoomIn", {}},
    {"zoomOut", {}},
    {"stop", {}},
    {"tree", {}},
    {"goto", {"page"}},
    {"search", {"text"}},
    {"object", {"page", "field", "record"}},
};

QVariantMap actionArguments(const DriveCommand& command) {
    const QString action = command.text("action");
    const auto row = std::find_if(std::begin(kActions), std::end(kActions),
                                  [&](const ActionRow& each) { return action == QLatin1StringView(each.name); });
    if (row == std::end(kActions)) refuse(u"no action "_s + action);
    QVariantMap arguments;
    for (const char* wanted : row->wanted) {
        if (wanted == nullptr) continue;
        const QString name = QString::fromLatin1(wanted);
        if (!command.has(wanted)) refuse(u"\"%1\" is missing"_s.arg(name));
        // JSON has one kind of number; the viewer counts in whole ones.
        const QJsonValue value = command.members[name];
        arguments.insert(name, value.isDouble() ? QVariant(value.toInt()) : value.toVariant());
    }
    return arguments;
}

}  // namespace

DriveSession::DriveSession(std::function<OpenedConnection()> open, const QString& libraryPath)
    : m_open(std::move(open)),
      m_component(libraryPath),
      m_plainBoxes([dialogs = m_dialogs](const QString& text, const QString& title) {
          dialogs->addMessage({text, kStilPlain, title, u"platform"_s});
      }),
      m_connection(recordConnection(m_open().connection, m_log)) {
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
        {u"incarca", &DriveSession::incarca}, {u"focus", &DriveSession::work},
        {u"key", &DriveSession::input},       {u"type", &DriveSession::input},
        {u"paste", &DriveSession::input},     {u"click", &DriveSession::work},
        {u"cell", &DriveSession::input},      {u"pick", &DriveSession::work},
        {u"tick", &DriveSession::work},       {u"date", &DriveSession::work},
        {u"resize", &DriveSession::input},    {u"wait", &DriveSession::wait},
        {u"answer", &DriveSession::prepare},  {u"formats", &DriveSession::formats},
        {u"viewer", &DriveSession::view},     {u"report", &DriveSession::report},
        {u"page", &DriveSession::page},       {u"screenshot", &DriveSession::screenshot},
        {u"close", &DriveSession::close},     {u"state", &DriveSession::state},
        {u"quit", &DriveSession::quit},
    };
    const auto* row = std::find_if(std::begin(kHandlers), std::end(kHandlers),
                                   [&name](const Row& each) { return name == each.name; });
    return row == std::end(kHandlers) ? nullptr : row->handler;
}

QJsonObject DriveSession::carryOut(const DriveCommand& command) {
    try {
        return (this->*handlerOf(command.name))(command);
    } catch (const NothingToDo&) {
        return {};
    }
}

QByteArray DriveSession::answer(const QByteArray& line) {
    QJsonObject answer;
    try {
        const auto parsed = parseCommand(line);
        if (const auto* refusal = std::get_if<Refusal>(&parsed)) throw *refusal;
        const auto& command = std::get<DriveCommand>(parsed);
        answer = carryOut(command);
        deliverEvents();
        addRecords(answer);
    } catch (const Refusal& refusal) {
        answer = {{u"ok"_s, false}, {u"why"_s, refusal.why}};
    } catch (const std::exception& exception) {
        answer = {{u"ok"_s, false}, {u"why"_s, QString::fromUtf8(exception.what())}};
    }
    return QJsonDocument(answer).toJson(QJsonDocument::Compact);
}

void DriveSession::addRecords(QJsonObject& answer) {
    QJsonArray statements;
    for (const RecordedStatement& each : m_log->take())
        statements.append(QJsonObject{{u"via"_s, each.via}, {u"text"_s, each.text}});
    QJsonArray messages;
    for (const RecordedMessage& each : m_dialogs->takeMessages())
        messages.append(QJsonObject{
            {u"text"_s, each.text}, {u"style"_s, each.style}, {u"title"_s, each.title}, {u"source"_s, each.source}});
    const QString focus = focusedControl();
    answer.insert(u"ok"_s, true);
    answer.insert(u"focus"_s, focus.isEmpty() ? QJsonValue() : QJsonValue(focus));
    answer.insert(u"sql"_s, statements);
    answer.insert(u"messages"_s, messages);
    answer.insert(u"dialogs"_s, QJsonArray::fromStringList(m_dialogs->takeDialogs()));
    answer.insert(u"error"_s, errorValue(std::exchange(m_error, std::nullopt)));
}

com::Ref<IConnection> DriveSession::connectionFor(const DriveCommand& command) {
    const QJsonValue wish = command.members[u"connection"_s];
    if (wish.isBool() && !wish.toBool()) return {};
    if (wish.isString()) {
        OpenedConnection closed = m_open();
        closed.close();
        return recordConnection(closed.connection, m_log);
    }
    return m_connection;
}

QJsonObject DriveSession::incarca(const DriveCommand& command) {
    const QDate date = QDate::fromString(command.text("date"), Qt::ISODate);
    const com::Ref<IConnection> connection = connectionFor(command);
    try {
        m_component.incarca(command.text("kind"), connection, date, command.text("soc"));
    } catch (const base::Error& error) {
        m_error = error;
    }
    deliverEvents();
    if (QWidget* window = loadedWindow()) activateWindow(*window);
    return {};
}

QJsonObject DriveSession::input(const DriveCommand& command) {
    if (command.name == u"key") {
        if (!pressKey(command.text("key"), command.members[u"shift"_s].toBool()))
            refuse(u"no key "_s + command.text("key"));
    } else if (command.name == u"type") {
        typeText(command.text("text"));
    } else if (command.name == u"paste") {
        pasteText(command.text("text"));
    } else if (command.name == u"cell") {
        if (!moveToCell(wantedControl(u"Grid"_s), command.whole("row"), command.whole("column"))) throw NothingToDo();
    } else {
        QWidget* window = loadedWindow();
        if (window == nullptr) throw NothingToDo();
        const int width = command.whole("width"), height = command.whole("height");
        if (width <= 0 || height <= 0) refuse(u"a window has a width and a height"_s);
        if (qMax(width, height) > kMaxWindowSide)
            refuse(u"a window is at most %1 pixels wide and high"_s.arg(kMaxWindowSide));
        resizeWindow(*window, width, height);
    }
    return {};
}

QJsonObject DriveSession::work(const DriveCommand& command) {
    QWidget& control = wantedControl(command.text("control"));
    const auto* row = std::find_if(std::begin(kControlCommands), std::end(kControlCommands),
                                   [&](const ControlRow& each) { return command.name == each.name; });
    row->act(command, control);
    return {};
}

QJsonObject DriveSession::wait(const DriveCommand& command) {
    constexpr double kUsual = 600;
    QElapsedTimer elapsed;
    elapsed.start();
    const bool isDone = waitForViewer(command.members[u"seconds"_s].toDouble(kUsual));
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

QJsonObject DriveSession::view(const DriveCommand& command) {
    const QVariantMap arguments = actionArguments(command);
    const QVariant answer = viewer() == nullptr ? QVariant() : actOnViewer(command.text("action"), arguments);
    if (command.text("action") != u"search") return {};
    return {{u"found"_s, answer.isValid() ? QJsonValue::fromVariant(answer) : QJsonValue()}};
}

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
