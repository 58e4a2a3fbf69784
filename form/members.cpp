#include "form/members.h"

#include "platform/com/error_information.h"

namespace velcoran::form {

QString& Members::code(filters::CodeVariable which) {
    switch (which) {
        case filters::CodeVariable::sCodProdus:
            return sCodProdus;
        case filters::CodeVariable::sCodClient:
            return sCodClient;
        case filters::CodeVariable::sCodAgent:
            return sCodAgent;
        case filters::CodeVariable::sCodProducator:
            break;
    }
    return sCodProducator;
}

void Members::release() {
    rptFacturi.reset();
    Priza = db::Connection();
    rsQuery.reset();
    rsLookup.reset();
    objMesaje = nullptr;
}

void Members::show(const QString& text, std::int16_t style, const QString& title) const {
    // A copy holds the object while its dialog is open: the host may close the window meanwhile.
    const com::Ref<IMesaje> mesaje = objMesaje;
    if (!mesaje) return;
    std::int32_t answer = 0;
    mesaje->Afiseaza(com::toText(text).get(), style, 0, com::toText(title).get(), 0, 0, &answer);
}

}  // namespace velcoran::form
