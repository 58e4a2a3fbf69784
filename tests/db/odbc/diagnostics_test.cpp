#include "db/odbc/diagnostics.h"

#include "support/test_data.h"

#include "db/odbc/connection_text.h"

#include <gtest/gtest.h>

namespace velcoran::odbc {
namespace {

using namespace Qt::StringLiterals;

TEST(Diagnostics, keepTheServersWords) {
    const struct {
        QString message;
        QString words;
    } cases[] = {
        {u"[FreeTDS][SQL Server]Invalid object name 'X'."_s, u"Invalid object name 'X'."_s},
        {u"[unixODBC][Driver Manager] Can't open lib"_s, u"Can't open lib"_s},
        {u"[SQL Server][dbo].[Facturi] is not there"_s, u"[dbo].[Facturi] is not there"_s},
        {u"no [prefix] here"_s, u"no [prefix] here"_s},
        {u"[unclosed"_s, u"[unclosed"_s},
    };
    for (const auto& one : cases) EXPECT_EQ(withoutPrefixes(one.message), one.words);
}

TEST(Diagnostics, becomeOneErrorWithThePublishedNumber) {
    const struct {
        QStringList states;
        Phase phase;
        std::int32_t number;
    } cases[] = {
        {{u"42S02"_s, u"42000"_s}, Phase::Running, base::kNoSuchObject},
        {{u"01000"_s, u"42000"_s}, Phase::Running, base::kStatementError},
        {{u"42S22"_s}, Phase::Running, base::kStatementError},
        {{u"22012"_s}, Phase::Running, base::kStatementError},
        {{u"HYT00"_s}, Phase::Running, base::kStatementError},
        {{u"08S01"_s, u"42000"_s}, Phase::Running, base::kProviderFailure},
        {{u"08001"_s, u"28000"_s}, Phase::Connecting, base::kAuthenticationFailed},
        {{u"08004"_s}, Phase::Running, base::kStatementError},
        {{u"08004"_s}, Phase::Connecting, base::kProviderFailure},
        {{u"08004"_s, u"42S02"_s}, Phase::Running, base::kNoSuchObject},
        {{u"IM002"_s}, Phase::Connecting, base::kProviderFailure},
        {{}, Phase::Running, base::kStatementError},
    };
    for (const auto& one : cases) {
        QList<DiagnosticRecord> records;
        for (const QString& state : one.states) records.append({state, 1, u"words of "_s + state});
        const base::Error error = errorOf(records, one.phase, {});
        EXPECT_EQ(error.number(), one.number) << error.what();
        for (const QString& state : one.states) EXPECT_TRUE(error.description().contains(state));
        EXPECT_FALSE(error.description().isEmpty());
    }
}

}  // namespace
}  // namespace velcoran::odbc
