#pragma once

#include "document.h"
#include "pagination.h"

namespace velcoran::report {

class FontSet;

/// How amounts and rates are written.
enum class Digits : std::uint8_t {
    Printed,  ///< as on paper
    Whole,    ///< all of them, at least two decimals
};

/// Turns plans of pages into their items: texts as shown, places on the sheet.
class PageMaker {
public:
    PageMaker(const ReportData::Content& content, const ReportTexts& texts, const PageSetup& setup,
              const QDateTime& printTime);

    /// Height between the margins, in twips of the designed sheet.
    [[nodiscard]] int designedHeight() const;
    /// A height of the designed sheet as a place on this one.
    [[nodiscard]] base::Twips onSheet(int top) const;
    /// Height by which a group's heading outgrows its section.
    [[nodiscard]] int headingGrowth(std::uint32_t group, bool isContinued) const;
    [[nodiscard]] Page make(int number, const Pagination& pagination, Digits digits = Digits::Printed) const;
    /// Text of a group's key on one line.
    [[nodiscard]] QString groupText(std::uint32_t group) const;

private:
    struct Context;
    void addSection(const DefinitionSection& section, int top, const Context& context, Page& page) const;
    void addObject(const DefinitionObject& object, int top, int height, const Context& context, Page& page) const;
    void addGroup(const GroupPart& part, Context& context, Page& page) const;
    void addReportEnd(const PagePlan& plan, Context& context, Page& page) const;
    void addBody(Context& context, Page& page) const;
    void fit(const DefinitionObject& object, const QString& value, PageItem& item) const;
    void shrink(const QString& value, PageItem& item) const;
    [[nodiscard]] bool isShown(const DefinitionObject& object, const Context& context) const;
    [[nodiscard]] QString valueOf(const DefinitionObject& object, const Context& context) const;
    [[nodiscard]] QString unboundValue(const DefinitionObject& object, const Context& context) const;
    [[nodiscard]] QString variableText(const TemplatePart& part, const Context& context) const;
    [[nodiscard]] QString sumText(ColumnRole column, const Context& context) const;
    [[nodiscard]] double roomOf(const DefinitionObject& object) const;
    [[nodiscard]] base::TwipsRect placeOnSheet(const base::TwipsRect& place, int top) const;

    const ReportData::Content& m_content;
    const ReportTexts& m_texts;
    PageSetup m_setup;
    QString m_printTime;
    std::shared_ptr<const FontSet> m_fonts;
    double m_scale = 1;    ///< of everything, on a narrower sheet than designed
    double m_stretch = 1;  ///< of widths, on a wider one
    const DefinitionObject* m_growing = nullptr;
};

}  // namespace velcoran::report
