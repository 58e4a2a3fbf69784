#include "pagination.h"

#include <algorithm>
#include <limits>

namespace velcoran::report {

namespace {

/// A group of so few documents is not torn apart where it fits a page.
constexpr std::uint32_t kSmallGroup = 3;

int heightOf(const Definition& definition, SectionKind kind) {
    const DefinitionSection* section = definition.section(kind);
    return section == nullptr ? 0 : section->height.value;
}

}  // namespace

FooterRows::FooterRows(const Definition& definition, SectionKind kind) {
    for (const DefinitionSection& section : definition.sections) {
        if (section.kind != kind) continue;
        m_sections.push_back(&section);
        (section.isPerCurrency ? m_repeated : m_fixed) += section.height.value;
    }
}

std::uint32_t FooterRows::count(std::uint32_t lines) const {
    std::uint32_t rows = 0;
    for (const DefinitionSection* section : m_sections) rows += section->isPerCurrency ? lines : 1;
    return rows;
}

FooterRows::Row FooterRows::row(std::uint32_t index, std::uint32_t lines) const {
    for (const DefinitionSection* section : m_sections) {
        const std::uint32_t rows = section->isPerCurrency ? lines : 1;
        if (index < rows) return {section, index};
        index -= rows;
    }
    return {m_sections.back(), 0};
}

Pagination::Pagination(const Input& input)
    : m_content(input.content),
      m_isTotals(input.isTotals),
      m_pageHeight(input.pageHeight),
      m_pageHeader(heightOf(*input.definition, SectionKind::PageHeader)),
      m_pageFooter(heightOf(*input.definition, SectionKind::PageFooter)),
      m_reportHeader(heightOf(*input.definition, SectionKind::ReportHeader)),
      m_heading(heightOf(*input.definition, SectionKind::GroupHeader)),
      m_detail(heightOf(*input.definition, SectionKind::Details)),
      m_groupFooter(*input.definition, SectionKind::GroupFooter),
      m_reportFooter(*input.definition, SectionKind::ReportFooter) {
    const std::uint32_t groups = m_content->index.groupCount();
    m_starts.reserve(groups);
    Place next;
    for (std::uint32_t group = 0; group < groups; ++group) {
        const std::pair growth(input.headingGrowth(group, false), input.headingGrowth(group, true));
        if (growth.first > 0 || growth.second > 0) m_growths.emplace_back(group, growth);
        m_starts.push_back(startOf(group, next));
        next = flowOf(group, m_starts.back()).end;
    }
    m_pageCount = next.page;
    if (groups == 0) return;
    const auto lines = static_cast<std::uint32_t>(m_content->totals.size());
    const int height = m_reportFooter.height(lines);
    if (next.top + height > bodyHeight(next.page) && next.top > 0 && height <= bodyHeight(next.page + 1)) {
        next = {next.page + 1, 0};
    }
    m_end = next;
    Place end;
    footerOn(m_reportFooter, lines, m_end, 0, 0, end);
    m_pageCount = end.page;
}

int Pagination::bodyHeight(int page) const { return std::max(m_detail, m_pageHeight - m_pageFooter - bodyTop(page)); }

std::uint32_t Pagination::detailsOf(std::uint32_t group) const {
    return m_isTotals ? 0 : m_content->index.rowsOf(group);
}

std::uint32_t Pagination::linesOf(std::uint32_t group) const { return m_content->index.linesOf(group); }

int Pagination::headingHeight(std::uint32_t group, bool isContinued) const {
    const auto found = std::lower_bound(m_growths.begin(), m_growths.end(), group,
                                        [](const auto& entry, std::uint32_t value) { return entry.first < value; });
    if (found == m_growths.end() || found->first != group) return m_heading;
    return m_heading + (isContinued ? found->second.second : found->second.first);
}

Pagination::Place Pagination::startOf(std::uint32_t group, Place from) const {
    if (from.top == 0) return from;
    const std::uint32_t details = detailsOf(group);
    const int heading = headingHeight(group, false);
    const int footer = m_groupFooter.height(linesOf(group));
    const int least = heading + m_detail;
    int needed = least;
    if (details <= kSmallGroup) needed = heading + static_cast<int>(details) * m_detail + footer;
    if (needed > bodyHeight(from.page + 1)) needed = least;
    return from.top + needed > bodyHeight(from.page) ? Place{from.page + 1, 0} : from;
}

Pagination::Flow Pagination::flowOf(std::uint32_t group, Place start) const {
    Flow flow;
    flow.start = start;
    flow.details = detailsOf(group);
    flow.lastDetailPage = start.page;
    const int heading = headingHeight(group, false);
    const int continued = headingHeight(group, true);
    const int room = bodyHeight(start.page) - start.top - heading;
    const auto least = std::min(1U, flow.details);
    flow.onFirst = std::clamp(static_cast<std::uint32_t>(std::max(0, room) / m_detail), least, flow.details);
    flow.onFull = static_cast<std::uint32_t>(std::max(1, (bodyHeight(start.page + 1) - continued) / m_detail));
    int used = start.top + heading + static_cast<int>(flow.onFirst) * m_detail;
    std::uint32_t onLast = flow.onFirst;
    const std::uint32_t rest = flow.details - flow.onFirst;
    if (rest > 0) {
        const std::uint32_t full = (rest - 1) / flow.onFull;
        onLast = rest - full * flow.onFull;
        flow.lastDetailPage = start.page + 1 + static_cast<int>(full);
        used = continued + static_cast<int>(onLast) * m_detail;
    }
    placeFooter(group, used, onLast, flow);
    return flow;
}

/// The footer follows the last detail where it fits; else it goes to the next page whole, and a detail with it.
void Pagination::placeFooter(std::uint32_t group, int used, std::uint32_t onLast, Flow& flow) const {
    const int continued = headingHeight(group, true);
    const int height = m_groupFooter.height(linesOf(group));
    flow.footer = {flow.lastDetailPage, used};
    if (used + height > bodyHeight(flow.lastDetailPage)) {
        const int nextPage = flow.lastDetailPage + 1;
        if (onLast > 1 && continued + m_detail + height <= bodyHeight(nextPage)) {
            flow.moved = 1;
            flow.footer = {nextPage, continued + m_detail};
        } else if (continued + height <= bodyHeight(nextPage)) {
            flow.footer = {nextPage, continued};
        }
    }
    flow.end = {flow.footer.page, flow.footer.top + height};
    if (flow.end.top > bodyHeight(flow.end.page)) {
        footerOn(m_groupFooter, linesOf(group), flow.footer, continued, 0, flow.end);
    }
}

/// Rows of a footer that stand on a page.
/// @param continuedTop  where they go on, on the next page
/// @param page          0 for none: only the end is wanted
/// @param end           set to the place behind the last row
Pagination::Segment Pagination::footerOn(const FooterRows& rows, std::uint32_t lines, Place start, int continuedTop,
                                         int page, Place& end) const {
    Segment segment;
    const std::uint32_t count = rows.count(lines);
    Place at = start;
    bool isPageEmpty = at.top <= continuedTop;
    for (std::uint32_t i = 0; i < count; ++i) {
        const int height = rows.row(i, lines).section->height.value;
        if (!isPageEmpty && at.top + height > bodyHeight(at.page)) at = {at.page + 1, continuedTop};
        if (at.page == page) {
            if (segment.count == 0) segment = {i, 0, at.top};
            ++segment.count;
        }
        at.top += height;
        isPageEmpty = false;
    }
    end = at;
    return segment;
}

GroupPart Pagination::partOn(std::uint32_t group, const Flow& flow, int page) const {
    GroupPart part;
    part.group = group;
    part.isContinued = page != flow.start.page;
    part.top = part.isContinued ? 0 : flow.start.top;
    if (!part.isContinued) {
        part.detailCount = flow.onFirst;
    } else if (page <= flow.lastDetailPage) {
        part.firstDetail = flow.onFirst + static_cast<std::uint32_t>(page - flow.start.page - 1) * flow.onFull;
        part.detailCount = std::min(flow.onFull, flow.details - part.firstDetail);
    } else {
        part.firstDetail = flow.details - flow.moved;
        part.detailCount = page == flow.lastDetailPage + 1 ? flow.moved : 0;
    }
    if (page == flow.lastDetailPage) part.detailCount -= flow.moved;
    if (page >= flow.footer.page) {
        Place end;
        const Segment segment =
            footerOn(m_groupFooter, linesOf(group), flow.footer, headingHeight(group, true), page, end);
        part.firstFooter = segment.first;
        part.footerCount = segment.count;
    }
    return part;
}

PagePlan Pagination::plan(int page) const {
    PagePlan plan;
    if (m_starts.empty()) return plan;
    const auto first = std::lower_bound(m_starts.begin(), m_starts.end(), page,
                                        [](const Place& place, int value) { return place.page < value; });
    auto group = static_cast<std::uint32_t>(first - m_starts.begin());
    if (group > 0) {
        const Flow flow = flowOf(group - 1, m_starts[group - 1]);
        if (flow.end.page >= page) plan.groups.push_back(partOn(group - 1, flow, page));
    }
    for (; group < m_starts.size() && m_starts[group].page == page; ++group) {
        plan.groups.push_back(partOn(group, flowOf(group, m_starts[group]), page));
    }
    if (page >= m_end.page) {
        Place end;
        const auto lines = static_cast<std::uint32_t>(m_content->totals.size());
        const Segment segment = footerOn(m_reportFooter, lines, m_end, 0, page, end);
        plan.endTop = segment.top;
        plan.firstEndRow = segment.first;
        plan.endRowCount = segment.count;
    }
    return plan;
}

}  // namespace velcoran::report
