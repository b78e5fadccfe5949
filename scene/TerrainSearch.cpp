#include "TerrainSearch.h"

#include "Ellipsoid.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <utility>

namespace vorbel::scene {

namespace {

constexpr double kSemiMinorAxis = kSemiMajorAxis * (1.0 - kFlattening);  // m

constexpr double kOnSurface = 2e-4;  // m: a smaller height above the surface has no sign
constexpr double kHides = 1e-3;      // m that terrain must rise above a line of sight to hide what is behind it
constexpr int kMostCells = 1 << 20;  // cells for a pixel, beyond any raster of the Earth's land

Vector operator+(const Vector& a, const Vector& b) {
    return {a[0] + b[0], a[1] + b[1], a[2] + b[2]};
}

Vector operator-(const Vector& a, const Vector& b) {
    return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}

Vector operator*(const Vector& a, double factor) {
    return {a[0] * factor, a[1] * factor, a[2] * factor};
}

double dot(const Vector& a, const Vector& b) {
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

Vector cross(const Vector& a, const Vector& b) {
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

double norm(const Vector& a) {
    return std::sqrt(dot(a, a));
}

/// Geodetic latitude as sine and cosine, and height.
struct Vertical {
    double sine;
    double cosine;
    double height;
};

// Two passes of Bowring's formula (1985), the second at the reduced latitude of the first.
Vertical vertical(const Vector& point) {
    const double axial = std::sqrt(point[0] * point[0] + point[1] * point[1]);
    const double distance = std::sqrt(axial * axial + point[2] * point[2]);
    double x = axial;
    double y = point[2] * (1.0 - kFlattening) * (1.0 + kSecondEccentricitySquared * kSemiMinorAxis / distance);
    double sine = 0.0;
    double cosine = 1.0;
    for (int pass = 0; pass < 2; ++pass) {
        const double reduced = std::sqrt(x * x + y * y);
        const double su = y / reduced;
        const double cu = x / reduced;
        const double z = point[2] + kSecondEccentricitySquared * kSemiMinorAxis * su * su * su;
        const double p = axial - kEccentricitySquared * kSemiMajorAxis * cu * cu * cu;
        const double length = std::sqrt(z * z + p * p);
        sine = z / length;
        cosine = p / length;
        x = cosine;
        y = (1.0 - kFlattening) * sine;
    }
    const double height =
        axial * cosine + point[2] * sine - kSemiMajorAxis * std::sqrt(1.0 - kEccentricitySquared * sine * sine);
    return {sine, cosine, height};
}

/// A point in the terrain's coordinates.
struct Placed {
    double u;
    double v;
    double height;
};

Placed placed(const Vector& point, const TerrainRaster& terrain) {
    const Vertical up = vertical(point);
    return {terrain.u(std::atan2(point[1], point[0]) * kDegreesPerRadian),
            terrain.v(std::atan2(up.sine, up.cosine) * kDegreesPerRadian), up.height};
}

/// a + b t + c t^2 + d t^3 through the values at 0, 1/3, 2/3 and 1.
struct Cubic {
    double a;
    double b;
    double c;
    double d;

    static Cubic through(double f0, double f1, double f2, double f3) {
        return {f0, (-11.0 * f0 + 18.0 * f1 - 9.0 * f2 + 2.0 * f3) / 2.0,
                (18.0 * f0 - 45.0 * f1 + 36.0 * f2 - 9.0 * f3) / 2.0,
                (-9.0 * f0 + 27.0 * f1 - 27.0 * f2 + 9.0 * f3) / 2.0};
    }

    double at(double t) const {
        return a + t * (b + t * (c + t * d));
    }

    double slope(double t) const {
        return b + t * (2.0 * c + t * 3.0 * d);
    }

    /// Least and greatest of the control points of the piece between two t, which it does not leave.
    std::pair<double, double> bounds(double t0, double t1) const {
        const double f0 = at(t0);
        const double f1 = at(t1);
        const double third = (t1 - t0) / 3.0;
        return std::minmax({f0, f0 + third * slope(t0), f1 - third * slope(t1), f1});
    }
};

/// A piece of a path over the terrain, for t from 0 to 1; in the path's own parameter it is first + t * length.
struct Stretch {
    double first;
    double length;
    Cubic u;
    Cubic v;
    Cubic height;

    double parameter(double t) const {
        return first + t * length;
    }
};

/// The arc of a pixel's circle between two of its points, for parameters from 0 to 1: their chord, put back on the
/// circle.
class Arc {
public:
    Arc(const PixelCircle& circle, double firstAngle, double lastAngle)
        : m_circle(&circle), m_first{std::sin(firstAngle), std::cos(firstAngle)},
          m_chord{std::sin(lastAngle) - m_first[0], std::cos(lastAngle) - m_first[1]} {}

    Vector at(double t) const {
        const double sine = m_first[0] + t * m_chord[0];
        const double cosine = m_first[1] + t * m_chord[1];
        const double length = std::sqrt(sine * sine + cosine * cosine);
        return m_circle->centre + m_circle->across * (sine / length) + m_circle->down * (cosine / length);
    }

    double metres() const {
        return norm(m_circle->down) * std::sqrt(m_chord[0] * m_chord[0] + m_chord[1] * m_chord[1]);
    }

private:
    const PixelCircle* m_circle;
    std::array<double, 2> m_first;
    std::array<double, 2> m_chord;
};

/// The line of sight, for parameters in m from the point up.
struct Ray {
    Vector point;
    Vector direction;

    Vector at(double t) const {
        return point + direction * t;
    }
};

/// The path from one parameter on as cubics that keep within 0.02 mm of it, shorter if need be.
template <class Path>
Stretch stretchOf(const Path& path, const TerrainRaster& terrain, double first, double length, double shortest) {
    constexpr double kClose = 1e-5;      // m
    constexpr double kMetres = 111.2e3;  // of a degree of latitude
    const Placed start = placed(path.at(first), terrain);
    for (;;) {
        const auto next = [&](double t) {
            Placed p = placed(path.at(first + t * length), terrain);
            p.u = terrain.nearest(p.u, start.u);
            return p;
        };
        const Placed a = next(1.0 / 3.0);
        const Placed b = next(2.0 / 3.0);
        const Placed c = next(1.0);
        const Stretch stretch{first, length, Cubic::through(start.u, a.u, b.u, c.u),
                              Cubic::through(start.v, a.v, b.v, c.v),
                              Cubic::through(start.height, a.height, b.height, c.height)};
        const Placed middle = next(0.5);
        const double north = (stretch.v.at(0.5) - middle.v) * terrain.grid().latitudeStep * kMetres;
        const double latitude = terrain.grid().north - middle.v * terrain.grid().latitudeStep;
        const double east = (stretch.u.at(0.5) - middle.u) * terrain.grid().longitudeStep * kMetres *
                            std::cos(latitude / kDegreesPerRadian);
        const double up = stretch.height.at(0.5) - middle.height;
        const double off = std::max({std::abs(north), std::abs(east), std::abs(up)});
        if (!(off > kClose) || !(length > shortest)) {
            return stretch;
        }
        length *= 0.5;
    }
}

// The t at which a coordinate comes to the next multiple of `size`, or something beyond 1.
double nextMultiple(const Cubic& coordinate, double t, double size) {
    constexpr double kSlack = 1e-9;  // cells, so that the multiple where it stands is not the next one
    const double slope = coordinate.slope(t);
    const double here = coordinate.at(t);
    if (slope == 0.0) {
        return 2.0;
    }
    const double target = slope > 0.0 ? (std::floor((here + kSlack) / size) + 1.0) * size
                                      : (std::ceil((here - kSlack) / size) - 1.0) * size;
    const double straight = (target - here) / slope;
    if (!(straight < 1.0)) {
        return 2.0;
    }
    const double better = straight + (target - coordinate.at(t + straight)) / coordinate.slope(t + straight);
    return t + (better > 0.5 * straight && better < 2.0 * straight ? better : straight);
}

double nextBorder(const Stretch& stretch, double t, double size) {
    constexpr double kLeast = 1e-9;  // so that every step gets on
    const double next = std::min(nextMultiple(stretch.u, t, size), nextMultiple(stretch.v, t, size));
    return std::min(1.0, std::max(next, t + kLeast));
}

bool reaches(const Stretch& stretch, double t0, double t1, const TerrainRaster& terrain) {
    const auto [firstU, lastU] = stretch.u.bounds(t0, t1);
    const auto [firstV, lastV] = stretch.v.bounds(t0, t1);
    return terrain.reaches(firstU, lastU, firstV, lastV);
}

// The t up to which a stretch surely stays outside the raster; t itself if that is not even `least`.
double outsideUntil(const Stretch& stretch, const TerrainRaster& terrain, double t, double least) {
    double end = 1.0;
    while (reaches(stretch, t, end, terrain)) {
        if (!(end > least)) {
            return t;
        }
        end = std::max(least, 0.5 * (t + end));
    }
    return end;
}

/// Leads a visitor along a stretch, cell by cell, until it has enough; whole blocks that it is not interested in are
/// passed over. False when the visitor has enough.
///
/// `steps` counts down and ends the walk at 0.
template <class Visitor>
bool walk(const Stretch& stretch, const TerrainRaster& terrain, Visitor& visitor, int& steps) {
    double t = 0.0;
    while (t < 1.0 && steps > 0) {
        --steps;
        const double blockEnd = nextBorder(stretch, t, static_cast<double>(TerrainRaster::kBlock));
        const double middle = 0.5 * (t + blockEnd);
        const HeightRange* const block = terrain.blockAt(stretch.u.at(middle), stretch.v.at(middle));
        if (block == nullptr) {
            const double outside = outsideUntil(stretch, terrain, t, blockEnd);
            if (outside > t) {
                visitor.unknown(Status::outside_terrain);
                t = outside;
                continue;
            }
        } else if (visitor.passesOver(stretch, t, blockEnd, *block)) {
            t = blockEnd;
            continue;
        }
        while (t < blockEnd && steps > 0) {
            --steps;
            const double end = std::min(blockEnd, nextBorder(stretch, t, 1.0));
            const double within = 0.5 * (t + end);
            TerrainCell cell;
            const Status status = terrain.cellAt(stretch.u.at(within), stretch.v.at(within), cell);
            if (status != Status::ok) {
                visitor.unknown(status);
            } else if (!visitor.visit(stretch, t, end, cell)) {
                return false;
            }
            t = end;
        }
    }
    return steps > 0;
}

double aboveCell(const Stretch& stretch, double t, const TerrainCell& cell) {
    return stretch.height.at(t) - cell.heightAt(stretch.u.at(t), stretch.v.at(t));
}

// Where, strictly between t0 and t1, the height above the cell is lowest or highest; t1 if nowhere. Along a straight
// line it is a quadratic.
double turningPoint(const Stretch& stretch, double t0, double f0, double t1, double f1, const TerrainCell& cell) {
    const double middle = aboveCell(stretch, 0.5 * (t0 + t1), cell);
    const double curve = 2.0 * (f0 - 2.0 * middle + f1);
    const double slope = -3.0 * f0 + 4.0 * middle - f1;
    const double fraction = -slope / (2.0 * curve);
    return fraction > 0.0 && fraction < 1.0 ? t0 + fraction * (t1 - t0) : t1;
}

/// Looks whether terrain rises above a line of sight.
class SightVisitor {
public:
    bool hidden = false;

    static void unknown(Status /*status*/) {}

    static bool passesOver(const Stretch& stretch, double t0, double t1, const HeightRange& block) {
        return std::min(stretch.height.at(t0), stretch.height.at(t1)) > static_cast<double>(block.highest);
    }

    bool visit(const Stretch& stretch, double t0, double t1, const TerrainCell& cell) {
        const double f0 = aboveCell(stretch, t0, cell);
        const double f1 = aboveCell(stretch, t1, cell);
        hidden = f0 < -kHides || f1 < -kHides ||
                 aboveCell(stretch, turningPoint(stretch, t0, f0, t1, f1, cell), cell) < -kHides;
        return !hidden;
    }
};

bool visible(const Vector& point, const Vector& satellite, double height, const TerrainRaster& terrain, int& steps) {
    const Vector sight = satellite - point;
    const double range = norm(sight);
    const Ray ray{point, sight * (1.0 / range)};
    const Vertical up = vertical(point);
    const double axial = std::sqrt(point[0] * point[0] + point[1] * point[1]);
    const double east = axial > 0.0 ? (ray.direction[0] * point[0] + ray.direction[1] * point[1]) / axial : 0.0;
    const double climb = up.cosine * east + up.sine * ray.direction[2];
    const auto highest = static_cast<double>(terrain.range().highest);

    constexpr double kLongest = 10e3;  // m
    SightVisitor visitor;
    double along = 0.0;
    while (height <= highest && along < range) {
        const double toTop = 1.0 + (highest - height) / climb;
        const double length = std::min({climb > 0.0 ? toTop : kLongest, kLongest, range - along});
        const Stretch stretch = stretchOf(ray, terrain, along, length, 1.0);
        if (!walk(stretch, terrain, visitor, steps)) {
            return !visitor.hidden && steps > 0;
        }
        along = stretch.parameter(1.0);
        height = stretch.height.at(1.0);
    }
    return true;
}

Status pastHorizon(const PixelCircle& circle, double angle) {
    const Vector point = circle.centre + circle.across * std::sin(angle) + circle.down * std::cos(angle);
    const Vertical up = vertical(point);
    const double axial = std::sqrt(point[0] * point[0] + point[1] * point[1]);
    const Vector sight = circle.satellite - point;
    const double outward = axial > 0.0 ? (sight[0] * point[0] + sight[1] * point[1]) / axial : 0.0;
    return up.cosine * outward + up.sine * sight[2] > 0.0 ? Status::ok : Status::beyond_horizon;
}

// The angle on the circle at which it rises to a height, within 0.5 m; 0 if it does not begin below it. Newton's steps,
// kept between what is known to be below and above.
double angleAtHeight(const PixelCircle& circle, double height) {
    double below = 0.0;
    double above = std::numbers::pi;
    const Vector lowest = circle.centre + circle.down;
    const double lowestHeight = vertical(lowest).height;
    if (!(lowestHeight < height)) {
        return 0.0;
    }
    // On a sphere that touches the ellipsoid there
    const double centre = norm(circle.centre);
    const double radius = norm(circle.down);
    const double sphere = norm(lowest) - lowestHeight + height;
    double angle = std::acos(
        std::clamp((centre * centre + radius * radius - sphere * sphere) / (2.0 * centre * radius), -1.0, 1.0));
    constexpr int kMostPasses = 60;
    constexpr double kCloseEnough = 0.5;  // m
    for (int pass = 0; pass < kMostPasses; ++pass) {
        const double sine = std::sin(angle);
        const double cosine = std::cos(angle);
        const Vector point = circle.centre + circle.across * sine + circle.down * cosine;
        const Vector tangent = circle.across * cosine - circle.down * sine;
        const Vertical up = vertical(point);
        const double off = up.height - height;
        if (std::abs(off) < kCloseEnough) {
            break;
        }
        (off < 0.0 ? below : above) = angle;
        const double axial = std::sqrt(point[0] * point[0] + point[1] * point[1]);
        const double climb = up.cosine * (tangent[0] * point[0] + tangent[1] * point[1]) / axial + up.sine * tangent[2];
        const double next = angle - off / climb;
        angle = next > below && next < above ? next : 0.5 * (below + above);
    }
    return angle;
}

/// Collects the points of an arc on the surface, in order, and chooses one.
class ArcVisitor {
public:
    ArcVisitor(const PixelCircle& circle, const Arc& arc, const TerrainRaster& terrain, AmongSeveral choice,
               bool beginsBelow, int& steps)
        : m_circle(&circle), m_arc(&arc), m_terrain(&terrain), m_choice(choice), m_sign(beginsBelow ? -1 : 0),
          m_steps(&steps) {}

    void unknown(Status status) {
        if (m_gap != Status::outside_terrain) {
            m_gap = status;
        }
        m_followed = false;
    }

    bool passesOver(const Stretch& stretch, double t0, double t1, const HeightRange& block) {
        const double h0 = stretch.height.at(t0);
        const double h1 = stretch.height.at(t1);
        const bool below = std::max(h0, h1) + kOnSurface < static_cast<double>(block.lowest);
        const bool above = std::min(h0, h1) - kOnSurface > static_cast<double>(block.highest);
        // The surface may be met right where the last cell ends.
        const bool leftOpen = m_followed && std::abs(m_lastAbove) <= kOnSurface;
        if (!(below || above) || block.lowest > block.highest || leftOpen) {
            return false;
        }
        sign(above ? 1 : -1);
        m_followed = false;
        return true;
    }

    bool visit(const Stretch& stretch, double t0, double t1, const TerrainCell& cell) {
        if (!m_followed) {
            sample(stretch, t0, aboveCell(stretch, t0, cell), cell);
        }
        const double f0 = m_lastAbove;
        const double f1 = aboveCell(stretch, t1, cell);
        // From a point on the surface on, whose sign says nothing, the arc may come back to it within the cell.
        if ((f0 > 0.0) == (f1 > 0.0) || std::min(std::abs(f0), std::abs(f1)) <= kOnSurface) {
            const double turn = turningPoint(stretch, t0, f0, t1, f1, cell);
            if (turn < t1) {
                sample(stretch, turn, aboveCell(stretch, turn, cell), cell);
            }
        }
        sample(stretch, t1, f1, cell);
        m_followed = true;
        return *m_steps > 0;
    }

    /// The circle has come above the highest height.
    void end() {
        sign(1);
    }

    TerrainPoint result() const {
        TerrainPoint point;
        if (m_unsolved) {
            return point;
        }
        point.mask = static_cast<std::uint8_t>((m_visible > 1 ? kLayoverMask : 0) | (m_hidden > 0 ? kShadowMask : 0));
        if (m_visible > 0 && m_unseen == Status::ok) {
            const std::uint8_t mask = point.mask;
            point = m_chosen;
            point.mask = mask;
            point.status = m_visible > 1 ? Status::layover : Status::ok;
        } else if (m_unseen != Status::ok) {
            point.status = m_unseen;
        } else {
            point.status = m_hidden > 0 ? Status::hidden : Status::range_too_short;
        }
        return point;
    }

private:
    // The circle is on this side of the surface (1 above, -1 below), somewhere beyond a piece that was not followed.
    void sign(int now) {
        if (m_sign == -now && m_gap != Status::ok) {
            passUnseen();
        }
        m_sign = now;
        m_gap = Status::ok;
    }

    void passUnseen() {
        if (m_choice == AmongSeveral::greatestLookAngle || m_visible == 0) {
            m_unseen = m_gap;
        }
    }

    void sample(const Stretch& stretch, double t, double above, const TerrainCell& cell) {
        const double parameter = stretch.parameter(t);
        const bool touches = !std::isnan(m_touch);
        if (std::abs(above) > kOnSurface) {
            const int now = above > 0.0 ? 1 : -1;
            if (m_sign == -now && m_gap != Status::ok) {
                passUnseen();
            } else if (m_sign == -now) {
                meet(stretch, t, above, cell);
            } else if (m_sign == now && touches && m_gap == Status::ok) {
                touch();
            }
            m_touch = std::numeric_limits<double>::quiet_NaN();
            m_turned = false;
            m_sign = now;
            m_gap = Status::ok;
        } else {
            // Through the surface it would go one way all along.
            m_turned = m_turned || (touches && (above - m_lastAbove) * m_sign > 0.0);
            m_touch = !touches || std::abs(above) < std::abs(m_lastAbove) ? parameter : m_touch;
        }
        m_lastParameter = parameter;
        m_lastAbove = above;
    }

    // The arc has come to the surface and gone back, as on the edge of a fold, where two points are one.
    void touch() {
        m_turned = true;
        const Vector position = m_arc->at(m_touch);
        TerrainPoint point;
        point.height = vertical(position).height;
        see(point, position);
    }

    // The arc passes through the surface between the last sample and this one.
    void meet(const Stretch& stretch, double t, double above, const TerrainCell& cell) {
        const double met = root(m_lastParameter, m_lastAbove, stretch.parameter(t), above, cell);
        const Vector position = m_arc->at(met);
        TerrainPoint point;
        point.height = vertical(position).height;
        const double surface = stretch.u.slope(t) * (cell.eastward + (stretch.v.at(t) - cell.row) * cell.twist) +
                               stretch.v.slope(t) * (cell.southward + (stretch.u.at(t) - cell.column) * cell.twist);
        point.rise = 1.0 - surface / stretch.height.slope(t);
        constexpr double kSolved = 2e-4;  // m: where the circle only touches the surface, no zero may be left to find
        if (!(std::abs(exactlyAbove(met, cell)) < kSolved)) {
            m_unsolved = true;
            return;
        }
        see(point, position);
    }

    void see(const TerrainPoint& point, const Vector& position) {
        if (!visible(position, m_circle->satellite, point.height, *m_terrain, *m_steps)) {
            ++m_hidden;
            return;
        }
        if (m_visible == 0 || m_choice == AmongSeveral::greatestLookAngle) {
            m_chosen = point;
            m_unseen = m_choice == AmongSeveral::greatestLookAngle ? Status::ok : m_unseen;
        }
        m_visible += m_turned ? 2 : 1;
    }

    double exactlyAbove(double parameter, const TerrainCell& cell) const {
        const Placed p = placed(m_arc->at(parameter), *m_terrain);
        return p.height - cell.heightAt(m_terrain->nearest(p.u, cell.column), p.v);
    }

    // The parameter near a and b at which the arc meets the cell's surface: secants, of which the first few keep to
    // what lies between (the Illinois rule). The samples stray by 0.02 mm from the arc, so a zero may also lie just
    // outside.
    double root(double a, double fa, double b, double fb, const TerrainCell& cell) const {
        constexpr int kBracketed = 30;
        constexpr int kMostPasses = 40;
        constexpr double kEnough = 1e-8;  // m
        constexpr double kNoise = 1e-6;   // m, in which steps on a cliff may end
        double best = b;
        double least = std::abs(fb);
        int worse = 0;  // steps on end; one alone may be the rule's own
        for (int pass = 0; pass < kMostPasses; ++pass) {
            const double next = b - fb * ((b - a) / (fb - fa));
            const double f = exactlyAbove(next, cell);
            const bool better = std::abs(f) < least;
            if (better) {
                best = next;
                least = std::abs(f);
            }
            worse = better ? 0 : worse + 1;
            if (least < kEnough || (worse > 1 && least < kNoise) || std::isnan(f)) {
                break;
            }
            if (pass < kBracketed && (f > 0.0) == (fb > 0.0)) {
                fa *= 0.5;
            } else {
                a = b;
                fa = fb;
            }
            b = next;
            fb = f;
        }
        return best;
    }

    const PixelCircle* m_circle;
    const Arc* m_arc;
    const TerrainRaster* m_terrain;
    AmongSeveral m_choice;
    int m_sign;  // of the last height above the surface that has one; 0: not known yet
    int* m_steps;
    Status m_gap = Status::ok;  // what lies between there and here, unless all cells were followed
    bool m_followed = false;    // the last sample is the beginning of this cell
    double m_lastParameter = 0.0;
    double m_lastAbove = 0.0;
    double m_touch = std::numeric_limits<double>::quiet_NaN();  // where the arc is on the surface, without a sign
    bool m_turned = false;  // there it has turned, so that what looks like one point may be several
    bool m_unsolved = false;
    int m_visible = 0;
    int m_hidden = 0;
    Status m_unseen = Status::ok;  // why the point to choose cannot be told
    TerrainPoint m_chosen;
};

}  // namespace

Status pixelCircle(const State& state, LookSide side, double range, double rangeRate, PixelCircle& circle) noexcept {
    const Vector velocity{state.vx, state.vy, state.vz};
    const double speed = norm(velocity);
    const double along = -range * rangeRate / speed;
    const double radius = std::sqrt(range * range - along * along);
    if (!(range > 0.0) || !(radius > 0.0) || !std::isfinite(radius)) {
        return Status::bad_input;
    }
    const Vector forward = velocity * (1.0 / speed);
    const Vector satellite{state.x, state.y, state.z};
    const Vector upward = satellite - forward * dot(satellite, forward);
    const Vector up = upward * (1.0 / norm(upward));
    const Vector left = cross(up, forward);
    circle.satellite = satellite;
    circle.centre = satellite + forward * along;
    circle.across = left * (side == LookSide::left ? radius : -radius);
    circle.down = up * -radius;
    circle.range = range;
    return Status::ok;
}

TerrainPoint findOnTerrain(const PixelCircle& circle, const TerrainRaster& terrain, AmongSeveral choice) noexcept {
    TerrainPoint nothing;
    nothing.status = Status::hole_in_terrain;
    const HeightRange& range = terrain.range();
    if (range.lowest > range.highest) {
        return nothing;
    }
    if (dot(circle.down, circle.down) >= dot(circle.centre, circle.centre)) {  // farther than the Earth's centre
        nothing.status = Status::beyond_horizon;
        return nothing;
    }
    constexpr double kMargin = 1.0;  // m
    const double first = angleAtHeight(circle, static_cast<double>(range.lowest) - kMargin);
    const double last = angleAtHeight(circle, static_cast<double>(range.highest) + kMargin);
    if (last == 0.0) {
        nothing.status = Status::range_too_short;
        return nothing;
    }
    nothing.status = pastHorizon(circle, first);
    if (nothing.status != Status::ok) {
        return nothing;
    }

    const Arc arc(circle, first, last);
    int steps = kMostCells;
    ArcVisitor visitor(circle, arc, terrain, choice, first > 0.0, steps);
    constexpr double kLongest = 10e3;  // m
    const double metres = arc.metres();
    const double longest = metres > kLongest ? kLongest / metres : 1.0;
    const double shortest = 1.0 / metres;
    double parameter = 0.0;
    while (parameter < 1.0) {
        const Stretch stretch = stretchOf(arc, terrain, parameter, std::min(longest, 1.0 - parameter), shortest);
        if (!walk(stretch, terrain, visitor, steps)) {
            return {};
        }
        parameter = stretch.parameter(1.0) > 1.0 - 1e-12 ? 1.0 : stretch.parameter(1.0);
    }
    visitor.end();
    return visitor.result();
}

}  // namespace vorbel::scene
