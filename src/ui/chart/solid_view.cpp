#include "ui/chart/solid_view.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace quibra {

namespace {

constexpr double kYaw = 20 * std::numbers::pi / 180;
constexpr double kPitch = 16 * std::numbers::pi / 180;
constexpr double kDistance = 3.2;  // of the eye, in diagonals of the room
constexpr double kLowest = 0.08;
constexpr double kHighest = 4;

// The axes of the picture: to the right, up, and towards the eye.
const Point3 kRight{std::cos(kYaw), 0, -std::sin(kYaw)};
const Point3 kUp{-std::sin(kPitch) * std::sin(kYaw), std::cos(kPitch), -std::sin(kPitch) * std::cos(kYaw)};
const Point3 kToEye{std::sin(kYaw) * std::cos(kPitch), std::sin(kPitch), std::cos(kYaw) * std::cos(kPitch)};

double Along(const Point3& point, const Point3& axis) {
    return point.x * axis.x + point.y * axis.y + point.z * axis.z;
}

}  // namespace

SolidView::SolidView(const QRectF& area, double depth) {
    // A higher room makes a picture that is less wide for its height.
    double low = kLowest, high = kHighest;
    for (int step = 0; step < 24; ++step) {
        const double height = std::sqrt(low * high);
        Place(height, depth);
        const QRectF bounds = Bounds();
        (bounds.width() * area.height() > bounds.height() * area.width() ? low : high) = height;
    }
    const QRectF bounds = Bounds();
    scale_ = std::min(area.width() / bounds.width(), area.height() / bounds.height());
    shift_ = area.center() - bounds.center() * scale_;
}

void SolidView::Place(double height, double depth) {
    size_ = {1, height, depth};
    middle_ = {0.5, height / 2, depth / 2};
    distance_ = kDistance * std::sqrt(1 + height * height + depth * depth);
    eye_ = {middle_.x + kToEye.x * distance_, middle_.y + kToEye.y * distance_, middle_.z + kToEye.z * distance_};
}

QPointF SolidView::Raw(const Point3& point) const {
    const Point3 from{point.x - middle_.x, point.y - middle_.y, point.z - middle_.z};
    const double nearer = distance_ / (distance_ - Along(from, kToEye));
    return {Along(from, kRight) * nearer, -Along(from, kUp) * nearer};
}

QRectF SolidView::Bounds() const {
    QPolygonF corners;
    for (const double x : {0.0, size_.x})
        for (const double y : {0.0, size_.y})
            for (const double z : {0.0, size_.z})
                corners << Raw({x, y, z});
    return corners.boundingRect();
}

QPointF SolidView::Project(const Point3& point) const {
    return Raw(point) * scale_ + shift_;
}

}  // namespace quibra
