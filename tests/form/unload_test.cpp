#include "form_fixture.h"

namespace velcoran::tests {

using namespace Qt::StringLiterals;

class UnloadTest : public FormTest {
protected:
    UnloadTest() { setUpFor(u"Import"_s); }
};

TEST_F(UnloadTest, escInEveryControlWithItClosesTheWindow) {
    for (const char* name : {"cmbTipRaport", "chkTotale", "Deladata", "txtProducator", "cmbDepozit", "chkLohn",
                             "Raport", "cmdExit", "cmdViz"}) {
        giveFocus(name);
        const QPointer<QWidget> control = find<QWidget>(name);
        press(Qt::Key_Escape);
        EXPECT_FALSE(window.isLoaded()) << name;
        EXPECT_FALSE(window.isVisible()) << name;
        QCoreApplication::processEvents();
        EXPECT_TRUE(control.isNull()) << "the controls go once the handler has returned: " << name;
        setUpFor(u"Import"_s);
    }
}

TEST_F(UnloadTest, releasesReferencesAndKeepsTexts) {
    giveFocus("txtProducator");
    press(Qt::Key_Return);
    press(Qt::Key_Return);
    EXPECT_EQ(member("sCodProducator"), u"C1"_s);
    QTest::mouseClick(find<QWidget>("cmdExit"), Qt::LeftButton);
    EXPECT_FALSE(window.isLoaded());
    for (const char* name : {"priza", "rsLookup", "objMesaje"}) EXPECT_EQ(member(name), u"false"_s) << name;
    EXPECT_FALSE(window.property("rptFacturi").isValid());
    EXPECT_EQ(member("sCodProducator"), u"C1"_s);
    EXPECT_EQ(member("sTipRaport"), u"Import"_s);
    EXPECT_EQ(connection->State(), kStateOpen);
}

TEST_F(UnloadTest, reloadsInTheDesignedState) {
    box("txtTipProdus")->setText(u"x"_s);
    find<controls::CheckBox>("chkTotale")->setValue(true);
    window.close();
    setUpFor(u"Export"_s);
    EXPECT_EQ(box("txtTipProdus")->text(), QString());
    EXPECT_FALSE(dataChanged("txtTipProdus"));
    EXPECT_FALSE(find<controls::CheckBox>("chkTotale")->value());
    EXPECT_TRUE(list("cmbCategorie")->isEnabled());
    EXPECT_EQ(caption("fraGrid"), u"Alege Produse"_s);
    EXPECT_EQ(frame("fraGrid")->property("controlState").toMap().value(u"tag"_s), QVariant(QString()));
    EXPECT_EQ(frame("fraGrid")->property("twips").toRect(), QRect(2280, 7920, 7170, 3435));
    EXPECT_EQ(focus(), u"cmbTipRaport"_s);
    EXPECT_EQ(window.findChildren<QWidget*>(u"txtTipProdus"_s).size(), 1);
}

TEST_F(UnloadTest, aHostWithoutAnEventLoopMayReloadAtOnce) {
    for (int i = 0; i < 3; ++i) {
        giveFocus("txtTipProdus");
        press(Qt::Key_Escape);
        window.setPriza(db::Connection(connection->asConnection()));
        window.Incarca(u"Import"_s, QDate(2003, 7, 15), {});
        EXPECT_EQ(window.findChildren<QWidget*>(u"txtTipProdus"_s).size(), 1);
    }
}

TEST_F(UnloadTest, closingFromInsideAMessageIsSafe) {
    box("txtCodAgent")->setText(u"x"_s);
    surroundings.whileShowing = [this] {
        window.close();
        QCoreApplication::processEvents();
        EXPECT_FALSE(window.isVisible());
        EXPECT_TRUE(window.isLoaded()) << "its handler has still to return";
    };
    QTest::mouseClick(find<QWidget>("Raport"), Qt::LeftButton);
    EXPECT_EQ(surroundings.messages.size(), 1);
    EXPECT_FALSE(window.isLoaded());
    QCoreApplication::processEvents();
    EXPECT_EQ(find<QWidget>("Raport"), nullptr);
}

}  // namespace velcoran::tests
