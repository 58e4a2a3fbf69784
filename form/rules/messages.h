#pragma once

#include "base/error.h"

#include <QString>
#include <QStringList>

#include <cstdint>
#include <optional>

namespace velcoran::form {

/// A message of the window, as its message object shows it.
struct Message {
    QString text;
    std::int16_t style = 0;  ///< kStilError or kStilInformation
    QString title;
    friend bool operator==(const Message&, const Message&) = default;
};

/// A failed run: number and description run together. @param windowCaption  its title
[[nodiscard]] Message runFailureMessage(const base::Error& error, const QString& windowCaption);

/// True for the failure of printing that leads to the printer set-up instead of a message.
[[nodiscard]] bool isPrinterSetupNeeded(const base::Error& error);
/// Text of the platform's plain message box after any other failure of printing.
[[nodiscard]] QString printFailureText(const base::Error& error);

/// True for the engine's own two report formats, 1 and 33, which are refused without a word.
[[nodiscard]] bool isRefusedFormat(int formatType);
/// A failed export.
[[nodiscard]] Message exportFailureMessage(const base::Error& error);

/// What a click on a report object shows: the value of its last field.
/// @return nothing for an object without fields
[[nodiscard]] std::optional<Message> fieldValueMessage(const QStringList& fields, const QString& windowCaption);

}  // namespace velcoran::form
