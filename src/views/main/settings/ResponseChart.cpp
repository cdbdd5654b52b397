#include "views/main/settings/ResponseChart.h"

#include <QPainter>
#include <QQuickWindow>
#include <QSGFlatColorMaterial>
#include <QSGGeometryNode>
#include <QSGNode>
#include <QSGRectangleNode>
#include <QSGRenderNode>
#include <QSGRendererInterface>
#include <algorithm>
#include <cmath>

#include "views/components/FrequencyText.h"

namespace ostrel {

namespace {

constexpr double frequencyMarks[] = {20, 50, 100, 200, 500, 1000, 2000, 5000, 10000, 20000};
constexpr double levelMarks[] = {-20, -10, 0, 10, 20};

QString decibels(double value)
{
    // Rounded first, so -0.04 reads "0.0" and not "-0.0".
    const double shown = std::round(value * 10.0) / 10.0;
    return QString::number(shown == 0.0 ? 0.0 : shown, 'f', 1);
}

// The software renderer draws no custom geometry, so there the same curve is stroked by the
// renderer's own painter.
class PaintedCurveNode : public QSGRenderNode {
public:
    explicit PaintedCurveNode(QQuickWindow* window) : window_(window) { }

    void setCurve(std::vector<QPointF> points, QColor color, QRectF bounds)
    {
        points_ = std::move(points);
        color_ = color;
        bounds_ = bounds;
        markDirty(DirtyMaterial);
    }

    void render(const RenderState* state) override
    {
        if (points_.size() < 2) return;
        auto* painter = static_cast<QPainter*>(window_->rendererInterface()->getResource(
            window_, QSGRendererInterface::PainterResource));
        if (!painter) return;
        const QRegion* clip = state->clipRegion();
        if (clip && !clip->isEmpty()) painter->setClipRegion(*clip, Qt::ReplaceClip);
        painter->setTransform(matrix()->toTransform());
        painter->setOpacity(inheritedOpacity());
        painter->setRenderHint(QPainter::Antialiasing);
        QPen pen(color_, ResponseChart::lineWidth);
        pen.setJoinStyle(Qt::RoundJoin);
        pen.setCapStyle(Qt::RoundCap);
        painter->setPen(pen);
        painter->drawPolyline(points_.data(), static_cast<int>(points_.size()));
    }

    StateFlags changedStates() const override { return {}; }
    RenderingFlags flags() const override { return BoundedRectRendering; }
    QRectF rect() const override { return bounds_; }

private:
    QQuickWindow* window_;
    std::vector<QPointF> points_;
    QColor color_;
    QRectF bounds_;
};

QSGGeometryNode* newCurveNode()
{
    auto* node = new QSGGeometryNode;
    auto* geometry = new QSGGeometry(QSGGeometry::defaultAttributes_Point2D(), 0);
    geometry->setDrawingMode(QSGGeometry::DrawTriangleStrip);
    node->setGeometry(geometry);
    node->setMaterial(new QSGFlatColorMaterial);
    node->setFlags(QSGNode::OwnsGeometry | QSGNode::OwnsMaterial | QSGNode::OwnedByParent);
    return node;
}

// Keeps `parent` holding exactly `rects.size()` rectangle children of `color`.
void syncRectangles(
    QSGNode* parent, QQuickWindow* window, const std::vector<QRectF>& rects, const QColor& color)
{
    while (parent->childCount() > static_cast<int>(rects.size())) {
        QSGNode* last = parent->lastChild();
        parent->removeChildNode(last);
        delete last;
    }
    while (parent->childCount() < static_cast<int>(rects.size())) {
        QSGRectangleNode* node = window->createRectangleNode();
        node->setFlag(QSGNode::OwnedByParent);
        parent->appendChildNode(node);
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

ResponseChart::ResponseChart(QQuickItem* parent) : QQuickItem(parent)
{
    setFlag(ItemHasContents, true);
}

void ResponseChart::setMeasurement(MeasurementSettings* value)
{
    if (value == measurement_) return;
    disconnect(correctionConnection_);
    measurement_ = value;
    if (measurement_) {
        correctionConnection_ = connect(
            measurement_, &MeasurementSettings::microphoneCorrectionChanged, this, [this] {
                emit curveChanged();
                update();
            });
    }
    emit measurementChanged();
    emit curveChanged();
    update();
}

void ResponseChart::setCurveColor(const QColor& value)
{
    if (value == curveColor_) return;
    curveColor_ = value;
    emit colorsChanged();
    update();
}

void ResponseChart::setRuleColor(const QColor& value)
{
    if (value == ruleColor_) return;
    ruleColor_ = value;
    emit colorsChanged();
    update();
}

void ResponseChart::setGridColor(const QColor& value)
{
    if (value == gridColor_) return;
    gridColor_ = value;
    emit colorsChanged();
    update();
}

QString ResponseChart::accessibleName()
{
    return QStringLiteral("Microphone response relative to 1 kilohertz");
}

QString ResponseChart::accessibleValue(const MicrophoneCorrection& correction)
{
    return decibels(correction.response(50.0)) + QStringLiteral(" dB at 50 hertz, ")
        + decibels(correction.response(10000.0)) + QStringLiteral(" dB at 10 kilohertz");
}

QString ResponseChart::accessibleValue() const
{
    return hasCurve() ? accessibleValue(*measurement_->microphoneCorrection()) : QString();
}

QString ResponseChart::ruleName()
{
    return QStringLiteral("Flat");
}

QVariantList ResponseChart::frequencyTicks() const
{
    QVariantList ticks;
    for (double frequency : frequencyMarks)
        ticks.append(QVariantMap {{QStringLiteral("x"), xFor(frequency, width())},
            {QStringLiteral("text"), FrequencyText::axisLabel(frequency)}});
    return ticks;
}

QVariantList ResponseChart::levelTicks() const
{
    QVariantList ticks;
    for (double level : levelMarks)
        ticks.append(QVariantMap {{QStringLiteral("y"), yFor(level, height())},
            {QStringLiteral("text"), QString::number(static_cast<int>(level))}});
    return ticks;
}

double ResponseChart::xFor(double frequency, double width)
{
    const double clamped = std::clamp(frequency, lowestFrequency, highestFrequency);
    return width * std::log(clamped / lowestFrequency)
        / std::log(highestFrequency / lowestFrequency);
}

double ResponseChart::yFor(double level, double height)
{
    const double clamped = std::clamp(level, -levelSpan, levelSpan);
    return height * (levelSpan - clamped) / (2.0 * levelSpan);
}

std::vector<QPointF> ResponseChart::curvePoints(const MicrophoneCorrection& correction, QSizeF size)
{
    std::vector<QPointF> points;
    if (size.width() <= 0.0 || size.height() <= 0.0) return points;
    const int count = std::clamp(static_cast<int>(size.width() / 2.0) + 1, 2, 1024);
    points.reserve(static_cast<std::size_t>(count));
    const double ratio = highestFrequency / lowestFrequency;
    for (int i = 0; i < count; ++i) {
        const double fraction = static_cast<double>(i) / (count - 1);
        const double frequency = lowestFrequency * std::pow(ratio, fraction);
        points.emplace_back(
            fraction * size.width(), yFor(correction.response(frequency), size.height()));
    }
    return points;
}

void ResponseChart::fillStrip(
    QSGGeometry& geometry, const std::vector<QPointF>& points, float width)
{
    if (points.size() < 2) {
        geometry.allocate(0);
        return;
    }
    geometry.allocate(static_cast<int>(points.size() * 2));
    QSGGeometry::Point2D* vertices = geometry.vertexDataAsPoint2D();
    const double half = width / 2.0;
    for (std::size_t i = 0; i < points.size(); ++i) {
        // The normal of the segment around the point, so the strip keeps its width on slopes.
        const QPointF before = points[i == 0 ? 0 : i - 1];
        const QPointF after = points[i + 1 == points.size() ? i : i + 1];
        const double dx = after.x() - before.x();
        const double dy = after.y() - before.y();
        const double length = std::hypot(dx, dy);
        const double nx = length > 0.0 ? -dy / length : 0.0;
        const double ny = length > 0.0 ? dx / length : 1.0;
        vertices[2 * i].set(static_cast<float>(points[i].x() + nx * half),
            static_cast<float>(points[i].y() + ny * half));
        vertices[2 * i + 1].set(static_cast<float>(points[i].x() - nx * half),
            static_cast<float>(points[i].y() - ny * half));
    }
}

QSGNode* ResponseChart::updatePaintNode(QSGNode* old, UpdatePaintNodeData*)
{
    const bool software
        = window()->rendererInterface()->graphicsApi() == QSGRendererInterface::Software;
    QSGNode* root = old;
    if (!root) {
        // The grid, the flat rule over it, and the curve over both.
        root = new QSGNode;
        for (int i = 0; i < 2; ++i) {
            auto* group = new QSGNode;
            group->setFlag(QSGNode::OwnedByParent);
            root->appendChildNode(group);
        }
        QSGNode* curve = software ? static_cast<QSGNode*>(new PaintedCurveNode(window()))
                                  : static_cast<QSGNode*>(newCurveNode());
        curve->setFlag(QSGNode::OwnedByParent);
        root->appendChildNode(curve);
    }
    const double w = width();
    const double h = height();
    std::vector<QRectF> grid;
    // Whole pixels: renderers without antialiasing drop thinner rectangles.
    for (double frequency : frequencyMarks)
        grid.emplace_back(std::floor(std::min(xFor(frequency, w), w - 1.0)), 0.0, 1.0, h);
    for (double level : levelMarks)
        if (level != 0.0)
            grid.emplace_back(0.0, std::floor(std::min(yFor(level, h), h - 1.0)), w, 1.0);
    syncRectangles(root->firstChild(), window(), grid, gridColor_);
    syncRectangles(root->firstChild()->nextSibling(), window(),
        {QRectF(0.0, yFor(0.0, h) - 0.5, w, 1.0)}, ruleColor_);

    const std::vector<QPointF> points = hasCurve()
        ? curvePoints(*measurement_->microphoneCorrection(), QSizeF(w, h))
        : std::vector<QPointF> {};
    QSGNode* curve = root->lastChild();
    if (software) {
        static_cast<PaintedCurveNode*>(curve)->setCurve(points, curveColor_,
            QRectF(-lineWidth, -lineWidth, w + 2 * lineWidth, h + 2 * lineWidth));
    } else {
        auto* node = static_cast<QSGGeometryNode*>(curve);
        fillStrip(*node->geometry(), points, lineWidth);
        auto* material = static_cast<QSGFlatColorMaterial*>(node->material());
        if (material->color() != curveColor_) material->setColor(curveColor_);
        node->markDirty(QSGNode::DirtyGeometry | QSGNode::DirtyMaterial);
    }
    return root;
}

void ResponseChart::geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry)
{
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    if (newGeometry.size() != oldGeometry.size()) {
        emit layoutChanged();
        update();
    }
}

} // namespace ostrel
