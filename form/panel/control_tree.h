#pragma once

#include "controls/button.h"
#include "controls/check_box.h"
#include "controls/date_picker.h"
#include "controls/drop_down_list.h"
#include "controls/frame.h"
#include "controls/grid.h"
#include "controls/label.h"
#include "controls/text_box.h"
#include "controls/tick_list.h"
#include "form/rules/layout.h"
#include "viewer/report_viewer.h"

#include <array>

namespace velcoran::form {

/// The controls of a loaded window, built from the layout in their designed state. Owns them: they go when it goes.
class ControlTree {
public:
    /// @param window   gets the controls
    /// @param density  pixels an inch
    ControlTree(QWidget& window, double density);
    ~ControlTree();
    ControlTree(const ControlTree&) = delete;
    ControlTree& operator=(const ControlTree&) = delete;

    /// The window that the controls are of.
    [[nodiscard]] QWidget& window() const { return m_window; }
    [[nodiscard]] QWidget& widget(Ctl control) const { return *m_widgets[static_cast<std::size_t>(control)]; }
    /// A control as its class; the layout says which one it is.
    template <class Class>
    [[nodiscard]] Class& as(Ctl control) const {
        return static_cast<Class&>(widget(control));
    }
    [[nodiscard]] controls::TextBox& textBox(filters::LookupField field) const {
        return as<controls::TextBox>(controlOf(field));
    }
    [[nodiscard]] controls::DropDownList& list(Ctl control) const { return as<controls::DropDownList>(control); }
    [[nodiscard]] controls::CheckBox& checkBox(Ctl control) const { return as<controls::CheckBox>(control); }
    [[nodiscard]] controls::Frame& frame(Ctl control) const { return as<controls::Frame>(control); }
    [[nodiscard]] controls::Label& label(Ctl control) const { return as<controls::Label>(control); }
    [[nodiscard]] controls::DatePicker& datePicker(Ctl control) const { return as<controls::DatePicker>(control); }
    [[nodiscard]] controls::Button& button(Ctl control) const { return as<controls::Button>(control); }
    [[nodiscard]] controls::TickList& warehouses() const { return as<controls::TickList>(Ctl::cmbDepozit); }
    [[nodiscard]] controls::Grid& grid() const { return as<controls::Grid>(Ctl::Grid); }
    [[nodiscard]] viewer::ReportViewer& viewer() const { return as<viewer::ReportViewer>(Ctl::CRW); }

    /// Whether the grid lies open over the filters.
    [[nodiscard]] bool isPickerOpen() const { return !widget(Ctl::fraGrid).isHidden(); }
    /// The control that a widget is or lies in; nothing for the window and for what is not of it.
    [[nodiscard]] std::optional<Ctl> controlAt(const QWidget* widget) const;
    /// Enabled with all its containers and shown in the window.
    [[nodiscard]] bool canTakeFocus(Ctl control) const;
    /// The control's own setting, whatever its containers are.
    [[nodiscard]] bool isOwnEnabled(Ctl control) const;

    void place(Ctl control, const base::TwipsRect& place);
    /// Places every control anew where it stands in twips, after a change of the screen.
    void setDensity(double density);
    [[nodiscard]] double density() const { return m_density; }
    /// Fills the viewer and moves the two small buttons, for the window's inner size.
    void followSize(QSize pixels);
    /// Sets the caption of a label, frame or check box.
    void setCaption(Ctl control, const QString& caption);
    /// Gives the fields the texts of their labels as accessible names.
    void nameFields();

private:
    void build(QWidget& window, const LayoutRow& row);
    void orderTabs();

    QWidget& m_window;
    std::array<QWidget*, kControlCount> m_widgets{};
    double m_density;
};

}  // namespace velcoran::form
