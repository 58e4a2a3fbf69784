#include "form/rules/messages.h"

#include "support/test_data.h"

#include <gtest/gtest.h>

namespace velcoran::form {
namespace {

using namespace Qt::StringLiterals;
using base::Error;

TEST(Failures, haveTheTextsThatUsersReport) {
    EXPECT_EQ(runFailureMessage(Error(-2147217900, u"Incorrect syntax"_s), u"Facturi Import Furnizori"_s),
              (Message{u"-2147217900Incorrect syntax"_s, 16, u"Facturi Import Furnizori"_s}));
    EXPECT_EQ(printFailureText(Error(1001, u"Hartie blocata"_s)), u"1001 - Hartie blocata");
    EXPECT_TRUE(isPrinterSetupNeeded(Error(5, {})));
    EXPECT_FALSE(isPrinterSetupNeeded(Error(6, {})));
    EXPECT_EQ(exportFailureMessage(Error(static_cast<std::int32_t>(0x800478ECU), u"x"_s)),
              (Message{u"Aceasta optiune nu este disponibila.\r\nIncercati un alt format!"_s, 64, u"ATENTIE!"_s}));
    EXPECT_EQ(
        exportFailureMessage(Error(75, u"Path/File access error"_s)),
        (Message{u"Export esuat. Contactati departamentul tehnic!\r\n75,Path/File access error"_s, 16, u"EROARE!"_s}));
}

TEST(Export, refusesTheEnginesOwnTwoFormats) {
    QList<int> refused;
    for (int type = 0; type < 100; ++type)
        if (isRefusedFormat(type)) refused.append(type);
    EXPECT_EQ(refused, (QList<int>{1, 33}));
}

TEST(FieldValue, isTheLastFieldOfTheObject) {
    EXPECT_FALSE(fieldValueMessage({}, u"Titlu"_s).has_value());
    EXPECT_EQ(fieldValueMessage({u"F1"_s, u"ALFA"_s}, u"Titlu"_s), (Message{u"ALFA"_s, 64, u"Titlu"_s}));
}

}  // namespace
}  // namespace velcoran::form
