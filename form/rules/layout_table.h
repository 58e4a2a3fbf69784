#pragma once

#include "base/enum_table.h"
#include "filters/lookup_fields.h"
#include "layout.h"

namespace velcoran::form {

namespace designed {

inline constexpr base::Colour kBlack{0x000000};
inline constexpr base::Colour kGreen{0x00FF00};
inline constexpr base::Colour kDarkGreen{0x00C000};
inline constexpr base::Colour kBorderGreen{0x004000};
inline constexpr base::Colour kRed{0x0000FF};
inline constexpr base::Colour kSilver{0xC0C0C0};
inline constexpr base::Colour kPaleYellow{0xC0FFFF};

inline constexpr Look kSystem{};
inline constexpr Look kPanel{.back = kBlack, .points = 9, .isBold = true};
inline constexpr Look kFilterFrame{.back = kBlack, .fore = kGreen, .points = 9, .isBold = true};
inline constexpr Look kPickerFrame{.back = kBlack, .fore = kRed, .points = 9, .isBold = true};
inline constexpr Look kLabel{.fore = kDarkGreen, .points = 9};
inline constexpr Look kBrightLabel{.fore = kGreen, .points = 9};
inline constexpr Look kLargerLabel{.fore = kDarkGreen, .points = 9.75};
inline constexpr Look kWaitLabel{.back = kSilver, .fore = kRed, .points = 12, .isBold = true};
inline constexpr Look kTextBox{.back = kBlack, .fore = kGreen, .border = kBorderGreen, .points = 9, .isBold = true};
inline constexpr Look kList{.back = kBlack, .fore = kGreen, .border = kBorderGreen, .isBold = true};
inline constexpr Look kSortList{.back = kBlack, .fore = kGreen, .border = kBorderGreen, .points = 9};
inline constexpr Look kTickList{.back = kBlack, .fore = kGreen, .border = kBorderGreen};
inline constexpr Look kCheckBox{.back = kSilver, .fore = kGreen, .points = 9, .isBold = true};
inline constexpr Look kFlatButton{.back = kBlack, .fore = kGreen, .points = 9};
inline constexpr Look kPaleButton{.back = kPaleYellow, .points = 9};

/// A place in twips.
constexpr base::TwipsRect at(int left, int top, int width, int height) { return {{left}, {top}, {width}, {height}}; }

using enum Ctl;
using enum Kind;

/// The window as designed: parents before their children, siblings from the top of the stacking down.
// clang-format off
inline constexpr base::EnumTable<&LayoutRow::control, kControlCount> kLayout{{{
    {Command1, u"Command1", graphicalButton, window, at(5640, 60, 1770, 345), 21, u"&Seteaza Imprimanta", &kPaleButton},
    {cmdViz, u"cmdViz", graphicalButton, window, at(7410, 60, 1770, 345), 22, u"Filtreaza &Date", &kPaleButton},
    {fraGrid, u"fraGrid", framedFrame, window, at(2280, 7920, 7170, 3435), kNoTab,
     u"Alege Produse", &kPickerFrame, 0, true},
    {Grid, u"Grid", grid, fraGrid, at(240, 240, 6750, 2850), 34, u"", &kSystem},
    {frmEnable, u"frmEnable", framedFrame, window, at(0, 480, 11775, 7515), kNoTab, u"", &kPanel},
    {fraMesaj, u"fraMesaj", bareFrame, frmEnable, at(3480, 2880, 6315, 735), kNoTab, u"", &kPanel, 0, true},
    {Label2, u"Label2", label, fraMesaj, at(300, 270, 5595, 285), kNoTab,
     u"Asteptati va rog ! Se interogheaza baza de date ...", &kWaitLabel},
    {frmProduse, u"frmProduse", framedFrame, frmEnable, at(165, 950, 5940, 3150), kNoTab,
     u"Filtrare Produse", &kFilterFrame},
    {Label1_15, u"Label1(15)", label, frmProduse, at(120, 480, 1455, 315), kNoTab, u"Producator:", &kLabel},
    {txtProducator, u"txtProducator", textBox, frmProduse, at(2100, 400, 3615, 360), 5, u"", &kTextBox},
    {Label1_14, u"Label1(14)", label, frmProduse, at(120, 900, 1935, 315), kNoTab, u"Categorie de Produse:", &kLabel},
    {cmbCategorie, u"cmbCategorie", dropDownList, frmProduse, at(2100, 850, 3615, 360), 6, u"", &kList},
    {Label1_11, u"Label1(11)", label, frmProduse, at(120, 1350, 1695, 315), kNoTab, u"Tip de Produse:", &kLabel},
    {txtTipProdus, u"txtTipProdus", textBox, frmProduse, at(2100, 1300, 3615, 360), 7, u"", &kTextBox},
    {Label1_2, u"Label1(2)", label, frmProduse, at(120, 1830, 1695, 315), kNoTab, u"Grupa de Produse:", &kLabel},
    {txtGrupaProdus, u"txtGrupaProdus", textBox, frmProduse, at(2100, 1750, 3615, 360), 8, u"", &kTextBox},
    {Label1_0, u"Label1(0)", label, frmProduse, at(120, 2250, 1935, 315), kNoTab, u"Subgrupa de Produse:", &kLabel},
    {txtSubGrupaProdus, u"txtSubGrupaProdus", textBox, frmProduse, at(2100, 2200, 3615, 360), 9, u"", &kTextBox},
    {Label1_1, u"Label1(1)", label, frmProduse, at(150, 2720, 1935, 315), kNoTab, u"Denumire  Produs:", &kLabel},
    {txtCodProdus, u"txtCodProdus", textBox, frmProduse, at(2100, 2650, 3615, 360), 10, u"", &kTextBox},
    {Frame1, u"Frame1", framedFrame, frmEnable, at(165, 4320, 5940, 3000), kNoTab, u"ALte Filtrari", &kFilterFrame},
    {Label1_4, u"Label1(4)", label, Frame1, at(240, 570, 1650, 540), kNoTab,
     u"    Depozitul:         (implicit toate)", &kLabel},
    {cmbDepozit, u"cmbDepozit", tickList, Frame1, at(2100, 240, 3630, 1200), 14, u"", &kTickList},
    {Label1_10, u"Label1(10)", label, Frame1, at(285, 1665, 1125, 225), kNoTab, u"Filtrare Agent:", &kLabel},
    {txtCodAgent, u"txtCodAgent", textBox, Frame1, at(2100, 1590, 3615, 360), 15, u"", &kTextBox},
    {Label1_8, u"Label1(8)", label, Frame1, at(285, 2130, 765, 240), kNoTab, u"Selectie:", &kLargerLabel},
    {cmbSelectie, u"cmbSelectie", dropDownList, Frame1, at(2100, 2100, 3630, 360), 16, u"", &kList},
    {chkLohn, u"chkLohn", checkBox, Frame1, at(2160, 2520, 7140, 375), 17, u"chkLohn", &kCheckBox, u't'},
    {frmClient, u"frmClient", framedFrame, frmEnable, at(6285, 950, 5295, 3150), kNoTab,
     u"Filtrare Clienti", &kFilterFrame},
    {Label1_13, u"Label1(13)", label, frmClient, at(150, 650, 1215, 315), kNoTab, u"Tip Client:", &kLabel},
    {txtTipClient, u"txtTipClient", textBox, frmClient, at(1800, 600, 3345, 360), 11, u"", &kTextBox},
    {Label1_12, u"Label1(12)", label, frmClient, at(150, 1550, 1935, 315), kNoTab, u"Categorie Client :", &kLabel},
    {txtCatClient, u"txtCatClient", textBox, frmClient, at(1800, 1500, 3345, 360), 12, u"", &kTextBox},
    {Label1_9, u"Label1(9)", label, frmClient, at(120, 2450, 1395, 225), kNoTab, u"Denumire Client:", &kLabel},
    {txtCodClient, u"txtCodClient", textBox, frmClient, at(1800, 2400, 3345, 360), 13, u"", &kTextBox},
    {Label1_6, u"Label1(6)", label, frmEnable, at(195, 465, 1545, 225), kNoTab, u"Raport detaliat pe :", &kLabel},
    {cmbTipRaport, u"cmbTipRaport", dropDownList, frmEnable, at(1800, 405, 2535, 360), 0, u"", &kList},
    {chkTotale, u"chkTotale", checkBox, frmEnable, at(4440, 390, 900, 375), 1, u"Totale", &kCheckBox},
    {Label1_7, u"Label1(7)", label, frmEnable, at(5400, 465, 645, 225), kNoTab, u"Sortare:", &kBrightLabel},
    {cmbSortare, u"cmbSortare", dropDownList, frmEnable, at(6135, 405, 2100, 360), 2, u"", &kSortList},
    {Label1_3, u"Label1(3)", label, frmEnable, at(9675, 165, 630, 225), kNoTab, u"Interval:", &kLabel},
    {Deladata, u"Deladata", datePicker, frmEnable, at(8475, 435, 1335, 330), 3, u"", &kSystem},
    {Label1_5, u"Label1(5)", label, frmEnable, at(9945, 495, 60, 225), kNoTab, u"-", &kLabel},
    {Ladata, u"Ladata", datePicker, frmEnable, at(10140, 435, 1335, 330), 4, u"", &kSystem},
    {Raport, u"Raport", flatButton, frmEnable, at(7680, 4845, 2715, 480), 18, u"  Raporteaza", &kFlatButton, u'R'},
    {cmbVizual, u"cmbVizual", flatButton, frmEnable, at(7680, 5475, 2715, 480), 19,
     u"VIzualizeaza Raport", &kFlatButton, u'V'},
    {cmdExit, u"cmdExit", flatButton, frmEnable, at(7680, 6600, 2715, 480), 20, u"  Iesire", &kFlatButton, u'I'},
    {CRW, u"CRW", viewer, window, at(-15, -15, 14580, 9000), 23, u"", &kSystem},
}}};
// clang-format on

}  // namespace designed

/// A control that a table names; a name that no control has does not compile.
constexpr Ctl controlOfName(QStringView name) {
    for (const LayoutRow& row : designed::kLayout)
        if (std::u16string_view(row.name.utf16(), row.name.size()) == std::u16string_view(name.utf16(), name.size()))
            return row.control;
    throw "no control has this name";
}

/// The controls and the labels that name them.
inline constexpr FieldLabel kFieldLabels[] = {
    {Ctl::cmbTipRaport, Ctl::Label1_6},  {Ctl::cmbSortare, Ctl::Label1_7},     {Ctl::Deladata, Ctl::Label1_3},
    {Ctl::Ladata, Ctl::Label1_3},        {Ctl::txtProducator, Ctl::Label1_15}, {Ctl::cmbCategorie, Ctl::Label1_14},
    {Ctl::txtTipProdus, Ctl::Label1_11}, {Ctl::txtGrupaProdus, Ctl::Label1_2}, {Ctl::txtSubGrupaProdus, Ctl::Label1_0},
    {Ctl::txtCodProdus, Ctl::Label1_1},  {Ctl::txtTipClient, Ctl::Label1_13},  {Ctl::txtCatClient, Ctl::Label1_12},
    {Ctl::txtCodClient, Ctl::Label1_9},  {Ctl::cmbDepozit, Ctl::Label1_4},     {Ctl::txtCodAgent, Ctl::Label1_10},
    {Ctl::cmbSelectie, Ctl::Label1_8},
};

}  // namespace velcoran::form
