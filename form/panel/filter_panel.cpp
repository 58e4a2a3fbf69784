#include "filter_panel.h"

#include "filters/lookup_fields.h"

namespace velcoran::form {

using filters::LookupField;

namespace {

/// Characters that would break a statement, refused as they are typed.
constexpr QStringView kRefused = u"';%,\" ";

/// What the totals box switches, in this order.
constexpr Ctl kProductFilters[] = {Ctl::cmbCategorie, Ctl::txtTipProdus, Ctl::txtGrupaProdus, Ctl::txtSubGrupaProdus,
                                   Ctl::txtCodProdus};

/// The entry of cmbSelectie for which the temporary documents cannot be chosen; the list does not have it yet.
constexpr int kSelectionWithoutTemporary = 1;

}  // namespace

FilterPanel::FilterPanel(const ControlTree& controls, filters::Codes& codes, HandlerGuard& handlers)
    : m_controls(controls), m_codes(codes), m_handlers(handlers) {
    for (const filters::LookupFieldRow& one : filters::kLookupFields) connectField(one.field);
    connectLists();
}

void FilterPanel::colourOnFocus(controls::Control& control) {
    control.setFocusHandler([this, &control](bool isGained) {
        m_handlers.run([&] { control.setBackColour(isGained ? kFocusColour : kRestColour); });
    });
}

void FilterPanel::connectField(LookupField field) {
    controls::TextBox& box = m_controls.textBox(field);
    colourOnFocus(box);
    box.setRefusedCharacters([](const QString& character) { return kRefused.contains(character); });
    QObject::connect(&box, &controls::TextBox::changed, &box,
                     [this, field] { m_handlers.run([&] { runCascade(field, *this); }); });
}

void FilterPanel::connectLists() {
    for (const Ctl list : {Ctl::cmbTipRaport, Ctl::cmbSortare, Ctl::cmbSelectie, Ctl::cmbCategorie})
        colourOnFocus(m_controls.list(list));
    QObject::connect(&m_controls.list(Ctl::cmbCategorie), &controls::DropDownList::changed,
                     &m_controls.list(Ctl::cmbCategorie),
                     [this] { m_handlers.run([&] { runCascade(Trigger::cmbCategorie, *this); }); });
    QObject::connect(&m_controls.list(Ctl::cmbSelectie), &controls::DropDownList::changed,
                     &m_controls.list(Ctl::cmbSelectie),
                     [this](int index) { m_handlers.run([&] { onSelection(index); }); });
    controls::CheckBox& totals = m_controls.checkBox(Ctl::chkTotale);
    QObject::connect(&totals, &controls::CheckBox::changed, &totals, [this](bool isTicked) {
        m_handlers.run([&] { runCascade(isTicked ? Trigger::totalsTicked : Trigger::totalsUnticked, *this); });
    });
    QObject::connect(&totals, &controls::CheckBox::ticked, &totals,
                     [this](bool isTicked) { m_controls.widget(Ctl::cmbSortare).setEnabled(!isTicked); });
}

void FilterPanel::onSelection(int index) {
    controls::CheckBox& temporary = m_controls.checkBox(Ctl::chkLohn);
    temporary.setValue(false);
    temporary.setLocked(index == kSelectionWithoutTemporary);
}

void FilterPanel::emptyField(LookupField field) { m_controls.textBox(field).setText(QString()); }

void FilterPanel::emptyCode(filters::CodeVariable code) { m_codes[code].clear(); }

void FilterPanel::markChanged(LookupField field) { m_controls.textBox(field).setDataChanged(true); }

void FilterPanel::clearDataChanged(LookupField field) { m_controls.textBox(field).setDataChanged(false); }

void FilterPanel::resetCategory() { m_controls.list(Ctl::cmbCategorie).setIndex(0); }

void FilterPanel::enableProducts(bool isEnabled) {
    for (const Ctl control : kProductFilters) m_controls.widget(control).setEnabled(isEnabled);
}

}  // namespace velcoran::form
