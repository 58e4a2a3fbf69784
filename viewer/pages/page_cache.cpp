#include "page_cache.h"

#include "page_layout.h"
#include "report/layout/document.h"

#include <QPainter>

#include <algorithm>
#include <deque>
#include <exception>
#include <mutex>
#include <optional>

namespace velcoran::viewer {

namespace {

constexpr int kThreads = 2;

QImage drawPicture(const report::Document& document, const PictureKey& key) {
    const QRect tile = tileRect(key.size, key.tile);
    QImage image(tile.size(), QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.translate(-tile.topLeft());
    report::paintPage(painter, document.page({key.page + 1}), key.size.width() / double(document.pageWidth().value));
    return image;
}

}  // namespace

size_t qHash(const PictureKey& key, size_t seed) {
    return qHashMulti(seed, key.page, key.size.width(), key.size.height(), key.tile);
}

/// What the workers share with the cache.
struct PageCache::Queue {
    std::mutex mutex;
    std::deque<PictureKey> waiting;
    std::vector<PictureKey> drawing;
    std::shared_ptr<const report::Document> document;
    quint64 generation = 0;
    int workers = 0;

    struct Job {
        PictureKey key;
        std::shared_ptr<const report::Document> document;
        quint64 generation;
    };

    /// The next job, or nothing: the worker then counts as gone.
    std::optional<Job> take() {
        const std::lock_guard lock(mutex);
        if (waiting.empty()) {
            --workers;
            return std::nullopt;
        }
        const PictureKey key = waiting.front();
        waiting.pop_front();
        drawing.push_back(key);
        return Job{key, document, generation};
    }
    void finish(const PictureKey& key) {
        const std::lock_guard lock(mutex);
        if (const auto at = std::ranges::find(drawing, key); at != drawing.end()) drawing.erase(at);
    }
};

PageCache::PageCache(qint64 limit) : m_limit(limit), m_queue(std::make_shared<Queue>()) {
    setObjectName(QStringLiteral("crwPageCache"));
}

PageCache::~PageCache() {
    {
        const std::lock_guard lock(m_queue->mutex);
        m_queue->waiting.clear();
    }
    m_workers.clear();
}

void PageCache::setDocument(std::shared_ptr<const report::Document> document) {
    m_entries.clear();
    m_bytes = 0;
    const std::lock_guard lock(m_queue->mutex);
    m_queue->waiting.clear();
    m_queue->drawing.clear();
    m_queue->document = std::move(document);
    m_queue->generation = ++m_generation;
}

void PageCache::want(const std::vector<PictureKey>& keys) {
    int starts = 0;
    {
        const std::lock_guard lock(m_queue->mutex);
        m_queue->waiting.clear();
        if (!m_queue->document) return;
        for (const PictureKey& key : keys) {
            const bool isDrawing = std::ranges::find(m_queue->drawing, key) != m_queue->drawing.end();
            if (!isDrawing && !m_entries.contains(key)) m_queue->waiting.push_back(key);
        }
        starts = std::min(kThreads - m_queue->workers, static_cast<int>(m_queue->waiting.size()));
        m_queue->workers += starts;
    }
    m_workers.remove_if([](const system::Worker& worker) { return worker.isDone(); });
    for (int i = 0; i < starts; ++i) startWorker();
}

void PageCache::startWorker() {
    try {
        m_workers.emplace_back([this, queue = m_queue] { runWorker(queue); });
    } catch (const std::exception&) {  // no thread, or no memory for one: the next painting asks again
        const std::lock_guard lock(m_queue->mutex);
        --m_queue->workers;
    }
}

void PageCache::runWorker(const std::shared_ptr<Queue>& queue) noexcept {
    while (const std::optional<Queue::Job> job = queue->take()) {
        QImage image;
        try {
            image = drawPicture(*job->document, job->key);
        } catch (const std::exception&) {
            // The page stays as it was; the next painting asks again.
        }
        // The key counts as being drawn until its picture has arrived: it is not asked for twice.
        QMetaObject::invokeMethod(
            this,
            [this, queue, job = *job, image] {
                if (job.generation != m_generation) return;
                queue->finish(job.key);
                if (image.isNull()) return;
                insert(job.key, image);
                emit pictureReady(job.key.page);
            },
            Qt::QueuedConnection);
    }
}

QImage PageCache::find(const PictureKey& key) {
    const auto entry = m_entries.find(key);
    if (entry == m_entries.end()) return {};
    entry->lastUse = ++m_uses;
    return entry->image;
}

QImage PageCache::drawNow(const PictureKey& key) {
    std::shared_ptr<const report::Document> document;
    {
        const std::lock_guard lock(m_queue->mutex);
        document = m_queue->document;
    }
    if (!document) return {};
    QImage image = drawPicture(*document, key);
    insert(key, image);
    return image;
}

std::vector<std::pair<PictureKey, QImage>> PageCache::standIns(int page, QSize except) const {
    std::vector<std::pair<PictureKey, QImage>> found;
    for (auto entry = m_entries.cbegin(); entry != m_entries.cend(); ++entry)
        if (entry.key().page == page && entry.key().size != except) found.emplace_back(entry.key(), entry->image);
    return found;
}

void PageCache::insert(const PictureKey& key, const QImage& image) {
    Entry& entry = m_entries[key];
    m_bytes += image.sizeInBytes() - entry.image.sizeInBytes();
    entry = {image, ++m_uses};
    shrink();
}

void PageCache::shrink() {
    while (m_bytes > m_limit && m_entries.size() > 1) {
        const auto oldest =
            std::min_element(m_entries.begin(), m_entries.end(),
                             [](const Entry& one, const Entry& other) { return one.lastUse < other.lastUse; });
        m_bytes -= oldest->image.sizeInBytes();
        m_entries.erase(oldest);
    }
}

}  // namespace velcoran::viewer
