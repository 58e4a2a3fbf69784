#include "error.h"

#include <new>
#include <stdexcept>
#include <system_error>

namespace velcoran::base {

Error::Error(std::int32_t number, QString description, QString source)
    : m_number(number),
      m_description(std::move(description)),
      m_source(std::move(source)),
      m_what((QString::number(number) + QStringLiteral(": ") + m_description).toUtf8()) {}

namespace {

Error overflowError() { return {kOverflow, QStringLiteral("Rezultatul are prea multe cifre.")}; }

}  // namespace

Error currentError() noexcept {
    try {
        throw;
    } catch (const Error& error) {
        return error;
    } catch (const Cancelled&) {
        return {kStopped, QStringLiteral("Operațiunea a fost oprită.")};
    } catch (const std::bad_alloc&) {
        return {kOutOfMemory, QStringLiteral("Memorie insuficientă.")};
    } catch (const std::overflow_error&) {
        return overflowError();
    } catch (const std::range_error&) {  // what the checked integers raise when they are converted
        return overflowError();
    } catch (const std::system_error& error) {
        if (error.code() == std::errc::resource_unavailable_try_again)
            return {kOutOfMemory, QStringLiteral("Sistemul nu mai poate porni un fir de execuție.")};
        return {kProviderFailure, QString::fromLocal8Bit(error.what())};
    } catch (const std::exception& exception) {
        return {kProviderFailure, QString::fromUtf8(exception.what())};
    } catch (...) {
        return {kProviderFailure, QStringLiteral("Eroare necunoscută.")};
    }
}

}  // namespace velcoran::base
