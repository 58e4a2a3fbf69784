#include "document.h"

#include "page_maker.h"
#include "pagination.h"

#include "base/error.h"

namespace velcoran::report {

using namespace Qt::StringLiterals;

struct Document::Layout {
    std::shared_ptr<const ReportData> data;
    ReportTexts texts;
    PageSetup setup;
    QDateTime printTime;
    PageMaker maker;
    Pagination pagination;

    Layout(std::shared_ptr<const ReportData> reportData, ReportTexts reportTexts, const PageSetup& pageSetup,
           const QDateTime& time)
        : data(std::move(reportData)),
          texts(std::move(reportTexts)),
          setup(pageSetup),
          printTime(time),
          maker(data->content(), texts, setup, printTime),
          pagination(
              {texts.definition.get(), &data->content(), texts.request.isTotalsAlone, maker.designedHeight(),
               [this](std::uint32_t group, bool isContinued) { return maker.headingGrowth(group, isContinued); }}) {}
    Layout(const Layout&) = delete;
    Layout& operator=(const Layout&) = delete;
};

Document::Document(std::shared_ptr<const ReportData> data, ReportTexts texts, const PageSetup& setup,
                   const QDateTime& printTime)
    : m_layout(std::make_unique<const Layout>(std::move(data), std::move(texts), setup, printTime)) {}

Document::~Document() = default;

int Document::pageCount() const { return m_layout->pagination.pageCount(); }
base::Twips Document::pageWidth() const { return m_layout->setup.width; }
base::Twips Document::pageHeight() const { return m_layout->setup.height; }
const PageSetup& Document::setup() const { return m_layout->setup; }
const ReportData& Document::data() const { return *m_layout->data; }
const ReportTexts& Document::texts() const { return m_layout->texts; }
const QDateTime& Document::printTime() const { return m_layout->printTime; }

QString ReportTexts::text(ObjectRole role) const {
    const DefinitionObject* object = definition->object(role);
    if (object == nullptr) return {};
    return object->kind == ObjectKind::Text ? texts.value(object->name, object->text)
                                            : unboundTexts.value(object->name);
}

QString Document::title() const { return m_layout->texts.text(ObjectRole::Title).simplified(); }

Page Document::page(base::PageNumber number) const {
    requirePage(number);
    return m_layout->maker.make(number.value, m_layout->pagination);
}

void Document::requirePage(base::PageNumber number) const {
    if (number.value < 1 || number.value > pageCount()) {
        throw base::Error(base::kInvalidProcedureCall, u"Raportul nu are pagina %1."_s.arg(number.value));
    }
}

// The items of a page are the same, in the same order, however its amounts are written.
QString Document::wholeValue(base::PageNumber number, qsizetype item) const {
    requirePage(number);
    const Page page = m_layout->maker.make(number.value, m_layout->pagination, Digits::Whole);
    const bool isField = item >= 0 && item < static_cast<qsizetype>(page.items.size()) && page.items[item].isField;
    return isField ? page.items[item].fullText : QString();
}

QString Document::textOfRow(qint64 row, ColumnRole role) const {
    const RowStore& store = m_layout->data->content().store;
    if (row < 0 || row >= store.rowCount)
        throw base::Error(base::kInvalidProcedureCall, QStringLiteral("Rândul nu există."));
    if (isAmount(role)) return {};
    return toText(store.textOf(role, static_cast<std::uint32_t>(row)));
}

QStringList Document::pageLines(base::PageNumber number) const {
    if (number.value < 1 || number.value > pageCount()) return {};
    return report::pageLines(page(number));
}

qint64 Document::groupCount() const { return m_layout->data->groupCount(); }

QString Document::groupText(qint64 group) const {
    return m_layout->maker.groupText(static_cast<std::uint32_t>(group)).simplified();
}

base::PageNumber Document::pageOfGroup(qint64 group) const {
    return {m_layout->pagination.pageOfGroup(static_cast<std::uint32_t>(group))};
}

base::Twips Document::topOfGroup(qint64 group) const {
    return m_layout->maker.onSheet(m_layout->pagination.topOfGroup(static_cast<std::uint32_t>(group)));
}

std::optional<qint64> Document::groupAtPage(base::PageNumber number) const {
    const PagePlan plan = m_layout->pagination.plan(number.value);
    if (plan.groups.empty()) return std::nullopt;
    return plan.groups.front().group;
}

}  // namespace velcoran::report
