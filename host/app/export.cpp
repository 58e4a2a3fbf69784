#include "commands.h"
#include "host/drive/dialogs.h"
#include "host/drive/file_export.h"
#include "host/drive/input/key_input.h"
#include "host/drive/input/window_input.h"
#include "host/drive/input/window_view.h"
#include "host/drive/viewer_client.h"
#include "host/session/component_client.h"
#include "host/session/end_watch.h"
#include "host/session/plain_box_watch.h"
#include "host/session/silence_watch.h"
#include "host/session/trace.h"

#include "base/error.h"
#include "system/file_name.h"

#include <QApplication>
#include <QEvent>
#include <QWidget>

using namespace Qt::StringLiterals;

namespace velcoran::host {

namespace {

constexpr double kPatience = 24 * 3600.0;  // a report may take its time; nobody waits in front of it

[[noreturn]] void fail(const QString& words) { throw base::Error(base::kInvalidProcedureCall, words); }

QWidget& control(const QString& name) {
    QWidget* found = findControl(name);
    if (found == nullptr) fail(u"the window has no "_s + name);
    return *found;
}

QVariantMap stateOf(const QString& name) { return control(name).property("controlState").toMap(); }

// --- one value, as a person would choose it
// ---------------------------------------------------------------------------

void chooseDate(const QString& picker, QDate date) {
    enterDate(control(picker), date);
    const QString wanted = date.toString(Qt::ISODate);
    if (stateOf(picker).value(u"value"_s).toString() != wanted) fail(u"%1 lies outside the working year"_s.arg(wanted));
}

QStringList filledOf(QStringList items) {
    items.removeAll(QString());
    return items;
}

void chooseText(const QString& list, const QString& entry) {
    const QStringList items = stateOf(list).value(u"items"_s).toStringList();
    const auto index = static_cast<int>(items.indexOf(entry));
    if (index < 0) fail(u"no entry \"%1\"; there are: %2"_s.arg(entry, filledOf(items).join(u", "_s)));
    if (!chooseEntry(control(list), index)) fail(u"\"%1\" cannot be chosen"_s.arg(entry));
}

void tick(const QString& box) {
    clickControl(control(box));
    if (!stateOf(box).value(u"value"_s).toBool()) fail(box + u" cannot be ticked"_s);
}

/// Rows of the open lookup whose code, in the first column, is the wanted one.
QList<int> rowsWithCode(const QString& code) {
    QList<int> found;
    const QVariantList rows = stateOf(u"Grid"_s).value(u"rows"_s).toList();
    for (qsizetype row = 0; row < rows.size(); ++row)
        if (rows[row].toStringList().value(0).trimmed().compare(code, Qt::CaseInsensitive) == 0)
            found.append(static_cast<int>(row) + 1);
    return found;
}

/// Nobody sees the window: it is not painted, which costs time, and threads of Qt's own that a drained system may not
/// have; painting would wait for them for ever.
class NoPainting final : public QObject {
public:
    NoPainting() { qApp->installEventFilter(this); }

protected:
    bool eventFilter(QObject*, QEvent* event) override {
        return event->type() == QEvent::UpdateRequest || event->type() == QEvent::Paint;
    }
};

/// Opens the lookup of a field and picks the row with a code.
void pick(const QString& field, const QString& code) {
    if (!giveFocus(control(field))) fail(u"%1 cannot be chosen: its field is disabled"_s.arg(code));
    pressKey({.name = u"Enter"_s});
    deliverEvents();
    if (control(u"fraGrid"_s).isHidden()) fail(u"\"%1\" matches nothing"_s.arg(code));
    const QList<int> rows = rowsWithCode(code);
    if (rows.isEmpty()) fail(u"\"%1\" matches nothing"_s.arg(code));
    if (rows.size() > 1) fail(u"\"%1\" matches %2 rows"_s.arg(code).arg(rows.size()));
    moveToCell(control(u"Grid"_s), rows.first(), 1);
    pressKey({.name = u"Enter"_s});
    deliverEvents();
}

void tickWarehouse(const QString& code) {
    const QStringList items = stateOf(u"cmbDepozit"_s).value(u"items"_s).toStringList();
    QList<int> rows;
    for (qsizetype row = 0; row < items.size(); ++row)
        if (items[row].section(u" - "_s, 0, 0) == code) rows.append(static_cast<int>(row));
    if (rows.size() != 1)
        fail(u"warehouse \"%1\" matches %2"_s.arg(code, rows.isEmpty() ? u"nothing"_s : u"several"_s));
    clickRow(control(u"cmbDepozit"_s), rows.first());
}

// --- the whole report
// -------------------------------------------------------------------------------------------------

struct LookupRow {
    const char16_t* field;
    QString ExportRequest::*value;
};

/// In the order of the window: a pick empties the fields that depend on it.
const LookupRow kProductLookups[] = {
    {u"txtTipProdus", &ExportRequest::type},
    {u"txtGrupaProdus", &ExportRequest::group},
    {u"txtSubGrupaProdus", &ExportRequest::subgroup},
    {u"txtCodProdus", &ExportRequest::product},
};
const LookupRow kOtherLookups[] = {
    {u"txtTipClient", &ExportRequest::partnerType},
    {u"txtCatClient", &ExportRequest::partnerCategory},
    {u"txtCodClient", &ExportRequest::partner},
    {u"txtCodAgent", &ExportRequest::agent},
};

template <std::size_t count>
void pickAll(const LookupRow (&rows)[count], const ExportRequest& request) {
    for (const LookupRow& row : rows)
        if (const QString& code = request.*row.value; !code.isEmpty()) pick(QString::fromUtf16(row.field), code);
}

void fillFilters(const ExportRequest& request) {
    if (request.isByDay) chooseText(u"cmbTipRaport"_s, u"Zi"_s);
    if (!request.sort.isEmpty()) chooseText(u"cmbSortare"_s, request.sort);
    chooseDate(u"Deladata"_s, request.from);
    chooseDate(u"Ladata"_s, request.to);
    if (!request.producer.isEmpty()) pick(u"txtProducator"_s, request.producer);
    if (!request.category.isEmpty()) chooseText(u"cmbCategorie"_s, request.category);
    pickAll(kProductLookups, request);
    pickAll(kOtherLookups, request);
    for (const QString& code : request.warehouses) tickWarehouse(code);
    if (request.hasTemporary) tick(u"chkLohn"_s);
    if (request.hasTotals) tick(u"chkTotale"_s);
}

void produce(DialogScript& dialogs) {
    clickControl(control(u"Raport"_s));
    if (!waitForViewer(kPatience)) fail(u"the report took too long"_s);
    failOnMessage(dialogs);
    if (const auto failure = loadFailure()) throw *failure;
    if (viewer() == nullptr || !viewer()->property("hasReport").toBool()) fail(u"the loading was stopped"_s);
}

void exportReport(const Options& options, const com::Ref<IConnection>& connection) {
    const ExportRequest& request = options.request;
    const QString path = system::fullName(request.out);
    const NoPainting unseen;
    ComponentClient component;
    const auto dialogs = std::make_shared<DialogScript>();
    registerDialogs(component.hostObjects(), dialogs);
    const PlainBoxWatch watch([dialogs](const QString& text, const QString& title) {
        dialogs->addMessage({text, 0, title, u"platform"_s});
    });
    component.incarca(options.kind, connection, request.to, options.prefix);
    deliverEvents();
    QWidget* window = loadedWindow();
    if (window == nullptr) fail(u"the report window did not open"_s);
    activateWindow(*window);
    fillFilters(request);
    failOnMessage(*dialogs);
    produce(*dialogs);
    exportFile(*dialogs, path);
    window->close();
}

}  // namespace

int runExport(const Options& options) {
    EndWatch end;
    const OpenedConnection source = openSource(options.source, openTrace(options.trace));
    end.cancelBy([connection = source.connection] { connection->Cancel(); });
    const auto timeout = milliseconds(options.timeout);
    const auto isSilent = std::make_shared<std::atomic<bool>>(false);
    return end.follow([&] {
        try {
            exportReport(options, watchConnection(source.connection, timeout, isSilent));
        } catch (const base::Error&) {
            // A lookup whose statement fails shows as one that found nothing.
            if (!*isSilent) throw;
            throw base::Error(base::kStatementError, silenceWords(timeout));
        }
        return kStatusDone;
    });
}

}  // namespace velcoran::host
