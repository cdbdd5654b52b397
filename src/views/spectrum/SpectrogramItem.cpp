#include "views/spectrum/SpectrogramItem.h"

#include <QQuickWindow>
#include <QSGImageNode>
#include <QSGTexture>
#include <algorithm>
#include <cmath>
#include <memory>

namespace ostrel {

namespace {

// The two pieces of the ring on screen, and the texture they share.
class SpectrogramNode : public QSGNode {
public:
    std::unique_ptr<QSGTexture> texture;
    QSGImageNode* older = nullptr;
    QSGImageNode* newer = nullptr;
};

} // namespace

SpectrogramItem::SpectrogramItem(QQuickItem* parent) : QQuickItem(parent)
{
    setFlag(ItemHasContents, true);
}

void SpectrogramItem::setMeter(MeterModel* value)
{
    if (value == meter_) return;
    for (const auto& connection : connections_)
        disconnect(connection);
    connections_.clear();
    meter_ = value;
    if (meter_) {
        connections_.push_back(
            connect(meter_, &MeterModel::spectrogramChanged, this, &SpectrogramItem::sync));
        connections_.push_back(
            connect(meter_, &MeterModel::graphDurationChanged, this, &SpectrogramItem::sync));
    }
    newestPainted_.reset();
    emit meterChanged();
    sync();
}

void SpectrogramItem::setDark(bool value)
{
    if (value == dark_) return;
    dark_ = value;
    emit darkChanged();
    sync();
}

void SpectrogramItem::sync()
{
    if (!meter_) {
        image_ = QImage();
        paintedCount_ = 0;
        update();
        return;
    }
    const SpectrogramHistory& history = meter_->spectrogram();
    const SpectrogramImage::Range range = SpectrogramImage::range(history.maximum());
    const bool layoutMoved = image_.width() != history.capacity()
        || image_.height() != history.rows() || history.count() < paintedCount_;
    if (layoutMoved || range != range_ || dark_ != paintedDark_ || !newestPainted_) {
        range_ = range;
        paintedDark_ = dark_;
        repaintAll();
    } else {
        // Only the columns that arrived since the last look, newest first.
        const auto& palette = SpectrogramImage::palette(dark_);
        for (std::int64_t column = history.count() - 1; column >= 0; --column) {
            if (history.date(column) <= *newestPainted_) break;
            SpectrogramImage::paintColumn(
                image_, history, history.physical(column), range_, palette);
            ++paintedColumns_;
        }
    }
    newestPainted_ = history.newestDate().value_or(distantPast);
    paintedCount_ = history.count();
    imageChanged_ = true;
    update();
}

void SpectrogramItem::repaintAll()
{
    const SpectrogramHistory& history = meter_->spectrogram();
    if (image_.width() != history.capacity() || image_.height() != history.rows())
        image_ = SpectrogramImage::blank(history);
    else
        image_.fill(Qt::transparent);
    const auto& palette = SpectrogramImage::palette(dark_);
    for (std::int64_t column = 0; column < history.count(); ++column)
        SpectrogramImage::paintColumn(image_, history, history.physical(column), range_, palette);
    ++fullRepaints_;
    paintedColumns_ = 0;
}

void SpectrogramItem::geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry)
{
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    update();
}

QSGNode* SpectrogramItem::updatePaintNode(QSGNode* old, UpdatePaintNodeData*)
{
    auto* node = static_cast<SpectrogramNode*>(old);
    if (!meter_ || meter_->spectrogram().count() == 0 || image_.isNull() || width() <= 0
        || height() <= 0) {
        delete node;
        return nullptr;
    }
    QQuickWindow* view = window();
    if (!node) {
        node = new SpectrogramNode;
        node->older = view->createImageNode();
        node->newer = view->createImageNode();
        for (QSGImageNode* piece : {node->older, node->newer}) {
            piece->setFlag(QSGNode::OwnedByParent);
            piece->setFiltering(QSGTexture::Linear);
            node->appendChildNode(piece);
        }
        imageChanged_ = true;
    }
    if (imageChanged_) {
        std::unique_ptr<QSGTexture> texture(
            view->createTextureFromImage(image_, QQuickWindow::TextureHasAlphaChannel));
        node->older->setTexture(texture.get());
        node->newer->setTexture(texture.get());
        node->texture = std::move(texture);
        imageChanged_ = false;
    }

    // The newest columns of the graph's span, right-aligned, one column per tenth of a second.
    const SpectrogramHistory& history = meter_->spectrogram();
    const auto span = std::max<std::int64_t>(
        1, static_cast<std::int64_t>(std::lround(meter_->graphDuration() * 10.0)));
    const std::int64_t shown = std::min(history.count(), span);
    const double columnWidth = width() / static_cast<double>(span);
    const std::int64_t first = history.physical(history.count() - shown);
    const std::int64_t olderLength = std::min(shown, history.capacity() - first);
    const std::int64_t newerLength = shown - olderLength;
    const auto rows = static_cast<double>(history.rows());
    const double left = width() - static_cast<double>(shown) * columnWidth;
    node->older->setSourceRect(
        QRectF(static_cast<double>(first), 0.0, static_cast<double>(olderLength), rows));
    node->older->setRect(
        QRectF(left, 0.0, static_cast<double>(olderLength) * columnWidth, height()));
    if (newerLength > 0) {
        node->newer->setSourceRect(QRectF(0.0, 0.0, static_cast<double>(newerLength), rows));
        node->newer->setRect(QRectF(left + static_cast<double>(olderLength) * columnWidth, 0.0,
            static_cast<double>(newerLength) * columnWidth, height()));
    } else {
        node->newer->setSourceRect(QRectF(0.0, 0.0, 1.0, 1.0));
        node->newer->setRect(QRectF());
    }
    return node;
}

} // namespace ostrel
