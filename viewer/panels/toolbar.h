#pragma once

#include "viewer/commands/commands.h"
#include "viewer/commands/viewer_options.h"
#include "viewer/pages/page_layout.h"

#include <QMap>
#include <QWidget>

#include <functional>
#include <vector>

class QComboBox;
class QLabel;
class QLineEdit;
class QMenu;
class QProgressBar;
class QToolButton;

namespace velcoran::viewer {

class SearchBar;

/// The viewer's toolbar: buttons in sections, the page box, the zoom list, the search box and the progress of loading.
/// Its right end stays free for two buttons of the window, which lie over it. Sections that do not fit a narrow window
/// go into a menu.
class Toolbar : public QWidget {
    Q_OBJECT

public:
    /// Height, and what stays free at the right end: two buttons of 1770 and the margin of 500 behind them.
    static constexpr int kHeightTwips = 480;
    static constexpr int kFreeTwips = 3540 + 500;

    explicit Toolbar(QWidget* parent);
    ~Toolbar() override;

    void setOptions(const ViewerOptions& options);
    /// Which commands can be used now.
    void setEnabledCommands(const std::function<bool(Command)>& isEnabled);
    void setPage(int page, int pageCount);
    void setZoom(const Zoom& zoom, double percent);
    /// Shows how far a loading is; an empty text hides it.
    void setProgress(const QString& text);
    void setTreeShown(bool isShown);
    /// Puts the cursor into the page box.
    void openPageBox();
    /// Shows the search box, also where there was no room for it, and puts the cursor into it.
    void openSearch();
    [[nodiscard]] SearchBar& searchBar() { return *m_search; }

signals:
    void triggered(velcoran::viewer::Command command);
    void pageEntered(int page);
    void zoomChosen(const velcoran::viewer::Zoom& zoom);
    /// An entry is done or given up: the pages take the focus again.
    void left();

protected:
    void changeEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Section;

    void buildSections();
    void addSection(int rank, std::vector<Command> commands, std::initializer_list<QWidget*> widgets = {});
    QToolButton* addButton(Command command, QWidget* parent);
    void buildPageBox();
    void buildZoomList();
    void enterPage();
    void enterZoom();
    void refreshIcons();
    void arrange();
    [[nodiscard]] bool isOn(const Section& section) const;
    void fillOverflowMenu();

    ViewerOptions m_options;
    std::vector<Section> m_sections;
    QMap<Command, QToolButton*> m_buttons;
    SearchBar* m_search = nullptr;
    QLineEdit* m_pageBox = nullptr;
    QComboBox* m_zoomList = nullptr;
    QLabel* m_progressText = nullptr;
    QProgressBar* m_progressBar = nullptr;
    QToolButton* m_overflow = nullptr;
    QMenu* m_overflowMenu = nullptr;
    QString m_pageText;
    QString m_zoomText;
    bool m_isSearchForced = false;
    bool m_isLoading = false;
};

}  // namespace velcoran::viewer
