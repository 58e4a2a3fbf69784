#include "dialogs/print_job.h"
#include "support/told_progress.h"

#include "base/error.h"
#include "report/report_fixture.h"
#include "support/scripted_printers.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/resource.h>
#include <csignal>

namespace velcoran::dialogs {

using namespace Qt::StringLiterals;

namespace {

QString outputOf(const QString& program, const QStringList& arguments) {
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForFinished(60'000) || process.exitCode() != 0)
        throw std::runtime_error(program.toStdString() + ": " + process.readAllStandardError().toStdString());
    return QString::fromUtf8(process.readAllStandardOutput());
}

QStringList pageTexts(const QString& pdf) {
    QStringList pages = outputOf(u"pdftotext"_s, {u"-layout"_s, pdf, u"-"_s}).split(u'\f');
    pages.removeLast();  // what follows the last page's end
    return pages;
}

class PrintJob : public testing::Test {
protected:
    [[nodiscard]] QString path(const QString& name) const { return m_folder.filePath(name); }
    [[nodiscard]] QStringList leftovers() const {
        return QDir(m_folder.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }
    std::shared_ptr<const report::Document> document(const report::PageSetup& setup) { return m_run.document(setup); }
    std::shared_ptr<const report::Document> document() { return document(report::pageSetup(u"A4"_s, true)); }
    static void setPrinters(const QStringList& names, const QString& byDefault = {}) {
        tests::scriptedPrinters() = {.names = names, .byDefault = byDefault, .jobs = {}};
    }
    static void print(const report::Document& printed, const PrintRequest& request) {
        system::WorkProgress progress;
        printDocument(printed, request, progress);
    }
    static std::optional<base::Error> failureOf(const report::Document& printed, const PrintRequest& request) {
        try {
            print(printed, request);
        } catch (const base::Error& error) {
            return error;
        }
        return std::nullopt;
    }

private:
    QTemporaryDir m_folder;
    report::ReportRun m_run{report::answerOf(report::sampleRows(300, 12))};
};

TEST(PageSequence, followsRangeCopiesAndCollation) {
    struct Case {
        const char* name;
        int first, last, copies;
        bool isCollated;
        std::vector<int> pages;
    };
    const Case cases[] = {
        {"once", 2, 4, 1, true, {2, 3, 4}},
        {"collated", 1, 2, 3, true, {1, 2, 1, 2, 1, 2}},
        {"page by page", 1, 2, 3, false, {1, 1, 1, 2, 2, 2}},
    };
    for (const Case& each : cases)
        EXPECT_EQ(pageSequence(each.first, each.last, each.copies, each.isCollated), each.pages) << each.name;
}

TEST_F(PrintJob, aFileHoldsExactlyTheChosenPages) {
    const auto printed = document();
    ASSERT_GE(printed->pageCount(), 5);
    const PrintRequest request{.file = path(u"a.pdf"_s), .firstPage = 2, .lastPage = 4, .copies = 3};
    print(*printed, request);
    const QStringList pages = pageTexts(request.file);
    ASSERT_EQ(pages.size(), 3);
    for (int page = 2; page <= 4; ++page) {
        // A document's number stands on one page alone.
        const report::Page drawn = printed->page({page});
        const auto number = std::find_if(drawn.items.begin(), drawn.items.end(), [](const report::PageItem& item) {
            return item.field == u"NumarFactura"_s && item.record > 0;
        });
        ASSERT_NE(number, drawn.items.end());
        EXPECT_TRUE(pages[page - 2].contains(number->text)) << page << ' ' << number->text.toStdString();
    }
    EXPECT_EQ(leftovers(), QStringList{u"a.pdf"_s});
}

TEST_F(PrintJob, thePageLiesOnTheSheetWhereTheScreenShowsIt) {
    const auto printed = document();
    const QString file = path(u"a.pdf"_s);
    print(*printed, {.file = file, .lastPage = 1});
    const QString words = outputOf(u"pdftotext"_s, {u"-bbox"_s, file, u"-"_s});
    const QRegularExpression place(u"xMin=\"(.*)\" yMin=\"(.*)\" xMax=\"(.*)\" yMax=\"(.*)\">(1\\d{5})<"_s);
    int found = 0;
    for (const report::PageItem& item : printed->page({1}).items) {
        if (item.field != u"NumarFactura"_s || item.record == 0) continue;
        for (const QRegularExpressionMatch& match : place.globalMatch(words)) {
            if (!item.text.endsWith(match.captured(5))) continue;
            ++found;
            const auto points = [&match](int number) { return match.captured(number).toDouble(); };
            const QRectF sheet(item.rect.left.toPoints(), item.rect.top.toPoints(), item.rect.width.toPoints(),
                               item.rect.height.toPoints());
            const QRectF word(QPointF(points(1), points(2)), QPointF(points(3), points(4)));
            EXPECT_TRUE(sheet.contains(word.center())) << match.captured(5).toStdString();
        }
    }
    EXPECT_GT(found, 5);
}

TEST_F(PrintJob, theSheetFollowsTheSetUp) {
    struct Case {
        const char16_t* paper;
        bool isLandscape;
        const char* size;  ///< as pdfinfo says it, in points
    };
    const Case cases[] = {{u"A4", true, "842 x 595 pts (A4)"},
                          {u"A4", false, "595 x 842 pts (A4)"},
                          {u"A3", true, "1191 x 842 pts (A3)"},
                          {u"Letter", false, "612 x 792 pts (letter)"},
                          {u"Legal", true, "1008 x 612 pts"}};
    for (const Case& each : cases) {
        const QString file = path(u"sheet.pdf"_s);
        print(*document(report::pageSetup(QString::fromUtf16(each.paper), each.isLandscape)),
              {.file = file, .firstPage = -1, .lastPage = 1});
        const QString information = outputOf(u"pdfinfo"_s, {file});
        EXPECT_TRUE(information.contains(QString::fromLatin1(each.size))) << each.size << information.toStdString();
    }
}

TEST_F(PrintJob, missingPrintersAreError5AndWriteNothing) {
    const auto printed = document();
    const QString folder = QDir::currentPath();
    const QStringList before = QDir(folder).entryList();
    for (const QStringList& printers : {QStringList(), QStringList{u"Birou-1"_s}}) {
        setPrinters(printers);
        for (const QString& printer : {QString(), u"Birou-2"_s}) {
            if (printer.isEmpty() && !printers.isEmpty()) continue;
            const auto failure = failureOf(*printed, {.printer = printer});
            ASSERT_TRUE(failure) << printer.toStdString();
            EXPECT_EQ(failure->number(), 5);
        }
    }
    EXPECT_EQ(QDir(folder).entryList(), before);
    EXPECT_TRUE(tests::scriptedPrinters().jobs.isEmpty());
}

TEST_F(PrintJob, paperGoesToTheChosenPrinterOrTheDefaultOne) {
    const struct {
        const char* name;
        QString byDefault, chosen, used;
    } cases[] = {
        {"the system's default", u"Depozit"_s, {}, u"Depozit"_s},
        {"the first where there is no default", {}, {}, u"Birou"_s},
        {"the chosen one", u"Depozit"_s, u"Birou"_s, u"Birou"_s},
    };
    const auto printed = document(report::pageSetup(u"A3"_s, true));
    for (const auto& one : cases) {
        SCOPED_TRACE(one.name);
        setPrinters({u"Birou"_s, u"Depozit"_s}, one.byDefault);
        print(*printed, {.printer = one.chosen, .firstPage = 2, .lastPage = 3, .copies = 2});
        ASSERT_EQ(tests::scriptedPrinters().jobs.size(), 1);
        const tests::PrintedJob job = tests::scriptedPrinters().jobs.first();
        EXPECT_EQ(job.printer, one.used);
        QFile file(path(u"job.pdf"_s));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(job.pdf);
        file.close();
        EXPECT_EQ(pageTexts(file.fileName()).size(), 2) << "the printer makes the copies";
        EXPECT_TRUE(outputOf(u"pdfinfo"_s, {file.fileName()}).contains(u"1191 x 842 pts (A3)"_s));
    }
    for (const bool isCollated : {true, false}) {
        tests::scriptedPrinters().jobs.clear();
        print(*printed, {.lastPage = 2, .copies = 2, .isCollated = isCollated});
        ASSERT_EQ(tests::scriptedPrinters().jobs.size(), 1);
        const QMap<QString, QString> options = tests::scriptedPrinters().jobs.first().options;
        EXPECT_EQ(options.value(u"copies"_s), u"2"_s);
        EXPECT_EQ(options.value(u"Collate"_s), isCollated ? u"True"_s : QString());
    }
    tests::scriptedPrinters().hasRoom = false;
    const auto failure = failureOf(*printed, {});
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->number(), 482);
    EXPECT_TRUE(failure->description().contains(u"Depozit"_s)) << failure->what();
}

TEST_F(PrintJob, aFileThatCannotBeWrittenIsError75WithItsPath) {
    const auto printed = document();
    QDir().mkpath(path(u"folder.pdf"_s));
    for (const QString& file : {path(u"folder.pdf"_s), path(u"gone/a.pdf"_s)}) {
        const auto failure = failureOf(*printed, {.file = file, .lastPage = 1});
        ASSERT_TRUE(failure) << file.toStdString();
        EXPECT_EQ(failure->number(), 75);
        EXPECT_TRUE(failure->description().contains(file)) << failure->what();
    }
    EXPECT_EQ(leftovers(), QStringList{u"folder.pdf"_s});
}

// Wherever the disk ends, also where only the last bytes have no room any more.
TEST_F(PrintJob, aFileBeyondItsLimitIsError75AndNotTheEndOfTheHost) {
    const auto printed = document();
    const PrintRequest request{.file = path(u"a.pdf"_s), .lastPage = 2};
    print(*printed, request);
    const qint64 whole = QFileInfo(request.file).size();
    ASSERT_TRUE(QFile::remove(request.file));
    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
    ASSERT_EQ(std::signal(SIGXFSZ, SIG_DFL), SIG_DFL) << "as in most hosts";
    for (const qint64 limit : {qint64{4096}, whole / 2, whole - 5000, whole - 300, whole - 9, whole - 3}) {
        const rlimit small{static_cast<rlim_t>(limit), before.rlim_max};
        ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
        const auto failure = failureOf(*printed, request);
        ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &before), 0);
        ASSERT_TRUE(failure) << limit << " of " << whole;
        EXPECT_EQ(failure->number(), 75);
        EXPECT_TRUE(leftovers().isEmpty());
    }
}

TEST_F(PrintJob, pagesBeyondTheReportAreRefused) {
    const auto failure = failureOf(*document(), {.file = path(u"a.pdf"_s), .firstPage = 900, .lastPage = 901});
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->number(), 380);
    EXPECT_TRUE(leftovers().isEmpty());
}

TEST_F(PrintJob, aStopLeavesTheOldFile) {
    QFile old(path(u"a.pdf"_s));
    ASSERT_TRUE(old.open(QIODevice::WriteOnly));
    old.write("old");
    old.close();
    tests::ToldProgress progress([](tests::ToldProgress& told) {
        if (told.done() == 2) told.stop();
    });
    EXPECT_THROW(printDocument(*document(), {.file = old.fileName()}, progress), base::Cancelled);
    EXPECT_EQ(progress.done(), 2);
    EXPECT_GT(progress.total(), 3);
    ASSERT_TRUE(old.open(QIODevice::ReadOnly));
    EXPECT_EQ(old.readAll(), "old");
    EXPECT_EQ(leftovers(), QStringList{u"a.pdf"_s});
}

}  // namespace
}  // namespace velcoran::dialogs
