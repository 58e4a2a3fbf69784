#include "base/error.h"
#include "formats.h"
#include "numbers.h"
#include "rows.h"
#include "system/durable_file.h"
#include "system/numeric_locale.h"
#include "texts.h"
#include "writers.h"
#include "xlsx_check.h"

#include <xlsxwriter.h>

#include <cerrno>
#include <chrono>
#include <limits>
#include <new>
#include <system_error>

namespace velcoran::report {

using namespace Qt::StringLiterals;

namespace {

constexpr int kAmountPlaces = 2;
constexpr std::uint8_t kPaperA4 = 9;
constexpr auto kLookEvery = std::chrono::milliseconds(20);

struct FreeWorkbook {
    void operator()(lxw_workbook* workbook) const { lxw_workbook_free(workbook); }
};
using Workbook = std::unique_ptr<lxw_workbook, FreeWorkbook>;

[[noreturn]] void tooLarge() {
    throw base::Error(base::kFormatNotAvailable, u"Raportul nu încape într-o foaie de calcul."_s);
}

/// The library cuts a text at a null character and takes these two as they are, which no reader of XML does.
QByteArray cellText(QStringView text) {
    QByteArray bytes = text.toUtf8();
    if (bytes.contains('\0')) bytes.replace('\0', "");
    if (bytes.contains("\xEF\xBF")) bytes.replace("\xEF\xBF\xBE", "").replace("\xEF\xBF\xBF", "");
    return bytes;
}

struct Formats {
    lxw_format* title = nullptr;
    lxw_format* heading = nullptr;
    lxw_format* headingRight = nullptr;
    lxw_format* amount = nullptr;
    lxw_format* rate = nullptr;
    lxw_format* date = nullptr;
    lxw_format* right = nullptr;
    lxw_format* bold = nullptr;
    lxw_format* boldAmount = nullptr;
    lxw_format* boldRight = nullptr;

    explicit Formats(lxw_workbook* workbook) {
        const auto make = [workbook](const char* number, bool isBold, bool isRight) {
            lxw_format* format = workbook_add_format(workbook);
            if (format == nullptr) throw std::bad_alloc();
            if (number != nullptr) format_set_num_format(format, number);
            if (isBold) format_set_bold(format);
            if (isRight) format_set_align(format, LXW_ALIGN_RIGHT);
            return format;
        };
        title = make(nullptr, true, false);
        format_set_font_size(title, 14);
        heading = make(nullptr, true, false);
        headingRight = make(nullptr, true, true);
        for (lxw_format* format : {heading, headingRight}) {
            format_set_bottom(format, LXW_BORDER_MEDIUM);
            format_set_pattern(format, LXW_PATTERN_SOLID);
            format_set_fg_color(format, 0xE8E8E8);
        }
        amount = make("#,##0.00", false, false);
        rate = make("#,##0.0000##", false, false);
        date = make("dd/mm/yyyy", false, false);
        format_set_align(date, LXW_ALIGN_LEFT);  // at the right it would touch the currency
        right = make(nullptr, false, true);
        bold = make(nullptr, true, false);
        boldAmount = make("#,##0.00", true, false);
        boldRight = make(nullptr, true, true);
    }
};

class XlsxExport {
public:
    XlsxExport(const Document& document, const QString& file, ExportControl& control)
        : m_source(document),
          m_file(file),
          m_control(control),
          m_isDay(m_source.content().grouping == Grouping::Day),
          m_place(std::make_shared<system::DurableFile>(file, system::DurableFile::Use::byPath)) {
        m_headingRow = static_cast<lxw_row_t>((m_source.period().isEmpty() ? 2 : 3) + m_source.filters().size());
        requireRoom();
    }

    void write() {
        const system::NumericLocale numbers;
        ExportPace pace(m_control,
                        m_source.isTotalsAlone() ? m_source.data().groupCount() : m_source.data().rowCount());
        open();
        const Formats formats(m_workbook.get());
        m_formats = &formats;
        if (!m_source.isTotalsAlone()) writeRows(pace);
        writeTotals(pace);
        requireWritten();
        close();
        pace.stopIfAsked();
        const bool isWhole = isWholeWorkbook(m_place->path(), m_sizes, *m_control.progress);
        pace.stopIfAsked();
        // The library copies its parts without a look at what became of them.
        if (!isWhole) system::failToWrite(m_file, EIO);
        m_place->commit();
    }

private:
    void requireRoom() const {
        constexpr qint64 kTotalsEnd = 6;  // blank lines and captions around the report's totals
        const qint64 head = static_cast<qint64>(m_headingRow) + 1;
        const auto cells = static_cast<qint64>(m_source.content().index.cells.size());
        const auto ends = static_cast<qint64>(m_source.data().totals().size());
        const qint64 rows = m_source.isTotalsAlone() ? 0 : head + m_source.data().rowCount();
        if (std::max(rows, head + cells + ends + kTotalsEnd) > LXW_ROW_MAX) tooLarge();
    }

    void open() {
        m_name = m_place->path();
        m_folder = m_place->folder();  // there must be room here; that of temporary files may be small
        lxw_workbook_options options{};
        options.tmpdir = m_folder.data();
        options.constant_memory = LXW_TRUE;
        options.use_zip64 = LXW_TRUE;
        m_workbook.reset(workbook_new_opt(m_name.constData(), &options));
        if (!m_workbook) throw std::bad_alloc();
        QByteArray title = m_source.title().toUtf8();
        lxw_doc_properties properties{};
        properties.title = title.data();
        properties.created = static_cast<time_t>(m_source.made().toSecsSinceEpoch());
        check(workbook_set_properties(m_workbook.get(), &properties));
    }

    /// Sheet with title, period and filters above a heading that stays in view.
    void beginSheet(const char* name, const std::vector<std::pair<QString, bool>>& headings) {
        m_sheet = workbook_add_worksheet(m_workbook.get(), name);
        if (m_sheet == nullptr) system::failToWrite(m_file, errno);
        m_sheets.push_back(m_sheet);
        worksheet_set_landscape(m_sheet);
        worksheet_set_paper(m_sheet, kPaperA4);
        worksheet_fit_to_pages(m_sheet, 1, 0);
        check(worksheet_repeat_rows(m_sheet, m_headingRow, m_headingRow));
        worksheet_freeze_panes(m_sheet, m_headingRow + 1, 0);
        m_row = 0;
        text(0, m_source.title(), m_formats->title);
        ++m_row;
        if (!m_source.period().isEmpty()) {
            text(0, u"Perioada: "_s + m_source.period());
            ++m_row;
        }
        for (const QString& filter : m_source.filters()) {
            text(0, filter);
            ++m_row;
        }
        m_row = m_headingRow;
        for (std::size_t i = 0; i < headings.size(); ++i) {
            text(static_cast<lxw_col_t>(i), headings[i].first,
                 headings[i].second ? m_formats->headingRight : m_formats->heading);
        }
        m_columnCount = static_cast<lxw_col_t>(headings.size());
        ++m_row;
    }
    /// The filter row over what was written since the heading.
    void addFilter() {
        const lxw_row_t last = std::max(m_headingRow, m_row - 1);
        check(worksheet_autofilter(m_sheet, m_headingRow, 0, last, static_cast<lxw_col_t>(m_columnCount - 1)));
    }

    void writeRows(ExportPace& pace) {
        std::vector<std::pair<QString, bool>> headings;
        for (const ColumnRow& column : pageColumns()) {
            headings.emplace_back(m_source.heading(column), isAmount(column.role));
        }
        beginSheet("Raport", headings);
        for (std::size_t i = 0; i < pageColumns().size(); ++i) {
            const auto column = static_cast<lxw_col_t>(i);
            check(worksheet_set_column(m_sheet, column, column, pageColumns()[i].width, nullptr));
        }
        for (std::uint32_t group = 0; group < m_source.content().index.groupCount(); ++group) {
            for (const std::uint32_t row : m_source.rowsOf(group)) {
                pace.step();
                writeRow(row);
            }
        }
        addFilter();
    }
    void writeRow(std::uint32_t row) {
        lxw_col_t at = 0;
        for (const ColumnRow& column : pageColumns()) {
            if (isAmount(column.role)) {
                writeAmount(at, column, row);
            } else if (column.role == ColumnRole::NumarFactura) {
                text(at, m_source.text(column.role, row));
            } else {
                writeRepeated(at, column, row);
            }
            ++at;
        }
        ++m_row;
    }
    void writeAmount(lxw_col_t at, const ColumnRow& column, std::uint32_t row) {
        const std::optional<ShortDecimal> amount = m_source.store().amount(column.role).at(row);
        const bool isRate = column.kind == CellKind::Rate;
        if (amount) return number(at, *amount, isRate ? m_formats->rate : m_formats->amount, m_formats->right);
        if (isRate) text(at, m_source.oddRate(row), m_formats->right);
    }
    void writeRepeated(lxw_col_t at, const ColumnRow& column, std::uint32_t row) {
        Repeated& repeated = m_repeated[static_cast<std::size_t>(column.role)];
        const std::uint32_t number = m_source.store().text(column.role).numbers[row];
        if (repeated.number != number) {
            const QStringView shown = m_source.text(column.role, row);
            repeated = {number, cellText(shown), std::nullopt};
            if (column.kind == CellKind::Date) repeated.day = spreadsheetDay(shown);
        }
        if (repeated.day) {
            writeNumber(at, *repeated.day, m_formats->date);
        } else if (!repeated.text.isEmpty()) {
            writeString(at, repeated.text, nullptr);
        }
    }

    void writeTotals(ExportPace& pace) {
        std::vector<std::pair<QString, bool>> headings;
        for (std::size_t i = 0; i < pageColumns().size(); ++i) {
            const ColumnRow& column = pageColumns()[i];
            const bool isKey = m_isDay ? column.role == ColumnRole::DataDoc : i < 2;
            if (isKey || column.role == ColumnRole::Moneda) headings.emplace_back(m_source.heading(column), false);
        }
        headings.emplace_back(u"Documente"_s, true);
        for (const ColumnRow& column : pageColumns().subspan(kFirstSumColumn)) {
            headings.emplace_back(m_source.heading(column), true);
        }
        beginSheet("Totaluri", headings);
        setTotalsWidths();
        for (std::uint32_t group = 0; group < m_source.content().index.groupCount(); ++group) {
            pace.stopIfAsked();
            if (m_source.isTotalsAlone()) pace.step();
            const GroupTotal total = m_source.data().group(group);
            for (const CurrencyTotal& one : total.totals) writeTotal(total.key, one, false);
        }
        addFilter();
        writeReportTotals();
    }
    void setTotalsWidths() const {
        const lxw_col_t keys = keyColumns();
        check(worksheet_set_column(m_sheet, 0, 0, 18, nullptr));
        if (keys == 2) check(worksheet_set_column(m_sheet, 1, 1, 40, nullptr));
        check(worksheet_set_column(m_sheet, keys, static_cast<lxw_col_t>(keys + 1), 11, nullptr));
        check(worksheet_set_column(m_sheet, static_cast<lxw_col_t>(keys + 2), static_cast<lxw_col_t>(keys + 5), 20,
                                   nullptr));
    }
    void writeReportTotals() {
        ++m_row;
        text(0, QString::fromUtf16(kGrandTotal), m_formats->bold);
        ++m_row;
        for (const CurrencyTotal& one : m_source.data().totals()) writeTotal({}, one, true);
        ++m_row;
        const LeiTotal& lei = m_source.data().leiTotal();
        text(0, QString::fromUtf16(kTotalInLei), m_formats->bold);
        if (lei.rowsWithoutRate > 0) text(keyColumns(), withoutRateText(lei));
        number(static_cast<lxw_col_t>(keyColumns() + 5), lei.value, m_formats->boldAmount, m_formats->boldRight);
        ++m_row;
    }
    [[nodiscard]] lxw_col_t keyColumns() const { return m_isDay ? 1 : 2; }
    void writeTotal(const QStringList& key, const CurrencyTotal& total, bool isBold) {
        lxw_col_t at = 0;
        for (const QString& part : key) {
            const std::optional<double> day = m_isDay ? spreadsheetDay(part) : std::nullopt;
            if (day) writeNumber(at, *day, m_formats->date);
            if (!day) text(at, part);
            ++at;
        }
        at = keyColumns();
        lxw_format* plain = isBold ? m_formats->bold : nullptr;
        text(at++, total.currency, plain);
        writeNumber(at++, static_cast<double>(total.rows), plain);
        lxw_format* amount = isBold ? m_formats->boldAmount : m_formats->amount;
        lxw_format* right = isBold ? m_formats->boldRight : m_formats->right;
        for (const base::Decimal& value : total.sums) number(at++, value, amount, right);
        ++m_row;
    }

    void text(lxw_col_t at, QStringView shown, lxw_format* format = nullptr) const {
        if (shown.isEmpty()) return;
        writeString(at, cellText(shown), format);
    }
    /// A number, or a text of all its digits where a binary number could not hold them.
    template <typename Value>
    void number(lxw_col_t at, const Value& value, lxw_format* format, lxw_format* textFormat) const {
        if (const std::optional<double> number = spreadsheetNumber(value)) {
            writeNumber(at, *number, format);
        } else {
            writeString(at, exactText(value, kAmountPlaces, ','), textFormat);
        }
    }

    void writeString(lxw_col_t at, const QByteArray& bytes, lxw_format* format) const {
        if (bytes.isEmpty()) return;  // the library writes no cell for it
        countCell();
        check(worksheet_write_string(m_sheet, m_row, at, bytes.constData(), format));
    }
    void writeNumber(lxw_col_t at, double value, lxw_format* format) const {
        countCell();
        check(worksheet_write_number(m_sheet, m_row, at, value, format));
    }
    void check(lxw_error error) const {
        if (error == LXW_NO_ERROR) return;
        const int number = errno;
        if (error == LXW_ERROR_MEMORY_MALLOC_FAILED) throw std::bad_alloc();
        if (error == LXW_ERROR_MAX_STRING_LENGTH_EXCEEDED || error == LXW_ERROR_WORKSHEET_INDEX_OUT_OF_RANGE) {
            tooLarge();
        }
        system::failToWrite(m_file, number != 0 ? number : EIO);
    }
    /// The library does not look whether its rows reached the disk.
    void requireWritten() const {
        errno = 0;
        for (lxw_worksheet* sheet : m_sheets) {
            FILE* rows = sheet->optimize_tmpfile;
            if (rows != nullptr && (std::fflush(rows) != 0 || std::ferror(rows) != 0)) {
                system::failToWrite(m_file, errno != 0 ? errno : EIO);
            }
        }
    }

    /// Packs the sheets, on a thread of its own: the library cannot be stopped there. After a stop it ends alone, into
    /// a file that goes with it. Without a thread it is done here.
    void close() {
        struct Result {
            lxw_error error = LXW_NO_ERROR;
            int number = 0;
        };
        const auto result = std::make_shared<Result>();
        auto pack = [workbook = m_workbook.get(), place = m_place, name = m_name, folder = m_folder, result]() mutable {
            const system::NumericLocale numbers;
            errno = 0;
            result->error = workbook_close(workbook);  // frees it too
            result->number = errno;
            place.reset();
        };
        static_cast<void>(m_workbook.release());
        std::optional<system::Worker> closing;
        try {
            closing.emplace(pack);
        } catch (const std::system_error&) {
            pack();
        }
        while (closing && !closing->waitFor(kLookEvery)) {
            if (!m_control.progress->isStopped()) continue;
            m_control.keep(std::move(*closing));
            throw base::Cancelled();
        }
        if (closing) closing->rethrow();
        errno = result->number;
        check(result->error);
    }

    /// Counts what each sheet must hold.
    void countCell() const {
        if (m_sizes.size() < m_sheets.size()) {
            m_sizes.resize(m_sheets.size());
            m_lastRow = std::nullopt;
        }
        ++m_sizes.back().cells;
        if (m_lastRow == m_row) return;
        m_lastRow = m_row;
        ++m_sizes.back().rows;
    }

    struct Repeated {
        std::uint32_t number = std::numeric_limits<std::uint32_t>::max();
        QByteArray text;
        std::optional<double> day;
    };

    ExportSource m_source;
    QString m_file;
    ExportControl& m_control;
    bool m_isDay;
    std::shared_ptr<system::DurableFile> m_place;
    QByteArray m_name;
    QByteArray m_folder;
    Workbook m_workbook;
    const Formats* m_formats = nullptr;
    lxw_worksheet* m_sheet = nullptr;
    std::vector<lxw_worksheet*> m_sheets;
    mutable std::vector<SheetSize> m_sizes;      ///< of each sheet
    mutable std::optional<lxw_row_t> m_lastRow;  ///< of the present sheet that got a cell
    lxw_row_t m_headingRow = 0;
    lxw_row_t m_row = 0;
    lxw_col_t m_columnCount = 0;
    std::array<Repeated, kRepeatedTextCount> m_repeated;
};

}  // namespace

void writeXlsx(const Document& document, const QString& file, ExportControl& control) {
    XlsxExport(document, file, control).write();
}

}  // namespace velcoran::report
