#pragma once

#include "host/session/data_source.h"
#include "host/unattended/export_request.h"

#include <QDate>
#include <QString>

#include <variant>

namespace velcoran::host {

enum class Command { Demo, Open, Export, Drive, SampleDatabase, Register, Unregister };

/// The command line, read.
struct Options {
    Command command = Command::Demo;
    DataSource source;
    QString kind;    ///< "Import" or "Export"
    QDate date;      ///< working date; invalid for today, or for the sample's own
    QString prefix;  ///< company prefix
    QString out;     ///< folder of the demonstration's files
    ExportRequest request;
    double timeout = 0;  ///< seconds after which a statement that has brought nothing is cancelled; 0 for never
    QString trace;       ///< file for what happens on the connection; empty for none
    QString sampleFile;
    bool isSampleScript = false;
    int documents = 0;  ///< 0 for the sample's own number
    int seed = 0;       ///< 0 for the sample's own seed
};

constexpr int kStatusDone = 0;
constexpr int kStatusFailed = 1;
constexpr int kStatusUsage = 2;

/// Reads the command line. Help and complaints are printed here.
/// @return the options, or the exit status where there is nothing more to do
[[nodiscard]] std::variant<Options, int> readCommandLine(int argc, const char* const* argv);

}  // namespace velcoran::host
