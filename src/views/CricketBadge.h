#pragma once

#include <QImage>
#include <QQuickPaintedItem>
#include <QtQml/qqmlregistration.h>
#include <QUrl>

// A team logo at badge size: the image from the logo cache, fitted, or a rounded placeholder.
// It asks the cache for its logo when it comes on screen and whenever its URL changes, and shows
// the logo as soon as the cache gets it, however late.
class CricketBadge : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QUrl url READ url WRITE setUrl NOTIFY urlChanged)
    Q_PROPERTY(QColor placeholderColor READ placeholderColor WRITE setPlaceholderColor)
    Q_PROPERTY(bool showsLogo READ showsLogo NOTIFY showsLogoChanged)

public:
    explicit CricketBadge(QQuickItem *parent = nullptr);

    const QUrl &url() const { return m_url; }
    void setUrl(const QUrl &url);
    const QColor &placeholderColor() const { return m_placeholderColor; }
    void setPlaceholderColor(const QColor &color) { m_placeholderColor = color; }
    bool showsLogo() const { return !m_image.isNull(); }

    void paint(QPainter *painter) override;

signals:
    void urlChanged();
    void showsLogoChanged();

protected:
    void componentComplete() override;

private:
    void load();
    void show(const QImage &image);
    void logoStored(const QString &key);

    QUrl m_url;
    QImage m_image;
    QColor m_placeholderColor = QColor(128, 128, 128, 50);
};
