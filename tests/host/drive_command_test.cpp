#include "host/drive_command.h"
#include "host/drive_loop.h"

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
          R"({"do":"answer","dialog":"print","file":"out.pdf","from":1,"to":2,"copies":1})"})
        EXPECT_TRUE(std::holds_alternative<DriveCommand>(parseCommand(line))) << line.constData();
    const auto parsed = parseCommand(R"({"do":"click","control":"Grid","row":2,"column":1})");
    const auto& command = std::get<DriveCommand>(parsed);
    EXPECT_EQ(command.name, u"click"_s);
    EXPECT_EQ(command.text("control"), u"Grid"_s);
    EXPECT_EQ(command.whole("row"), 2);
    EXPECT_FALSE(command.has("index"));
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
