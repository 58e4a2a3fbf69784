#include "page_setup.h"

#include "base/error.h"

namespace velcoran::report {

using namespace Qt::StringLiterals;

namespace {

struct PaperRow {
    const char16_t* name;
    base::Twips width, height;  ///< upright, from ISO 216 and the American sizes
};
constexpr PaperRow kPapers[] = {
    {u"A4", {11906}, {16838}},     {u"A3", {16838}, {23811}},    {u"A5", {8391}, {11906}},
    {u"Letter", {12240}, {15840}}, {u"Legal", {12240}, {20160}},
};

}  // namespace

QStringList paperNames() {
    QStringList names;
    for (const PaperRow& paper : kPapers) names.append(QString::fromUtf16(paper.name));
    return names;
}

PageSetup pageSetup(const QString& paper, bool isLandscape, base::Twips margin) {
    for (const PaperRow& row : kPapers) {
        if (paper != QStringView(row.name)) continue;
        return {paper,
                isLandscape,
                isLandscape ? row.height : row.width,
                isLandscape ? row.width : row.height,
                margin,
                margin,
                margin,
                margin};
    }
    throw base::Error(base::kInvalidProcedureCall, u"Nu există formatul de hârtie „%1”."_s.arg(paper));
}

}  // namespace velcoran::report
