#pragma once

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>

namespace velcoran::tests {

/// What a printer was given.
struct PrintedJob {
    QString printer;
    QByteArray pdf;
    QMap<QString, QString> options;
};

/// The printers that a test has, whatever the machine has: the print system's client library is answered by the test's
/// program itself. None at first.
struct ScriptedPrinters {
    QStringList names;
    QString byDefault;
    QList<PrintedJob> jobs;
    bool hasRoom = true;  ///< for the pages of a job, before it is handed over
};
[[nodiscard]] ScriptedPrinters& scriptedPrinters();

}  // namespace velcoran::tests
