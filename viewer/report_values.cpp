#include "report_values.h"

#include "report/layout/document.h"

namespace velcoran::viewer {

namespace {

QVariantMap totalValues(const report::CurrencyTotal& total, bool withRows) {
    const auto amount = [](const base::Decimal& value) { return value.toShortestText(2); };
    QVariantMap map{{QStringLiteral("Moneda"), total.currency}};
    for (const report::ColumnRow& column : report::kColumns)
        if (column.kind == report::CellKind::Amount) map.insert(column.name.toString(), amount(total.sum(column.role)));
    if (withRows) map.insert(QStringLiteral("rows"), total.rows);
    return map;
}

QVariantList totalList(const std::vector<report::CurrencyTotal>& totals, bool withRows) {
    QVariantList list;
    for (const report::CurrencyTotal& total : totals) list.append(totalValues(total, withRows));
    return list;
}

QVariantList groupList(const report::ReportData& data) {
    QVariantList list;
    list.reserve(data.groupCount());
    for (qint64 i = 0; i < data.groupCount(); ++i) {
        const report::GroupTotal group = data.group(i);
        list.append(QVariantMap{{QStringLiteral("key"), group.key},
                                {QStringLiteral("rows"), group.rows},
                                {QStringLiteral("totals"), totalList(group.totals, false)}});
    }
    return list;
}

QVariantMap textMap(const QMap<QString, QString>& texts) {
    QVariantMap map;
    for (auto entry = texts.cbegin(); entry != texts.cend(); ++entry) map.insert(entry.key(), entry.value());
    return map;
}

}  // namespace

QVariantMap reportValues(const report::Document& document, const QString& definition) {
    const report::ReportTexts& texts = document.texts();
    return {{QStringLiteral("definition"), definition},
            {QStringLiteral("option"), texts.request.isTotalsAlone ? 1 : 0},
            {QStringLiteral("title"), texts.text(report::ObjectRole::Title)},
            {QStringLiteral("texts"), textMap(texts.texts)},
            {QStringLiteral("period"), texts.text(report::ObjectRole::Period)},
            {QStringLiteral("rows"), document.data().rowCount()},
            {QStringLiteral("pages"), document.pageCount()},
            {QStringLiteral("groups"), groupList(document.data())},
            {QStringLiteral("totals"), totalList(document.data().totals(), true)}};
}

}  // namespace velcoran::viewer
