#include "message.h"

#include "activity.h"
#include "com/error_information.h"

namespace velcoran::form {

void showMessage(Activity& activity, const com::Ref<IMesaje>& mesaje, const QString& text, std::int16_t style,
                 const QString& title) {
    const com::Ref<IMesaje> used = mesaje;  // the host may close the window while its dialog is open
    if (!used) return;
    activity.callHost([&] {
        std::int32_t answer = 0;
        used->Afiseaza(com::toText(text).get(), style, 0, com::toText(title).get(), 0, 0, &answer);
    });
}

}  // namespace velcoran::form
