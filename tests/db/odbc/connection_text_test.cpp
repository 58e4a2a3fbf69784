#include "db/odbc/connection_text.h"

#include "support/test_data.h"

#include "base/error.h"

#include <QTemporaryFile>

#include <gtest/gtest.h>

namespace velcoran::odbc {
namespace {

using namespace Qt::StringLiterals;

TEST(ConnectionText, comesFromTheArgumentAFileOrAVariable) {
    QTemporaryFile file;
    ASSERT_TRUE(file.open());
    file.write(
        "\xEF\xBB\xBF"
        "DSN=contabilitate;\r\nPWD=ș e;\n\n");
    file.flush();
    qputenv("VELCORAN_TEXT_A", " DSN=b \n");
    qputenv("VELCORAN_TEXT_B", "");
    const QString name = file.fileName();
    const struct {
        QString argument;
        QString text;
        std::int32_t number;
    } cases[] = {
        {u"DSN=a;PWD=@b"_s, u"DSN=a;PWD=@b"_s, 0},
        {u"@"_s + name, u"DSN=contabilitate;PWD=ș e;"_s, 0},
        {u"env:VELCORAN_TEXT_A"_s, u"DSN=b"_s, 0},
        {u"env:VELCORAN_TEXT_B"_s, {}, base::kInvalidProcedureCall},
        {u"env:VELCORAN_TEXT_NU_EXISTA"_s, {}, base::kInvalidProcedureCall},
        {u"@/nu/exista"_s, {}, base::kPathAccess},
        {u"  "_s, {}, base::kInvalidProcedureCall},
    };
    for (const auto& one : cases) {
        try {
            EXPECT_EQ(resolveConnectionText(one.argument), one.text);
            EXPECT_EQ(one.number, 0) << one.argument.toStdString();
        } catch (const base::Error& error) {
            EXPECT_EQ(error.number(), one.number) << error.what();
        }
    }
}

TEST(Secrets, areInNoTextThatComesBack) {
    const struct {
        QString connection;
        QString text;
        QString scrubbed;
    } cases[] = {
        {u"UID=sa;PWD=Parola123"_s, u"login of sa with Parola123 refused"_s, u"login of sa with *** refused"_s},
        {u"Password={a;b}}c};UID=x"_s, u"got a;b}c and {a;b}}c}"_s, u"got *** and ***"_s},
        {u"pwd = a ;UID=ana"_s, u"a is wrong for ana"_s, u"*** is wrong for ana"_s},
        {u"AccessToken=eyJhbGciOi=="_s, u"token eyJhbGciOi== is old"_s, u"token *** is old"_s},
        {u"DSN=x"_s, u"tried Server=s;PWD=altceva;UID=u"_s, u"tried Server=s;PWD=***;UID=u"_s},
        {u"PWD=abcd;SslKeyPwd=abcdef"_s, u"abcdef abcd"_s, u"*** ***"_s},
        {u"PWD=;UID=u"_s, u"empty passwords hide nothing"_s, u"empty passwords hide nothing"_s},
    };
    for (const auto& one : cases)
        EXPECT_EQ(Secrets(one.connection).scrub(one.text), one.scrubbed) << one.connection.toStdString();
}

}  // namespace
}  // namespace velcoran::odbc
