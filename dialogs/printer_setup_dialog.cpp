#include "printer_setup_dialog.h"

#include "sheet_preview.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QRadioButton>

#include <algorithm>
#include <cmath>

namespace velcoran::dialogs {

using namespace Qt::StringLiterals;
using report::PageSetup;

namespace {

constexpr double kTwipsPerMillimetre = 1440 / 25.4;
constexpr double kMaxShare = 0.25;  // of the sheet's side
constexpr double kMaxMargin = 50;   // millimetres

struct MarginRow {
    base::Twips PageSetup::*margin;
    base::Twips PageSetup::*side;
    const char16_t* label;
    const char16_t* name;
};
constexpr MarginRow kMargins[] = {
    {&PageSetup::left, &PageSetup::width, u"S&tânga:", u"left"},
    {&PageSetup::top, &PageSetup::height, u"&Sus:", u"top"},
    {&PageSetup::right, &PageSetup::width, u"&Dreapta:", u"right"},
    {&PageSetup::bottom, &PageSetup::height, u"&Jos:", u"bottom"},
};

double toMillimetres(base::Twips length) { return length.value / kTwipsPerMillimetre; }

base::Twips fromMillimetres(double length) {
    return {static_cast<std::int32_t>(std::lround(length * kTwipsPerMillimetre))};
}

double largestMargin(base::Twips side) { return std::min(kMaxMargin, std::floor(toMillimetres(side) * kMaxShare)); }

}  // namespace

PrinterSetupDialog::PrinterSetupDialog(QWidget* parent, const QStringList& printers, const QString& printer,
                                       const QString& defaultPrinter, const PageSetup& setup)
    : QDialog(parent), m_start(setup) {
    setObjectName(u"printerSetupDialog"_s);
    setWindowTitle(u"Setează imprimanta"_s);
    setLocale(QLocale(QLocale::Romanian, QLocale::Romania));
    auto* grid = new QGridLayout(this);
    auto* form = new QFormLayout;
    form->addRow(u"&Imprimanta:"_s, makePrinterList(printers, printer, defaultPrinter));
    addSheet(*form);
    addMargins(*form);
    grid->addLayout(form, 0, 0);
    m_preview = new SheetPreview(this);
    grid->addWidget(m_preview, 0, 1);
    grid->setColumnStretch(0, 1);
    addButtons();
    followSheet();
}

QComboBox* PrinterSetupDialog::makePrinterList(const QStringList& printers, const QString& printer,
                                               const QString& defaultPrinter) {
    m_printer = new QComboBox(this);
    m_printer->setObjectName(u"printer"_s);
    if (printers.isEmpty()) m_printer->addItem(u"(niciuna)"_s, QString());
    for (const QString& name : printers) m_printer->addItem(name, name);
    for (const QString& name : {defaultPrinter, printer})
        if (const int index = m_printer->findData(name); !name.isEmpty() && index >= 0)
            m_printer->setCurrentIndex(index);
    return m_printer;
}

void PrinterSetupDialog::addSheet(QFormLayout& form) {
    m_paper = new QComboBox(this);
    m_paper->setObjectName(u"paper"_s);
    m_paper->addItems(report::paperNames());
    m_paper->setCurrentText(m_start.paper);
    form.addRow(u"&Hârtia:"_s, m_paper);
    auto* choice = new QWidget(this);
    auto* row = new QHBoxLayout(choice);
    row->setContentsMargins({});
    m_portrait = new QRadioButton(u"&Portret"_s, choice);
    m_portrait->setObjectName(u"portrait"_s);
    m_landscape = new QRadioButton(u"&Vedere"_s, choice);
    m_landscape->setObjectName(u"landscape"_s);
    (m_start.isLandscape ? m_landscape : m_portrait)->setChecked(true);
    row->addWidget(m_portrait);
    row->addWidget(m_landscape);
    row->addStretch();
    form.addRow(u"Orientarea:"_s, choice);
    connect(m_paper, &QComboBox::currentIndexChanged, this, [this] { followSheet(); });
    connect(m_landscape, &QRadioButton::toggled, this, [this] { followSheet(); });
}

void PrinterSetupDialog::addMargins(QFormLayout& form) {
    form.addRow(new QLabel(u"Marginile:"_s, this));
    std::size_t index = 0;
    for (const MarginRow& row : kMargins) {
        auto* box = new QDoubleSpinBox(this);
        box->setObjectName(QString::fromUtf16(row.name));
        box->setDecimals(1);
        box->setSingleStep(1);
        box->setMaximum(kMaxMargin);
        box->setSuffix(u" mm"_s);
        box->setLocale(locale());
        box->setValue(toMillimetres(m_start.*row.margin));
        form.addRow(QString::fromUtf16(row.label), box);
        connect(box, &QDoubleSpinBox::valueChanged, this, [this] { m_preview->setSheet(setup()); });
        m_margins[index++] = box;
    }
}

void PrinterSetupDialog::addButtons() {
    auto* buttons = new QDialogButtonBox(this);
    QPushButton* accepting = buttons->addButton(u"&OK"_s, QDialogButtonBox::AcceptRole);
    accepting->setObjectName(u"ok"_s);
    accepting->setDefault(true);
    buttons->addButton(u"&Renunță"_s, QDialogButtonBox::RejectRole)->setObjectName(u"cancel"_s);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    qobject_cast<QGridLayout*>(layout())->addWidget(buttons, 1, 0, 1, 2);
}

/// A smaller sheet takes smaller margins.
void PrinterSetupDialog::followSheet() {
    const PageSetup sheet = report::pageSetup(m_paper->currentText(), m_landscape->isChecked());
    for (std::size_t index = 0; index < m_margins.size(); ++index)
        m_margins[index]->setMaximum(largestMargin(sheet.*kMargins[index].side));
    m_preview->setSheet(setup());
}

QString PrinterSetupDialog::printer() const { return m_printer->currentData().toString(); }

PageSetup PrinterSetupDialog::setup() const {
    PageSetup chosen = report::pageSetup(m_paper->currentText(), m_landscape->isChecked());
    for (std::size_t index = 0; index < m_margins.size(); ++index)
        chosen.*kMargins[index].margin = fromMillimetres(m_margins[index]->value());
    return chosen;
}

}  // namespace velcoran::dialogs
