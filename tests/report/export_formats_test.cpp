#include "base/error.h"
#include "export_read_back.h"
#include "report/export/formats.h"
#include "report/export/numbers.h"
#include "report/export/writers.h"
#include "support/told_progress.h"

#include <QDir>

#include <sys/resource.h>
#include <csignal>
#include <thread>

using namespace Qt::StringLiterals;
using namespace velcoran;
using namespace velcoran::report;

namespace {

constexpr int kWritten[] = {kPdf, kXlsx, kCsv, kHtml, kOdt, kPlainText};

/// Number of the error that an export raises; 0 for none.
int errorOf(int type, const std::shared_ptr<const Document>& document, const QString& file, QString* words = nullptr) {
    ExportControl control;
    try {
        exportReport(type, document, file, control);
    } catch (const base::Error& error) {
        if (words != nullptr) *words = error.description();
        return error.number();
    }
    return 0;
}

class ExportFailures : public ExportTest {
protected:
    void SetUp() override {
        QFile old(path(u"raport"_s));
        ASSERT_TRUE(old.open(QIODevice::WriteOnly));
        old.write("vechi");
    }
    void expectUntouched(int type) const {
        EXPECT_EQ(contents(path(u"raport"_s)), "vechi") << type;
        EXPECT_EQ(files(), QStringList{u"raport"_s}) << type;
    }
    std::shared_ptr<const Document> m_document = ReportRun(answerOf(sampleRows(3000, 20))).document();
};

}  // namespace

TEST(SuggestedFileName, isSafeForFileSystems) {
    struct Case {
        const char16_t *title, *period, *name;
    };
    for (const Case& one : {
             Case{u"Facturi Import Furnizori", u"= 01/03/2026 - 15/03/2026 =",
                  u"Facturi Import Furnizori 2026-03-01 - 2026-03-15.pdf"},
             Case{u"Facturi", u"01.03.2026 - 15.03.2026", u"Facturi 2026-03-01 - 2026-03-15.pdf"},
             Case{u"A/B\\C: \"x\" <y>|*?", u"", u"A-B-C- -x- -y-.pdf"},
             Case{u"../..", u"", u"-.pdf"},
             Case{u" \r\n ", u"", u"Raport.pdf"},
             Case{u"", u"", u"Raport.pdf"},
             Case{u"Facturi", u"01/03/2026", u"Facturi.pdf"},
         }) {
        EXPECT_EQ(suggestedFileName(QString::fromUtf16(one.title), QString::fromUtf16(one.period), kPdf),
                  QString::fromUtf16(one.name));
    }
    EXPECT_LE(suggestedFileName(QString(500, u'\u0219'), {}, kXlsx).toUtf8().size(), 255);
}

TEST(ExportNumbers, keepEveryDigit) {
    struct Case {
        qint64 mantissa;
        int scale;
        const char* text;
        bool isNumber;
    };
    for (const Case& one : {
             Case{0, 0, "0,00", true},
             Case{-5, 1, "-0,50", true},
             Case{123456, 4, "12,3456", true},
             Case{1230000, 4, "123,00", true},
             Case{7, 3, "0,007", true},
             Case{999999999999999, 2, "9999999999999,99", true},
             Case{1000000000000001, 2, "10000000000000,01", false},
             Case{-1234567890123456, 2, "-12345678901234,56", false},
             Case{1234567890123400, 4, "123456789012,34", true},
             Case{std::numeric_limits<qint64>::max(), 2, "92233720368547758,07", false},
         }) {
        const ShortDecimal amount{one.mantissa, one.scale};
        EXPECT_EQ(exactText(amount, 2, ','), one.text);
        EXPECT_EQ(exactText(base::Decimal(amount), 2, ','), one.text);
        const auto number = spreadsheetNumber(amount);
        ASSERT_EQ(number.has_value(), one.isNumber) << one.text;
        EXPECT_EQ(number, spreadsheetNumber(base::Decimal(amount))) << one.text;
        EXPECT_EQ(number.value_or(0), one.isNumber ? QByteArray(one.text).replace(',', '.').toDouble() : 0) << one.text;
    }
    EXPECT_EQ(spreadsheetDay(u"15/03/2026"), 46096.0);
    for (const char16_t* text :
         {u"31/02/2026", u"1/3/2026", u"15-03-2026", u"15/03/1899", u"28/02/1900", u"", u"aa/bb/cccc"}) {
        EXPECT_FALSE(spreadsheetDay(text)) << qPrintable(QString::fromUtf16(text));
    }
}

TEST_F(ExportFailures, refuseWhatNoFormatHolds) {
    EXPECT_EQ(exportFormats().size(), 8U);
    for (const int type : {1, 33, 0, 999}) {
        EXPECT_EQ(errorOf(type, m_document, path(u"raport"_s)), base::kFormatNotAvailable) << type;
        expectUntouched(type);
    }
    tests::FakeAnswer many = answerOf({Row{}});
    many.repeat = 1'048'573;  // one more than fits under title, period, a blank line and the heading
    const auto document = ReportRun(std::move(many)).document();
    EXPECT_EQ(errorOf(kXlsx, document, path(u"raport"_s)), base::kFormatNotAvailable);
    expectUntouched(kXlsx);
}

TEST_F(ExportFailures, nameThePathAndKeepTheOldFile) {
    ASSERT_TRUE(QDir(m_folder.path()).mkdir(u"loc"_s));
    for (const int type : kWritten) {
        QString words;
        for (const QString& file : {path(u"lipsa/raport"_s), path(u"loc"_s)}) {
            EXPECT_EQ(errorOf(type, m_document, file, &words), base::kPathAccess) << type << qPrintable(file);
            EXPECT_TRUE(words.contains(file)) << qPrintable(words);
            EXPECT_FALSE(words.endsWith(u": "_s)) << qPrintable(words);
        }
        EXPECT_EQ(files(), (QStringList{u"loc"_s, u"raport"_s})) << type;
    }
    EXPECT_TRUE(QDir(path(u"loc"_s)).isEmpty());
}

TEST_F(ExportFailures, aFileBeyondItsLimitIsAMessageAndNotTheEndOfTheHost) {
    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
    ASSERT_EQ(std::signal(SIGXFSZ, SIG_DFL), SIG_DFL) << "as in most hosts";
    // The rows of a workbook stand in a file of their own, larger than the packed one.
    std::vector<std::pair<int, rlim_t>> limits{{kXlsx, 400'000}};
    for (const int type : kWritten) limits.emplace_back(type, 4096);
    for (const auto& [type, limit] : limits) {
        QString words;
        const rlimit small{limit, before.rlim_max};
        ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
        const int number = errorOf(type, m_document, path(u"raport"_s), &words);
        ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &before), 0);
        EXPECT_EQ(number, base::kPathAccess) << type;
        EXPECT_TRUE(words.contains(path(u"raport"_s))) << qPrintable(words);
        EXPECT_TRUE(words.endsWith(u"fișierul ar fi prea mare"_s)) << type << qPrintable(words);
        expectUntouched(type);
    }
}

TEST_F(ExportFailures, stopInTheMiddleLeavesNothing) {
    for (const int type : kWritten) {
        ExportControl control;
        control.progress = std::make_shared<tests::ToldProgress>([](tests::ToldProgress& told) {
            EXPECT_LE(told.done(), told.total());
            if (told.done() > 0) told.stop();
        });
        EXPECT_THROW(exportReport(type, m_document, path(u"raport"_s), control), base::Cancelled) << type;
        EXPECT_GT(control.progress->done(), 0) << type;
        expectUntouched(type);
    }
}

TEST_F(ExportFailures, stopWhileASheetIsPackedIsAnsweredAtOnce) {
    const auto document = ReportRun(answerOf(sampleRows(40'000, 20))).document();
    {
        ExportControl control;
        std::jthread watcher([&](const std::stop_token& over) {
            // The file has no name before it is whole, but it is among the open ones of this process.
            const auto isPacking = [this] {
                for (const QFileInfo& open : QDir(u"/proc/self/fd"_s).entryInfoList(QDir::Files | QDir::System))
                    if (open.symLinkTarget().startsWith(m_folder.path()) && open.size() > 0) return true;
                return false;
            };
            while (!over.stop_requested() && !isPacking()) std::this_thread::yield();
            control.progress->stop();
        });
        EXPECT_THROW(exportReport(kXlsx, document, path(u"raport"_s), control), base::Cancelled);
    }
    expectUntouched(kXlsx);
}

TEST_F(ExportFailures, exportsReplaceTheOldFileAndTellTheEnd) {
    for (const int type : kWritten) {
        EXPECT_NE(exported(type, m_document), "vechi") << type;
        EXPECT_EQ(m_control.progress->done(), m_control.progress->total()) << type;
        EXPECT_EQ(m_control.progress->total(), type == kPdf ? m_document->pageCount() : 3000) << type;
        EXPECT_EQ(files(), QStringList{u"raport"_s}) << type;
    }
}
