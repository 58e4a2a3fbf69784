#include "formats.h"

#include "base/error.h"
#include "report/export/pdf/pdf.h"
#include "report/layout/document.h"
#include "system/durable_file.h"
#include "system/write_signals.h"
#include "writers.h"

#include <QIODevice>
#include <QRegularExpression>

#include <algorithm>
#include <exception>

namespace velcoran::report {

using namespace Qt::StringLiterals;

namespace {

/// Bytes of a name that every file system takes, with room for the extension.
constexpr qsizetype kMaxNameBytes = 200;

/// The file as a device, which tells a failure by the number of bytes; the failure itself is kept.
class FileDevice final : public QIODevice {
public:
    explicit FileDevice(system::DurableFile& file) : m_file(file) { open(WriteOnly | Unbuffered); }

    void rethrow() const {
        if (m_failure) std::rethrow_exception(m_failure);
    }

protected:
    qint64 readData(char*, qint64) override { return -1; }
    qint64 writeData(const char* bytes, qint64 count) override {
        try {
            m_file.write(QByteArrayView(bytes, count));
            return count;
        } catch (...) {
            m_failure = std::current_exception();
            return -1;
        }
    }

private:
    system::DurableFile& m_file;
    std::exception_ptr m_failure;
};

const FormatRow* rowOf(int type) {
    const auto* row = std::ranges::find(kFormats, type, &FormatRow::type);
    return row == std::end(kFormats) ? nullptr : row;
}

/// The two dates of a period as yyyy-mm-dd; empty where it has no two.
QString isoPeriod(const QString& period) {
    static const QRegularExpression kDate(u"(\\d{2})\\D(\\d{2})\\D(\\d{4})"_s);
    QStringList dates;
    for (auto hits = kDate.globalMatch(period); hits.hasNext();) {
        const QRegularExpressionMatch hit = hits.next();
        dates.append(u"%1-%2-%3"_s.arg(hit.captured(3), hit.captured(2), hit.captured(1)));
    }
    return dates.size() == 2 ? dates.join(u" - "_s) : QString();
}

QString safeName(const QString& text) {
    static const QRegularExpression kRefused(u"[\\x00-\\x1f\\x7f/\\\\:*?\"<>|]+"_s);
    QString name = text.simplified();
    name.replace(kRefused, u"-"_s);
    while (name.toUtf8().size() > kMaxNameBytes) name.chop(name.back().isLowSurrogate() ? 2 : 1);
    while (name.endsWith(u'.') || name.endsWith(u' ')) name.chop(1);
    while (name.startsWith(u'.')) name.remove(0, 1);  // no hidden file
    return name.isEmpty() ? u"Raport"_s : name;
}

}  // namespace

void writePdf(const Document& document, const QString& file, ExportControl& control) {
    system::DurableFile output(file);
    FileDevice device(output);
    try {
        exportPdf(document, device, *control.progress);
    } catch (...) {
        device.rethrow();
        throw;
    }
    control.progress->throwIfStopped();
    output.commit();
}

const std::vector<ExportFormat>& exportFormats() {
    static const std::vector<ExportFormat> kOffered = [] {
        std::vector<ExportFormat> offered;
        for (const FormatRow& row : kFormats)
            offered.push_back({row.type, row.name.toString(), row.extension.toString()});
        return offered;
    }();
    return kOffered;
}

bool isWritten(int type) {
    const FormatRow* row = rowOf(type);
    return row != nullptr && row->write != nullptr;
}

const ExportFormat* exportFormat(int type) {
    const auto& formats = exportFormats();
    const auto found =
        std::find_if(formats.begin(), formats.end(), [type](const auto& one) { return one.type == type; });
    return found == formats.end() ? nullptr : &*found;
}

QString suggestedFileName(const QString& title, const QString& period, int type) {
    const ExportFormat* format = exportFormat(type);
    const QString name = safeName(title + u' ' + isoPeriod(period));
    return format == nullptr ? name : name + u'.' + format->extension;
}

void exportReport(int type, const std::shared_ptr<const Document>& document, const QString& file,
                  ExportControl& control) {
    if (!isWritten(type)) {
        throw base::Error(base::kFormatNotAvailable, u"Formatul de export %1 nu este disponibil."_s.arg(type));
    }
    const system::WriteSignals held;
    rowOf(type)->write(*document, file, control);
}

}  // namespace velcoran::report
