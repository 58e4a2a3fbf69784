#pragma once

#include <QMap>
#include <QVariantMap>

namespace velcoran::viewer {

/// The part of the viewer that a display option switches.
enum class Part {
    Tree,
    Navigation,
    Search,
    Progress,
    PrintButton,
    RefreshButton,
    Zoom,
    HelpButton,
    CloseButton,
    TreeButton,
    FilterButton,
    ExportButton,
    StopButton,
    Toolbar,
    Tabs,
    Animation,
};

/// Display options as they were set, and what they mean for each part.
class ViewerOptions {
public:
    /// Numbers without a part are kept and do nothing.
    void set(int option, bool isOn) { m_values[option] = isOn; }
    [[nodiscard]] bool isOn(Part part) const;
    /// Whether the commands of a part can be used: where its buttons are hidden their keys go as well, except those
    /// that move and enlarge.
    [[nodiscard]] bool allowsCommands(Part part) const;
    /// Number as text to value, for the options that were set.
    [[nodiscard]] QVariantMap toMap() const;

private:
    QMap<int, bool> m_values;
};

}  // namespace velcoran::viewer
