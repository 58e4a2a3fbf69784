#pragma once

#include "report/layout/search.h"

#include <QPointF>
#include <QRectF>

#include <deque>
#include <optional>
#include <unordered_map>
#include <vector>

namespace velcoran::viewer {

class Searcher;

/// An object of the report that the user has chosen.
struct Selection {
    int page = 0;  ///< from 0
    qsizetype item = 0;
    friend bool operator==(const Selection&, const Selection&) = default;
};

/// The object of a page at a place in twips: texts before lines, lines before boxes. Nothing where there is none.
[[nodiscard]] std::optional<qsizetype> itemAt(const report::Page& page, QPointF place);
/// The object that shows a field of a record, both counted as on the page. Nothing where there is none.
[[nodiscard]] std::optional<qsizetype> itemOfField(const report::Page& page, const QString& field, int record);
/// Rectangle of an object, in twips.
[[nodiscard]] QRectF rectOf(const report::PageItem& item);

/// The pages in view as objects, what is chosen on them and what the search has found on them.
class PageMarks {
public:
    explicit PageMarks(const Searcher& searcher) : m_searcher(searcher) {}

    void setDocument(std::shared_ptr<const report::Document> document);
    [[nodiscard]] const std::shared_ptr<const report::Document>& document() const { return m_document; }

    /// A page as objects. The reference is good until the next call. @param page  from 0, must exist
    [[nodiscard]] const report::Page& page(int page);
    /// What the search has found on a page, in twips.
    [[nodiscard]] const std::vector<QRectF>& hits(int page);
    /// Where the hit stands that the user is on; nothing when it is on another page.
    [[nodiscard]] std::optional<QRectF> currentHit(int page);
    /// The search has changed.
    void forgetHits() { m_hits.clear(); }

    void select(const std::optional<Selection>& selection) { m_selection = selection; }
    [[nodiscard]] const std::optional<Selection>& selection() const { return m_selection; }
    /// Whole values of the fields of an object, as the event of a click carries them; empty for texts, lines and boxes.
    [[nodiscard]] QStringList fieldValues(const Selection& object);
    /// The chosen object's full text; empty without one.
    [[nodiscard]] QString selectedValue();
    /// Row of the data that the chosen object shows; -1 for none.
    [[nodiscard]] qint64 selectedDataRow();
    /// Texts of the chosen object's record, separated by tabs; empty when it belongs to none.
    [[nodiscard]] QString selectedRow();

private:
    [[nodiscard]] QRectF hitRect(const report::Page& page, const report::SearchHit& hit) const;

    const Searcher& m_searcher;
    std::shared_ptr<const report::Document> m_document;
    std::deque<report::Page> m_pages;
    std::unordered_map<int, std::vector<QRectF>> m_hits;
    std::optional<Selection> m_selection;
};

}  // namespace velcoran::viewer
