#pragma once

#include <QString>

namespace velcoran::report {

class Document;
class ExportControl;

/// The formats' writers, one a source. Each writes the whole document into a file as exportReport promises it.
void writeXlsx(const Document& document, const QString& file, ExportControl& control);
/// A flat table of the documents, without groups and totals.
void writeCsv(const Document& document, const QString& file, ExportControl& control);
void writeHtml(const Document& document, const QString& file, ExportControl& control);
void writeOdt(const Document& document, const QString& file, ExportControl& control);
void writePlainText(const Document& document, const QString& file, ExportControl& control);

}  // namespace velcoran::report
