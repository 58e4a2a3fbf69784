#include "message_dialog.h"

#include "desktop/own_look.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>

using namespace Qt::StringLiterals;

namespace velcoran::component {

namespace {

QMessageBox::Icon iconOf(std::int16_t style) {
    switch (style) {
        case kStilError:
            return QMessageBox::Critical;
        case kStilInformation:
            return QMessageBox::Information;
        default:
            return QMessageBox::NoIcon;
    }
}

}  // namespace

com::HResult MessageDialog::Afiseaza(com::Bstr Text, std::int16_t Stil, std::int16_t, com::Bstr Titlu, std::int32_t,
                                     std::int32_t, std::int32_t* rezultat) {
    return com::guarded([&] {
        constexpr std::int32_t kOkButton = 1;
        QMessageBox box(QApplication::activeWindow());
        const desktop::OwnLook look(box);  // its parent may be a window of the host
        box.setIcon(iconOf(Stil));
        box.setWindowTitle(com::toQString(Titlu));
        box.setText(com::toQString(Text));
        box.setStandardButtons(QMessageBox::Ok);
        box.setTextFormat(Qt::PlainText);
        box.button(QMessageBox::Ok)->setText(u"OK"_s);
        box.exec();
        if (rezultat != nullptr) *rezultat = kOkButton;
    });
}

com::HResult HostMessages::Afiseaza(com::Bstr Text, std::int16_t Stil, std::int16_t Implicit, com::Bstr Titlu,
                                    std::int32_t rezervat1, std::int32_t rezervat2, std::int32_t* rezultat) {
    const com::HResult shown =
        com::guarded([&] { return m_host->Afiseaza(Text, Stil, Implicit, Titlu, rezervat1, rezervat2, rezultat); });
    if (com::succeeded(shown)) return shown;
    return com::makeObject<MessageDialog>()->Afiseaza(Text, Stil, Implicit, Titlu, rezervat1, rezervat2, rezultat);
}

}  // namespace velcoran::component
