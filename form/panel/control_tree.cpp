#include "control_tree.h"

#include "edit_menu.h"
#include "filters/lookup_fields.h"

#include <algorithm>
#include <vector>

namespace velcoran::form {

using namespace Qt::StringLiterals;

namespace {

/// Characters that a text box takes by typing and pasting.
constexpr int kTypingLimit = 30;

QWidget* makeTextBox(QWidget* parent) {
    auto* box = new controls::TextBox(parent);
    box->setTypingLimit(kTypingLimit);
    return box;
}

QWidget* makeLabel(const LayoutRow& row, QWidget* parent) {
    auto* label = new controls::Label(parent);
    label->setCaption(row.caption.toString());
    return label;
}

QWidget* makeFrame(const LayoutRow& row, QWidget* parent) {
    const bool isBare = row.kind == Kind::bareFrame;
    auto* frame = new controls::Frame(isBare ? controls::FrameLook::bare : controls::FrameLook::framed, parent);
    frame->setCaption(row.caption.toString());
    return frame;
}

QWidget* makeCheckBox(const LayoutRow& row, QWidget* parent) {
    auto* box = new controls::CheckBox(parent);
    box->setCaption(row.caption.toString());
    if (row.accelerator != 0) box->setAccelerator(row.accelerator);
    return box;
}

QWidget* makeButton(const LayoutRow& row, QWidget* parent) {
    const bool isFlat = row.kind == Kind::flatButton;
    auto* button = new controls::Button(isFlat ? controls::ButtonLook::flat : controls::ButtonLook::graphical, parent);
    button->setCaption(row.caption.toString());
    if (row.accelerator != 0) button->setAccelerator(row.accelerator);
    return button;
}

QWidget* makeWidget(const LayoutRow& row, QWidget* parent) {
    switch (row.kind) {
        case Kind::framedFrame:
        case Kind::bareFrame:
            return makeFrame(row, parent);
        case Kind::label:
            return makeLabel(row, parent);
        case Kind::textBox:
            return makeTextBox(parent);
        case Kind::dropDownList:
            return new controls::DropDownList(parent);
        case Kind::tickList:
            return new controls::TickList(parent);
        case Kind::checkBox:
            return makeCheckBox(row, parent);
        case Kind::datePicker:
            return new controls::DatePicker(parent);
        case Kind::flatButton:
        case Kind::graphicalButton:
            return makeButton(row, parent);
        case Kind::grid:
            return new controls::Grid(parent);
        case Kind::viewer:
            break;
    }
    return new viewer::ReportViewer(parent);
}

void dress(controls::Control& control, const Look& look) {
    control.setFontSpec({.points = look.points, .isBold = look.isBold});
    if (look.back.has_value()) control.setBackColour(*look.back);
    if (look.fore.has_value()) control.setForeColour(*look.fore);
    if (look.border.has_value()) control.setBorderColour(*look.border);
}

}  // namespace

ControlTree::ControlTree(QWidget& window, double density) : m_window(window), m_density(density) {
    for (const LayoutRow& row : layoutRows()) build(window, row);
    for (const LayoutRow& row : layoutRows()) widget(row.control).lower();
    for (const LayoutRow& row : layoutRows()) widget(row.control).setHidden(row.isHidden);
    orderTabs();
    nameFields();
    translateEditMenus(window);
}

ControlTree::~ControlTree() {
    for (const LayoutRow& row : layoutRows()) {
        if (row.parent == Ctl::window) delete &widget(row.control);
    }
}

void ControlTree::build(QWidget& window, const LayoutRow& row) {
    QWidget* parent = row.parent == Ctl::window ? &window : &widget(row.parent);
    QWidget* made = makeWidget(row, parent);
    made->setObjectName(row.name.toString());
    if (auto* control = controls::Control::of(made)) dress(*control, *row.look);
    m_widgets[static_cast<std::size_t>(row.control)] = made;
    place(row.control, row.place);
}

void ControlTree::orderTabs() {
    std::vector<const LayoutRow*> rows;
    for (const LayoutRow& row : layoutRows()) {
        if (row.tab != kNoTab) rows.push_back(&row);
    }
    std::ranges::sort(rows, {}, &LayoutRow::tab);
    for (std::size_t i = 1; i < rows.size(); ++i)
        QWidget::setTabOrder(&widget(rows[i - 1]->control), &widget(rows[i]->control));
}

void ControlTree::nameFields() {
    for (const FieldLabel& one : fieldLabels())
        widget(one.field).setAccessibleName(label(one.label).caption().trimmed());
    widget(Ctl::Deladata).setAccessibleDescription(u"De la data"_s);
    widget(Ctl::Ladata).setAccessibleDescription(u"Până la data"_s);
}

std::optional<Ctl> ControlTree::controlAt(const QWidget* widget) const {
    for (; widget != nullptr && !widget->isWindow(); widget = widget->parentWidget()) {
        const auto place = std::ranges::find(m_widgets, widget);
        if (place != m_widgets.end()) return static_cast<Ctl>(place - m_widgets.begin());
    }
    return std::nullopt;
}

bool ControlTree::canTakeFocus(Ctl control) const {
    const QWidget& one = widget(control);
    return one.isEnabled() && one.isVisibleTo(one.window());
}

bool ControlTree::isOwnEnabled(Ctl control) const { return !widget(control).testAttribute(Qt::WA_ForceDisabled); }

void ControlTree::place(Ctl control, const base::TwipsRect& place) {
    controls::placeTwips(&widget(control), place, m_density);
}

void ControlTree::setCaption(Ctl control, const QString& caption) {
    switch (layoutOf(control).kind) {
        case Kind::label:
            return label(control).setCaption(caption);
        case Kind::checkBox:
            return checkBox(control).setCaption(caption);
        default:
            return frame(control).setCaption(caption);
    }
}

void ControlTree::setDensity(double density) {
    m_density = density;
    for (const LayoutRow& row : layoutRows()) place(row.control, controls::twipsOf(&widget(row.control)));
}

void ControlTree::followSize(QSize pixels) {
    const ResizedPlaces places = placesFor(base::Twips::fromPixels(pixels.width(), m_density),
                                           base::Twips::fromPixels(pixels.height(), m_density));
    place(Ctl::CRW, places.CRW);
    place(Ctl::cmdViz, places.cmdViz);
    place(Ctl::Command1, places.Command1);
}

}  // namespace velcoran::form
