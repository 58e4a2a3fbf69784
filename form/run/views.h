#pragma once

#include "controls/input/second_press.h"

namespace velcoran::form {

class ControlTree;

/// The two views of the window: the report alone, or the filters before it.
class Views {
public:
    /// @param controls  outlive this
    explicit Views(const ControlTree& controls) : m_controls(controls) {}

    void showReport();
    /// Nothing while the picker is open.
    void showFilters();

private:
    const ControlTree& m_controls;
    controls::SecondPressGuard m_secondPress;
};

}  // namespace velcoran::form
