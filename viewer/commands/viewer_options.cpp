#include "viewer_options.h"

#include "base/enum_table.h"

namespace velcoran::viewer {

namespace {

struct OptionRow {
    Part part;
    int option;        ///< number in the viewer's interface
    bool isOnAtFirst;  ///< what holds until the option is set
    bool keepsKeys;    ///< the keys of the part's commands work without their buttons
};

/// The sixteen options, by number.
constexpr base::EnumTable<&OptionRow::part, 16> kOptions{{{
    {Part::Tree, 253, true, false},
    {Part::Navigation, 254, true, true},
    {Part::Search, 255, true, false},
    {Part::Progress, 257, true, false},
    {Part::PrintButton, 258, true, false},
    {Part::RefreshButton, 259, false, false},
    {Part::Zoom, 260, true, true},
    {Part::HelpButton, 261, false, false},
    {Part::CloseButton, 262, false, false},
    {Part::TreeButton, 263, true, false},
    {Part::FilterButton, 264, false, false},
    {Part::ExportButton, 340, true, false},
    {Part::StopButton, 364, true, false},
    {Part::Toolbar, 365, true, false},
    {Part::Tabs, 367, false, false},
    {Part::Animation, 370, false, false},
}}};

}  // namespace

bool ViewerOptions::isOn(Part part) const { return m_values.value(kOptions[part].option, kOptions[part].isOnAtFirst); }

bool ViewerOptions::allowsCommands(Part part) const { return kOptions[part].keepsKeys || isOn(part); }

QVariantMap ViewerOptions::toMap() const {
    QVariantMap map;
    for (auto entry = m_values.cbegin(); entry != m_values.cend(); ++entry)
        map.insert(QString::number(entry.key()), entry.value());
    return map;
}

}  // namespace velcoran::viewer
