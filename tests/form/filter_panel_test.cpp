#include "form_fixture.h"

#include <QClipboard>
#include <QGuiApplication>

namespace velcoran::tests {

using namespace Qt::StringLiterals;

class FilterPanelTest : public FormTest {
protected:
    FilterPanelTest() { setUpFor(u"Import"_s); }
    QString backOf(const char* name) {
        return find<QWidget>(name)->property("controlState").toMap()[u"backColor"_s].toString();
    }
    void fillProducts() {
        list("cmbCategorie")->setIndex(2);
        setPicked("txtProducator", u"ALFA"_s);
        list("cmbCategorie")->setIndex(2);
        for (const char* name : {"txtTipProdus", "txtGrupaProdus", "txtSubGrupaProdus", "txtCodProdus"})
            setPicked(name, u"P"_s);
    }
    QStringList productTexts() {
        QStringList texts;
        for (const char* name : {"txtTipProdus", "txtGrupaProdus", "txtSubGrupaProdus", "txtCodProdus"})
            texts.append(box(name)->text());
        return texts;
    }
};

TEST_F(FilterPanelTest, coloursAndSelectsOnFocus) {
    setPicked("txtGrupaProdus", u"ABC"_s);
    giveFocus("txtGrupaProdus");
    EXPECT_EQ(backOf("txtGrupaProdus"), u"0x404040"_s);
    EXPECT_EQ(box("txtGrupaProdus")->selStart(), 0);
    EXPECT_EQ(box("txtGrupaProdus")->selLength(), 3);
    for (const char* name : {"cmbTipRaport", "cmbSortare", "cmbSelectie", "cmbCategorie"}) {
        giveFocus(name);
        EXPECT_EQ(backOf(name), u"0x404040"_s) << name;
    }
    giveFocus("cmbDepozit");
    EXPECT_EQ(backOf("cmbDepozit"), u"0x000000"_s);
    EXPECT_EQ(backOf("cmbCategorie"), u"0x000000"_s);
    EXPECT_EQ(backOf("txtGrupaProdus"), u"0x000000"_s);
}

TEST_F(FilterPanelTest, refusesCharactersThatBreakStatements) {
    giveFocus("txtCodClient");
    type(u"a b'c;d%e,f\"g/h"_s);
    EXPECT_EQ(box("txtCodClient")->text(), u"abcdefg/h"_s);
    QGuiApplication::clipboard()->setText(u"x y"_s);
    box("txtCodClient")->selectAll();
    box("txtCodClient")->paste();
    EXPECT_EQ(box("txtCodClient")->text(), u"x y"_s);
    box("txtCodClient")->setText(QString(30, u'a'));
    box("txtCodClient")->setSel(30, 0);
    type(u"b"_s);
    EXPECT_EQ(box("txtCodClient")->text(), QString(30, u'a'));
}

TEST_F(FilterPanelTest, aTypedCharacterRunsTheCascade) {
    fillProducts();
    giveFocus("txtTipProdus");
    type(u"x"_s);
    EXPECT_EQ(productTexts(), QStringList({u"x"_s, {}, {}, {}}));
    for (const char* name : {"txtTipProdus", "txtGrupaProdus", "txtSubGrupaProdus", "txtCodProdus"})
        EXPECT_TRUE(dataChanged(name)) << name;
    EXPECT_EQ(box("txtProducator")->text(), u"ALFA"_s);
}

TEST_F(FilterPanelTest, anEmptyDependentIsNotTouched) {
    giveFocus("txtSubGrupaProdus");
    type(u"x"_s);
    EXPECT_FALSE(dataChanged("txtCodProdus"));
}

TEST_F(FilterPanelTest, aNewProducerResetsTheProductFilters) {
    fillProducts();
    box("txtProducator")->setText(u"BETA"_s);
    EXPECT_EQ(list("cmbCategorie")->index(), 0);
    EXPECT_EQ(productTexts().join(QString()), QString());
}

TEST_F(FilterPanelTest, totalsModeDisablesAndEmptiesTheProductFilters) {
    fillProducts();
    list("cmbSortare")->setIndex(1);
    auto* totals = find<controls::CheckBox>("chkTotale");
    const QWidget* governed[] = {list("cmbCategorie"),     box("txtTipProdus"), box("txtGrupaProdus"),
                                 box("txtSubGrupaProdus"), box("txtCodProdus"), list("cmbSortare")};
    totals->setValue(true);
    for (const QWidget* widget : governed) EXPECT_FALSE(widget->isEnabled()) << widget->objectName().toStdString();
    EXPECT_EQ(productTexts().join(QString()), QString());
    EXPECT_EQ(list("cmbCategorie")->index(), 0);
    EXPECT_EQ(box("txtProducator")->text(), u"ALFA"_s);
    EXPECT_TRUE(box("txtProducator")->isEnabled());
    totals->setValue(false);
    for (const QWidget* widget : governed) EXPECT_TRUE(widget->isEnabled()) << widget->objectName().toStdString();
    EXPECT_EQ(productTexts().join(QString()), QString());
    EXPECT_EQ(list("cmbSortare")->index(), 1);
}

}  // namespace velcoran::tests
