#pragma once

#include <velcoran/com.h>

#include <QDate>
#include <QString>

namespace velcoran::com {

/// Reads an argument as a text: texts, numbers and truth values; an empty variant is the empty text.
/// @return kOk; kTypeMismatch for null, objects and anything else
HResult readText(const Variant& variant, QString& text);
/// Reads an argument as a date: dates, numbers (days since 30 December 1899), texts of the form "yyyy-mm-dd".
/// @return kOk; kTypeMismatch
HResult readDate(const Variant& variant, Date& date);
/// Reads an argument as an interface. A null object is kOk and null.
/// @return kOk; kTypeMismatch when it is no object or lacks the interface
HResult readObject(const Variant& variant, const Guid& id, void** object);

/// Day of a date value, its time of day dropped; an invalid date beyond the range of dates (100 to 9999).
[[nodiscard]] QDate dayOf(Date date);
[[nodiscard]] Date dateOf(const QDate& day);

}  // namespace velcoran::com
