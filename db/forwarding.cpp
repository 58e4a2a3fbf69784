#include "forwarding.h"

#include "connection.h"

namespace velcoran::db {

com::HResult handOn(com::HResult result, com::IUnknown* inner) {
    if (com::failed(result)) com::setThreadError(errorOf(result, inner));
    return result;
}

void ForwardingConnection::admit(const QString&, Via) {}

com::Ref<IRows> ForwardingConnection::wrap(com::Ref<IRows> rows, const QString&) { return rows; }

com::Ref<IStatement> ForwardingConnection::wrap(com::Ref<IStatement> statement, const QString&) { return statement; }

template <class Result, class Call>
com::HResult ForwardingConnection::forward(com::Bstr text, Via via, Result** result, Call call) {
    if (result == nullptr) return com::kNullPointer;
    *result = nullptr;
    return com::guarded([&]() -> com::HResult {
        const QString statement = com::toQString(text);
        admit(statement, via);
        com::Ref<Result> inner;
        const com::HResult answer = call(inner.receive());
        if (com::failed(answer) || !inner) return handOn(answer, m_inner.get());
        *result = wrap(std::move(inner), statement).release();
        return answer;
    });
}

com::HResult ForwardingConnection::Execute(com::Bstr text, IRows** rows) {
    return forward(text, Via::execute, rows, [&](IRows** inner) { return m_inner->Execute(text, inner); });
}

com::HResult ForwardingConnection::OpenRowset(com::Bstr text, std::int32_t cursorLocation, std::int32_t cursorType,
                                              std::int32_t lockType, IRows** rows) {
    return forward(text, Via::recordset, rows, [&](IRows** inner) {
        return m_inner->OpenRowset(text, cursorLocation, cursorType, lockType, inner);
    });
}

com::HResult ForwardingConnection::Prepare(com::Bstr text, IStatement** statement) {
    return forward(text, Via::command, statement, [&](IStatement** inner) { return m_inner->Prepare(text, inner); });
}

}  // namespace velcoran::db
