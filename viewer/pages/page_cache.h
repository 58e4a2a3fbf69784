#pragma once

#include "system/worker.h"

#include <QHash>
#include <QImage>
#include <QObject>
#include <QRect>
#include <QSize>

#include <list>
#include <memory>
#include <vector>

namespace velcoran::report {
class Document;
}

namespace velcoran::viewer {

/// A piece of a page at a size.
struct PictureKey {
    int page = 0;  ///< from 0
    QSize size;    ///< of the whole page, in device pixels
    int tile = 0;

    friend bool operator==(const PictureKey&, const PictureKey&) = default;
};

[[nodiscard]] size_t qHash(const PictureKey& key, size_t seed = 0);

/// Pictures of pages, drawn by two threads while there is something to draw and kept up to a limit in bytes; the least
/// recently shown goes first.
class PageCache : public QObject {
    Q_OBJECT

public:
    static constexpr qint64 kDefaultLimit = 64 * 1024 * 1024;

    explicit PageCache(qint64 limit = kDefaultLimit);
    ~PageCache() override;

    /// Forgets every picture. Null: nothing can be drawn.
    void setDocument(std::shared_ptr<const report::Document> document);
    /// What is to be drawn, the most urgent first; what was asked for before and not begun is dropped.
    void want(const std::vector<PictureKey>& keys);
    /// A picture that is there; a null image otherwise.
    [[nodiscard]] QImage find(const PictureKey& key);
    /// Draws a picture at once, on this thread.
    QImage drawNow(const PictureKey& key);
    /// Pictures of a page at other sizes, to stand in until the right one comes.
    [[nodiscard]] std::vector<std::pair<PictureKey, QImage>> standIns(int page, QSize except) const;
    [[nodiscard]] qint64 bytes() const { return m_bytes; }

signals:
    void pictureReady(int page);

private:
    struct Entry {
        QImage image;
        quint64 lastUse = 0;
    };
    struct Queue;

    void startWorker();
    void runWorker(const std::shared_ptr<Queue>& queue) noexcept;
    void insert(const PictureKey& key, const QImage& image);
    void shrink();

    qint64 m_limit;
    qint64 m_bytes = 0;
    quint64 m_uses = 0;
    quint64 m_generation = 0;
    QHash<PictureKey, Entry> m_entries;
    std::shared_ptr<Queue> m_queue;
    std::list<system::Worker> m_workers;
};

}  // namespace velcoran::viewer
