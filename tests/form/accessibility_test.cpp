#include "form_fixture.h"

#include <QAccessible>

namespace velcoran::tests {

using namespace Qt::StringLiterals;

class AccessibilityTest : public FormTest {
protected:
    AccessibilityTest() { setUpFor(u"Import"_s); }
    QAccessibleInterface* seen(const char* name) { return QAccessible::queryAccessibleInterface(find<QWidget>(name)); }
};

TEST_F(AccessibilityTest, everyControlIsFoundByItsLabel) {
    const struct {
        const char* control;
        QString name;
        QAccessible::Role role;
    } cases[] = {
        {"cmbTipRaport", u"Raport detaliat pe :"_s, QAccessible::ComboBox},
        {"chkTotale", u"Totale"_s, QAccessible::CheckBox},
        {"cmbSortare", u"Sortare:"_s, QAccessible::ComboBox},
        {"Deladata", u"Interval:"_s, QAccessible::ComboBox},
        {"Ladata", u"Interval:"_s, QAccessible::ComboBox},
        {"txtProducator", u"Producator:"_s, QAccessible::EditableText},
        {"cmbCategorie", u"Categorie de Produse:"_s, QAccessible::ComboBox},
        {"txtCodProdus", u"Denumire  Produs:"_s, QAccessible::EditableText},
        {"txtTipClient", u"Tip Furnizor:"_s, QAccessible::EditableText},
        {"txtCatClient", u"Categorie Furnizor:"_s, QAccessible::EditableText},
        {"txtCodClient", u"Denumire Furnizor:"_s, QAccessible::EditableText},
        {"cmbDepozit", u"Depozitul:         (implicit toate)"_s, QAccessible::List},
        {"txtCodAgent", u"Filtrare Agent:"_s, QAccessible::EditableText},
        {"cmbSelectie", u"Selectie:"_s, QAccessible::ComboBox},
        {"chkLohn", u"Inclusiv importurile temporare"_s, QAccessible::CheckBox},
        {"Raport", u"Raporteaza"_s, QAccessible::Button},
        {"cmdExit", u"Iesire"_s, QAccessible::Button},
        {"cmdViz", u"Filtreaza Date"_s, QAccessible::Button},
        {"frmClient", u"Filtrare Furnizori:"_s, QAccessible::Grouping},
    };
    for (const auto& one : cases) {
        SCOPED_TRACE(one.control);
        ASSERT_NE(seen(one.control), nullptr);
        EXPECT_EQ(seen(one.control)->text(QAccessible::Name), one.name);
        EXPECT_EQ(seen(one.control)->role(), one.role);
    }
    EXPECT_EQ(seen("Deladata")->text(QAccessible::Description), u"De la data"_s);
    EXPECT_EQ(seen("Ladata")->text(QAccessible::Value), u"15/iul./03"_s);
    setUpFor(u"Export"_s);
    EXPECT_EQ(seen("txtTipClient")->text(QAccessible::Name), u"Tip Client:"_s);
}

TEST_F(AccessibilityTest, statesAreTold) {
    giveFocus("txtTipProdus");
    EXPECT_TRUE(seen("txtTipProdus")->state().focused);
    EXPECT_EQ(seen("cmbSortare")->text(QAccessible::Value), u"Data"_s);
    giveFocus("cmbSortare");
    seen("cmbSortare")->actionInterface()->doAction(QAccessibleActionInterface::showMenuAction());
    EXPECT_TRUE(seen("cmbSortare")->state().expanded);
    list("cmbSortare")->hidePopup();
    find<controls::CheckBox>("chkTotale")->setValue(true);
    EXPECT_TRUE(seen("chkTotale")->state().checked);
    EXPECT_TRUE(seen("cmbSortare")->state().disabled);
    EXPECT_FALSE(seen("txtProducator")->state().disabled);

    giveFocus("cmbDepozit");
    press(Qt::Key_Down);
    press(Qt::Key_Space);
    QAccessibleInterface* warehouse = seen("cmbDepozit")->child(1);
    ASSERT_NE(warehouse, nullptr);
    EXPECT_EQ(warehouse->text(QAccessible::Name), u"4 - Vama"_s);
    EXPECT_TRUE(warehouse->state().checkable);
    EXPECT_TRUE(warehouse->state().checked);
    EXPECT_FALSE(seen("cmbDepozit")->child(0)->state().checked);
}

TEST_F(AccessibilityTest, thePickersGridTellsItsHeadersAndRows) {
    giveFocus("txtProducator");
    press(Qt::Key_Return);
    ASSERT_EQ(focus(), u"Grid"_s);
    QAccessibleTableInterface* table = seen("Grid")->tableInterface();
    ASSERT_NE(table, nullptr);
    EXPECT_EQ(table->rowCount(), 2);
    const int last = table->columnCount() - 1;
    EXPECT_EQ(table->columnDescription(last), u"Denumire"_s);
    EXPECT_EQ(table->cellAt(1, last)->text(QAccessible::Name), u"BETA"_s);
    EXPECT_EQ(seen("Grid")->text(QAccessible::Name), caption("fraGrid"));
}

}  // namespace velcoran::tests
