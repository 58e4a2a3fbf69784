#include "page_pool.h"

#include "pdf_content.h"
#include "pdf_file.h"
#include "report/layout/document.h"

#include <exception>

namespace velcoran::report {

namespace {

constexpr int kThreads = 2;

}  // namespace

PagePool::PagePool(const Document& document) : m_document(document), m_working(kThreads) {
    m_workers.reserve(kThreads);
    for (int i = 0; i < kThreads; ++i) {
        try {
            m_workers.emplace_back([this] { work(); });
        } catch (const std::exception&) {  // no thread, or no memory for one
            const std::lock_guard guard(m_mutex);
            --m_working;  // fewer threads make it slower
        }
    }
}

PagePool::~PagePool() {
    {
        const std::lock_guard guard(m_mutex);
        m_isStopped = true;
    }
    m_changed.notify_all();
    m_workers.clear();
}

/// @return number of a page to make, 0 when there is none left
int PagePool::claim() {
    std::unique_lock guard(m_mutex);
    m_changed.wait(guard, [this] { return m_isStopped || m_claimed < m_taken + kSlots; });
    if (m_isStopped || m_claimed == m_document.pageCount()) return 0;
    return ++m_claimed;
}

void PagePool::put(int page, std::string content) {
    {
        const std::lock_guard guard(m_mutex);
        m_slots[static_cast<std::size_t>(page % kSlots)] = {std::move(content), true};
    }
    m_changed.notify_all();
}

void PagePool::makePages() {
    PdfGlyphs glyphs;
    const Compressor compressor;
    std::string content;
    for (int page = claim(); page != 0; page = claim()) {
        writeContent(m_document.page({page}), glyphs, content);
        put(page, compressor.pack(content));
    }
    const std::lock_guard guard(m_mutex);
    m_glyphs.merge(glyphs);
}

void PagePool::work() {
    try {
        makePages();
    } catch (...) {
        const std::lock_guard guard(m_mutex);
        m_failure = std::current_exception();
        m_isStopped = true;
    }
    {
        const std::lock_guard guard(m_mutex);
        --m_working;
    }
    m_changed.notify_all();
}

/// Without any thread the pages are made where they are taken.
std::string PagePool::makeHere() {
    std::string content;
    writeContent(m_document.page({++m_taken}), m_glyphs, content);
    return Compressor().pack(content);
}

std::string PagePool::take() {
    if (m_workers.empty()) return makeHere();
    std::unique_lock guard(m_mutex);
    Slot& slot = m_slots[static_cast<std::size_t>((m_taken + 1) % kSlots)];
    m_changed.wait(guard, [&] { return slot.isReady || m_failure; });
    if (m_failure) std::rethrow_exception(m_failure);
    slot.isReady = false;
    std::string content = std::move(slot.content);
    if (++m_taken == m_document.pageCount()) {
        m_changed.notify_all();
        m_changed.wait(guard, [this] { return m_working == 0; });
    }
    guard.unlock();
    m_changed.notify_all();
    return content;
}

}  // namespace velcoran::report
