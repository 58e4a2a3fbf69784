#pragma once

#include "base/units.h"
#include "filters/filter_state.h"
#include "look.h"

#include <QStringView>

#include <cstdint>
#include <optional>
#include <span>

namespace velcoran::form {

/// The controls of the window, in the order in which the layout lists them.
enum class Ctl : std::uint8_t {
    Command1,
    cmdViz,
    fraGrid,
    Grid,
    frmEnable,
    fraMesaj,
    Label2,
    frmProduse,
    Label1_15,
    txtProducator,
    Label1_14,
    cmbCategorie,
    Label1_11,
    txtTipProdus,
    Label1_2,
    txtGrupaProdus,
    Label1_0,
    txtSubGrupaProdus,
    Label1_1,
    txtCodProdus,
    Frame1,
    Label1_4,
    cmbDepozit,
    Label1_10,
    txtCodAgent,
    Label1_8,
    cmbSelectie,
    chkLohn,
    frmClient,
    Label1_13,
    txtTipClient,
    Label1_12,
    txtCatClient,
    Label1_9,
    txtCodClient,
    Label1_6,
    cmbTipRaport,
    chkTotale,
    Label1_7,
    cmbSortare,
    Label1_3,
    Deladata,
    Label1_5,
    Ladata,
    Raport,
    cmbVizual,
    cmdExit,
    CRW,
    window,  ///< the window itself, as the container of others
};
constexpr std::size_t kControlCount = static_cast<std::size_t>(Ctl::window);

enum class Kind : std::uint8_t {
    framedFrame,
    bareFrame,
    label,
    textBox,
    dropDownList,
    tickList,
    checkBox,
    datePicker,
    flatButton,
    graphicalButton,
    grid,
    viewer
};

constexpr int kNoTab = -1;

/// A control as designed.
struct LayoutRow {
    Ctl control;
    QStringView name;
    Kind kind;
    Ctl parent;
    base::TwipsRect place;  ///< relative to the parent
    int tab;                ///< tab index of controls that can take the focus, kNoTab for the others
    QStringView caption;
    const Look* look;
    char16_t accelerator = 0;  ///< for captions without "&"
    bool isHidden = false;
};

/// All controls; parents before their children, siblings from the top of the stacking down.
[[nodiscard]] std::span<const LayoutRow> layoutRows();
[[nodiscard]] const LayoutRow& layoutOf(Ctl control);
/// The control of an object name; nothing for any other name.
[[nodiscard]] std::optional<Ctl> controlNamed(QStringView name);
/// The text box of a lookup field.
[[nodiscard]] Ctl controlOf(filters::LookupField field);

/// A control and the label that names it to people who cannot see it.
struct FieldLabel {
    Ctl field;
    Ctl label;
};
[[nodiscard]] std::span<const FieldLabel> fieldLabels();

/// The window's caption before its setup has come to its end.
inline constexpr QStringView kDesignedCaption = u"Rapoarte Terti";
/// Client area as designed.
inline constexpr base::Twips kDesignedWidth{14610};
inline constexpr base::Twips kDesignedHeight{9390};

/// Places that follow the size of the window.
struct ResizedPlaces {
    base::TwipsRect CRW, cmdViz, Command1;
};

/// The viewer fills the window; the two small buttons stand in its top band, at its right end. Narrow windows give them
/// negative places.
[[nodiscard]] ResizedPlaces placesFor(base::Twips innerWidth, base::Twips innerHeight);

}  // namespace velcoran::form
