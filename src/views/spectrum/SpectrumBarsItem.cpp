#include "views/spectrum/SpectrumBarsItem.h"

#include <QQuickWindow>
#include <QSGNode>
#include <QSGRectangleNode>
#include <vector>

namespace ostrel {

namespace {

// Keeps `parent` holding exactly `rects.size()` rectangle children, reusing those it has.
void syncRectangles(
    QSGNode* parent, QQuickWindow* window, const std::vector<QRectF>& rects, const QColor& color)
{
    int existing = parent->childCount();
    const int wanted = static_cast<int>(rects.size());
    while (existing > wanted) {
        QSGNode* last = parent->lastChild();
        parent->removeChildNode(last);
        delete last;
        --existing;
    }
    while (existing < wanted) {
        QSGRectangleNode* node = window->createRectangleNode();
        node->setFlag(QSGNode::OwnedByParent);
        parent->appendChildNode(node);
        ++existing;
    }
    QSGNode* child = parent->firstChild();
    for (const QRectF& rect : rects) {
        auto* node = static_cast<QSGRectangleNode*>(child);
        if (node->rect() != rect) node->setRect(rect);
        if (node->color() != color) node->setColor(color);
        child = child->nextSibling();
    }
}

} // namespace

SpectrumBarsItem::SpectrumBarsItem(QQuickItem* parent) : QQuickItem(parent)
{
    setFlag(ItemHasContents, true);
}

void SpectrumBarsItem::setChart(SpectrumChartModel* value)
{
    if (value == chart_) return;
    disconnect(geometryConnection_);
    chart_ = value;
    if (chart_) {
        geometryConnection_
            = connect(chart_, &SpectrumChartModel::geometryChanged, this, [this] { update(); });
    }
    emit chartChanged();
    update();
}

void SpectrumBarsItem::setBarColor(const QColor& value)
{
    if (value == barColor_) return;
    barColor_ = value;
    emit colorsChanged();
    update();
}

void SpectrumBarsItem::setPeakColor(const QColor& value)
{
    if (value == peakColor_) return;
    peakColor_ = value;
    emit colorsChanged();
    update();
}

QSGNode* SpectrumBarsItem::updatePaintNode(QSGNode* old, UpdatePaintNodeData*)
{
    QSGNode* root = old;
    if (!root) {
        // Two groups: the bars, then the peak holds over them.
        root = new QSGNode;
        root->appendChildNode(new QSGNode);
        root->appendChildNode(new QSGNode);
        root->firstChild()->setFlag(QSGNode::OwnedByParent);
        root->lastChild()->setFlag(QSGNode::OwnedByParent);
    }
    static const std::vector<QRectF> none;
    const auto& bars = chart_ ? chart_->barRects() : none;
    const auto& peaks = chart_ ? chart_->peakRects() : none;
    syncRectangles(root->firstChild(), window(), bars, barColor_);
    syncRectangles(root->lastChild(), window(), peaks, peakColor_);
    return root;
}

} // namespace ostrel
