#include "icons.h"

#include <QFile>
#include <QIconEngine>
#include <QPainter>
#include <QPixmap>
#include <QSvgRenderer>

#include <memory>

namespace velcoran::viewer {

namespace {

constexpr double kDisabledOpacity = 0.35;

class SvgEngine final : public QIconEngine {
public:
    explicit SvgEngine(std::shared_ptr<QSvgRenderer> drawing) : m_drawing(std::move(drawing)) {
        m_drawing->setAspectRatioMode(Qt::KeepAspectRatio);
    }

    void paint(QPainter* painter, const QRect& rectangle, QIcon::Mode mode, QIcon::State) override {
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        if (mode == QIcon::Disabled) painter->setOpacity(painter->opacity() * kDisabledOpacity);
        m_drawing->render(painter, rectangle);
        painter->restore();
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap picture(size);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return picture;
    }

    [[nodiscard]] QIconEngine* clone() const override { return new SvgEngine(*this); }

private:
    std::shared_ptr<QSvgRenderer> m_drawing;
};

}  // namespace

QIcon svgIcon(const QString& name, const QColor& colour) {
    QFile file(QStringLiteral(":/velcoran/icons/%1.svg").arg(name));
    if (!file.open(QIODevice::ReadOnly)) return {};
    const QByteArray drawing = file.readAll().replace("currentColor", colour.name().toLatin1());
    return QIcon(new SvgEngine(std::make_shared<QSvgRenderer>(drawing)));
}

}  // namespace velcoran::viewer
