#include "viewer_options.h"

#include <algorithm>

namespace velcoran::viewer {

namespace {

struct OptionRow {
    int option;  ///< number in the viewer's interface
    Part part;
    bool isOnAtFirst;  ///< what holds until the option is set
};

/// The sixteen options, by number.
constexpr OptionRow kRows[] = {
    {253, Part::Tree, true},       {254, Part::Navigation, true},    {255, Part::Search, true},
    {257, Part::Progress, true},   {258, Part::PrintButton, true},   {259, Part::RefreshButton, false},
    {260, Part::Zoom, true},       {261, Part::HelpButton, false},   {262, Part::CloseButton, false},
    {263, Part::TreeButton, true}, {264, Part::FilterButton, false}, {340, Part::ExportButton, true},
    {364, Part::StopButton, true}, {365, Part::Toolbar, true},       {367, Part::Tabs, false},
    {370, Part::Animation, false},
};

}  // namespace

bool ViewerOptions::isOn(Part part) const {
    const auto* row = std::ranges::find_if(kRows, [part](const OptionRow& entry) { return entry.part == part; });
    return m_values.value(row->option, row->isOnAtFirst);
}

QVariantMap ViewerOptions::toMap() const {
    QVariantMap map;
    for (auto entry = m_values.cbegin(); entry != m_values.cend(); ++entry)
        map.insert(QString::number(entry.key()), entry.value());
    return map;
}

}  // namespace velcoran::viewer
