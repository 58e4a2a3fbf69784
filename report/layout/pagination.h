#pragma once

#include "definition_model.h"
#include "report/data/report_content.h"

#include <functional>
#include <vector>

namespace velcoran::report {

/// Rows of a footer: its sections in order, those of currencies once for each line of totals.
class FooterRows {
public:
    FooterRows() = default;
    FooterRows(const Definition& definition, SectionKind kind);

    struct Row {
        const DefinitionSection* section;
        std::uint32_t line;  ///< of the totals; 0 where the section shows none
    };
    [[nodiscard]] std::uint32_t count(std::uint32_t lines) const;
    [[nodiscard]] Row row(std::uint32_t index, std::uint32_t lines) const;
    [[nodiscard]] int height(std::uint32_t lines) const { return m_fixed + m_repeated * static_cast<int>(lines); }

private:
    std::vector<const DefinitionSection*> m_sections;
    int m_fixed = 0;
    int m_repeated = 0;
};

/// What of a group stands on a page. Tops count from the top of the page's body.
struct GroupPart {
    std::uint32_t group = 0;
    int top = 0;
    bool isContinued = false;
    std::uint32_t firstDetail = 0;
    std::uint32_t detailCount = 0;
    std::uint32_t firstFooter = 0;
    std::uint32_t footerCount = 0;
};

/// What stands on a page between its header and its footer.
struct PagePlan {
    std::vector<GroupPart> groups;
    int endTop = 0;  ///< of the report's end
    std::uint32_t firstEndRow = 0;
    std::uint32_t endRowCount = 0;
};

/// Where everything stands, by arithmetic: the start of every group is computed once, the rest when a page is asked
/// for. Lengths in twips of the designed sheet.
class Pagination {
public:
    struct Input {
        const Definition* definition = nullptr;
        const ReportData::Content* content = nullptr;
        bool isTotals = false;
        int pageHeight = 0;  ///< between the margins
        /// Height by which a group's heading outgrows its section.
        std::function<int(std::uint32_t group, bool isContinued)> headingGrowth;
    };
    explicit Pagination(const Input& input);

    [[nodiscard]] int pageCount() const { return m_pageCount; }
    [[nodiscard]] PagePlan plan(int page) const;
    [[nodiscard]] int pageOfGroup(std::uint32_t group) const { return m_starts[group].page; }
    /// From the top of the page, header included.
    [[nodiscard]] int topOfGroup(std::uint32_t group) const {
        return bodyTop(m_starts[group].page) + m_starts[group].top;
    }
    [[nodiscard]] int headingHeight(std::uint32_t group, bool isContinued) const;
    [[nodiscard]] int bodyTop(int page) const { return m_pageHeader + (page == 1 ? m_reportHeader : 0); }
    [[nodiscard]] int pageHeight() const { return m_pageHeight; }
    [[nodiscard]] const FooterRows& groupFooter() const { return m_groupFooter; }
    [[nodiscard]] const FooterRows& reportFooter() const { return m_reportFooter; }

private:
    struct Place {
        int page = 1;
        int top = 0;
    };
    /// Where the parts of a group lie.
    struct Flow {
        Place start;
        std::uint32_t details = 0;
        std::uint32_t onFirst = 0;  ///< details on the first page
        std::uint32_t onFull = 0;   ///< details on a full page
        int lastDetailPage = 1;
        std::uint32_t moved = 0;  ///< details of the last page that go on with the footer
        Place footer;
        Place end;
    };
    struct Segment {
        std::uint32_t first = 0;
        std::uint32_t count = 0;
        int top = 0;
    };

    [[nodiscard]] int bodyHeight(int page) const;
    [[nodiscard]] std::uint32_t detailsOf(std::uint32_t group) const;
    [[nodiscard]] std::uint32_t linesOf(std::uint32_t group) const;
    [[nodiscard]] Place startOf(std::uint32_t group, Place from) const;
    [[nodiscard]] Flow flowOf(std::uint32_t group, Place start) const;
    void placeFooter(std::uint32_t group, int used, std::uint32_t onLast, Flow& flow) const;
    [[nodiscard]] GroupPart partOn(std::uint32_t group, const Flow& flow, int page) const;
    Segment footerOn(const FooterRows& rows, std::uint32_t lines, Place start, int continuedTop, int page,
                     Place& end) const;

    const ReportData::Content* m_content;
    bool m_isTotals;
    int m_pageHeight;
    int m_pageHeader = 0, m_pageFooter = 0, m_reportHeader = 0, m_heading = 0, m_detail = 1;
    FooterRows m_groupFooter, m_reportFooter;
    std::vector<Place> m_starts;
    std::vector<std::pair<std::uint32_t, std::pair<int, int>>> m_growths;  ///< of the few headings that grow, by group
    Place m_end;                                                           ///< start of the report's end
    int m_pageCount = 1;
};

}  // namespace velcoran::report
