#include "formats.h"
#include "numbers.h"
#include "rows.h"
#include "system/durable_file.h"
#include "writers.h"

#include <limits>

namespace velcoran::report {

namespace {

constexpr char kMark[] = "\xEF\xBB\xBF";
constexpr int kAmountPlaces = 2;
constexpr int kRatePlaces = 4;

/// What a spreadsheet takes for the start of a formula, or leaves out in front of one; the wide signs of East Asian
/// keyboards count as the others do.
constexpr QStringView kFormulaStarts = u"=+-@\t\r\n＝＋－＠";

bool looksLikeFormula(QStringView text) { return !text.isEmpty() && kFormulaStarts.contains(text.front()); }

class CsvExport {
public:
    CsvExport(const Document& document, const QString& file, ExportControl& control)
        : m_source(document), m_control(control), m_output(file) {
        const QString point = control.locale.decimalPoint();
        m_decimal = point == QStringView(u",") ? ',' : '.';
        m_separator = m_decimal == ',' ? ';' : ',';
    }

    void write() {
        ExportPace pace(m_control, m_source.data().rowCount());
        m_output.write(kMark);
        writeHeading();
        for (std::uint32_t group = 0; group < m_source.content().index.groupCount(); ++group) {
            for (const std::uint32_t row : m_source.rowsOf(group)) {
                pace.step();
                writeRow(row);
            }
        }
        pace.stopIfAsked();
        m_output.commit();
    }

private:
    void writeHeading() {
        m_line.clear();
        for (const ColumnRow& column : statementColumns()) appendCell(quoted(m_source.heading(column)));
        endLine();
    }
    void writeRow(std::uint32_t row) {
        m_line.resize(0);
        for (const ColumnRow& column : statementColumns()) appendCell(cell(column.role, row));
        endLine();
    }
    void appendCell(QByteArrayView cell) {
        m_line.append(cell);
        m_line.append(m_separator);
    }
    void endLine() {
        m_line.chop(1);
        m_line.append("\r\n");
        m_output.write(m_line);
    }

    QByteArray cell(ColumnRole role, std::uint32_t row) {
        if (isAmount(role)) return amountCell(role, row);
        if (role == ColumnRole::NumarFactura) return quoted(m_source.text(role, row));
        Repeated& repeated = m_repeated[static_cast<std::size_t>(role)];
        const std::uint32_t number = m_source.store().text(role).numbers[row];
        if (repeated.number != number) repeated = {number, quoted(m_source.text(role, row))};
        return repeated.cell;
    }
    QByteArray amountCell(ColumnRole role, std::uint32_t row) const {
        const bool isRate = role == ColumnRole::CursValutar;
        const std::optional<ShortDecimal> amount = m_source.store().amount(role).at(row);
        if (amount) return exactText(*amount, isRate ? kRatePlaces : kAmountPlaces, m_decimal);
        return isRate ? quoted(m_source.oddRate(row)) : QByteArray();
    }
    /// A text as a cell: no formula, and in quotes where it must be.
    QByteArray quoted(QStringView text) const {
        QByteArray cell = text.toUtf8();
        if (looksLikeFormula(text)) cell.prepend('\'');
        const bool isPlain =
            cell.indexOf(m_separator) < 0 && cell.indexOf('"') < 0 && cell.indexOf('\n') < 0 && cell.indexOf('\r') < 0;
        if (isPlain) return cell;
        return '"' + cell.replace("\"", "\"\"") + '"';
    }

    /// The cell before in its column: rows of a group share most of their texts.
    struct Repeated {
        std::uint32_t number = std::numeric_limits<std::uint32_t>::max();
        QByteArray cell;
    };

    ExportSource m_source;
    ExportControl& m_control;
    system::DurableFile m_output;
    char m_decimal = ',';
    char m_separator = ';';
    std::array<Repeated, kRepeatedTextCount> m_repeated;
    QByteArray m_line;
};

}  // namespace

void writeCsv(const Document& document, const QString& file, ExportControl& control) {
    CsvExport(document, file, control).write();
}

}  // namespace velcoran::report
