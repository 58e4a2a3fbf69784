#pragma once

#include "pdf_glyphs.h"

#include "system/worker.h"

#include <condition_variable>
#include <exception>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

namespace velcoran::report {

class Document;

/// Makes the compressed contents of all pages on a few threads, a little ahead of who takes them in order.
class PagePool {
public:
    explicit PagePool(const Document& document);
    /// Stops and joins the threads.
    ~PagePool();
    PagePool(const PagePool&) = delete;
    PagePool& operator=(const PagePool&) = delete;

    /// Contents of the next page, from the first on. Not more often than there are pages.
    /// @throws what went wrong on a thread
    [[nodiscard]] std::string take();
    /// What all pages showed; after the last was taken.
    [[nodiscard]] const PdfGlyphs& glyphs() const { return m_glyphs; }

private:
    struct Slot {
        std::string content;
        bool isReady = false;
    };
    static constexpr int kSlots = 64;

    void work();
    std::string makeHere();
    void makePages();
    [[nodiscard]] int claim();
    void put(int page, std::string content);

    const Document& m_document;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::vector<Slot> m_slots{kSlots};
    int m_claimed = 0;  ///< pages that a thread has begun
    int m_taken = 0;
    int m_working = 0;
    bool m_isStopped = false;
    std::exception_ptr m_failure;
    PdfGlyphs m_glyphs;
    std::vector<system::Worker> m_workers;
};

}  // namespace velcoran::report
