#include "formats.h"
#include "report/data/amount_text.h"
#include "rows.h"
#include "system/durable_file.h"
#include "texts.h"
#include "writers.h"

#include <algorithm>

namespace velcoran::report {

using namespace Qt::StringLiterals;

namespace {

using Widths = std::array<qsizetype, kPageColumnCount>;
constexpr qsizetype kGap = 2;
/// A smaller rate may show two decimals more than the largest, and be negative.
constexpr qsizetype kRateSlack = 3;

/// Characters of a text: a pair of surrogates is one.
qsizetype lengthOf(QStringView text) {
    return text.size() - std::count_if(text.begin(), text.end(), [](QChar one) { return one.isLowSurrogate(); });
}

/// A text that stays on its line.
QString onOneLine(QString text) {
    for (QChar& character : text) {
        if (character.unicode() < 0x20 || character.unicode() == 0x7F) character = u' ';
    }
    return text;
}

/// Widest amount of a column, from the largest of each block.
qsizetype widthOf(const AmountColumn& column, bool isRate) {
    qsizetype width = 0;
    for (const AmountColumn::Block& block : column.blocks()) {
        Int128 least = 0;
        Int128 most = 0;
        for (std::uint32_t i = 0; i < block.rowCount; ++i) {
            least = std::min(least, block.mantissa(i));
            most = std::max(most, block.mantissa(i));
        }
        for (const Int128 mantissa : {least, most}) {
            const ShortDecimal amount{mantissa, block.scale};
            width = std::max(width, isRate ? rateText(amount).size() + kRateSlack : amountText(amount).size());
        }
    }
    return width;
}

qsizetype widthOf(const ExportSource& source, ColumnRole role) {
    const RowStore& store = source.store();
    qsizetype width = 0;
    if (isAmount(role)) return widthOf(store.amount(role), role == ColumnRole::CursValutar);
    if (role == ColumnRole::NumarFactura) {
        for (std::uint32_t row = 0; row < store.rowCount; ++row) {
            width = std::max(width, lengthOf(source.text(role, row)));
        }
        return width;
    }
    const TextPool& pool = store.text(role).pool;
    for (std::uint32_t number = 0; number < pool.size(); ++number) {
        const std::u16string_view text = pool.text(number);
        width = std::max(width, lengthOf(QStringView(text.data(), static_cast<qsizetype>(text.size()))));
    }
    return width;
}

void widen(Widths& widths, const std::vector<CurrencyTotal>& totals) {
    for (const CurrencyTotal& total : totals) {
        const TotalLine line = totalLine(total);
        for (std::size_t i = 0; i < kSumCount; ++i) {
            qsizetype& width = widths[kFirstSumColumn + i];
            width = std::max(width, line.amounts[i].size());
        }
    }
}

/// Widths that hold every cell, found before the first line is written.
Widths columnWidths(const ExportSource& source, const ExportPace& pace) {
    Widths widths{};
    for (std::size_t i = 0; i < widths.size(); ++i) {
        const ColumnRow& column = pageColumns()[i];
        pace.stopIfAsked();
        widths[i] = source.isTotalsAlone() ? 0 : widthOf(source, column.role);
        widths[i] = std::max(widths[i], source.heading(column).size());
    }
    for (std::uint32_t group = 0; group < source.content().index.groupCount(); ++group) {
        pace.stopIfAsked();
        widen(widths, source.data().group(group).totals);
    }
    widen(widths, source.data().totals());
    return widths;
}

class TextSink final : public ReportSink {
public:
    TextSink(const ExportSource& source, const Widths& widths, system::DurableFile& output)
        : m_source(source), m_widths(widths), m_output(output) {}

    void begin() override {
        line(m_source.title());
        if (!m_source.period().isEmpty()) line(u"Perioada: "_s + m_source.period());
        for (const QString& filter : m_source.filters()) line(filter);
        line({});
        std::array<QString, kPageColumnCount> cells;
        for (std::size_t i = 0; i < cells.size(); ++i) cells[i] = m_source.heading(pageColumns()[i]);
        line(padded(cells));
        line(QString(tableWidth(), u'='));
    }
    void beginGroup(const QString& title) override {
        line({});
        line(title);
    }
    void row(std::uint32_t row) override {
        std::array<QString, kPageColumnCount> cells;
        for (std::size_t i = 0; i < cells.size(); ++i) cells[i] = m_source.shownText(pageColumns()[i], row);
        line(padded(cells));
    }
    void endGroup(const std::vector<CurrencyTotal>& totals) override {
        if (!m_source.isTotalsAlone()) line(QString(tableWidth(), u'-'));
        writeTotals(totals);
    }
    void end() override {
        line({});
        if (m_source.data().rowCount() == 0) line(QString::fromUtf16(kNoDocuments));
        line(QString(tableWidth(), u'='));
        line(QString::fromUtf16(kGrandTotal));
        writeTotals(m_source.data().totals());
        const LeiTotal& lei = m_source.data().leiTotal();
        const QString label = (QString::fromUtf16(kTotalInLei) + u"  "_s + withoutRateText(lei)).trimmed();
        line(label + amountText(lei.value).rightJustified(tableWidth() - label.size()));
    }

private:
    void line(const QString& text) {
        QString whole = onOneLine(text);
        while (whole.endsWith(u' ')) whole.chop(1);
        m_output.write(whole.toUtf8() + "\r\n");
    }
    [[nodiscard]] qsizetype tableWidth() const {
        qsizetype width = -kGap;
        for (const qsizetype one : m_widths) width += one + kGap;
        return width;
    }
    [[nodiscard]] QString padded(const std::array<QString, kPageColumnCount>& cells) const {
        QString text;
        for (std::size_t i = 0; i < cells.size(); ++i) {
            const QString blanks(std::max<qsizetype>(0, m_widths[i] - lengthOf(cells[i])), u' ');
            const bool isRight = isAmount(pageColumns()[i].role);
            text += isRight ? blanks + cells[i] : cells[i] + blanks;
            if (i + 1 < cells.size()) text += QString(kGap, u' ');
        }
        return text;
    }
    /// The label takes the columns in front of the currency.
    void writeTotals(const std::vector<CurrencyTotal>& totals) {
        constexpr std::size_t kCurrencyColumn = 4;
        qsizetype room = 0;
        for (std::size_t i = 0; i < kCurrencyColumn; ++i) room += m_widths[i] + kGap;
        for (const CurrencyTotal& total : totals) {
            const TotalLine shown = totalLine(total);
            std::array<QString, kPageColumnCount> cells;
            cells[kCurrencyColumn] = shown.currency;
            for (std::size_t i = 0; i < kSumCount; ++i) cells[kFirstSumColumn + i] = shown.amounts[i];
            line(shown.label + padded(cells).sliced(std::min(room, shown.label.size())));
        }
    }

    const ExportSource& m_source;
    Widths m_widths;
    system::DurableFile& m_output;
};

}  // namespace

void writePlainText(const Document& document, const QString& file, ExportControl& control) {
    const ExportSource source(document);
    system::DurableFile output(file);
    const qint64 steps = source.isTotalsAlone() ? source.data().groupCount() : source.data().rowCount();
    const Widths widths = columnWidths(source, ExportPace(control, steps));
    TextSink sink(source, widths, output);
    output.write("\xEF\xBB\xBF");
    walkReport(source, sink, control);
    output.commit();
}

}  // namespace velcoran::report
