#pragma once

#include <array>

namespace velcoran::query {

/// A display option of the report viewer and what a run sets it to.
struct ViewerOption {
    int number;
    bool isOn;
};

/// All that a run sets, in the order of setting.
inline constexpr std::array<ViewerOption, 16> kViewerOptions{{
    {365, true},   // toolbar
    {263, true},   // group tree button
    {254, true},   // navigation buttons
    {364, true},   // stop button
    {259, false},  // refresh button
    {262, false},  // close button
    {258, true},   // print button
    {253, true},   // group tree shown
    {370, false},  // animation
    {261, false},  // help button
    {260, true},   // zoom
    {367, false},  // tabs
    {264, false},  // filter button
    {255, true},   // search
    {340, true},   // export button
    {257, true},   // progress
}};

}  // namespace velcoran::query
