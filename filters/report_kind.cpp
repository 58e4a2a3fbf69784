#include "report_kind.h"

#include "base/enum_table.h"

namespace velcoran::filters {

namespace {

struct KindName {
    ReportKind kind;
    QStringView text;
};

constexpr base::EnumTable<&KindName::kind, kReportKindCount> kNames{{{
    {ReportKind::Import, u"Import"},
    {ReportKind::Export, u"Export"},
    {ReportKind::Achizitii, u"Achizitii"},
    {ReportKind::Vanzari, u"Vanzari"},
    {ReportKind::Profit, u"Profit"},
    {ReportKind::Nir, u"NIR"},
    {ReportKind::Other, QStringView()},
}}};

}  // namespace

ReportKind reportKindOf(QStringView text) {
    for (const KindName& one : kNames) {
        if (one.text == text) return one.kind;
    }
    return ReportKind::Other;
}

}  // namespace velcoran::filters
