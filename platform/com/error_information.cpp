#include "platform/com/error_information.h"

namespace velcoran::com {

namespace {

std::optional<base::Error>& slot() {
    thread_local std::optional<base::Error> error;
    return error;
}

}  // namespace

const std::optional<base::Error>& threadError() { return slot(); }

void setThreadError(std::optional<base::Error> error) { slot() = std::move(error); }

HResult keepCurrentException() noexcept {
    try {
        throw;
    } catch (const base::Error& error) {
        setThreadError(error);
        return resultOfNumber(error.number());
    } catch (const base::Cancelled&) {
        setThreadError(base::Error(base::kProviderFailure, QStringLiteral("Operation was cancelled")));
        return kUnspecifiedFailure;
    } catch (const std::bad_alloc&) {
        return kOutOfMemory;
    } catch (const std::exception& exception) {
        setThreadError(base::Error(base::kProviderFailure, QString::fromUtf8(exception.what())));
        return kUnspecifiedFailure;
    } catch (...) {
        return kUnexpected;
    }
}

}  // namespace velcoran::com
