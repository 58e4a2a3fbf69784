#pragma once

#include "document.h"

#include <QString>

#include <atomic>
#include <memory>
#include <optional>
#include <vector>

namespace velcoran::report {

/// A place where a searched text stands: in the full text of an item.
struct SearchHit {
    base::PageNumber page;
    qsizetype item = 0;   ///< index into Page::items
    qsizetype start = 0;  ///< in fullText
    qsizetype length = 0;
    friend auto operator<=>(const SearchHit&, const SearchHit&) = default;
};

/// Searches a document, letters of both cases alike. Holds no state beyond the text: calls may come from any thread.
/// Every call ends with base::Cancelled soon after the flag is set.
class Search {
public:
    /// @param text  an empty text is found nowhere
    Search(std::shared_ptr<const Document> document, const QString& text);

    /// First hit behind a place, going on from the first page after the last.
    /// @param from  nothing: from the start of the report
    [[nodiscard]] std::optional<SearchHit> next(const std::optional<SearchHit>& from,
                                                const std::atomic_bool& stop) const;
    /// Last hit in front of a place, going on from the last page before the first.
    [[nodiscard]] std::optional<SearchHit> previous(const std::optional<SearchHit>& from,
                                                    const std::atomic_bool& stop) const;
    /// All hits of a page, in order.
    [[nodiscard]] std::vector<SearchHit> hitsOnPage(base::PageNumber page) const;
    /// Number of all hits in the report.
    [[nodiscard]] qint64 count(const std::atomic_bool& stop) const;

private:
    std::shared_ptr<const Document> m_document;
    QString m_text;
};

}  // namespace velcoran::report
