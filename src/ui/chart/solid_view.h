// A look at solids in perspective: x to the right, y up, z towards the eye, which stands in front, to the right and
// above.
#pragma once

#include <QPolygonF>
#include <QRectF>
#include <vector>

namespace quibra {

struct Point3 {
    double x = 0;
    double y = 0;
    double z = 0;
};

class SolidView {
  public:
    // Shows a room of width 1 and the given depth as large as it fits into `area`, and as high as fills it.
    SolidView(const QRectF& area, double depth);

    double Height() const { return size_.y; }
    double Depth() const { return size_.z; }
    const Point3& Eye() const { return eye_; }
    QPointF Project(const Point3& point) const;

  private:
    void Place(double height, double depth);
    QPointF Raw(const Point3& point) const;
    QRectF Bounds() const;

    Point3 size_;
    Point3 middle_;
    Point3 eye_;
    double distance_ = 1;
    double scale_ = 1;
    QPointF shift_;
};

// A convex outline, drawn counterclockwise seen from the front, that reaches from z `back` to z `front`.
struct Prism {
    std::vector<QPointF> Outline;
    double Back = 0;
    double Front = 0;
    int Color = 0;
    // Bit i: the side behind edge i (from corner i to the next) touches a neighbour of the same kind and isn't seen.
    unsigned Hidden = 0;
};

}  // namespace quibra
