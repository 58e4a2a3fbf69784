#pragma once

#include "report/export/formats.h"
#include "report_fixture.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QXmlStreamReader>

#include <gtest/gtest.h>

namespace velcoran::report {

/// A folder in which a report is exported.
class ExportTest : public testing::Test {
protected:
    [[nodiscard]] QString path(const QString& name) const { return m_folder.filePath(name); }
    [[nodiscard]] QStringList files() const {
        return QDir(m_folder.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }
    /// Exports into the folder and reads the file.
    QByteArray exported(int type, const std::shared_ptr<const Document>& document) {
        const QString file = path(QStringLiteral("raport"));
        exportReport(type, document, file, m_control);
        return contents(file);
    }
    static QByteArray contents(const QString& file) {
        QFile read(file);
        EXPECT_TRUE(read.open(QIODevice::ReadOnly)) << qPrintable(file);
        return read.readAll();
    }
    /// An entry of an archive.
    static QByteArray entry(const QString& archive, const QString& name) {
        QProcess process;
        process.start(QStringLiteral("unzip"), {QStringLiteral("-p"), archive, name});
        EXPECT_TRUE(process.waitForFinished());
        EXPECT_EQ(process.exitCode(), 0) << process.readAllStandardError().constData();
        return process.readAllStandardOutput();
    }

    QTemporaryDir m_folder;
    ExportControl m_control;
};

/// A cell of a sheet as it stands in the file.
struct SheetCell {
    QString type;  ///< "n" for numbers, "inlineStr" for texts
    QString value;
    QString style;
};

struct Sheet {
    std::vector<std::vector<SheetCell>> rows;  ///< by row and column; missing cells are empty
    QString frozenAt, filter;
};

inline Sheet readSheet(const QByteArray& xml) {
    Sheet sheet;
    QXmlStreamReader reader(xml);
    SheetCell* cell = nullptr;
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement) continue;
        const QXmlStreamAttributes attributes = reader.attributes();
        const auto value = [&attributes](const char* name) { return attributes.value(QLatin1String(name)).toString(); };
        const QString element = reader.name().toString();
        if (element == QStringLiteral("pane")) sheet.frozenAt = value("topLeftCell");
        if (element == QStringLiteral("autoFilter")) sheet.filter = value("ref");
        if (element == QStringLiteral("row")) sheet.rows.resize(value("r").toUInt());
        if (element == QStringLiteral("c")) {
            const auto column = static_cast<std::size_t>(value("r").at(0).unicode() - u'A');
            auto& row = sheet.rows.back();
            if (row.size() <= column) row.resize(column + 1);
            cell = &row[column];
            cell->type = value("t").isEmpty() ? QStringLiteral("n") : value("t");
            cell->style = value("s");
        }
        if (element == QStringLiteral("v") || element == QStringLiteral("t")) cell->value = reader.readElementText();
    }
    EXPECT_FALSE(reader.hasError()) << qPrintable(reader.errorString());
    return sheet;
}

/// Reads a table of separated values the way a spreadsheet does.
inline std::vector<QStringList> readCsv(const QString& text, QChar separator) {
    std::vector<QStringList> rows{{QString()}};
    bool isQuoted = false;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar one = text[i];
        QString& cell = rows.back().back();
        if (isQuoted) {
            const bool isDoubled = one == u'"' && i + 1 < text.size() && text[i + 1] == u'"';
            if (one != u'"' || isDoubled) cell += one;
            if (one == u'"' && !isDoubled) isQuoted = false;
            if (isDoubled) ++i;
        } else if (one == u'"') {
            isQuoted = true;
        } else if (one == separator) {
            rows.back().append(QString());
        } else if (one == u'\n') {
            rows.push_back({QString()});
        } else if (one != u'\r') {
            cell += one;
        }
    }
    rows.pop_back();
    return rows;
}

}  // namespace velcoran::report
