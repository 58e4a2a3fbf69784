#include "demo_window.h"

#include "host/drive/input/window_view.h"

#include "base/error.h"

#include <QCloseEvent>
#include <QDateEdit>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace velcoran::host {

namespace {

struct CommandRow {
    const char16_t* caption;
    const char16_t* kind;
};
constexpr CommandRow kCommands[] = {
    {u"Facturi &import furnizori…", u"Import"},
    {u"Facturi &export clienți…", u"Export"},
};

}  // namespace

DemoWindow::DemoWindow(ComponentClient& client, com::Ref<IConnection> connection, QDate date, const QString& prefix)
    : m_client(client),
      m_connection(std::move(connection)),
      m_date(new QDateEdit(date, this)),
      m_prefix(new QLineEdit(prefix, this)) {
    setWindowTitle(u"Gestiune – program demonstrativ"_s);
    m_date->setDisplayFormat(u"dd/MM/yyyy"_s);
    m_date->setCalendarPopup(true);
    m_prefix->setPlaceholderText(u"fără prefix"_s);
    m_prefix->setToolTip(u"Se pune în fața tabelelor de producători și de tipuri de produse"_s);

    auto* fields = new QFormLayout;
    fields->addRow(u"&Data programului:"_s, m_date);
    fields->addRow(u"&Societatea (prefix):"_s, m_prefix);
    auto* rows = new QVBoxLayout(this);
    rows->addLayout(fields);
    rows->addWidget(new QLabel(u"Rapoarte de comerț exterior:"_s, this));
    for (const CommandRow& command : kCommands) {
        auto* button = new QPushButton(QString::fromUtf16(command.caption), this);
        button->setMinimumHeight(button->fontMetrics().height() * 2);
        connect(button, &QPushButton::clicked, this,
                [this, kind = QString::fromUtf16(command.kind)] { openReport(kind); });
        rows->addWidget(button);
    }
    rows->addStretch();
    setMinimumWidth(fontMetrics().averageCharWidth() * 55);
}

void DemoWindow::openReport(const QString& kind) {
    try {
        m_client.incarca(kind, m_connection, m_date->date(), m_prefix->text());
    } catch (const base::Error& error) {
        QMessageBox::critical(
            this, windowTitle(),
            u"Raportul nu s-a putut deschide.\n\n%1: %2"_s.arg(error.number()).arg(error.description()));
    }
}

void DemoWindow::closeEvent(QCloseEvent* event) {
    if (QWidget* report = loadedWindow()) report->close();
    event->accept();
}

}  // namespace velcoran::host
