#include "export_dialog.h"

#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QLocale>
#include <QMessageBox>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace velcoran::dialogs {

using namespace Qt::StringLiterals;

QString withExtension(const QString& file, const QString& extension, const QList<OfferedFormat>& formats) {
    if (file.isEmpty()) return file;
    const QString present = QFileInfo(file).suffix();
    const bool isFormat = std::any_of(formats.begin(), formats.end(), [&present](const OfferedFormat& format) {
        return format.extension.compare(present, Qt::CaseInsensitive) == 0;
    });
    const QString stem = isFormat ? file.chopped(present.size() + 1) : file;
    return stem + u'.' + extension;
}

ExportDialog::ExportDialog(QWidget* parent, QList<OfferedFormat> formats, const QString& suggestedFile)
    : QDialog(parent),
      m_formats(std::move(formats)),
      m_folder(QFileInfo(suggestedFile).absolutePath()),
      m_list(new QListWidget(this)),
      m_file(new QLineEdit(this)) {
    setObjectName(u"exportDialog"_s);
    setWindowTitle(u"Exportă raportul"_s);
    setLocale(QLocale(QLocale::Romanian, QLocale::Romania));
    build(suggestedFile);
    selectFormatOf(suggestedFile);
    connect(m_list, &QListWidget::currentRowChanged, this, [this] { followFormat(); });
    connect(m_list, &QListWidget::itemActivated, this, [this] { accept(); });
}

void ExportDialog::build(const QString& suggestedFile) {
    m_list->setObjectName(u"formats"_s);
    for (const OfferedFormat& format : std::as_const(m_formats)) m_list->addItem(format.name);
    m_list->setMinimumHeight(m_list->sizeHintForRow(0) * static_cast<int>(m_formats.size()) + 2 * m_list->frameWidth());
    auto* formatLabel = new QLabel(u"F&ormat:"_s, this);
    formatLabel->setBuddy(m_list);

    m_file->setObjectName(u"file"_s);
    m_file->setText(QDir::toNativeSeparators(suggestedFile));
    m_file->setMinimumWidth(fontMetrics().averageCharWidth() * 70);
    auto* fileLabel = new QLabel(u"&Fișier:"_s, this);
    fileLabel->setBuddy(m_file);
    auto* browseButton = new QPushButton(u"&Răsfoire…"_s, this);
    browseButton->setObjectName(u"browse"_s);
    browseButton->setAutoDefault(false);
    connect(browseButton, &QPushButton::clicked, this, [this] { browse(); });

    auto* buttons = new QDialogButtonBox(this);
    QPushButton* exportButton = buttons->addButton(u"&Exportă"_s, QDialogButtonBox::AcceptRole);
    exportButton->setObjectName(u"ok"_s);
    exportButton->setDefault(true);
    buttons->addButton(u"Re&nunță"_s, QDialogButtonBox::RejectRole)->setObjectName(u"cancel"_s);
    connect(buttons, &QDialogButtonBox::accepted, this, &ExportDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* place = new QHBoxLayout;
    place->addWidget(m_file, 1);
    place->addWidget(browseButton);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(formatLabel);
    layout->addWidget(m_list, 1);
    layout->addWidget(fileLabel);
    layout->addLayout(place);
    layout->addWidget(buttons);
}

const OfferedFormat& ExportDialog::chosen() const { return m_formats.at(std::max(m_list->currentRow(), 0)); }

int ExportDialog::type() const { return chosen().type; }

QString ExportDialog::file() const {
    const QString typed = QDir::fromNativeSeparators(m_file->text().trimmed());
    return typed.isEmpty() ? QString() : QDir::cleanPath(QDir(m_folder).absoluteFilePath(typed));
}

void ExportDialog::selectFormatOf(const QString& file) {
    const QString extension = QFileInfo(file).suffix();
    const auto format = std::find_if(m_formats.begin(), m_formats.end(), [&extension](const OfferedFormat& each) {
        return each.extension.compare(extension, Qt::CaseInsensitive) == 0;
    });
    m_list->setCurrentRow(format == m_formats.end() ? 0 : static_cast<int>(format - m_formats.begin()));
}

void ExportDialog::followFormat() {
    m_file->setText(withExtension(m_file->text().trimmed(), chosen().extension, m_formats));
}

void ExportDialog::browse() {
    QFileDialog dialog(this, u"Exportă în fișierul"_s);
    dialog.setLocale(locale());
    dialog.setOption(QFileDialog::DontUseNativeDialog);
    dialog.setOption(QFileDialog::DontConfirmOverwrite);  // asked once, when the whole choice is made
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setNameFilters({u"%1 (*.%2)"_s.arg(chosen().name).arg(chosen().extension), u"Toate fișierele (*)"_s});
    const QFileInfo present(file());
    dialog.setDirectory(QFileInfo::exists(present.absolutePath()) ? present.absolutePath() : m_folder);
    dialog.selectFile(present.fileName());
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return;
    m_file->setText(
        QDir::toNativeSeparators(withExtension(dialog.selectedFiles().first(), chosen().extension, m_formats)));
}

QString ExportDialog::refusal() const {
    const QFileInfo target(file());
    if (target.fileName().isEmpty() || file().isEmpty()) return u"Scrieți numele fișierului."_s;
    if (target.isDir()) return u"„%1” este un dosar. Scrieți și numele fișierului."_s.arg(m_file->text().trimmed());
    if (!target.dir().exists()) return u"Dosarul „%1” nu există."_s.arg(QDir::toNativeSeparators(target.path()));
    return {};
}

bool ExportDialog::mayReplace() {
    if (!QFileInfo::exists(file())) return true;
    QMessageBox box(QMessageBox::Question, windowTitle(),
                    u"Fișierul „%1” există deja.\nÎl înlocuiți?"_s.arg(QFileInfo(file()).fileName()),
                    QMessageBox::Yes | QMessageBox::No, this);
    box.setTextFormat(Qt::PlainText);
    box.setDefaultButton(QMessageBox::No);
    return box.exec() == QMessageBox::Yes;
}

void ExportDialog::accept() {
    if (const QString words = refusal(); !words.isEmpty()) {
        QMessageBox box(QMessageBox::Warning, windowTitle(), words, QMessageBox::Ok, this);
        box.setTextFormat(Qt::PlainText);
        box.exec();
        m_file->setFocus();
        return m_file->selectAll();
    }
    m_file->setText(QDir::toNativeSeparators(withExtension(file(), chosen().extension, m_formats)));
    if (mayReplace()) QDialog::accept();
}

}  // namespace velcoran::dialogs
