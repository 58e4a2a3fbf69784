#include "host/drive/drive_command.h"
#include "host/drive/drive_loop.h"

#include "support/test_data.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace velcoran::host {
namespace {

TEST(ParseCommand, refusesABadLineInWords) {
    struct Case {
        QByteArray line;
        const char* words;
    };
    const Case cases[] = {
        {"", "no JSON"},
        {"hello", "no JSON"},
        {"{\"do\":\"state\"", "no JSON"},
        {"\xff\xfe\x00", "no JSON"},
        {QByteArray(5000, '['), "no JSON"},
        {"[]", "no JSON object"},
        {"{}", "\"do\""},
        {R"({"do":7})", "\"do\""},
        {R"({"do":"State"})", "no command"},
        {R"({"do":"key"})", "\"key\" is missing"},
        {R"({"do":"key","key":"Tab","shift":1})", "\"shift\" is to be true or false"},
        {R"({"do":"focus","control":null})", "\"control\" is to be a text"},
        {R"({"do":"pick","control":"a","index":1.5})", "whole number"},
        {R"({"do":"pick","control":"a","index":1e300})", "whole number"},
        {R"({"do":"tick","control":"a","index":"1"})", "whole number"},
        {R"({"do":"incarca","kind":"Import","date":"2026-02-30"})", "a date"},
        {R"({"do":"incarca","kind":"Import","date":"15/03/2026"})", "a date"},
        {R"({"do":"incarca","kind":"Import","date":"2026-03-15","connection":"open"})", "closed"},
        {R"({"do":"wait","seconds":-1})", "seconds"},
        {R"({"do":"delay"})", "\"seconds\" is missing"},
        {R"({"do":"key","key":"Tab","repeat":-1})", "from 0 to 10000"},
        {R"({"do":"key","key":"Tab","repeat":10001})", "from 0 to 10000"},
        {R"({"do":"key","key":"Tab","repeat":2.5})", "from 0 to 10000"},
        {R"({"do":"key","key":"Tab","alt":"yes"})", "\"alt\" is to be true or false"},
        {R"({"do":"click","control":"a","button":"third"})", "\"right\""},
        {R"({"do":"click","control":"a","double":2})", "true or false"},
        {R"({"do":"during","commands":{"do":"state"}})", "a list of commands"},
    };
    for (const Case& each : cases) {
        const auto parsed = parseCommand(each.line);
        ASSERT_TRUE(std::holds_alternative<Refusal>(parsed)) << each.line.left(60).constData();
        const QString why = std::get<Refusal>(parsed).why;
        EXPECT_TRUE(why.contains(QString::fromLatin1(each.words))) << qPrintable(why);
    }
}

TEST(ParseCommand, takesWhatTheProtocolShows) {
    for (const QByteArray line :
         {R"({"do":"incarca","kind":"Export","date":"2026-03-15","soc":"","connection":false})",
          R"({"do":"incarca","kind":"Export","date":"2026-03-15","connection":"closed"})", R"({"do":"wait"})",
          R"({"do":"wait","seconds":0.5})", R"({"do":"tick","control":"chkTotale"})", R"({"do":"quit","more":[1]})",
          R"({"do":"answer","dialog":"print","file":"out.pdf","from":1,"to":2,"copies":1})",
          R"({"do":"key","key":"F4","shift":false,"alt":true,"ctrl":false,"repeat":3})",
          R"({"do":"type","text":"ab","alt":true})", R"({"do":"delay","seconds":1.5})",
          R"({"do":"click","control":"cmbCategorie","row":2,"double":true,"button":"middle"})",
          R"({"do":"during","commands":[],"after":0.5})"})
        EXPECT_TRUE(std::holds_alternative<DriveCommand>(parseCommand(line))) << line.constData();
    const auto parsed = parseCommand(R"({"do":"click","control":"Grid","row":2,"column":1})");
    const auto& command = std::get<DriveCommand>(parsed);
    EXPECT_EQ(command.name, u"click"_s);
    EXPECT_EQ(command.text("control"), u"Grid"_s);
    EXPECT_EQ(command.whole("row"), 2);
    EXPECT_FALSE(command.has("index"));
}

TEST(NestedCommands, areThoseThatAPersonCouldGiveMeanwhile) {
    const auto nested = [](const QByteArray& list) {
        const auto parsed = parseCommand(R"({"do":"during","commands":)" + list + '}');
        return nestedCommands(std::get<DriveCommand>(parsed));
    };
    const auto taken = nested(
        R"([{"do":"key","key":"Esc"},{"do":"type","text":"a"},{"do":"click","control":"a"},{"do":"focus","control":"a"},
            {"do":"incarca","kind":"Import","date":"2026-03-15"},{"do":"close"},{"do":"viewer","action":"stop"},
            {"do":"state"},{"do":"screenshot","file":"a.png"}])");
    ASSERT_TRUE(std::holds_alternative<QList<DriveCommand>>(taken));
    EXPECT_EQ(std::get<QList<DriveCommand>>(taken).size(), 9);
    struct Case {
        QByteArray list;
        const char* words;
    };
    const Case cases[] = {
        {R"([{"do":"state"},{"do":"wait"}])", "\"commands\", 2: wait is not allowed there"},
        {R"([{"do":"during","commands":[]}])", "\"commands\", 1: during is not allowed"},
        {R"([{"do":"quit"}])", "quit is not allowed"},
        {R"([{"do":"paste","text":"a"}])", "paste is not allowed"},
        {R"([{"do":"key"}])", "\"commands\", 1: \"key\" is missing"},
        {R"(["state"])", "\"commands\", 1: no JSON object"},
    };
    for (const Case& each : cases) {
        const auto refused = nested(each.list);
        ASSERT_TRUE(std::holds_alternative<Refusal>(refused)) << each.list.constData();
        const QString why = std::get<Refusal>(refused).why;
        EXPECT_TRUE(why.contains(QString::fromLatin1(each.words))) << qPrintable(why);
    }
}

TEST(LineBuffer, cutsPiecesIntoLines) {
    LineBuffer buffer;
    EXPECT_EQ(buffer.append("a"), QList<QByteArray>());
    EXPECT_EQ(buffer.append("b\r\n\nc\nd"), (QList<QByteArray>{"ab", "", "c"}));
    EXPECT_EQ(buffer.rest(), QList<QByteArray>{"d"});
    EXPECT_EQ(buffer.rest(), QList<QByteArray>());
}

}  // namespace
}  // namespace velcoran::host
