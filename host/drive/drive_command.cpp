#include "drive_command.h"

#include <QDate>
#include <QJsonArray>
#include <QJsonDocument>
#include <QStringList>

#include <cmath>
#include <limits>
#include <optional>
#include <span>

using namespace Qt::StringLiterals;

namespace velcoran::host {

namespace {

enum class Kind { Text, Whole, Count, Seconds, Flag, Day, Connection, Button, Commands };

struct MemberRow {
    const char* name;
    Kind kind;
    bool isWanted;
};

struct CommandRow {
    const char* name;
    std::span<const MemberRow> members;
    bool isNestable;  ///< can be carried out while another command runs
};

constexpr MemberRow kIncarca[] = {{"kind", Kind::Text, true},
                                  {"date", Kind::Day, true},
                                  {"soc", Kind::Text, false},
                                  {"connection", Kind::Connection, false}};
constexpr MemberRow kFocus[] = {{"control", Kind::Text, true}};
constexpr MemberRow kKey[] = {{"key", Kind::Text, true},
                              {"shift", Kind::Flag, false},
                              {"alt", Kind::Flag, false},
                              {"ctrl", Kind::Flag, false},
                              {"repeat", Kind::Count, false}};
constexpr MemberRow kType[] = {{"text", Kind::Text, true}, {"alt", Kind::Flag, false}};
constexpr MemberRow kPaste[] = {{"text", Kind::Text, true}};
constexpr MemberRow kClick[] = {{"control", Kind::Text, true},
                                {"row", Kind::Whole, false},
                                {"column", Kind::Whole, false},
                                {"double", Kind::Flag, false},
                                {"button", Kind::Button, false}};
constexpr MemberRow kCell[] = {{"row", Kind::Whole, true}, {"column", Kind::Whole, true}};
constexpr MemberRow kPick[] = {{"control", Kind::Text, true}, {"index", Kind::Whole, true}};
constexpr MemberRow kTick[] = {{"control", Kind::Text, true}, {"index", Kind::Whole, false}};
constexpr MemberRow kDate[] = {{"control", Kind::Text, true}, {"value", Kind::Day, true}};
constexpr MemberRow kResize[] = {{"width", Kind::Whole, true}, {"height", Kind::Whole, true}};
constexpr MemberRow kWait[] = {{"seconds", Kind::Seconds, false}};
constexpr MemberRow kAnswer[] = {
    {"dialog", Kind::Text, true},   {"cancel", Kind::Flag, false}, {"format", Kind::Text, false},
    {"file", Kind::Text, false},    {"from", Kind::Whole, false},  {"to", Kind::Whole, false},
    {"copies", Kind::Whole, false}, {"paper", Kind::Text, false},  {"orientation", Kind::Text, false}};
constexpr MemberRow kViewer[] = {{"action", Kind::Text, true},
                                 {"page", Kind::Whole, false},
                                 {"text", Kind::Text, false},
                                 {"field", Kind::Text, false},
                                 {"record", Kind::Whole, false}};
constexpr MemberRow kPage[] = {{"number", Kind::Whole, true}};
constexpr MemberRow kScreenshot[] = {{"file", Kind::Text, true}};
constexpr MemberRow kDelay[] = {{"seconds", Kind::Seconds, true}};
constexpr MemberRow kDuring[] = {{"commands", Kind::Commands, true}, {"after", Kind::Seconds, false}};

const CommandRow kCommands[] = {
    {"incarca", kIncarca, true}, {"focus", kFocus, true},    {"key", kKey, true},
    {"type", kType, true},       {"paste", kPaste, false},   {"click", kClick, true},
    {"cell", kCell, false},      {"pick", kPick, false},     {"tick", kTick, false},
    {"date", kDate, false},      {"resize", kResize, false}, {"wait", kWait, false},
    {"answer", kAnswer, false},  {"formats", {}, false},     {"viewer", kViewer, true},
    {"report", {}, false},       {"page", kPage, false},     {"screenshot", kScreenshot, true},
    {"delay", kDelay, false},    {"during", kDuring, false}, {"close", {}, true},
    {"state", {}, true},         {"quit", {}, false},
};

/// A key held for five minutes.
constexpr int kMaxCount = 10000;

bool isWhole(const QJsonValue& value) {
    const double number = value.toDouble();
    return value.isDouble() && number == std::floor(number) && std::abs(number) <= std::numeric_limits<int>::max();
}

/// What is wrong with a member; nothing where it is right.
const char* complaint(const QJsonValue& value, Kind kind) {
    switch (kind) {
        case Kind::Text:
            return value.isString() ? nullptr : "a text";
        case Kind::Whole:
            return isWhole(value) ? nullptr : "a whole number";
        case Kind::Count:
            return isWhole(value) && value.toInt() >= 0 && value.toInt() <= kMaxCount
                       ? nullptr
                       : "a whole number from 0 to 10000";
        case Kind::Seconds:
            return value.isDouble() && value.toDouble() >= 0 ? nullptr : "a number of seconds";
        case Kind::Flag:
            return value.isBool() ? nullptr : "true or false";
        case Kind::Day:
            return value.isString() && QDate::fromString(value.toString(), u"yyyy-MM-dd"_s).isValid()
                       ? nullptr
                       : "a date (yyyy-mm-dd)";
        case Kind::Connection:
            return value.isBool() || value.toString() == u"closed" ? nullptr : "true, false or \"closed\"";
        case Kind::Button:
            return QStringList{u"left"_s, u"right"_s, u"middle"_s}.contains(value.toString())
                       ? nullptr
                       : "\"left\", \"right\" or \"middle\"";
        case Kind::Commands:
            return value.isArray() ? nullptr : "a list of commands";
    }
    return nullptr;
}

std::optional<Refusal> checkMembers(const CommandRow& row, const QJsonObject& members) {
    for (const MemberRow& member : row.members) {
        const QString name = QString::fromLatin1(member.name);
        if (!members.contains(name)) {
            if (member.isWanted) return Refusal{u"\"%1\" is missing"_s.arg(name)};
            continue;
        }
        if (const char* wanted = complaint(members[name], member.kind))
            return Refusal{u"\"%1\" is to be %2"_s.arg(name, QString::fromLatin1(wanted))};
    }
    return std::nullopt;
}

const CommandRow* rowOf(const QString& name) {
    for (const CommandRow& row : kCommands)
        if (name == QLatin1StringView(row.name)) return &row;
    return nullptr;
}

std::variant<DriveCommand, Refusal> parseObject(const QJsonValue& value) {
    if (!value.isObject()) return Refusal{u"no JSON object"_s};
    const QJsonObject members = value.toObject();
    if (!members[u"do"_s].isString()) return Refusal{u"\"do\" is missing or no text"_s};
    const QString name = members[u"do"_s].toString();
    const CommandRow* row = rowOf(name);
    if (row == nullptr) return Refusal{u"\"do\" names no command: "_s + name};
    if (auto refusal = checkMembers(*row, members)) return *refusal;
    return DriveCommand{name, members};
}

}  // namespace

QString DriveCommand::text(const char* member, const QString& whenMissing) const {
    return members.value(QLatin1StringView(member)).toString(whenMissing);
}

bool DriveCommand::flag(const char* member) const { return members.value(QLatin1StringView(member)).toBool(); }

double DriveCommand::seconds(const char* member, double whenMissing) const {
    return members.value(QLatin1StringView(member)).toDouble(whenMissing);
}

int DriveCommand::whole(const char* member, int whenMissing) const {
    return members.value(QLatin1StringView(member)).toInt(whenMissing);
}

std::variant<DriveCommand, Refusal> parseCommand(const QByteArray& line) {
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(line, &error);
    if (error.error != QJsonParseError::NoError)
        return Refusal{u"no JSON: %1 at byte %2"_s.arg(error.errorString()).arg(error.offset)};
    if (!document.isObject()) return Refusal{u"no JSON object"_s};
    return parseObject(document.object());
}

std::variant<QList<DriveCommand>, Refusal> nestedCommands(const DriveCommand& command) {
    QList<DriveCommand> commands;
    for (const QJsonValue each : command.members[u"commands"_s].toArray()) {
        const auto parsed = parseObject(each);
        const auto* refusal = std::get_if<Refusal>(&parsed);
        const auto* nested = std::get_if<DriveCommand>(&parsed);
        const QString place = u"\"commands\", %1: "_s.arg(commands.size() + 1);
        if (refusal != nullptr) return Refusal{place + refusal->why};
        if (!rowOf(nested->name)->isNestable) return Refusal{place + nested->name + u" is not allowed there"_s};
        commands.append(*nested);
    }
    return commands;
}

}  // namespace velcoran::host
