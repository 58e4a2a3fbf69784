#pragma once

#include <QVariantMap>
#include <QWidget>

#include <memory>

namespace velcoran::engine {
class Report;
}

namespace velcoran::viewer {

/// The report viewer control: shows a report, page by page, and tells its window what the user asks for.
///
/// Loading runs on the report's worker; the answers come back to this widget's thread. Every view starts with
/// downloadStarted and ends with exactly one downloadFinished - at the end, after a stop, after a failure (which the
/// pane then shows) and after a cancelled load - except when the viewer is destroyed first.
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
    void setReportSource(std::shared_ptr<engine::Report> report);
    /// Starts loading the report source. Loading before: cancelled first, with its notification.
    void viewReport();
    [[nodiscard]] bool isBusy() const;
    /// True once a report has been loaded and is shown.
    [[nodiscard]] bool hasReport() const;
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
    /// tree; "goto" with a page; "search" with a text (answers the map {"page": n} or an invalid variant); "object"
    /// with {page, field, record}. @return an invalid variant where there is nothing to answer
    Q_INVOKABLE QVariant act(const QString& action, const QVariantMap& arguments);

signals:
    /// The user pressed print. @param useDefault  left true, the viewer prints by itself
    void printButtonClicked(bool* useDefault);
    void exportButtonClicked(bool* useDefault);
    /// The user double-clicked a report object. @param fields  values of the object's fields as the page shows them, in
    ///     order; empty for an object without fields
    void objectClicked(int x, int y, const QStringList& fields, bool* useDefault);
    void downloadStarted(int loadingType);
    void downloadFinished(int loadingType);

private:
    class Private;
    std::unique_ptr<Private> m_private;
};

}  // namespace velcoran::viewer
