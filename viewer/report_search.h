#pragma once

#include <QString>

#include <optional>

namespace velcoran::viewer {

class PageArea;
class PageMarks;
class SearchBar;
class Searcher;
class Toolbar;

/// The search of the shown report: the box asks, the searcher finds, the pages show.
class ReportSearch {
public:
    /// All of them outlive this.
    ReportSearch(Searcher& searcher, PageMarks& marks, Toolbar& toolbar, PageArea& pages);
    ~ReportSearch();

    /// Searches from the page that the user is on; an empty text ends the search.
    void start(const QString& text);
    /// Goes on to the next or the previous hit; opens the box where nothing is searched.
    void again(bool isForward);
    /// @return false when no search was open
    bool close();
    /// What is searched; empty while nothing is.
    [[nodiscard]] QString text() const;
    /// Finds the first hit at once. @return its page, from 1; nothing without one
    std::optional<int> findNow(const QString& text);

private:
    void showHit(bool isFound);

    Searcher& m_searcher;
    PageMarks& m_marks;
    Toolbar& m_toolbar;
    SearchBar& m_bar;
    PageArea& m_pages;
};

}  // namespace velcoran::viewer
