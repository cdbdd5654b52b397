#include "views/dante/FlashPulses.h"

#include <QEasingCurve>
#include <QPointF>

namespace ostrel::FlashPulses {

namespace {

struct Pulse {
    double rise;
    double hold;
    double fall;
    double rest;

    double length() const { return rise + hold + fall + rest; }
};

constexpr Pulse sharp {0.1, 0.2, 0.3, 0.4};
constexpr Pulse soft {0.4, 0.9, 0.6, 0.6};

const Pulse& pulse(bool reducedMotion)
{
    return reducedMotion ? soft : sharp;
}

// The usual ease-out and ease-in curves of interface animation (cubic Béziers).
double easeOut(double progress)
{
    static const QEasingCurve curve = [] {
        QEasingCurve result(QEasingCurve::BezierSpline);
        result.addCubicBezierSegment(QPointF(0.0, 0.0), QPointF(0.58, 1.0), QPointF(1.0, 1.0));
        return result;
    }();
    return curve.valueForProgress(progress);
}

double easeIn(double progress)
{
    static const QEasingCurve curve = [] {
        QEasingCurve result(QEasingCurve::BezierSpline);
        result.addCubicBezierSegment(QPointF(0.42, 0.0), QPointF(1.0, 1.0), QPointF(1.0, 1.0));
        return result;
    }();
    return curve.valueForProgress(progress);
}

} // namespace

int count(bool reducedMotion)
{
    return reducedMotion ? 1 : 3;
}

double duration(bool reducedMotion)
{
    return count(reducedMotion) * pulse(reducedMotion).length();
}

double opacityAt(double elapsed, bool reducedMotion)
{
    if (elapsed <= 0.0 || elapsed >= duration(reducedMotion)) return 0.0;
    const Pulse& shape = pulse(reducedMotion);
    double t = elapsed;
    while (t >= shape.length())
        t -= shape.length();
    if (t < shape.rise) return peakOpacity * easeOut(t / shape.rise);
    t -= shape.rise;
    if (t < shape.hold) return peakOpacity;
    t -= shape.hold;
    if (t < shape.fall) return peakOpacity * (1.0 - easeIn(t / shape.fall));
    return 0.0;
}

} // namespace ostrel::FlashPulses
