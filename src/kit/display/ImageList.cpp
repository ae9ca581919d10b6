#include "kit/display/ImageList.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QFile>
#include <QtCore/QHash>
#include <QtGui/QIconEngine>
#include <QtGui/QPainter>
#include <QtSvg/QSvgRenderer>

#include <map>
#include <memory>

namespace discaro::kit {

namespace {

// A drawing with the sizes of it that were needed so far.
class Drawing {
public:
    explicit Drawing(const QString& resource)
        : m_renderer(resource) {
        m_renderer.setAspectRatioMode(Qt::KeepAspectRatio);
    }

    bool isValid() const { return m_renderer.isValid(); }

    const QPixmap& at(const QSize& size, bool grey) {
        QPixmap& drawn = m_drawn[{size.width(), size.height(), grey}];
        if (drawn.isNull())
            drawn = draw(size, grey);
        return drawn;
    }

private:
    struct Key {
        int width;
        int height;
        bool grey;
        auto operator<=>(const Key&) const = default;
    };

    QPixmap draw(const QSize& size, bool grey) {
        QImage image(size, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        m_renderer.render(&painter);
        painter.end();
        return QPixmap::fromImage(grey ? greyed(std::move(image)) : image);
    }

    // What cannot be chosen now: without colour, and pale.
    static QImage greyed(QImage image) {
        constexpr double kPale = 0.4;
        for (int y = 0; y < image.height(); ++y) {
            auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
            for (int x = 0; x < image.width(); ++x) {
                const int grey = static_cast<int>(qGray(line[x]) * kPale);
                line[x] = qRgba(grey, grey, grey, static_cast<int>(qAlpha(line[x]) * kPale));
            }
        }
        return image;
    }

    QSvgRenderer m_renderer;
    std::map<Key, QPixmap> m_drawn;
};

class DrawingEngine : public QIconEngine {
public:
    explicit DrawingEngine(std::shared_ptr<Drawing> drawing)
        : m_drawing(std::move(drawing)) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
        const double density = painter->device()->devicePixelRatioF();
        painter->drawPixmap(rect, m_drawing->at(rect.size() * density, mode == QIcon::Disabled));
    }
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State) override {
        return size.isEmpty() ? QPixmap() : m_drawing->at(size, mode == QIcon::Disabled);
    }
    QIconEngine* clone() const override { return new DrawingEngine(m_drawing); }
    bool isNull() override { return false; }

private:
    std::shared_ptr<Drawing> m_drawing;
};

// Pixmaps may not outlive the application.
QHash<QString, QIcon>& knownPictures() {
    static QHash<QString, QIcon> known;
    static const bool cleared = (qAddPostRoutine([] { knownPictures().clear(); }), true);
    Q_UNUSED(cleared);
    return known;
}

} // namespace

QIcon pictureIcon(const QString& resource) {
    QHash<QString, QIcon>& known = knownPictures();
    auto place = known.find(resource);
    if (place == known.end()) {
        const auto drawing = QFile::exists(resource) ? std::make_shared<Drawing>(resource) : nullptr;
        const bool drawn = drawing && drawing->isValid();
        place = known.insert(resource, drawn ? QIcon(new DrawingEngine(drawing)) : QIcon());
    }
    return *place;
}

ImageList::ImageList(QObject* window)
    : QObject(window) {}

void ImageList::setPictures(const QString& folder, const QStringList& keys) {
    m_folder = folder;
    m_keys = keys;
}

QIcon ImageList::icon(const QString& key) const {
    return m_keys.contains(key) ? pictureIcon(m_folder + u'/' + key + QStringLiteral(".svg")) : QIcon();
}

ImageList::Pictures ImageList::pictures() const {
    return [this](const QString& key) { return icon(key); };
}

} // namespace discaro::kit
