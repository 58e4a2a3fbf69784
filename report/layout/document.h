#pragma once

#include "base/units.h"
#include "definition.h"
#include "page.h"
#include "page_setup.h"
#include "report/data/report_data.h"
#include "report_request.h"

#include <QDateTime>
#include <QMap>
#include <QString>
#include <QStringList>

#include <memory>
#include <optional>
#include <vector>

namespace velcoran::report {

/// What an instance of a definition says at one moment: the snapshot that a document is laid out from.
struct ReportTexts {
    std::shared_ptr<const Definition> definition;
    QMap<QString, QString> texts;         ///< text objects
    QMap<QString, QString> unboundTexts;  ///< unbound fields with a string constant for their source
    ReportRequest request;

    /// Text of the object that plays a part, as it stands; empty for a definition without it.
    [[nodiscard]] QString text(ObjectRole role) const;
};

/// A loaded report laid out for one page set-up. Immutable; every function may be called from any thread. Making it
/// takes time that grows with the number of groups alone; a page is made when it is asked for, the last one as fast as
/// the first.
class Document {
public:
    /// @param printTime  what the pages show as the moment of printing
    Document(std::shared_ptr<const ReportData> data, ReportTexts texts, const PageSetup& setup,
             const QDateTime& printTime);
    ~Document();
    Document(const Document&) = delete;
    Document& operator=(const Document&) = delete;

    /// At least 1.
    [[nodiscard]] int pageCount() const;
    [[nodiscard]] base::Twips pageWidth() const;
    [[nodiscard]] base::Twips pageHeight() const;
    [[nodiscard]] const PageSetup& setup() const;
    [[nodiscard]] const ReportData& data() const;
    [[nodiscard]] const ReportTexts& texts() const;
    [[nodiscard]] const QDateTime& printTime() const;
    /// Text of the title on one line.
    [[nodiscard]] QString title() const;

    /// @throws Error kInvalidProcedureCall for a number outside 1 to pageCount()
    [[nodiscard]] Page page(base::PageNumber number) const;
    /// Value of a field of a page, whole: amounts with all their digits, at least two decimals, texts in full length.
    /// @param item  index into Page::items @return the empty text for what is no field
    /// @throws Error kInvalidProcedureCall for a number outside 1 to pageCount()
    [[nodiscard]] QString wholeValue(base::PageNumber number, qsizetype item) const;
    /// Text of a column in a row of the data, as it came; empty for null, and for an amount.
    /// @param row  as PageItem::row has it @throws Error kInvalidProcedureCall for a row that is none
    [[nodiscard]] QString textOfRow(qint64 row, ColumnRole role) const;
    /// Texts of a page line by line, cells separated by a tab; empty for no such page.
    [[nodiscard]] QStringList pageLines(base::PageNumber number) const;

    [[nodiscard]] qint64 groupCount() const;
    /// What the group tree shows: "F0012 ALFA TRADE SRL" or "31/07/2026". @param group  from 0
    [[nodiscard]] QString groupText(qint64 group) const;
    /// Page on which a group starts. @param group  from 0
    [[nodiscard]] base::PageNumber pageOfGroup(qint64 group) const;
    /// Where on its page a group starts, from the top of the sheet. @param group  from 0
    [[nodiscard]] base::Twips topOfGroup(qint64 group) const;
    /// The group at the top of a page; nothing for a page without one.
    [[nodiscard]] std::optional<qint64> groupAtPage(base::PageNumber number) const;

private:
    void requirePage(base::PageNumber number) const;

    struct Layout;
    std::unique_ptr<const Layout> m_layout;
};

}  // namespace velcoran::report
