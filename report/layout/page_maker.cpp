#include "page_maker.h"

#include "report/data/amount_text.h"
#include "report/layout/fonts/font_set.h"
#include "report/layout/fonts/text_fit.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace velcoran::report {

using namespace Qt::StringLiterals;

namespace {

constexpr int kMaxHeadingLines = 6;
constexpr double kTwipsAPoint = 20;

/// A number must be read whole: it gets smaller where a word would get an ellipsis.
bool isNumber(const DefinitionObject& object) {
    if (object.kind == ObjectKind::Unbound) return object.format != ValueFormat::Text;
    return object.parts.size() == 1 && object.parts[0].variable &&
           (object.parts[0].variable == Variable::Sum || object.parts[0].variable == Variable::LeiTotal);
}

std::int32_t rounded(double value) { return static_cast<std::int32_t>(std::lround(value)); }

}  // namespace

struct PageMaker::Context {
    const Pagination& pagination;
    int page = 1;
    std::uint32_t group = 0;
    bool isContinued = false;
    std::uint32_t cell = 0;                ///< line of a group's totals
    const CurrencyTotal* total = nullptr;  ///< line of the report's totals
    std::int32_t record = 0;
    qint64 row = -1;
    int growth = 0;
    Digits digits = Digits::Printed;

    [[nodiscard]] QString text(const base::Decimal& amount) const {
        return digits == Digits::Whole ? wholeAmountText(amount) : amountText(amount);
    }
    [[nodiscard]] QString text(const ShortDecimal& amount) const {
        return digits == Digits::Whole ? wholeAmountText(amount) : amountText(amount);
    }
};

PageMaker::PageMaker(const ReportData::Content& content, const ReportTexts& texts, const PageSetup& setup,
                     const QDateTime& printTime)
    : m_content(content),
      m_texts(texts),
      m_setup(setup),
      m_printTime(printTime.toString(u"dd/MM/yyyy HH:mm"_s)),
      m_fonts(FontSet::shared()) {
    const double width = std::max(1, (setup.width - setup.left - setup.right).value);
    const double ratio = width / texts.definition->printableWidth().value;
    m_scale = std::min(1.0, ratio);
    m_stretch = std::max(1.0, ratio);
    if (const DefinitionSection* heading = texts.definition->section(SectionKind::GroupHeader)) {
        for (const DefinitionObject& object : heading->objects) {
            if (object.isGrowing) m_growing = &object;
        }
    }
}

int PageMaker::designedHeight() const {
    return rounded((m_setup.height - m_setup.top - m_setup.bottom).value / m_scale);
}

double PageMaker::roomOf(const DefinitionObject& object) const {
    return object.place.width.value * m_stretch / (static_cast<double>(object.fontSize) * kTwipsAPoint);
}

base::TwipsRect PageMaker::placeOnSheet(const base::TwipsRect& place, int top) const {
    const double across = m_scale * m_stretch;
    return {m_setup.left + base::Twips{rounded(place.left.value * across)},
            onSheet(place.top.value + top),
            {rounded(place.width.value * across)},
            {rounded(place.height.value * m_scale)}};
}

base::Twips PageMaker::onSheet(int top) const { return m_setup.top + base::Twips{rounded(top * m_scale)}; }

QString PageMaker::groupText(std::uint32_t group) const { return keyTexts(m_content, group).join(u' '); }

int PageMaker::headingGrowth(std::uint32_t group, bool isContinued) const {
    if (m_growing == nullptr) return 0;
    const TextPool& names = m_content.store.text(ColumnRole::NumeClient).pool;
    const GroupIndex::Key& key = m_content.index.keys[group];
    // No character of the report's fonts is wider than its size: a short key needs no measuring.
    constexpr std::size_t kSurplus = 40;
    if (m_content.grouping == Grouping::Partner && roomOf(*m_growing) > static_cast<double>(kSurplus)) {
        const std::size_t length = m_content.store.text(ColumnRole::CodClient).pool.text(key.first).size() +
                                   names.text(key.second).size() + kSurplus;
        if (static_cast<double>(length) < roomOf(*m_growing)) return 0;
    }
    const QString suffix = isContinued ? u" (continuare)"_s : QString();
    const QStringList lines =
        wrapped(oneLine(groupText(group) + suffix), roomOf(*m_growing), m_growing->isBold, kMaxHeadingLines, *m_fonts);
    return static_cast<int>(lines.size() - 1) * lineHeightOf(m_growing->fontSize).value;
}

QString PageMaker::sumText(ColumnRole column, const Context& context) const {
    if (context.total != nullptr) return context.text(context.total->sum(column));
    const SumColumn& sums = m_content.index.sums[amountIndex(column)];
    const std::optional<ShortDecimal> amount = sums.amount(context.cell);
    return amount ? context.text(*amount) : context.text(sums.value(context.cell));
}

QString PageMaker::variableText(const TemplatePart& part, const Context& context) const {
    switch (*part.variable) {
        case Variable::Page:
            return QString::number(context.page);
        case Variable::Pages:
            return QString::number(context.pagination.pageCount());
        case Variable::PrintTime:
            return m_printTime;
        case Variable::GroupKey:
            return oneLine(groupText(context.group));
        case Variable::GroupRows:
            return countText(m_content.index.rowsOf(context.group));
        case Variable::Continued:
            return context.isContinued ? u" (continuare)"_s : QString();
        case Variable::Currency:
            if (context.total != nullptr) return context.total->currency;
            return toText(
                m_content.store.text(ColumnRole::Moneda).pool.text(m_content.index.cells[context.cell].currency));
        case Variable::Rows:
            return countText(context.total != nullptr ? context.total->rows
                                                      : m_content.index.cells[context.cell].rowCount);
        case Variable::ReportRows:
            return countText(m_content.store.rowCount);
        case Variable::LeiTotal:
            return context.text(m_content.lei.value);
        case Variable::WithoutRate:
            return countText(m_content.lei.rowsWithoutRate);
        case Variable::Sum:
            break;
    }
    return sumText(part.column, context);
}

QString PageMaker::unboundValue(const DefinitionObject& object, const Context& context) const {
    const auto constant = m_texts.unboundTexts.constFind(object.name);
    if (constant != m_texts.unboundTexts.constEnd()) return *constant;
    if (!object.column || context.row < 0) return {};
    const auto row = static_cast<std::uint32_t>(context.row);
    const RowStore& store = m_content.store;
    if (!isAmount(*object.column)) return toText(store.textOf(*object.column, row));
    const std::optional<ShortDecimal> amount = store.amount(*object.column).at(row);
    const bool isPrintedRate = object.format == ValueFormat::Rate && context.digits == Digits::Printed;
    if (amount) return isPrintedRate ? rateText(*amount) : context.text(*amount);
    return *object.column == ColumnRole::CursValutar ? toText(store.oddRate(row)) : QString();
}

QString PageMaker::valueOf(const DefinitionObject& object, const Context& context) const {
    if (object.kind == ObjectKind::Text) return m_texts.texts.value(object.name, object.text);
    if (object.kind == ObjectKind::Unbound) return unboundValue(object, context);
    if (object.parts.size() == 1 && object.parts[0].variable) return variableText(object.parts[0], context);
    QString text;
    for (const TemplatePart& part : object.parts) {
        text += part.variable ? variableText(part, context) : part.words;
    }
    return text;
}

bool PageMaker::isShown(const DefinitionObject& object, const Context&) const {
    if (object.shown == Shown::Never) return false;
    if (object.shown == Shown::Detailed && m_texts.request.isTotalsAlone) return false;
    if (object.shown == Shown::Totals && !m_texts.request.isTotalsAlone) return false;
    return !(object.condition == Variable::WithoutRate && m_content.lei.rowsWithoutRate == 0);
}

void PageMaker::shrink(const QString& value, PageItem& item) const {
    const double points = m_fonts->width(value, item.isBold) * kTwipsAPoint;
    const double room = item.rect.width.value;
    if (points * static_cast<double>(item.fontSize) > room && points > 0) {
        item.fontSize = static_cast<float>(room / points);
    }
    item.text = value;
}

void PageMaker::fit(const DefinitionObject& object, const QString& value, PageItem& item) const {
    const double room = roomOf(object);
    if (isNumber(object)) {
        item.fullText = value;
        shrink(value, item);
    } else if (object.isGrowing) {
        item.fullText = oneLine(value);
        item.text = wrapped(item.fullText, room, object.isBold, kMaxHeadingLines, *m_fonts).join(u'\n');
    } else if (object.kind == ObjectKind::Text && value.contains(u'\n')) {
        item.fullText = value;
        item.fullText.remove(u'\r');
        QStringList lines = item.fullText.split(u'\n');
        for (QString& line : lines) line = elided(oneLine(line), room, object.isBold, *m_fonts);
        item.text = lines.join(u'\n');
    } else {
        item.fullText = oneLine(value);
        item.text = elided(item.fullText, room, object.isBold, *m_fonts);
    }
}

void PageMaker::addObject(const DefinitionObject& object, int top, int height, const Context& context,
                          Page& page) const {
    if (!isShown(object, context)) return;
    base::TwipsRect place = object.place;
    if (object.isGrowing) place.height.value += context.growth;
    if (m_growing != nullptr && context.growth > 0 && !object.isGrowing &&
        place.top >= m_growing->place.top + m_growing->place.height && height > 0) {
        place.top.value += context.growth;
    }
    PageItem item;
    item.rect = placeOnSheet(place, top);
    item.colour = object.colour;
    item.field = object.name;
    item.record = context.record;
    item.row = context.row;
    if (object.kind == ObjectKind::Line || object.kind == ObjectKind::Box) {
        item.kind = object.kind == ObjectKind::Line ? PageItem::Kind::Line : PageItem::Kind::Box;
        item.lineHeight = object.thickness;
        page.items.push_back(std::move(item));
        return;
    }
    const QString value = valueOf(object, context);
    if (value.isEmpty()) return;
    item.isField = object.kind != ObjectKind::Text;
    item.isBold = object.isBold;
    item.alignment = object.alignment;
    item.places = object.alignment == Alignment::Decimal ? kRatePlaces : 0;
    item.fontSize = object.fontSize * static_cast<float>(m_scale);
    item.lineHeight = {rounded(lineHeightOf(object.fontSize).value * m_scale)};
    fit(object, value, item);
    page.items.push_back(std::move(item));
}

void PageMaker::addSection(const DefinitionSection& section, int top, const Context& context, Page& page) const {
    for (const DefinitionObject& object : section.objects) {
        addObject(object, top, section.height.value, context, page);
    }
}

void PageMaker::addGroup(const GroupPart& part, Context& context, Page& page) const {
    const Pagination& pagination = context.pagination;
    const Definition& definition = *m_texts.definition;
    context.group = part.group;
    context.isContinued = part.isContinued;
    const std::int32_t before = std::exchange(context.record, 0);
    int top = pagination.bodyTop(context.page) + part.top;
    if (const DefinitionSection* heading = definition.section(SectionKind::GroupHeader)) {
        const int height = pagination.headingHeight(part.group, part.isContinued);
        context.growth = height - heading->height.value;
        addSection(*heading, top, context, page);
        context.growth = 0;
        top += height;
    }
    const DefinitionSection& details = *definition.section(SectionKind::Details);
    std::int32_t record = before;
    for (std::uint32_t i = 0; i < part.detailCount; ++i, top += details.height.value) {
        context.record = ++record;
        context.row = m_content.index.rows[m_content.index.starts[part.group] + part.firstDetail + i];
        addSection(details, top, context, page);
    }
    context.record = 0;
    context.row = -1;
    const std::uint32_t lines = m_content.index.linesOf(part.group);
    for (std::uint32_t i = 0; i < part.footerCount; ++i) {
        const FooterRows::Row row = pagination.groupFooter().row(part.firstFooter + i, lines);
        context.cell = m_content.index.cellStarts[part.group] + row.line;
        addSection(*row.section, top, context, page);
        top += row.section->height.value;
    }
    context.record = record;
}

void PageMaker::addReportEnd(const PagePlan& plan, Context& context, Page& page) const {
    const FooterRows& rows = context.pagination.reportFooter();
    const auto lines = static_cast<std::uint32_t>(m_content.totals.size());
    int top = context.pagination.bodyTop(context.page) + plan.endTop;
    for (std::uint32_t i = 0; i < plan.endRowCount; ++i) {
        const FooterRows::Row row = rows.row(plan.firstEndRow + i, lines);
        context.total = &m_content.totals[row.line];
        addSection(*row.section, top, context, page);
        top += row.section->height.value;
    }
    context.total = nullptr;
}

void PageMaker::addBody(Context& context, Page& page) const {
    const Definition& definition = *m_texts.definition;
    if (m_content.store.rowCount == 0) {
        const DefinitionSection* noData = definition.section(SectionKind::NoData);
        if (noData != nullptr) addSection(*noData, context.pagination.bodyTop(context.page), context, page);
        return;
    }
    const PagePlan plan = context.pagination.plan(context.page);
    for (const GroupPart& part : plan.groups) addGroup(part, context, page);
    context.record = 0;
    addReportEnd(plan, context, page);
}

Page PageMaker::make(int number, const Pagination& pagination, Digits digits) const {
    const Definition& definition = *m_texts.definition;
    Page page;
    page.number = {number};
    page.width = m_setup.width;
    page.height = m_setup.height;
    page.fonts = m_fonts;
    constexpr std::size_t kUsualItems = 600;
    page.items.reserve(kUsualItems);
    Context context{.pagination = pagination, .page = number, .digits = digits};
    int top = 0;
    for (const SectionKind kind : {SectionKind::ReportHeader, SectionKind::PageHeader}) {
        const DefinitionSection* section = definition.section(kind);
        if (section == nullptr || (kind == SectionKind::ReportHeader && number > 1)) continue;
        addSection(*section, top, context, page);
        top += section->height.value;
    }
    addBody(context, page);
    if (const DefinitionSection* footer = definition.section(SectionKind::PageFooter)) {
        addSection(*footer, pagination.pageHeight() - footer->height.value, context, page);
    }
    return page;
}

}  // namespace velcoran::report
