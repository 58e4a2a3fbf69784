#pragma once

#include <QString>

#include <cstdint>
#include <exception>

namespace velcoran::base {

/// Numbers of the errors that this system raises itself; the values are the published ones of the run-time and of the
/// data providers. A provider of a host may raise any other.
enum ErrorNumber : std::int32_t {
    kInvalidProcedureCall = 5,
    kOverflow = 6,
    kOutOfMemory = 7,
    kTypeMismatch = 13,
    kPathAccess = 75,
    kObjectNotSet = 91,
    kInvalidUseOfNull = 94,
    kValueOutOfRange = 380,
    kClassNotRegistered = 429,
    kPrinterError = 482,
    kNoCurrentRecord = 3021,
    kOperationOnClosedObject = 3704,
    kInvalidConnection = 3709,
    kStatementError = -2147217900,        ///< 0x80040E14
    kNoSuchObject = -2147217865,          ///< 0x80040E37
    kAuthenticationFailed = -2147217843,  ///< 0x80040E4D, a refused user or password
    kStopped = -2147467260,               ///< 0x80004004, what a user's stop is at a boundary; Cancelled inside
    kProviderFailure = -2147467259,       ///< 0x80004005, a lost connection among others
    kFormatNotAvailable = -2147190548,    ///< 0x800478EC, an export format that cannot hold the report
};

/// The one error type: thrown by value, caught by const reference.
class Error : public std::exception {
public:
    /// @param number       an ErrorNumber or a provider's own number
    /// @param description  what the user reads, without the number
    /// @param source       who raised it; may be empty
    Error(std::int32_t number, QString description, QString source = {});

    [[nodiscard]] std::int32_t number() const { return m_number; }
    [[nodiscard]] const QString& description() const { return m_description; }
    [[nodiscard]] const QString& source() const { return m_source; }
    /// Number, colon, description, in UTF-8, for logs and tests.
    [[nodiscard]] const char* what() const noexcept override { return m_what.constData(); }

private:
    std::int32_t m_number;
    QString m_description;
    QString m_source;
    QByteArray m_what;
};

/// A user's stop. Not an error: whoever catches it shows nothing. Across a boundary it is the error kStopped.
class Cancelled : public std::exception {
public:
    [[nodiscard]] const char* what() const noexcept override { return "cancelled"; }
};

/// The exception in flight, of whatever type, as an Error: Cancelled is kStopped, lack of memory or of threads
/// kOutOfMemory, what is no Error kProviderFailure with its own words. To be called while an exception is handled.
[[nodiscard]] Error currentError() noexcept;

}  // namespace velcoran::base
