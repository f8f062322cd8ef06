#pragma once

#include <QImage>
#include <QQuickPaintedItem>
#include <QtQml/qqmlregistration.h>
#include <QUrl>

// A team logo at badge size: the image from the logo cache, fitted, or a rounded placeholder.
// It asks the cache for its logo when it comes on screen.
class CricketBadge : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QUrl url READ url WRITE setUrl NOTIFY urlChanged)
    Q_PROPERTY(QColor placeholderColor READ placeholderColor WRITE setPlaceholderColor)

public:
    explicit CricketBadge(QQuickItem *parent = nullptr);

    const QUrl &url() const { return m_url; }
    void setUrl(const QUrl &url);
    const QColor &placeholderColor() const { return m_placeholderColor; }
    void setPlaceholderColor(const QColor &color) { m_placeholderColor = color; }

    void paint(QPainter *painter) override;

signals:
    void urlChanged();

protected:
    void componentComplete() override;

private:
    void load();
    void show(const QImage &image);

    QUrl m_url;
    QImage m_image;
    QColor m_placeholderColor = QColor(128, 128, 128, 50);
};
