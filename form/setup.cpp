#include "setup.h"

#include "db/row_store.h"
#include "filters/codes.h"
#include "filters/setup_values.h"
#include "form/busy/activity.h"
#include "form/panel/control_tree.h"
#include "form/panel/members.h"
#include "form/rules/layout.h"
#include "form/run/activate_window.h"
#include "form/run/surroundings.h"
#include "lookup/setup_statements.h"

#include <QWidget>

namespace velcoran::form {

using namespace Qt::StringLiterals;

namespace {

struct KindCaption {
    Ctl control;
    QStringView caption;
};

constexpr KindCaption kSupplierCaptions[] = {
    {Ctl::Label1_13, u"Tip Furnizor:"},
    {Ctl::Label1_12, u"Categorie Furnizor:"},
    {Ctl::Label1_9, u"Denumire Furnizor:"},
    {Ctl::frmClient, u"Filtrare Furnizori:"},
};

/// The steps of one set-up. Its order is the window's contract with the host: what a failure leaves behind is what the
/// steps before it have done.
class Setup {
public:
    Setup(ControlTree& controls, Members& members, Activity& activity, db::ICallRunner& runner,
          Surroundings& surroundings, const SetupArguments& arguments)
        : m_controls(controls),
          m_members(members),
          m_activity(activity),
          m_runner(runner),
          m_surroundings(surroundings),
          m_arguments(arguments) {}

    void run();

private:
    void forgetReport() { m_members.bRaportIncarcat = false; }
    void show();
    void makeMessages();
    void keepKind() { m_members.sTipRaport = m_arguments.argTipRaport; }
    void readYear();
    void keepPrefix() { m_members.sSoc = m_arguments.Soc; }
    void maximize();
    void showPanel();
    void setPartnerCaptions();
    void fillReportList() {
        m_controls.list(Ctl::cmbTipRaport).fill(filters::reportEntries(m_members.sTipRaport.kind), 0);
    }
    void fillSelection();
    void fillSortList() { m_controls.list(Ctl::cmbSortare).fill(filters::sortEntries(m_members.sTipRaport.kind), 0); }
    void fillWarehouses();
    void setPeriod();
    void fillCategories();
    void setWindowCaption();

    void newRecordset() { m_members.rsQuery = std::make_unique<db::RowSet>(); }
    [[nodiscard]] bool isImport() const { return m_members.sTipRaport.kind == filters::ReportKind::Import; }
    [[nodiscard]] bool isExport() const { return m_members.sTipRaport.kind == filters::ReportKind::Export; }

    ControlTree& m_controls;
    Members& m_members;
    Activity& m_activity;
    db::ICallRunner& m_runner;
    Surroundings& m_surroundings;
    const SetupArguments& m_arguments;
};

void Setup::run() {
    constexpr void (Setup::*kSteps[])() = {
        &Setup::forgetReport,       &Setup::show,           &Setup::makeMessages,   &Setup::keepKind,
        &Setup::readYear,           &Setup::keepPrefix,     &Setup::maximize,       &Setup::showPanel,
        &Setup::setPartnerCaptions, &Setup::fillReportList, &Setup::fillSelection,  &Setup::fillSortList,
        &Setup::fillWarehouses,     &Setup::setPeriod,      &Setup::fillCategories, &Setup::setWindowCaption,
    };
    for (const auto step : kSteps) {
        (this->*step)();
        if (m_activity.isClosing()) throw base::Cancelled();
    }
}

void Setup::makeMessages() {
    m_activity.callHost([this] { m_members.objMesaje = m_surroundings.newMesaje(); });
}

void Setup::show() {
    QWidget& window = m_controls.window();
    const bool isAppearing = !window.isVisible();
    window.show();
    if (!isAppearing) window.raise();
    activateWindow(window);
    if (isAppearing) m_controls.widget(Ctl::cmbTipRaport).setFocus();
}

void Setup::readYear() {
    const auto years = std::make_shared<db::RowStore>();
    m_runner.run(m_members.Priza, [priza = m_members.Priza, years] {
        const db::Rows rows = priza.execute(lookup::kYearStatement.toString());
        if (const RowBlock* block = rows.fetch(1)) years->append(*block);
    });
    if (years->rowCount() == 0) throw base::Error(base::kNoCurrentRecord, u"Tabela An nu are nicio înregistrare."_s);
    m_members.iAn = filters::yearOf(years->text(0, 0));
}

void Setup::maximize() {
    QWidget& window = m_controls.window();
    window.showMaximized();
    window.repaint();
}

void Setup::showPanel() {
    QWidget& panel = m_controls.widget(Ctl::frmEnable);
    const bool wasHidden = panel.isHidden();
    const base::TwipsRect place = controls::twipsOf(&panel);
    m_controls.place(Ctl::frmEnable, {{0}, place.top, place.width, place.height});
    panel.show();
    if (wasHidden) m_controls.widget(Ctl::cmbTipRaport).setFocus();
    m_controls.window().repaint();
}

void Setup::setPartnerCaptions() {
    for (const KindCaption& one : kSupplierCaptions)
        m_controls.setCaption(one.control, (isImport() ? one.caption : layoutOf(one.control).caption).toString());
    m_controls.nameFields();
}

/// The choice is a change of the list on purpose: it unticks the temporary documents.
void Setup::fillSelection() {
    controls::DropDownList& list = m_controls.list(Ctl::cmbSelectie);
    list.fill({u"Facturi"_s});
    list.setIndex(0);
}

void Setup::fillWarehouses() {
    m_controls.warehouses().fill({});
    newRecordset();
    db::RowSet& rows = *m_members.rsQuery;
    rows.open(m_members.Priza, lookup::kWarehouseStatement.toString(), m_runner);
    QStringList items;
    for (rows.moveFirst(); !rows.isEof(); rows.moveNext())
        if (const std::optional<QString> item = rows.field(0)) items.append(*item);
    rows.close();
    m_members.rsQuery.reset();
    m_controls.warehouses().fill(items, 0);
}

void Setup::setPeriod() {
    const filters::Period period = filters::periodOf(m_members.iAn, m_arguments.DataProgram);
    controls::DatePicker& from = m_controls.datePicker(Ctl::Deladata);
    controls::DatePicker& to = m_controls.datePicker(Ctl::Ladata);
    from.setBounds(period.minimum, period.maximum);
    to.setBounds(period.minimum, period.maximum);
    from.setValue(period.deLaData);
    to.setValue(period.laData);
}

/// Filled without a change of the list: what was typed into the product fields stays.
void Setup::fillCategories() {
    QString temporary = layoutOf(Ctl::chkLohn).caption.toString();
    if (isImport()) temporary = u"Inclusiv importurile temporare"_s;
    if (isExport()) temporary = u"Inclusiv exporturile temporare"_s;
    m_controls.setCaption(Ctl::chkLohn, temporary);
    m_controls.list(Ctl::cmbCategorie).fill(filters::categoryEntries(m_members.sTipRaport.kind), 0);
}

void Setup::setWindowCaption() {
    m_controls.window().setWindowTitle(isExport() ? u"Facturi Export Clienti"_s : u"Facturi Import Furnizori"_s);
    m_controls.setCaption(Ctl::frmProduse,
                          isExport() ? u"Facturi care contin:"_s : layoutOf(Ctl::frmProduse).caption.toString());
}

}  // namespace

void runSetup(ControlTree& controls, Members& members, Activity& activity, db::ICallRunner& runner,
              Surroundings& surroundings, const SetupArguments& arguments) {
    Setup(controls, members, activity, runner, surroundings, arguments).run();
}

}  // namespace velcoran::form
