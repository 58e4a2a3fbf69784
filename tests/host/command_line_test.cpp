#include "host/app/command_line.h"

#include "support/test_data.h"

#include <gtest/gtest.h>

#include <optional>
#include <vector>

using namespace Qt::StringLiterals;

namespace velcoran::host {
namespace {

std::variant<Options, int> read(std::vector<const char*> arguments) {
    arguments.insert(arguments.begin(), "velcoran-host");
    return readCommandLine(static_cast<int>(arguments.size()), arguments.data());
}

TEST(CommandLine, namesTheCommand) {
    struct Case {
        std::vector<const char*> arguments;
        Command command;
    };
    const Case cases[] = {
        {{}, Command::Demo},
        {{"--kind", "Export"}, Command::Demo},
        {{"demo"}, Command::Demo},
        {{"open", "--db", "f", "--kind", "Import"}, Command::Open},
        {{"drive", "--odbc", "@f"}, Command::Drive},
        {{"sample-db", "f"}, Command::SampleDatabase},
        {{"register"}, Command::Register},
        {{"unregister"}, Command::Unregister},
    };
    for (const Case& each : cases) {
        const auto options = read(each.arguments);
        ASSERT_TRUE(std::holds_alternative<Options>(options)) << each.arguments.size();
        EXPECT_EQ(std::get<Options>(options).command, each.command);
    }
}

TEST(CommandLine, wrongUsageHasItsStatus) {
    const std::vector<const char*> cases[] = {
        {"fly"},
        {"drive"},
        {"drive", "--db", "f", "--timeout", "0"},
        {"drive", "--db", "f", "--timeout", "soon"},
        {"drive", "--db", "f", "--odbc", "c"},
        {"open", "--db", "f"},
        {"open", "--db", "f", "--kind", "import"},
        {"open", "--db", "f", "--kind", "Import", "--date", "2026-02-30"},
        {"export", "--db", "f", "--kind", "Import", "--from", "2026-01-01", "--to", "2026-01-02"},
        {"sample-db", "f", "--documents", "-1"},
        {"sample-db"},
        {"demo", "--nothing"},
    };
    for (const auto& arguments : cases) {
        const auto options = read(arguments);
        ASSERT_TRUE(std::holds_alternative<int>(options)) << arguments.front();
        EXPECT_EQ(std::get<int>(options), kStatusUsage) << arguments.front();
    }
    EXPECT_EQ(std::get<int>(read({"--help"})), kStatusDone);
    EXPECT_EQ(std::get<int>(read({"export", "--help"})), kStatusDone);
}

TEST(CommandLine, aTimeoutIsANumberOfSeconds) {
    EXPECT_EQ(std::get<Options>(read({"drive", "--db", "f", "--timeout", "1.5"})).timeout, 1.5);
    EXPECT_EQ(std::get<Options>(read({"drive", "--db", "f"})).timeout, 0) << "never";
}

TEST(CommandLine, anExportSaysEverything) {
    const auto read_ = read({"export", "--db",        "f.db",  "--kind",    "Export",   "--from",      "2026-01-01",
                             "--to",   "2026-03-31",  "--by",  "day",       "--totals", "--temporary", "--warehouse",
                             "1",      "--warehouse", "12",    "--partner", "C0001",    "--sort",      "Numar Document",
                             "--soc",  "ALFA.dbo.",   "--out", "o.pdf"});
    ASSERT_TRUE(std::holds_alternative<Options>(read_));
    const auto& options = std::get<Options>(read_);
    const ExportRequest& request = options.request;
    EXPECT_EQ(options.timeout, 3600);
    EXPECT_EQ(options.source.file, u"f.db"_s);
    EXPECT_EQ(options.kind, u"Export"_s);
    EXPECT_EQ(options.prefix, u"ALFA.dbo."_s);
    EXPECT_EQ(request.from, QDate(2026, 1, 1));
    EXPECT_EQ(request.to, QDate(2026, 3, 31));
    EXPECT_TRUE(request.isByDay && request.hasTotals && request.hasTemporary);
    EXPECT_EQ(request.warehouses, (QStringList{u"1"_s, u"12"_s}));
    EXPECT_EQ(request.partner, u"C0001"_s);
    EXPECT_EQ(request.sort, u"Numar Document"_s);
    EXPECT_EQ(request.out, u"o.pdf"_s);
}

}  // namespace
}  // namespace velcoran::host
