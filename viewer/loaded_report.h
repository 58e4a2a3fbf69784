#pragma once

#include "loader.h"

#include <QObject>
#include <QTimer>

#include <functional>
#include <memory>
#include <optional>

namespace velcoran::viewer {

/// The report that is to be shown, is loading or is shown.
class LoadedReport : public QObject {
    Q_OBJECT

public:
    enum class State { Nothing, Loading, Shown, Failed, Stopped };

    /// @param show  shows what document() is by now; what it throws is a failure of the loading like any other
    explicit LoadedReport(std::function<void()> show);

    /// Cancels what loads, with its notification, and clears what is shown.
    void setSource(std::shared_ptr<report::Report> source);
    /// Cancels what loads, with its notification, and loads the source.
    void load();
    /// Lays the shown rows out anew for the sheet that is set. @return false when nothing changes
    [[nodiscard]] bool layOutAnew();
    /// Stops a load; ended follows.
    void stop();
    /// Cancels a load and waits for its worker. @param isNotifying  ended is given
    void cancel(bool isNotifying);
    /// Lets go of the worker; nothing is told any more.
    void abandon();

    [[nodiscard]] State state() const { return m_state; }
    [[nodiscard]] bool isBusy() const { return m_state == State::Loading; }
    [[nodiscard]] const std::shared_ptr<report::Report>& source() const { return m_source; }
    [[nodiscard]] const std::shared_ptr<const report::Document>& document() const { return m_document; }
    /// Name of the shown report's definition.
    [[nodiscard]] const QString& definition() const { return m_definition; }
    /// The failure of the last load; nothing when it did not fail.
    [[nodiscard]] const std::optional<base::Error>& failure() const { return m_failure; }
    /// Rows and time of the load, "1.234 rânduri · 0:07".
    [[nodiscard]] QString progressText() const;

    /// The sheet of the next layout.
    [[nodiscard]] const report::PageSetup& pageSetup() const { return m_setup; }
    void setPageSetup(const report::PageSetup& setup) { m_setup = setup; }

signals:
    /// The state is another one, or a load has gone on.
    void changed();
    /// The statement of a load has answered.
    void answered();
    /// A load has come to its end, been stopped or failed.
    void ended();

private:
    void end(const LoadResult& result);
    void take(const LoadResult& result);
    [[nodiscard]] std::optional<base::Error> tryToTake(const LoadResult& result) noexcept;
    void change(State state);

    std::function<void()> m_show;
    State m_state = State::Nothing;
    report::PageSetup m_setup;
    std::shared_ptr<report::Report> m_source;
    std::shared_ptr<const report::ReportData> m_data;
    std::shared_ptr<const report::Document> m_document;
    QString m_definition;
    std::optional<base::Error> m_failure;
    Loader m_loader;
    QTimer m_tick;  ///< tells the time while nothing else is told
};

}  // namespace velcoran::viewer
