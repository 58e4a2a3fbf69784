#include "pdf.h"

#include "page_pool.h"
#include "pdf_content.h"
#include "pdf_file.h"
#include "pdf_fonts.h"
#include "report/layout/document.h"
#include "system/work_progress.h"

#include "base/error.h"

#include <chrono>

namespace velcoran::report {

using namespace Qt::StringLiterals;

namespace {

constexpr int kPagesANode = 100;
constexpr std::chrono::milliseconds kReportInterval{100};

std::string hundredths(int value) {
    std::string text;
    appendHundredths(text, value);
    return text;
}

/// The whole file. Numbers of the pages' objects are known before the first is written, so that each page can name its
/// node and each bookmark its page.
class PdfExport {
public:
    PdfExport(const Document& document, QIODevice& device, system::WorkProgress& progress)
        : m_document(document), m_progress(progress), m_file(device), m_pages(document.pageCount()) {
        m_catalog = m_file.reserve(5);
        m_root = m_catalog + 1;
        m_information = m_catalog + 2;
        m_resources = m_catalog + 3;
        m_outlines = m_catalog + 4;
        m_nodeCount = (m_pages + kPagesANode - 1) / kPagesANode;
        m_nodes = m_file.reserve(m_nodeCount);
        m_firstPage = m_file.reserve(m_pages * 2);
    }

    void write() {
        writePages();
        writeNodes();
        writeOutlines();
        const std::string outlines = "/Outlines " + reference(m_outlines);
        m_file.writeObject(m_catalog, "<</Type/Catalog/Pages " + reference(m_root) + outlines +
                                          (m_document.groupCount() > 0 ? "/PageMode/UseOutlines" : "") +
                                          "/Lang(ro-RO)/ViewerPreferences<</DisplayDocTitle true>>>>");
        const std::string date = m_document.printTime().toString(u"yyyyMMddHHmmss"_s).toStdString();
        m_file.writeObject(m_information, "<</Title " + pdfText(m_document.title()) +
                                              "/Creator(Velcoran)/Producer(Velcoran)/CreationDate(D:" + date + ")>>");
        m_file.finish("/Root " + reference(m_catalog) + "/Info " + reference(m_information));
    }

private:
    [[nodiscard]] int pageObject(int page) const { return m_firstPage + (page - 1) * 2; }

    void tell(int done) {
        const auto now = std::chrono::steady_clock::now();
        if (done < m_pages && now - m_told < kReportInterval) return;
        m_told = now;
        m_progress.tell(done, m_pages);
    }
    void writePages() {
        PagePool pool(m_document);
        for (int page = 1; page <= m_pages; ++page) {
            m_progress.throwIfStopped();
            const int number = pageObject(page);
            m_file.writeStream(number + 1, pool.take());
            m_file.writeObject(number, "<</Type/Page/Parent " + reference(m_nodes + (page - 1) / kPagesANode) +
                                           "/Contents " + reference(number + 1) + ">>");
            tell(page);
        }
        const std::string fonts = writeFonts(m_file, *m_document.page({1}).fonts, pool.glyphs());
        m_file.writeObject(m_resources, "<</Font<<" + fonts + ">>>>");
    }
    void writeNodes() {
        std::string kids;
        for (int node = 0; node < m_nodeCount; ++node) {
            kids += reference(m_nodes + node) + ' ';
            const int first = node * kPagesANode + 1;
            const int last = std::min(m_pages, first + kPagesANode - 1);
            std::string pages;
            for (int page = first; page <= last; ++page) pages += reference(pageObject(page)) + ' ';
            m_file.writeObject(m_nodes + node, "<</Type/Pages/Parent " + reference(m_root) + "/Count " +
                                                   std::to_string(last - first + 1) + "/Kids[" + pages + "]>>");
        }
        const std::string width = hundredths(toCentipoints(m_document.pageWidth().value));
        const std::string height = hundredths(toCentipoints(m_document.pageHeight().value));
        m_file.writeObject(m_root, "<</Type/Pages/Count " + std::to_string(m_pages) + "/Kids[" + kids +
                                       "]/MediaBox[0 0 " + width + ' ' + height + "]/Resources " +
                                       reference(m_resources) + ">>");
    }
    void writeOutlines() {
        const auto groups = static_cast<int>(m_document.groupCount());
        const int first = m_file.reserve(groups);
        std::string ends;
        if (groups > 0) ends = "/First " + reference(first) + "/Last " + reference(first + groups - 1);
        m_file.writeObject(m_outlines, "<</Type/Outlines" + ends + "/Count " + std::to_string(groups) + ">>");
        for (int group = 0; group < groups; ++group) {
            m_progress.throwIfStopped();
            const int top = toCentipoints((m_document.pageHeight() - m_document.topOfGroup(group)).value);
            std::string item = "<</Title " + pdfText(m_document.groupText(group)) + "/Parent " + reference(m_outlines) +
                               "/Dest[" + reference(pageObject(m_document.pageOfGroup(group).value)) + "/XYZ null " +
                               hundredths(top) + " null]";
            if (group > 0) item += "/Prev " + reference(first + group - 1);
            if (group + 1 < groups) item += "/Next " + reference(first + group + 1);
            m_file.writeObject(first + group, item + ">>");
        }
    }

    const Document& m_document;
    system::WorkProgress& m_progress;
    PdfFile m_file;
    int m_pages;
    int m_catalog = 0, m_root = 0, m_information = 0, m_resources = 0, m_outlines = 0;
    int m_nodeCount = 0, m_nodes = 0, m_firstPage = 0;
    std::chrono::steady_clock::time_point m_told;
};

}  // namespace

void exportPdf(const Document& document, QIODevice& device, system::WorkProgress& progress) {
    PdfExport(document, device, progress).write();
}

}  // namespace velcoran::report
