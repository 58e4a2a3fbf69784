#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QList>
#include <QString>

#include <variant>

namespace velcoran::host {

/// One line of a script, checked: every member that its command wants is there and has the right type.
struct DriveCommand {
    QString name;         ///< "incarca", "focus", ...
    QJsonObject members;  ///< the whole line

    [[nodiscard]] QString text(const char* member, const QString& whenMissing = {}) const;
    [[nodiscard]] int whole(const char* member, int whenMissing = 0) const;
    [[nodiscard]] bool flag(const char* member) const;  ///< false when it is missing
    [[nodiscard]] double seconds(const char* member, double whenMissing = 0) const;
    [[nodiscard]] bool has(const char* member) const { return members.contains(QLatin1StringView(member)); }
};

/// Why a line cannot be carried out, in words for whoever wrote it.
struct Refusal {
    QString why;
};
/// @throws Refusal
[[noreturn]] inline void refuse(const QString& why) { throw Refusal{why}; }

/// Reads a line: a JSON object whose "do" names a command. Members that the command does not know are ignored.
[[nodiscard]] std::variant<DriveCommand, Refusal> parseCommand(const QByteArray& line);

/// The commands that "during" brings, checked like lines; the first that is wrong, or that cannot be carried out while
/// another command runs, is named by its place.
[[nodiscard]] std::variant<QList<DriveCommand>, Refusal> nestedCommands(const DriveCommand& command);

}  // namespace velcoran::host
