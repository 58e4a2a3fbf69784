#include "base/error.h"
#include "report/export/formats.h"
#include "report/export/pdf/pdf.h"
#include "report_fixture.h"
#include "support/told_progress.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace velcoran;
using namespace velcoran::report;

namespace {

QString runTool(const QString& program, const QStringList& arguments) {
    QProcess process;
    process.start(program, arguments);
    process.waitForFinished();
    EXPECT_EQ(process.exitCode(), 0) << qPrintable(program) << process.readAllStandardError().constData();
    return QString::fromUtf8(process.readAllStandardOutput());
}

/// The words of a page, one line a line, whatever blanks stand between them.
QStringList wordsOf(const QStringList& lines) {
    QStringList words;
    for (const QString& line : lines) {
        if (!line.trimmed().isEmpty()) words.append(line.simplified());
    }
    return words;
}

class ExportPdf : public testing::Test {
protected:
    QTemporaryDir m_folder;
    QString m_path = m_folder.filePath(u"raport.pdf"_s);
    void writeFile(const Document& document) const {
        QFile file(m_path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        system::WorkProgress progress;
        exportPdf(document, file, progress);
    }
};

}  // namespace

TEST_F(ExportPdf, carriesTheTextOfEveryPage) {
    struct Case {
        const char16_t* definition;
        int option, rows;
    };
    for (const Case& one : {Case{u"CRFacturiImport", 0, 400}, Case{u"CRFacturiImportDT", 0, 150},
                            Case{u"CRFacturiImport", 1, 300}, Case{u"CRFacturiImport", 0, 0}}) {
        ReportRun run(answerOf(sampleRows(one.rows, 30)), QString::fromUtf16(one.definition), one.option);
        const auto document = run.document();
        writeFile(*document);
        runTool(u"qpdf"_s, {u"--check"_s, m_path});
        const QStringList pages = runTool(u"pdftotext"_s, {u"-layout"_s, m_path, u"-"_s}).split(u'\f');
        ASSERT_EQ(pages.size(), document->pageCount() + 1);
        for (int page = 1; page <= document->pageCount(); ++page) {
            EXPECT_EQ(wordsOf(pages[page - 1].split(u'\n')), wordsOf(document->pageLines({page}))) << page;
        }
        const QString information = runTool(u"pdfinfo"_s, {m_path});
        EXPECT_TRUE(information.contains(u"RAPORT FACTURI EXTERNE - FURNIZORI"));
        EXPECT_TRUE(information.contains(u"841.9 x 595.3 pts"));
    }
}

TEST_F(ExportPdf, hasABookmarkForEachGroup) {
    ReportRun run(answerOf(sampleRows(300, 40)));
    const auto document = run.document();
    writeFile(*document);
    const QString json = runTool(u"qpdf"_s, {u"--json"_s, u"--json-key=outlines"_s, m_path});
    EXPECT_EQ(json.count(u"\"title\""), document->groupCount());
    EXPECT_TRUE(json.contains(document->groupText(3)));
    EXPECT_TRUE(
        json.contains(u"\"destpageposfrom1\": %1"_s.arg(document->pageOfGroup(39 % document->groupCount()).value)));
}

TEST_F(ExportPdf, showsOtherScripts) {
    const QStringList names{u"ООО БАЛТИКА"_s, u"ΕΛΛΗΝΙΚΗ ΑΕ"_s, u"Škoda Łódź Győr"_s, u"A (B) \\ C"_s, u"شركة"_s};
    std::vector<Row> rows;
    for (const QString& name : names) {
        rows.emplace_back();
        rows.back().name = name;
    }
    ReportRun run(answerOf(rows));
    writeFile(*run.document());
    runTool(u"qpdf"_s, {u"--check"_s, m_path});
    const QString text = runTool(u"pdftotext"_s, {u"-layout"_s, m_path, u"-"_s});
    for (const QString& name : names.mid(0, 4)) EXPECT_TRUE(text.contains(name)) << qPrintable(name);
    // Letters that join come back in their presentation forms or in one piece, but never as boxes.
    EXPECT_FALSE(text.contains(u'\uFFFD'));
}

TEST_F(ExportPdf, isTheSameEveryTime) {
    ReportRun run(answerOf(sampleRows(900, 30)));
    const auto document = run.document();
    QByteArray first;
    system::WorkProgress progress;
    for (int i = 0; i < 3; ++i) {
        QBuffer buffer;
        buffer.open(QIODevice::WriteOnly);
        exportPdf(*document, buffer, progress);
        if (i == 0) first = buffer.data();
        EXPECT_EQ(buffer.data(), first);
    }
}

TEST_F(ExportPdf, leavesTheOldFileWhenStopped) {
    QFile old(m_path);
    ASSERT_TRUE(old.open(QIODevice::WriteOnly));
    old.write("old");
    old.close();
    ReportRun run(answerOf(sampleRows(3000, 30)));
    const auto document = run.document();
    ExportControl control;
    control.progress = std::make_shared<tests::ToldProgress>([](tests::ToldProgress& told) {
        if (told.done() > 0 && told.done() < told.total()) told.stop();
    });
    EXPECT_THROW(exportReport(kPdf, document, m_path, control), base::Cancelled);
    ASSERT_TRUE(old.open(QIODevice::ReadOnly));
    EXPECT_EQ(old.readAll(), "old");
    EXPECT_EQ(QDir(m_folder.path()).entryList(QDir::Files).size(), 1);

    try {
        ExportControl again;
        exportReport(kPdf, document, m_folder.filePath(u"nowhere/raport.pdf"_s), again);
        ADD_FAILURE();
    } catch (const base::Error& error) {
        EXPECT_EQ(error.number(), base::kPathAccess);
    }
}
