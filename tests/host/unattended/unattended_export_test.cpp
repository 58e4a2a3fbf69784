#include "host/unattended/unattended_export.h"
#include "host/unattended/chosen_filters.h"
#include "host/unattended/export_request.h"

#include "base/error.h"
#include "db/connection.h"
#include "db/sqlite/database.h"
#include "query/filters_in_force.h"
#include "support/test_data.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <functional>

namespace velcoran::host {
namespace {

using namespace Qt::StringLiterals;

class Unattended : public testing::Test {
protected:
    static ExportRequest request(const QString& kind = u"Import"_s) {
        ExportRequest wanted;
        wanted.kind = kind;
        wanted.from = QDate(2026, 1, 1);
        wanted.to = QDate(2026, 12, 31);
        return wanted;
    }
    [[nodiscard]] filters::FilterState chosen(const ExportRequest& wanted) const {
        return chosenFilters(wanted, db::Connection(m_database));
    }

    com::Ref<IConnection> m_database = sqlite::openDatabase(QString::fromUtf8(VELCORAN_TEST_DATABASE));
};

using Change = std::function<void(ExportRequest&)>;

TEST_F(Unattended, optionsFillTheFiltersAsPicksDo) {
    const struct {
        const char* name;
        Change change;
        QString lines;
    } cases[] = {
        {"nothing", [](ExportRequest&) {}, u""_s},
        {"producer by its code", [](ExportRequest& r) { r.producer = u"pr001"_s; },
         u"Producator: ALFA FABRICA (PR001)"_s},
        {"category", [](ExportRequest& r) { r.category = u"Servicii"_s; }, u"Categorie de Produse: Servicii"_s},
        {"one narrows the next", [](ExportRequest& r) { r.group = u"ALIM"_s, r.subgroup = u"ALIM02"_s; },
         u"Grupa de Produse: ALIM|Subgrupa de Produse: ALIM02"_s},
        {"partner", [](ExportRequest& r) { r.partnerType = u"EXU"_s, r.partner = u"f0003"_s; },
         u"Tip Furnizor: EXU|Denumire Furnizor: MUREȘ PROD LTD (F0003)"_s},
        {"client", [](ExportRequest& r) { r.kind = u"Export"_s, r.partnerCategory = u"AUR"_s, r.partner = u"M0001"_s; },
         u"Categorie Client: AUR|Denumire Client: L'OASIS TRADE SRL (M0001)"_s},
        {"agent and temporary", [](ExportRequest& r) { r.agent = u"2"_s, r.hasTemporary = true; },
         u"Agent: AGENT SUD (2)|Inclusiv importurile temporare"_s},
        {"warehouses in the order of the list, each once",
         [](ExportRequest& r) {
             r.warehouses = QStringList{u"120"_s, u"1"_s, u"120"_s};
         },
         u"Depozite: 1 - Depozit Central, 120 - Antrepozit - Port"_s},
        {"totals know no products", [](ExportRequest& r) { r.group = u"ALIM"_s, r.agent = u"1"_s, r.hasTotals = true; },
         u"Agent: AGENT NORD (1)"_s},
    };
    for (const auto& one : cases) {
        ExportRequest wanted = request();
        one.change(wanted);
        EXPECT_EQ(query::filtersInForce(chosen(wanted)).join(u'|'), one.lines) << one.name;
    }
    ExportRequest byDay = request(u"Export"_s);
    byDay.isByDay = true;
    byDay.sort = u"Client"_s;
    const filters::FilterState state = chosen(byDay);
    EXPECT_EQ(state.cmbTipRaport, u"Zi"_s);
    EXPECT_EQ(state.cmbSortare, u"Client"_s);
    EXPECT_EQ(state.deLaData, byDay.from);
    EXPECT_EQ(state.laData, byDay.to);
    EXPECT_EQ(chosen(request()).cmbTipRaport, u"Furnizor"_s);
    EXPECT_EQ(chosen(request()).cmbSortare, u"Data"_s);
}

TEST_F(Unattended, failuresNameOptionAndValue) {
    const struct {
        Change change;
        QString words;
    } cases[] = {
        {[](ExportRequest& r) { r.from = QDate(2025, 12, 31); },
         u"--from \"2025-12-31\" lies outside the working year: 2026-01-01 to 2027-01-31"_s},
        {[](ExportRequest& r) { r.to = QDate(2027, 2, 1); }, u"--to \"2027-02-01\" lies outside the working year"_s},
        {[](ExportRequest& r) { r.sort = u"Client"_s; },
         u"--sort \"Client\" is no entry; there are: Data, Numar Document, Furnizor"_s},
        {[](ExportRequest& r) { r.category = u"servicii"_s; },
         u"--category \"servicii\" is no entry; there are: Produse"_s},
        {[](ExportRequest& r) { r.producer = u"PR9"_s; }, u"--producer \"PR9\" matches nothing"_s},
        {[](ExportRequest& r) { r.type = u"PR"_s; }, u"--type \"PR\" matches nothing"_s},
        {[](ExportRequest& r) { r.group = u"ALI"_s; }, u"--group \"ALI\" matches nothing"_s},
        {[](ExportRequest& r) { r.group = u"AUTO"_s, r.subgroup = u"ALIM02"_s; },
         u"--subgroup \"ALIM02\" matches nothing"_s},
        {[](ExportRequest& r) { r.product = u"P0000"_s; }, u"--product \"P0000\" matches nothing"_s},
        {[](ExportRequest& r) { r.partnerType = u"DETA"_s; }, u"--partner-type \"DETA\" matches nothing"_s},
        {[](ExportRequest& r) { r.partnerCategory = u"AUR"_s; }, u"--partner-category \"AUR\" matches nothing"_s},
        {[](ExportRequest& r) { r.partner = u"M0001"_s; }, u"--partner \"M0001\" matches nothing"_s},
        {[](ExportRequest& r) { r.agent = u"5"_s; }, u"--agent \"5\" matches nothing"_s},  // no longer active
        {[](ExportRequest& r) {
             r.warehouses = QStringList{u"1"_s, u"9"_s};
         },
         u"--warehouse \"9\" matches nothing"_s},
        {[](ExportRequest& r) { r.prefix = u"XX"_s, r.producer = u"PR001"_s; },
         u"--producer \"PR001\": no such table"_s},
    };
    for (const auto& one : cases) {
        ExportRequest wanted = request();
        one.change(wanted);
        try {
            (void)chosen(wanted);
            ADD_FAILURE() << qPrintable(one.words);
        } catch (const base::Error& error) {
            EXPECT_TRUE(error.description().startsWith(one.words)) << qPrintable(error.description());
        }
    }
}

TEST_F(Unattended, writesWhatWasAskedForOrSaysWhyNot) {
    const QTemporaryDir folder;
    ExportRequest wanted = request();
    wanted.out = folder.filePath(u"raport.CSV"_s);
    UnattendedExport(m_database).run(wanted);
    QFile file(wanted.out);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_GT(file.readAll().count('\n'), 10);
    for (const QString& name : {u"raport.doc"_s, u"raport"_s, u"raport.vraport"_s, u"lipsa/raport.csv"_s}) {
        wanted.out = folder.filePath(name);
        try {
            UnattendedExport(m_database).run(wanted);
            ADD_FAILURE() << qPrintable(name);
        } catch (const base::Error& error) {
            EXPECT_EQ(error.number(), base::kPathAccess) << qPrintable(name);
        }
        EXPECT_FALSE(QFile::exists(wanted.out));
    }
    wanted.out = folder.filePath(u"oprit.pdf"_s);
    UnattendedExport stopped(m_database);
    stopped.stop();
    EXPECT_THROW(stopped.run(wanted), base::Cancelled);
    EXPECT_FALSE(QFile::exists(wanted.out));
}

}  // namespace
}  // namespace velcoran::host
