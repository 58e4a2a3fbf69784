#include "chosen_filters.h"

#include "export_request.h"

#include "base/enum_table.h"
#include "base/error.h"
#include "db/connection.h"
#include "db/row_store.h"
#include "filters/codes.h"
#include "filters/setup_values.h"
#include "lookup/lookup_request.h"
#include "lookup/setup_statements.h"

#include <algorithm>

namespace velcoran::host {

using namespace Qt::StringLiterals;
using filters::FilterState;
using filters::LookupField;

namespace {

/// The options of the lookup fields.
struct OptionRow {
    LookupField field;
    QStringView option;
    QString ExportRequest::*code;
};
constexpr base::EnumTable<&OptionRow::field, filters::kLookupFieldCount> kOptions{{{
    {LookupField::txtProducator, u"--producer", &ExportRequest::producer},
    {LookupField::txtTipProdus, u"--type", &ExportRequest::type},
    {LookupField::txtGrupaProdus, u"--group", &ExportRequest::group},
    {LookupField::txtSubGrupaProdus, u"--subgroup", &ExportRequest::subgroup},
    {LookupField::txtCodProdus, u"--product", &ExportRequest::product},
    {LookupField::txtTipClient, u"--partner-type", &ExportRequest::partnerType},
    {LookupField::txtCatClient, u"--partner-category", &ExportRequest::partnerCategory},
    {LookupField::txtCodClient, u"--partner", &ExportRequest::partner},
    {LookupField::txtCodAgent, u"--agent", &ExportRequest::agent},
}}};

[[noreturn]] void fail(QStringView option, const QString& value, const QString& words) {
    throw base::Error(base::kInvalidProcedureCall, u"%1 \"%2\" %3"_s.arg(option, value, words));
}

db::RowStore readRows(const db::Connection& connection, const QString& statement) {
    db::RowStore store;
    const db::Rows rows = connection.execute(statement);
    while (const RowBlock* block = rows.fetch()) store.append(*block);
    return store;
}

QString cell(const db::RowStore& rows, std::uint32_t row, int column) {
    return rows.text(row, column).value_or(QString());
}

int workingYear(const db::Connection& connection) {
    const db::RowStore years = readRows(connection, lookup::kYearStatement.toString());
    if (years.rowCount() == 0) throw base::Error(base::kNoCurrentRecord, u"Tabela An nu are nicio înregistrare."_s);
    return filters::yearOf(years.text(0, 0));
}

void checkDay(QStringView option, QDate day, const filters::Period& period) {
    if (day >= period.minimum && day <= period.maximum) return;
    fail(option, day.toString(Qt::ISODate),
         u"lies outside the working year: %1 to %2"_s.arg(period.minimum.toString(Qt::ISODate),
                                                          period.maximum.toString(Qt::ISODate)));
}

/// The place of an entry in a list. @param filled  entries that are named when it is not there
int placeOf(const QString& entry, const QStringList& entries, QStringView option) {
    const qsizetype place = entries.indexOf(entry);
    if (place >= 0) return static_cast<int>(place);
    QStringList filled = entries;
    filled.removeAll(QString());
    fail(option, entry, u"is no entry; there are: "_s + filled.join(u", "_s));
}

/// The rows whose first column is a code, as people write it.
std::vector<std::uint32_t> rowsWithCode(const db::RowStore& rows, const QString& code) {
    std::vector<std::uint32_t> found;
    for (std::uint32_t row = 0; row < rows.rowCount(); ++row)
        if (cell(rows, row, 0).trimmed().compare(code, Qt::CaseInsensitive) == 0) found.push_back(row);
    return found;
}

db::RowStore lookUp(const OptionRow& option, const QString& code, const FilterState& state,
                    const db::Connection& connection) {
    try {
        return readRows(connection, lookup::buildLookup(option.field, state).Sql);
    } catch (const base::Error& error) {
        throw base::Error(error.number(), u"%1 \"%2\": %3"_s.arg(option.option, code, error.description()));
    }
}

/// Chooses the row of a code as a pick does: its code where the field shows a name, and the text of the field.
void choose(LookupField field, const ExportRequest& request, const db::Connection& connection, FilterState& state) {
    const OptionRow& option = kOptions[field];
    const QString& code = request.*option.code;
    if (code.isEmpty()) return;
    const db::RowStore rows = lookUp(option, code, state, connection);
    const std::vector<std::uint32_t> found = rowsWithCode(rows, code);
    if (found.empty()) fail(option.option, code, u"matches nothing"_s);
    if (found.size() > 1) fail(option.option, code, u"matches %1 rows"_s.arg(found.size()));
    const std::optional<filters::CodeVariable> variable = filters::kLookupFields[field].code;
    state.fields[field].text = cell(rows, found.front(), variable ? 1 : 0);
    if (variable) state.codes[*variable] = cell(rows, found.front(), 0);
}

QStringList warehouses(const QStringList& codes, const db::Connection& connection) {
    const db::RowStore rows = readRows(connection, lookup::kWarehouseStatement.toString());
    QStringList items;
    for (std::uint32_t row = 0; row < rows.rowCount(); ++row)
        if (const std::optional<QString> item = rows.text(row, 0)) items.append(*item);
    const auto codeOf = [](const QString& item) { return item.section(u" - "_s, 0, 0); };
    for (const QString& code : codes) {
        const auto count = std::ranges::count(items, code, codeOf);
        if (count != 1) fail(u"--warehouse", code, count == 0 ? u"matches nothing"_s : u"matches several"_s);
    }
    erase_if(items, [&](const QString& item) { return !codes.contains(codeOf(item)); });
    return items;
}

}  // namespace

FilterState chosenFilters(const ExportRequest& request, const db::Connection& connection) {
    FilterState state;
    state.sTipRaport = request.kind;
    state.sSoc = request.prefix;
    const filters::ReportKind kind = state.sTipRaport.kind;
    const filters::Period period = filters::periodOf(static_cast<std::int16_t>(workingYear(connection)), request.to);
    checkDay(u"--from", request.from, period);
    checkDay(u"--to", request.to, period);
    state.deLaData = request.from;
    state.laData = request.to;
    state.cmbTipRaport = filters::reportEntries(kind).at(request.isByDay ? 1 : 0);
    const QStringList sorts = filters::sortEntries(kind);
    state.cmbSortare = request.sort.isEmpty() ? sorts.front() : sorts.at(placeOf(request.sort, sorts, u"--sort"));

    // In the order of the window: what is chosen narrows the lookups behind it.
    choose(LookupField::txtProducator, request, connection, state);
    const QStringList categories = filters::categoryEntries(kind);
    if (!request.category.isEmpty()) state.cmbCategorieIndex = placeOf(request.category, categories, u"--category");
    state.cmbCategorie = categories.at(state.cmbCategorieIndex);
    for (const OptionRow& option : kOptions)
        if (option.field != LookupField::txtProducator) choose(option.field, request, connection, state);
    if (!request.warehouses.isEmpty()) state.depozite = warehouses(request.warehouses, connection);
    state.chkLohn = request.hasTemporary;
    state.chkTotale = request.hasTotals;
    return state;
}

}  // namespace velcoran::host
