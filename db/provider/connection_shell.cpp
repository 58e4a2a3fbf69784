#include "connection_shell.h"

namespace velcoran::provider {

com::HResult ConnectionShell::Execute(com::Bstr text, IRows** rows) {
    return com::guarded([&] {
        if (rows == nullptr) return com::kNullPointer;
        *rows = nullptr;
        *rows = run(com::toQString(text)).release();
        return com::kOk;
    });
}

com::HResult ConnectionShell::OpenRowset(com::Bstr text, std::int32_t cursorLocation, std::int32_t, std::int32_t,
                                         IRows** rows) {
    if (cursorLocation != kCursorClient) return com::guarded([] { throw cursorLocationError(); });
    return Execute(text, rows);
}

com::HResult ConnectionShell::Prepare(com::Bstr text, IStatement** statement) {
    return com::guarded([&] {
        if (statement == nullptr) return com::kNullPointer;
        *statement = nullptr;
        *statement = prepare(com::toQString(text)).release();
        return com::kOk;
    });
}

com::HResult ConnectionShell::Cancel() {
    stopAll();
    return com::kOk;
}

}  // namespace velcoran::provider
