#include "messenger.h"

#include "activity.h"
#include "com/error_information.h"

namespace velcoran::form {

void Messenger::show(const Message& message) const {
    const com::Ref<IMesaje> used = m_mesaje;  // the host may close the window while its dialog is open
    if (!used) return;
    m_activity.callHost([&] {
        std::int32_t answer = 0;
        used->Afiseaza(com::toText(message.text).get(), message.style, 0, com::toText(message.title).get(), 0, 0,
                       &answer);
    });
}

}  // namespace velcoran::form
