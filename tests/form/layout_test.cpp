#include "form/rules/layout.h"
#include "form_fixture.h"

#include <set>

namespace velcoran::tests {

using namespace Qt::StringLiterals;
using form::Ctl;

namespace {

QRect twips(const QWidget* widget) { return widget->property("twips").toRect(); }

}  // namespace

TEST(Layout, listsEveryControlOnceUnderItsParent) {
    std::set<QString> names;
    for (const form::LayoutRow& row : form::layoutRows()) {
        EXPECT_TRUE(names.insert(row.name.toString()).second) << row.name.toString().toStdString();
        EXPECT_EQ(form::controlNamed(row.name), row.control) << row.name.toString().toStdString();
        EXPECT_TRUE(row.parent == Ctl::window || row.parent < row.control) << row.name.toString().toStdString();
    }
    EXPECT_EQ(names.size(), form::kControlCount);
}

TEST_F(FormTest, placesFollowTheWindow) {
    setUpFor(u"Import"_s);
    window.showNormal();
    const struct {
        int width, height, vizLeft;
    } cases[] = {{1280, 800, 16930}, {1920, 1000, 26530}, {200, 150, 730}, {101, 99, -755}};
    for (const auto& one : cases) {
        window.setMinimumSize(0, 0);
        window.resize(one.width, one.height);
        QCoreApplication::processEvents();
        EXPECT_EQ(twips(find<QWidget>("CRW")), QRect(0, 0, one.width * 15, one.height * 15));
        EXPECT_EQ(find<QWidget>("CRW")->size(), window.size());
        EXPECT_EQ(twips(find<QWidget>("cmdViz")), QRect(one.vizLeft, 75, 1770, 345));
        EXPECT_EQ(twips(find<QWidget>("Command1")), QRect(one.vizLeft - 1770, 75, 1770, 345));
        EXPECT_EQ(twips(find<QWidget>("frmEnable")), QRect(0, 480, 11775, 7515));
    }
    EXPECT_EQ(window.property("innerWidth").toInt(), 101 * 15);
}

TEST_F(FormTest, stacksButtonsOverPickerOverPanelOverViewer) {
    setUpFor(u"Import"_s);
    QStringList bottomUp;
    for (const QObject* child : window.children()) {
        if (child->isWidgetType()) bottomUp.append(child->objectName());
    }
    EXPECT_EQ(bottomUp, QStringList({u"CRW"_s, u"frmEnable"_s, u"fraGrid"_s, u"cmdViz"_s, u"Command1"_s}));
    QStringList panel;
    for (const QObject* child : frame("frmEnable")->children()) {
        if (child->isWidgetType()) panel.append(child->objectName());
    }
    EXPECT_EQ(panel.last(), u"fraMesaj"_s);
}

TEST(Layout, keepsItsTwipsAtEveryDensity) {
    QWidget window;
    form::ControlTree tree(window, 96);
    const struct {
        double density;
        QRect pixels;
    } cases[] = {{96, {11, 63, 396, 210}}, {144, {17, 95, 594, 315}}, {192, {22, 127, 792, 420}}};
    for (const auto& one : cases) {
        tree.setDensity(one.density);
        EXPECT_EQ(tree.widget(Ctl::frmProduse).geometry(), one.pixels) << one.density;
        EXPECT_EQ(twips(&tree.widget(Ctl::frmProduse)), QRect(165, 950, 5940, 3150));
    }
}

TEST_F(FormTest, namesFieldsAfterTheirLabels) {
    setUpFor(u"Import"_s);
    EXPECT_EQ(box("txtCodClient")->accessibleName(), u"Denumire Furnizor:"_s);
    EXPECT_EQ(list("cmbSortare")->accessibleName(), u"Sortare:"_s);
}

}  // namespace velcoran::tests
