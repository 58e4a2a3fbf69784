#include "viewer_fixture.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace velcoran::tests {

class Values : public ViewerTest {};

TEST_F(Values, theShownReportIsToldWhole) {
    EXPECT_FALSE(viewer.report().isValid());
    EXPECT_EQ(viewer.pageCount(), 0);
    EXPECT_TRUE(viewer.pageLines(1).isEmpty());
    const auto report = scriptedReport(reportRows(2, 3));
    report->setText(u"Text6"_s, u"CLIENT:"_s);
    load(report);
    const auto values = QJsonObject::fromVariantMap(viewer.report().toMap());
    const auto wanted = QJsonDocument::fromJson(R"({"definition":"CRFacturiImport","option":0,
        "title":"RAPORT FACTURI EXTERNE - FURNIZORI","period":"= 01/03/2026 - 31/03/2026 =","rows":6,"pages":1,
        "groups":[{"key":["F0001","FIRMA F0001 SRL"],"rows":3,"totals":[{"Moneda":"EUR","ValoareNeta":"3000.375",
            "ValoareTVA":"0.00","ValoareTaxe":"0.00","ValoareBruta":"3000.375"}]},
          {"key":["F0002","FIRMA F0002 SRL"],"rows":3,"totals":[{"Moneda":"EUR","ValoareNeta":"3000.375",
            "ValoareTVA":"0.00","ValoareTaxe":"0.00","ValoareBruta":"3000.375"}]}],
        "totals":[{"Moneda":"EUR","rows":6,"ValoareNeta":"6000.75","ValoareTVA":"0.00","ValoareTaxe":"0.00",
            "ValoareBruta":"6000.75"}]})");
    for (const QString& key : wanted.object().keys())
        EXPECT_EQ(values.value(key), wanted.object().value(key))
            << qPrintable(key) << QJsonDocument(values).toJson().constData();
    EXPECT_EQ(values.value(u"texts"_s)[u"Text6"_s], u"CLIENT:"_s);
    EXPECT_EQ(values.value(u"texts"_s)[u"Text2"_s], u"COD\r\nFURNIZOR"_s);
    EXPECT_TRUE(viewer.pageLines(1).join(u'\n').contains(u"F0001-2"_s));
    EXPECT_TRUE(viewer.pageLines(2).isEmpty());
    viewer.setReportSource(nullptr);
    EXPECT_FALSE(viewer.report().isValid());
}

}  // namespace velcoran::tests
