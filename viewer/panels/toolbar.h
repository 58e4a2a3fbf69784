#pragma once

#include "viewer/commands/command_actions.h"

#include <QWidget>

#include <initializer_list>
#include <vector>

class QLabel;
class QMenu;
class QProgressBar;
class QToolButton;

namespace velcoran::viewer {

class PageBox;
class SearchBar;
class ZoomBox;

/// The viewer's toolbar: buttons in sections, the page box, the zoom list, the search box and the progress of loading.
/// Its right end stays free for two buttons of the window, which lie over it. Sections that do not fit a narrow window
/// go into a menu.
class Toolbar : public QWidget {
public:
    /// Height, and what stays free at the right end: two buttons of 1770 and the margin of 500 behind them.
    static constexpr int kHeightTwips = 480;
    static constexpr int kFreeTwips = 3540 + 500;

    /// @param actions  what the buttons show; outlives this
    Toolbar(QWidget* parent, CommandActions& actions);
    ~Toolbar() override;

    void setOptions(const ViewerOptions& options);
    /// Follows the actions: the boxes of commands that cannot be used are off.
    void refresh();
    /// Shows how far a loading is; an empty text hides it.
    void setProgress(const QString& text);
    /// Puts the cursor into the page box.
    void openPageBox();
    /// Shows the search box, also where there was no room for it, and puts the cursor into it.
    void openSearch();
    [[nodiscard]] PageBox& pageBox() { return *m_pageBox; }
    [[nodiscard]] SearchBar& searchBar() { return *m_search; }
    [[nodiscard]] ZoomBox& zoomBox() { return *m_zoom; }

protected:
    void changeEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    struct Section;

    void buildProgress();
    void buildOverflow();
    void buildSections();
    void addSection(int rank, std::vector<Command> commands, std::initializer_list<QWidget*> widgets = {});
    QToolButton* addButton(Command command, QWidget* parent);
    void refreshIcons();
    void arrange();
    [[nodiscard]] bool isOn(const Section& section) const;
    [[nodiscard]] int rankOf(const Section& section) const;
    void fillOverflowMenu();

    CommandActions& m_actions;
    ViewerOptions m_options;
    std::vector<Section> m_sections;
    SearchBar* m_search;
    PageBox* m_pageBox;
    ZoomBox* m_zoom;
    QLabel* m_progressText = nullptr;
    QProgressBar* m_progressBar = nullptr;
    QToolButton* m_overflow = nullptr;
    QMenu* m_overflowMenu = nullptr;
    bool m_isSearchForced = false;
    bool m_isLoading = false;
};

}  // namespace velcoran::viewer
