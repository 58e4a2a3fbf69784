#include "report/layout/pagination.h"
#include "report/layout/definition.h"
#include "report_fixture.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace velcoran;
using namespace velcoran::report;

namespace {

/// The pages of groups of given sizes, each with one currency or one a document, on paper of any height.
class Pages {
public:
    explicit Pages(const std::vector<int>& sizes, bool isOfManyCurrencies = false)
        : m_definition(definitionNamed(u"CRFacturiImport"_s)) {
        std::vector<Row> rows;
        for (std::size_t group = 0; group < sizes.size(); ++group) {
            Row row;
            row.code = u"F%1"_s.arg(group);
            for (int i = 0; i < sizes[group]; ++i) {
                if (isOfManyCurrencies) row.moneda = u"V%1"_s.arg(i);
                rows.push_back(row);
            }
        }
        m_data = ReportRun(answerOf(rows)).data();
    }
    [[nodiscard]] Pagination at(int bodyHeight) const {
        const int around = height(SectionKind::PageHeader) + height(SectionKind::PageFooter);
        return Pagination({m_definition.get(), &m_data->content(), false, around + bodyHeight,
                           [](std::uint32_t, bool) { return 0; }});
    }
    [[nodiscard]] int height(SectionKind kind) const { return m_definition->section(kind)->height.value; }
    /// Of a group's heading and its first details.
    [[nodiscard]] int top(int details) const {
        return height(SectionKind::GroupHeader) + details * height(SectionKind::Details);
    }
    [[nodiscard]] int footer() const { return at(0).groupFooter().height(1); }
    [[nodiscard]] int end() const { return at(0).reportFooter().height(1); }

private:
    std::shared_ptr<const Definition> m_definition;
    std::shared_ptr<const ReportData> m_data;
};

/// What a page holds: "group:details+footer rows", and "end" with its rows.
QString planOf(const Pagination& pagination, int page) {
    const PagePlan plan = pagination.plan(page);
    QStringList parts;
    for (const GroupPart& part : plan.groups)
        parts.append(u"%1:%2+%3"_s.arg(part.group).arg(part.detailCount).arg(part.footerCount));
    if (plan.endRowCount > 0) parts.append(u"end%1"_s.arg(plan.endRowCount));
    return parts.join(u' ');
}

}  // namespace

TEST(Pagination, fillsAPageToItsLastTwip) {
    const Pages one({10});
    const Pages three({10, 3});
    const Pages four({10, 4});
    const int whole = one.top(10) + one.footer();
    struct Case {
        const char* name;
        const Pages& pages;
        int height;
        const char16_t *exact1, *exact2;  ///< the first two pages where it fits exactly
        const char16_t *tight1, *tight2;  ///< one twip less
    };
    const Case cases[] = {
        {"the report's end", one, whole + one.end(), u"0:10+2 end3", u"", u"0:10+2", u"end3"},
        {"a group's footer", one, whole, u"0:10+2", u"end3", u"0:9+0", u"0:1+2 end3"},
        {"a group's last detail", one, one.top(10), u"0:9+0", u"0:1+2 end3", u"0:9+0", u"0:1+2 end3"},
        {"a group of three", three, whole + three.top(3) + three.footer(), u"0:10+2 1:3+2", u"end3", u"0:10+2",
         u"1:3+2 end3"},
        {"a group of four", four, whole + four.top(1), u"0:10+2 1:1+0", u"1:3+2 end3", u"0:10+2", u"1:4+2 end3"},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.name);
        const Pagination exact = each.pages.at(each.height);
        EXPECT_EQ(planOf(exact, 1), QString::fromUtf16(each.exact1));
        EXPECT_EQ(planOf(exact, 2), QString::fromUtf16(each.exact2));
        EXPECT_EQ(exact.pageCount(), *each.exact2 == u'\0' ? 1 : 2);
        const Pagination tight = each.pages.at(each.height - 1);
        EXPECT_EQ(planOf(tight, 1), QString::fromUtf16(each.tight1));
        EXPECT_EQ(planOf(tight, 2), QString::fromUtf16(each.tight2));
    }
}

TEST(Pagination, spreadsALongGroupOverFullPages) {
    const Pages pages({30});
    const Pagination full = pages.at(pages.top(10));
    QStringList plans;
    for (int page = 1; page <= full.pageCount(); ++page) plans.append(planOf(full, page));
    EXPECT_EQ(plans, (QStringList{u"0:10+0"_s, u"0:10+0"_s, u"0:9+0"_s, u"0:1+2 end3"_s}));
}

TEST(Pagination, aSmallGroupThatNoPageHoldsBeginsWhereThereIsRoom) {
    const Pages pages({1, 3}, true);
    const int height = pages.top(1) + pages.footer() + pages.top(1);
    const Pagination exact = pages.at(height);
    ASSERT_GT(pages.top(3) + exact.groupFooter().height(3), height);
    EXPECT_EQ(planOf(exact, 1), u"0:1+2 1:1+0"_s);
    EXPECT_EQ(planOf(pages.at(height - 1), 1), u"0:1+2"_s);
}
