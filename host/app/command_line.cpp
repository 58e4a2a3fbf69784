#include "command_line.h"

#include "version_text.h"

#include "system/file_name.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

using namespace Qt::StringLiterals;

namespace velcoran::host {

namespace {

/// Texts reach CLI11 and come back through functions, because it knows standard strings only.
CLI::Option* addText(CLI::App& app, const std::string& name, QString& target, const std::string& help) {
    return app.add_option_function<std::string>(
        name, [&target](const std::string& value) { target = QString::fromStdString(value); }, help);
}

/// A file's name, whose bytes need be no UTF-8.
CLI::Option* addFile(CLI::App& app, const std::string& name, QString& target, const std::string& help) {
    return app.add_option_function<std::string>(
        name, [&target](const std::string& value) { target = system::nameText(QByteArrayView(value)); }, help);
}

CLI::Option* addDate(CLI::App& app, const std::string& name, QDate& target, const std::string& help) {
    const auto read = [](const std::string& text) {
        return QDate::fromString(QString::fromStdString(text), u"yyyy-MM-dd"_s);
    };
    return app
        .add_option_function<std::string>(
            name, [&target, read](const std::string& text) { target = read(text); }, help)
        ->type_name("YYYY-MM-DD")
        ->check([read](const std::string& text) {
            return read(text).isValid() ? std::string() : "'" + text + "' is no date (YYYY-MM-DD)";
        });
}

CLI::Option* addKind(CLI::App& app, Options& options) {
    return addText(app, "--kind", options.kind, "invoices of suppliers or to clients")
        ->check(CLI::IsMember({"Import", "Export"}));
}

void addTimeout(CLI::App& app, Options& options, const std::string& whenMissing) {
    app.add_option("--timeout", options.timeout,
                   "cancels a statement that has brought no row and no end for so long [" + whenMissing + "]")
        ->type_name("SECONDS")
        ->check(CLI::PositiveNumber);
}

void addTrace(CLI::App& app, Options& options) {
    addFile(app, "--trace", options.trace,
            "adds to a file, for support, what happens on the connection: statements, rows, times, errors")
        ->type_name("FILE");
}

void addSource(CLI::App& app, Options& options) {
    CLI::Option_group* source = app.add_option_group("Database", "where the data is");
    addFile(*source, "--db", options.source.file, "embedded database")->type_name("FILE");
    addText(*source, "--odbc", options.source.odbc,
            "connection text, @FILE with one, or env:NAME of a variable with one")
        ->type_name("CONNECTION");
    source->require_option(1);
}

CLI::App* addDemo(CLI::App& app, Options& options) {
    CLI::App* demo = app.add_subcommand("demo", "Window on the embedded sample database (the default command)");
    addKind(*demo, options);
    addDate(*demo, "--date", options.date, "working date of the host");
    addFile(*demo, "--out", options.out,
            "folder for the files of a run without a display [$XDG_DATA_HOME/velcoran/demo]")
        ->type_name("FOLDER");
    addTrace(*demo, options);
    demo->footer("Without a display both reports are produced offscreen; the PDF files and pictures are named.");
    return demo;
}

CLI::App* addOpen(CLI::App& app, Options& options) {
    CLI::App* open = app.add_subcommand("open", "Opens the report window on a database");
    addSource(*open, options);
    addKind(*open, options)->required();
    addDate(*open, "--date", options.date, "working date of the host [today]");
    addText(*open, "--soc", options.prefix, "company prefix of three table names")->type_name("PREFIX");
    addTrace(*open, options);
    return open;
}

CLI::App* addExport(CLI::App& app, Options& options) {
    CLI::App* command = app.add_subcommand("export", "Writes a report into a file, without a display");
    ExportRequest& request = options.request;
    addSource(*command, options);
    addKind(*command, options)->required();
    addDate(*command, "--from", request.from, "first day")->required();
    addDate(*command, "--to", request.to, "last day")->required();
    command
        ->add_option_function<std::string>(
            "--by", [&request](const std::string& by) { request.isByDay = by == "day"; },
            "what the report is grouped by")
        ->check(CLI::IsMember({"partner", "day"}));
    command->add_flag("--totals", request.hasTotals, "totals without the invoices");
    addText(*command, "--sort", request.sort, "entry of the sort list")->type_name("ENTRY");
    addText(*command, "--type", request.type, "product type")->type_name("T");
    addText(*command, "--group", request.group, "product group")->type_name("G");
    addText(*command, "--subgroup", request.subgroup, "product subgroup")->type_name("S");
    addText(*command, "--category", request.category, "entry of the category list")->type_name("NAME");
    addText(*command, "--partner-type", request.partnerType, "supplier or client type")->type_name("T");
    addText(*command, "--partner-category", request.partnerCategory, "supplier or client category")->type_name("C");
    addText(*command, "--product", request.product, "product code")->type_name("CODE");
    addText(*command, "--producer", request.producer, "producer code")->type_name("CODE");
    addText(*command, "--partner", request.partner, "supplier or client code")->type_name("CODE");
    addText(*command, "--agent", request.agent, "sales agent code")->type_name("CODE");
    command
        ->add_option_function<std::string>(
            "--warehouse",
            [&request](const std::string& code) { request.warehouses.append(QString::fromStdString(code)); },
            "warehouse code; may be given several times")
        ->type_name("CODE")
        ->take_all()
        ->trigger_on_parse();
    command->add_flag("--temporary", request.hasTemporary, "temporary imports or exports too");
    addText(*command, "--soc", options.prefix, "company prefix of three table names")->type_name("PREFIX");
    addFile(*command, "--out", request.out, "file; its ending chooses the format")->type_name("FILE")->required();
    addTimeout(*command, options, "3600");
    addTrace(*command, options);
    return command;
}

CLI::App* addDrive(CLI::App& app, Options& options) {
    CLI::App* drive = app.add_subcommand("drive", "Works the window by JSON lines from standard input");
    addSource(*drive, options);
    addTimeout(*drive, options, "never");
    addTrace(*drive, options);
    drive->footer("docs/drive.md has the commands and their answers.");
    return drive;
}

CLI::App* addSample(CLI::App& app, Options& options) {
    CLI::App* sample = app.add_subcommand("sample-db", "Writes the sample data into an embedded database");
    addFile(*sample, "FILE", options.sampleFile, "file to write")->required();
    sample->add_flag("--sql", options.isSampleScript, "write a SQL Server script instead");
    sample->add_option("--documents", options.documents, "number of documents")->check(CLI::PositiveNumber);
    sample->add_option("--seed", options.seed, "seed of the data")->check(CLI::PositiveNumber);
    return sample;
}

/// Without the name of a command, the demonstration is meant.
std::vector<std::string> argumentsOf(int argc, const char* const* argv) {
    std::vector<std::string> arguments(argv + std::min(argc, 1), argv + argc);
    const bool isHelp =
        !arguments.empty() && (arguments[0] == "--help" || arguments[0] == "-h" || arguments[0] == "--version");
    if (arguments.empty() || (arguments[0].starts_with("-") && !isHelp)) arguments.insert(arguments.begin(), "demo");
    std::reverse(arguments.begin(), arguments.end());
    return arguments;
}

}  // namespace

std::variant<Options, int> readCommandLine(int argc, const char* const* argv) {
    Options options;
    CLI::App app("Host of the foreign-trade invoice reports", "velcoran-host");
    app.set_version_flag("--version", [] { return versionText(); });
    app.require_subcommand(1);
    app.failure_message([](const CLI::App*, const CLI::Error& error) {
        return "velcoran-host: " + std::string(error.what()) + " (--help tells more)\n";
    });
    constexpr double kExportTimeout = 3600;
    const std::pair<Command, CLI::App*> commands[] = {
        {Command::Demo, addDemo(app, options)},
        {Command::Open, addOpen(app, options)},
        {Command::Export, addExport(app, options)},
        {Command::Drive, addDrive(app, options)},
        {Command::SampleDatabase, addSample(app, options)},
        {Command::Register, app.add_subcommand("register", "Registers the component for this user")},
        {Command::Unregister, app.add_subcommand("unregister", "Removes the registration")},
    };
    try {
        app.parse(argumentsOf(argc, argv));
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? kStatusDone : kStatusUsage;
    }
    for (const auto& [command, subcommand] : commands)
        if (subcommand->parsed()) options.command = command;
    // A scheduled report ends by itself; in front of a script somebody waits.
    if (options.command == Command::Export && options.timeout == 0) options.timeout = kExportTimeout;
    return options;
}

}  // namespace velcoran::host
