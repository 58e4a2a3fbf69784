#pragma once

#include <QVariantMap>
#include <QWidget>

#include <functional>
#include <memory>

namespace velcoran::report {
class Document;
class Report;
struct PageSetup;
}  // namespace velcoran::report

namespace velcoran::viewer {

/// The report viewer control: shows a report, page by page, and tells its window what the user asks for.
///
/// Loading runs on the report's worker; the answers come back to this widget's thread. A view whose statement answers
/// gives one downloadStarted, and every view ends with exactly one downloadFinished - at the end, after a stop, after a
/// failure (which the pane then shows) and after a cancelled load - except when the viewer is destroyed first.
///
/// The focus goes to the pages (setFocus on the viewer does that); Tab leaves the viewer from wherever in it the focus
/// is. The toolbar is 480 twips high and leaves 4040 twips free at its right end. Child widgets have names that begin
/// with "crw".
class ReportViewer : public QWidget {
    Q_OBJECT
    Q_PROPERTY(bool busy READ isBusy)
    Q_PROPERTY(bool hasReport READ hasReport)
    Q_PROPERTY(QVariantMap options READ options)

public:
    explicit ReportViewer(QWidget* parent = nullptr);
    ~ReportViewer() override;

    /// Display options by number: 253 group tree, 254 navigation, 255 search, 257 progress, 258 print, 259 refresh,
    /// 260 zoom, 261 help, 262 close, 263 group tree button, 264 filter, 340 export, 364 stop, 365 toolbar, 367 tabs,
    /// 370 animation. Unknown numbers are kept and do nothing.
    void setOption(int option, bool isOn);
    /// Number as text to value, for the options that were set.
    [[nodiscard]] QVariantMap options() const;

    /// Sets the report; what was shown is cleared. Null clears.
    void setReportSource(std::shared_ptr<report::Report> report);
    /// Starts loading the report source. Loading before: cancelled first, with its notification.
    void viewReport();
    [[nodiscard]] bool isBusy() const;
    /// True once a report has been loaded and is shown.
    [[nodiscard]] bool hasReport() const;
    /// The report whose rows are shown; null without one.
    [[nodiscard]] std::shared_ptr<report::Report> shownReport() const;
    /// The failure of the last load, as "number" and "description"; an invalid variant when it did not fail.
    Q_INVOKABLE QVariant failure() const;
    /// Whether somebody opens the document behind a row, asked when it matters. Nobody does at first: the command is
    /// neither in the menu nor has it a key then.
    void setOpensDocuments(std::function<bool()> opensDocuments);
    /// Whether somebody listens to the filter button.
    [[nodiscard]] bool hasFilterListener() const;
    /// Stops a running load, as the stop button does; downloadFinished follows. Nothing happens when none runs.
    void stopLoading();
    /// What is shown; null without a report. Shared with printing and exports.
    [[nodiscard]] std::shared_ptr<const report::Document> document() const;
    /// The sheet that reports are laid out for, the shown one with the next refreshEx, later ones when they are loaded.
    /// At first A4, turned.
    void setPageSetup(const report::PageSetup& setup);
    [[nodiscard]] const report::PageSetup& pageSetup() const;
    /// The page that the user is on, from 1; 0 without a report.
    [[nodiscard]] int currentPage() const;
    /// Draws again after a change of the page set-up. @param isServerDataRead  false keeps the data; true loads again
    void refreshEx(bool isServerDataRead);
    /// Cancels a running load and waits for the worker. downloadFinished is given when isNotifying.
    void cancelLoading(bool isNotifying);

    /// The shown report as plain values, as drive mode answers "report"; an invalid variant while none is shown.
    Q_INVOKABLE QVariant report() const;
    /// Texts of a page as a person reads it, line by line, cells separated by a tab. Empty for no such page.
    Q_INVOKABLE QStringList pageLines(int page) const;
    /// Number of pages; 0 without a report.
    Q_INVOKABLE int pageCount() const;
    /// Presses a button of the toolbar by its name: export, print, first, previous, next, last, zoomIn, zoomOut, stop,
    /// tree, openDocument; "goto" with a page; "search" with a text (answers the map {"page": n} or an invalid
    /// variant); "object" with {page, field, record} (answers whether there is such an object); "formats" (answers the
    /// export formats, a list of {type, name, extension}). What the toolbar does not offer just now does nothing.
    /// @return an invalid variant where there is nothing to answer
    Q_INVOKABLE QVariant act(const QString& action, const QVariantMap& arguments);

signals:
    /// The user pressed print, or export. Both are the window's work.
    /// @param useDefault  true at first; a window that has taken the work over sets it to false
    void printButtonClicked(bool* useDefault);
    void exportButtonClicked(bool* useDefault);
    /// The user double-clicked a report object.
    /// @param fields  whole values of the object's fields, in order; empty for an object without fields
    void objectClicked(int x, int y, const QStringList& fields, bool* useDefault);
    /// The user asks for the document of the chosen row. @param number, partner  NumarFactura and CodClient of the row
    void documentRequested(const QString& number, const QString& partner);
    /// The statement has answered. @param loadingType  always 0
    void downloadStarted(int loadingType);
    void downloadFinished(int loadingType);
    /// The filter button (option 264), which can be used only while somebody is connected to this.
    void filterButtonClicked();
    /// @param page  from 1; 0 when there is no report any more
    void currentPageChanged(int page);

protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool focusNextPrevChild(bool isNext) override;

private:
    struct Inside;
    std::unique_ptr<Inside> m_inside;
};

}  // namespace velcoran::viewer
