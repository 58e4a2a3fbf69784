#include "messages.h"

#include "filters/fragments.h"

#include <velcoran/mesaje.h>

namespace velcoran::form {

using namespace Qt::StringLiterals;
using filters::joinFragments;

Message runFailureMessage(const base::Error& error, const QString& windowCaption) {
    return {joinFragments({QString::number(error.number()), error.description()}), kStilError, windowCaption};
}

bool isPrinterSetupNeeded(const base::Error& error) { return error.number() == base::kInvalidProcedureCall; }

QString printFailureText(const base::Error& error) {
    return joinFragments({QString::number(error.number()), u" - ", error.description()});
}

bool isRefusedFormat(int formatType) {
    constexpr int kOwnReport = 1;
    constexpr int kOwnDefinition = 33;
    return formatType == kOwnReport || formatType == kOwnDefinition;
}

Message exportFailureMessage(const base::Error& error) {
    if (error.number() == base::kFormatNotAvailable) {
        return {u"Aceasta optiune nu este disponibila.\r\nIncercati un alt format!"_s, kStilInformation, u"ATENTIE!"_s};
    }
    return {joinFragments({u"Export esuat. Contactati departamentul tehnic!\r\n", QString::number(error.number()), u",",
                           error.description()}),
            kStilError, u"EROARE!"_s};
}

std::optional<Message> fieldValueMessage(const QStringList& fields, const QString& windowCaption) {
    if (fields.isEmpty()) return std::nullopt;
    return Message{fields.last(), kStilInformation, windowCaption};
}

}  // namespace velcoran::form
