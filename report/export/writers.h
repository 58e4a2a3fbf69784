#pragma once

#include "formats.h"

#include <QStringView>

namespace velcoran::report {

/// The formats' writers, one a source. Each writes the whole document into a file as exportReport promises it.
using WriteFormat = void(const Document& document, const QString& file, ExportControl& control);
WriteFormat writePdf;
WriteFormat writeXlsx;
WriteFormat writeCsv;  ///< a flat table of the documents, without groups and totals
WriteFormat writeHtml;
WriteFormat writeOdt;
WriteFormat writePlainText;

/// Types of the formats, as the window's commands know them.
enum ExportType : int {
    kOwnReport = 1,
    kCsv = 5,
    kPlainText = 8,
    kHtml = 24,
    kOwnDefinition = 33,
    kXlsx = 36,
    kOdt = 41,
};

struct FormatRow {
    int type;
    QStringView name;       ///< as the user reads it
    QStringView extension;  ///< without the point
    WriteFormat* write;     ///< null for the engine's own two, which are chosen and never written
};

/// The formats in the order of the dialog.
inline constexpr FormatRow kFormats[] = {
    {kPdf, u"Document PDF", u"pdf", writePdf},
    {kXlsx, u"Registru Excel (XLSX)", u"xlsx", writeXlsx},
    {kCsv, u"Valori separate (CSV)", u"csv", writeCsv},
    {kHtml, u"Pagină web (HTML)", u"html", writeHtml},
    {kOdt, u"Document text OpenDocument (ODT)", u"odt", writeOdt},
    {kPlainText, u"Text simplu (TXT)", u"txt", writePlainText},
    {kOwnReport, u"Raport Velcoran", u"vraport", nullptr},
    {kOwnDefinition, u"Definiție de raport Velcoran", u"vdefinitie", nullptr},
};

}  // namespace velcoran::report
