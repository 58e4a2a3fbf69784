#include "base/error.h"

#include <new>

namespace velcoran::base {

Error::Error(std::int32_t number, QString description, QString source)
    : m_number(number),
      m_description(std::move(description)),
      m_source(std::move(source)),
      m_what((QString::number(number) + QStringLiteral(": ") + m_description).toUtf8()) {}

Error currentError() noexcept {
    try {
        throw;
    } catch (const Error& error) {
        return error;
    } catch (const Cancelled&) {
        return {kStopped, QStringLiteral("Operațiunea a fost oprită.")};
    } catch (const std::bad_alloc&) {
        return {kOutOfMemory, QStringLiteral("Memorie insuficientă.")};
    } catch (const std::exception& exception) {
        return {kProviderFailure, QString::fromUtf8(exception.what())};
    } catch (...) {
        return {kProviderFailure, QStringLiteral("Eroare necunoscută.")};
    }
}

}  // namespace velcoran::base
