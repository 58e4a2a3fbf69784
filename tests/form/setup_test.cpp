#include "form_fixture.h"

namespace velcoran::tests {

using namespace Qt::StringLiterals;

namespace {

const QString kYear = u"execute: SELECT An FROM An"_s;
const QString kWarehouseText =
    u"recordset:  SELECT str(Depozite.Depozit,len(Depozite.Depozit),0) + ' - ' + Depozite.[Denumire Depozit] FROM Depozite"_s;

struct KindCase {
    QString kind, title, type, category, name, client, products, temporary;
    QStringList reports, sorts, categories;
};

const KindCase kKinds[] = {
    {u"Import"_s,
     u"Facturi Import Furnizori"_s,
     u"Tip Furnizor:"_s,
     u"Categorie Furnizor:"_s,
     u"Denumire Furnizor:"_s,
     u"Filtrare Furnizori:"_s,
     u"Filtrare Produse"_s,
     u"Inclusiv importurile temporare"_s,
     {u"Furnizor"_s, u"Zi"_s},
     {u"Data"_s, u"Numar Document"_s, u"Furnizor"_s},
     {QString(), u"Produse Finite"_s, u"Servicii"_s, u"Alte Cheltuieli"_s, u"Mijloace Fixe"_s, u"Produse in Lohn"_s}},
    {u"Export"_s,
     u"Facturi Export Clienti"_s,
     u"Tip Client:"_s,
     u"Categorie Client :"_s,
     u"Denumire Client:"_s,
     u"Filtrare Clienti"_s,
     u"Facturi care contin:"_s,
     u"Inclusiv exporturile temporare"_s,
     {u"Client"_s, u"Zi"_s},
     {u"Data"_s, u"Numar Document"_s, u"Client"_s},
     {QString(), u"Produse Finite"_s, u"Produse Finite in Consignatie"_s, u"Servicii"_s, u"Mijloace Fixe"_s,
      u"Produse in Lohn"_s}},
    {u"import"_s,
     u"Facturi Import Furnizori"_s,
     u"Tip Client:"_s,
     u"Categorie Client :"_s,
     u"Denumire Client:"_s,
     u"Filtrare Clienti"_s,
     u"Filtrare Produse"_s,
     u"chkLohn"_s,
     {u"Furnizor"_s, u"Zi"_s},
     {u"Data"_s, u"Numar Document"_s, u"Client"_s},
     {QString()}},
};

}  // namespace

class SetupTest : public FormTest {
protected:
    void expectKind(const KindCase& kind) {
        SCOPED_TRACE(kind.kind.toStdString());
        EXPECT_EQ(member("sTipRaport"), kind.kind);
        EXPECT_EQ(member("caption"), kind.title);
        EXPECT_EQ(caption("Label1(13)"), kind.type);
        EXPECT_EQ(caption("Label1(12)"), kind.category);
        EXPECT_EQ(caption("Label1(9)"), kind.name);
        EXPECT_EQ(caption("frmClient"), kind.client);
        EXPECT_EQ(caption("frmProduse"), kind.products);
        EXPECT_EQ(caption("chkLohn"), kind.temporary);
        EXPECT_EQ(list("cmbTipRaport")->items(), kind.reports);
        EXPECT_EQ(list("cmbSortare")->items(), kind.sorts);
        EXPECT_EQ(list("cmbSelectie")->items(), QStringList(u"Facturi"_s));
        EXPECT_EQ(list("cmbCategorie")->items(), kind.categories);
        for (const char* one : {"cmbTipRaport", "cmbSortare", "cmbSelectie", "cmbCategorie"})
            EXPECT_EQ(list(one)->index(), 0) << one;
        EXPECT_EQ(find<controls::TickList>("cmbDepozit")->items().size(), 5);
        EXPECT_EQ(find<controls::TickList>("cmbDepozit")->currentIndex(), 0);
        EXPECT_TRUE(find<controls::TickList>("cmbDepozit")->ticked().isEmpty());
        EXPECT_EQ(statements(), QStringList({kYear, kWarehouseText}));
    }
};

TEST_F(SetupTest, setsUpForEachKindAndForOneAfterTheOther) {
    for (const KindCase& kind : kKinds) {
        setUpFor(kind.kind, QDate(2003, 7, 15), u"ALFA.dbo."_s);
        expectKind(kind);
    }
    setUpFor(kKinds[0].kind);
    expectKind(kKinds[0]);
    EXPECT_EQ(member("sSoc"), QString());
    EXPECT_TRUE(window.isMaximized());
    EXPECT_EQ(focus(), u"cmbTipRaport"_s);
    EXPECT_EQ(find<controls::DatePicker>("Deladata")->value(), QDate(2003, 7, 1));
    EXPECT_EQ(find<controls::DatePicker>("Ladata")->value(), QDate(2003, 7, 15));
}

TEST_F(SetupTest, secondSetupKeepsTypedValues) {
    setUpFor(u"Import"_s);
    setPicked("txtTipProdus", u"MARFA"_s);
    box("txtCodAgent")->setText(u"x"_s);
    list("cmbCategorie")->setIndex(0);
    find<controls::CheckBox>("chkTotale")->setFocus();
    find<controls::CheckBox>("chkLohn")->setValue(true);
    setUpFor(u"Export"_s);
    EXPECT_EQ(box("txtTipProdus")->text(), u"MARFA"_s);
    EXPECT_FALSE(dataChanged("txtTipProdus"));
    EXPECT_TRUE(dataChanged("txtCodAgent"));
    EXPECT_EQ(focus(), u"chkTotale"_s);
    EXPECT_FALSE(find<controls::CheckBox>("chkLohn")->value()) << "choosing the selection unticks it";
}

TEST_F(SetupTest, failuresLeaveTheWindowAsFarAsItGot) {
    const struct {
        const char* name;
        std::function<void()> prepare;
        int number;
        bool isMaximized;
        int reportEntries, warehouses;
    } cases[] = {
        {"null year", [this] { answerYear(std::nullopt); }, 94, false, 0, 0},
        {"text year", [this] { answerYear(u"an"_s, ColumnType::Text); }, 13, false, 0, 0},
        {"large year", [this] { answerYear(u"40000"_s); }, 6, false, 0, 0},
        {"last year", [this] { answerYear(u"32767"_s); }, 6, true, 2, 5},
        {"year beyond 16 bits", [this] { answerYear(u"32768"_s); }, 6, false, 0, 0},
        {"year before all dates", [this] { answerYear(u"1752"_s); }, 5, true, 2, 5},
        {"year behind all dates", [this] { answerYear(u"9999"_s); }, 5, true, 2, 5},
        {"no year at all", [this] { answerYear(u"0"_s); }, 5, true, 2, 5},
        {"year below zero", [this] { answerYear(u"-2026"_s); }, 5, true, 2, 5},
        {"empty An", [this] { connection->answer(u"FROM An"_s, {.columns = {{u"An"_s}}}); }, 3021, false, 0, 0},
        {"empty Depozite", [this] { connection->answer(u"FROM Depozite"_s, {.columns = {{u"D"_s}}}); }, 3021, true, 2,
         0},
        {"no table",
         [this] { connection->answer(u"FROM An"_s, {.openError = base::Error(base::kNoSuchObject, u"no An"_s)}); },
         base::kNoSuchObject, false, 0, 0},
        {"closed", [this] { connection->close(); }, 3709, false, 0, 0},
    };
    for (const auto& one : cases) {
        SCOPED_TRACE(one.name);
        connection = FakeConnection::create();
        connection->answer(u"FROM Depozite"_s,
                           {.columns = {{u"D"_s}}, .rows = {{u"1 - A"_s}, {u"2"_s}, {u"3"_s}, {u"4"_s}, {u"5"_s}}});
        answerYear(u"2003"_s);
        one.prepare();
        const auto error = failureOf(u"Import"_s);
        ASSERT_TRUE(error.has_value());
        EXPECT_EQ(error->number(), one.number);
        EXPECT_TRUE(window.isVisible());
        EXPECT_EQ(window.isMaximized(), one.isMaximized);
        EXPECT_EQ(member("caption"), u"Rapoarte Terti"_s);
        EXPECT_EQ(focus(), u"cmbTipRaport"_s);
        EXPECT_EQ(caption("chkLohn"), u"chkLohn"_s);
        EXPECT_EQ(caption("frmClient"), one.isMaximized ? u"Filtrare Furnizori:"_s : u"Filtrare Clienti"_s);
        EXPECT_EQ(find<controls::DatePicker>("Deladata")->minimum(), QDate(1753, 1, 1)) << "no bound is set";
        EXPECT_TRUE(list("cmbCategorie")->items().isEmpty());
        EXPECT_EQ(list("cmbTipRaport")->items().size(), one.reportEntries);
        EXPECT_EQ(find<controls::TickList>("cmbDepozit")->items().size(), one.warehouses);
        EXPECT_EQ(member("objMesaje"), u"true"_s);
        window.CloseForm();
        QCoreApplication::processEvents();
    }
}

TEST_F(SetupTest, warehousesWithoutATextAreLeftOut) {
    const struct {
        std::vector<std::vector<FakeCell>> rows;
        QStringList items;
        int current;
    } cases[] = {
        {{{u"1 - A"_s}, {std::nullopt}, {u""_s}, {u"2 - B"_s}}, {u"1 - A"_s, u""_s, u"2 - B"_s}, 0},
        {{{std::nullopt}, {std::nullopt}}, {}, -1},
    };
    for (const auto& one : cases) {
        connection->answer(u"FROM Depozite"_s, {.columns = {{u"Depozit"_s}}, .rows = one.rows});
        EXPECT_FALSE(failureOf(u"Import"_s).has_value());
        auto* warehouses = find<controls::TickList>("cmbDepozit");
        EXPECT_EQ(warehouses->items(), one.items);
        EXPECT_EQ(warehouses->currentIndex(), one.current);
        EXPECT_EQ(member("caption"), u"Facturi Import Furnizori"_s) << "the setup came to its end";
    }
}

TEST_F(SetupTest, theFirstAndLastYearsHaveTheirPeriod) {
    for (const int year : {1753, 9998}) {
        answerYear(QString::number(year));
        EXPECT_FALSE(failureOf(u"Import"_s, QDate(year, 5, 6)).has_value());
        EXPECT_EQ(find<controls::DatePicker>("Deladata")->minimum(), QDate(year, 1, 1));
        EXPECT_EQ(find<controls::DatePicker>("Ladata")->maximum(), QDate(year + 1, 1, 31));
        EXPECT_EQ(find<controls::DatePicker>("Ladata")->value(), QDate(year, 5, 6));
    }
}

// A failing step leaves the captions of the later ones as they stood, and the year that was read.
TEST_F(SetupTest, aFailedSecondSetupKeepsWhatItDidNotReach) {
    setUpFor(u"Export"_s);
    connection->answer(u"FROM Depozite"_s, {.columns = {{u"D"_s}}});
    answerYear(u"2004"_s);
    ASSERT_TRUE(failureOf(u"Import"_s).has_value());
    EXPECT_EQ(member("iAn"), u"2004"_s);
    EXPECT_EQ(caption("frmClient"), u"Filtrare Furnizori:"_s);
    EXPECT_EQ(caption("chkLohn"), u"Inclusiv exporturile temporare"_s);
    EXPECT_EQ(caption("frmProduse"), u"Facturi care contin:"_s);
    EXPECT_EQ(member("caption"), u"Facturi Export Clienti"_s);
    EXPECT_EQ(list("cmbCategorie")->items().size(), 6);
    EXPECT_TRUE(find<controls::TickList>("cmbDepozit")->items().isEmpty());
    answerYear(std::nullopt);
    setPicked("txtTipProdus", u"T"_s);
    ASSERT_TRUE(failureOf(u"Export"_s).has_value());
    EXPECT_EQ(member("iAn"), u"2004"_s);
    EXPECT_EQ(caption("frmClient"), u"Filtrare Furnizori:"_s);
    EXPECT_EQ(box("txtTipProdus")->text(), u"T"_s);
}

TEST_F(SetupTest, aCallThatBringsThePanelBackStartsAtItsFirstControl) {
    setUpFor(u"Import"_s);
    giveFocus("cmbVizual");
    press(Qt::Key_Space);
    ASSERT_EQ(focus(), u"CRW"_s) << "hidden with its panel, the button gives the focus to the viewer";
    setUpFor(u"Import"_s);
    EXPECT_EQ(focus(), u"cmbTipRaport"_s);
    giveFocus("Command1");
    setUpFor(u"Import"_s);
    EXPECT_EQ(focus(), u"Command1"_s) << "a panel in view leaves the focus alone";
}

TEST_F(SetupTest, theWindowHasItsIcon) {
    const QImage shown = window.windowIcon().pixmap(32).toImage();
    ASSERT_FALSE(shown.isNull());
    EXPECT_EQ(shown.pixelColor(14, 8), QColor(Qt::white)) << "the sheet";
    EXPECT_EQ(shown.pixelColor(15, 25), QColor(0, 192, 0)) << "the arrow";
}

TEST_F(SetupTest, withoutAConnectionFailsOnceTheWindowShows) {
    try {
        window.Incarca(u"Export"_s, QDate(2003, 7, 15), {});
        FAIL();
    } catch (const base::Error& error) {
        EXPECT_EQ(error.number(), 91);
        EXPECT_EQ(error.description(), u"Conexiunea la baza de date nu este stabilită."_s);
    }
    EXPECT_TRUE(window.isVisible());
    EXPECT_EQ(member("priza"), u"false"_s);
}

}  // namespace velcoran::tests
