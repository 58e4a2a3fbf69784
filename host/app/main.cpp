#include "chosen_display.h"
#include "command_line.h"
#include "commands.h"

#include "base/error.h"
#include "system/file_name.h"

#include <QApplication>

#include <csignal>
#include <cstdio>
#include <exception>
#include <system_error>

namespace {

using velcoran::host::Command;
using velcoran::host::DisplayNeed;
using velcoran::host::Options;

struct CommandRow {
    Command command;
    int (*run)(const Options&);
    DisplayNeed display;
};

constexpr CommandRow kCommands[] = {
    {Command::Demo, velcoran::host::runDemo, DisplayNeed::Useful},
    {Command::Open, velcoran::host::runOpen, DisplayNeed::Needed},
    {Command::Export, velcoran::host::runExport, DisplayNeed::None},
    {Command::Drive, velcoran::host::runDriveCommand, DisplayNeed::Useful},
    {Command::SampleDatabase, velcoran::host::runSampleDatabase, DisplayNeed::None},
    {Command::Register, velcoran::host::runRegister, DisplayNeed::None},
    {Command::Unregister, velcoran::host::runUnregister, DisplayNeed::None},
};

const CommandRow& rowOf(Command command) {
    for (const CommandRow& row : kCommands)
        if (row.command == command) return row;
    return kCommands[0];
}

int complain(const QString& words) {
    std::fprintf(stderr, "velcoran-host: %s\n", velcoran::system::nameBytes(words.simplified()).constData());
    return velcoran::host::kStatusFailed;
}

int complain(const velcoran::base::Error& error) {
    return complain(QStringLiteral("%1 (%2)").arg(error.description()).arg(error.number()));
}

/// What Qt notes for developers is nothing that a scheduled report should mail to anybody.
void passFailures(QtMsgType type, const QMessageLogContext&, const QString& words) {
    if (type == QtCriticalMsg || type == QtFatalMsg) std::fprintf(stderr, "velcoran-host: %s\n", qPrintable(words));
}

}  // namespace

int main(int argc, char** argv) {
    qInstallMessageHandler(passFailures);
    // A reader that goes and a file that grows too large are failures of a write, which says so.
    for (const int number : {SIGPIPE, SIGXFSZ}) std::signal(number, SIG_IGN);
    const auto read = velcoran::host::readCommandLine(argc, argv);
    if (const int* status = std::get_if<int>(&read)) return *status;
    const auto& options = std::get<Options>(read);
    const CommandRow& row = rowOf(options.command);
    QCoreApplication::setApplicationName(QStringLiteral("velcoran-host"));
    try {
        if (row.display == DisplayNeed::None) {
            const QCoreApplication application(argc, argv);
            return row.run(options);
        }
        velcoran::host::ChosenDisplay display(row.display, argv[0]);
        const QApplication application(display.argumentCount(), display.arguments());
        display.confirm();
        return row.run(options);
    } catch (const velcoran::base::Error& error) {
        return complain(error);
    } catch (const std::system_error&) {
        return complain(velcoran::base::currentError());
    } catch (const std::exception& exception) {
        return complain(velcoran::system::nameText(exception.what()));
    }
}
