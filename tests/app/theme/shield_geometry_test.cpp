#include "app/theme/shield_geometry.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include <gtest/gtest.h>

#include "tests/app/theme/drawing_probe.h"
#include "tests/support/sanitized.h"

namespace gruk {

namespace {

using test::Colour;

using Point = QPointF;
using Polygon = std::vector<Point>;

/// Everything below is the figures of a shield once more, point by point and without a path.
struct Box {
    double minX, minY, maxX, maxY;

    [[nodiscard]] double w() const { return maxX - minX; }
    [[nodiscard]] double h() const { return maxY - minY; }
    [[nodiscard]] double midX() const { return (minX + maxX) / 2; }
    [[nodiscard]] double midY() const { return (minY + maxY) / 2; }
    [[nodiscard]] bool holds(Point p) const
    {
        return p.x() > minX && p.x() < maxX && p.y() > minY && p.y() < maxY;
    }
    [[nodiscard]] Box inset(double by) const
    {
        return {minX + by, minY + by, maxX - by, maxY - by};
    }
};

Box box(double x, double y, double w, double h)
{
    return {x, y, x + w, y + h};
}

bool inEllipse(const Box& b, Point p)
{
    const double x = (p.x() - b.midX()) / (b.w() / 2);
    const double y = (p.y() - b.midY()) / (b.h() / 2);
    return x * x + y * y < 1;
}

bool inPolygon(const Polygon& polygon, Point p)
{
    bool inside = false;
    for (std::size_t i = 0, j = polygon.size() - 1; i < polygon.size(); j = i++) {
        const Point a = polygon[i];
        const Point b = polygon[j];
        if ((a.y() > p.y()) != (b.y() > p.y())
            && p.x() < (b.x() - a.x()) * (p.y() - a.y()) / (b.y() - a.y()) + a.x()) {
            inside = !inside;
        }
    }
    return inside;
}

double distanceTo(const Polygon& polygon, Point p)
{
    double least = 1e9;
    for (std::size_t i = 0, j = polygon.size() - 1; i < polygon.size(); j = i++) {
        const Point along = polygon[i] - polygon[j];
        const double length = Point::dotProduct(along, along);
        const double t =
            length == 0 ? 0
                        : std::clamp(Point::dotProduct(p - polygon[j], along) / length, 0.0, 1.0);
        const Point off = p - (polygon[j] + t * along);
        least = std::min(least, std::hypot(off.x(), off.y()));
    }
    return least;
}

constexpr int curveSteps = 48;

void addCubic(Polygon& to, Point a, Point b, Point c, Point d)
{
    for (int step = 1; step <= curveSteps; ++step) {
        const double t = 1.0 * step / curveSteps;
        const double u = 1 - t;
        to.push_back(u * u * u * a + 3 * u * u * t * b + 3 * u * t * t * c + t * t * t * d);
    }
}

void addQuadratic(Polygon& to, Point a, Point b, Point c)
{
    for (int step = 1; step <= curveSteps; ++step) {
        const double t = 1.0 * step / curveSteps;
        const double u = 1 - t;
        to.push_back(u * u * a + 2 * u * t * b + t * t * c);
    }
}

Polygon kite(const Box& r)
{
    const double w = r.w();
    const double h = r.h();
    const Point start(r.minX, r.minY + 0.12 * h);
    const Point left(r.minX, r.minY + 0.5 * h);
    const Point tip(r.midX(), r.maxY);
    const Point right(r.maxX, r.minY + 0.5 * h);
    const Point end(r.maxX, r.minY + 0.12 * h);
    Polygon polygon = {start, left};
    addCubic(polygon, left, {r.minX, r.minY + 0.86 * h}, {r.midX() - 0.18 * w, r.maxY}, tip);
    addCubic(polygon, tip, {r.midX() + 0.18 * w, r.maxY}, {r.maxX, r.minY + 0.86 * h}, right);
    polygon.push_back(end);
    addCubic(polygon, end, {r.minX + 0.75 * w, r.minY}, {r.minX + 0.25 * w, r.minY}, start);
    return polygon;
}

Polygon ellipse(const Box& r)
{
    Polygon polygon;
    for (int step = 0; step < 4 * curveSteps; ++step) {
        const double angle = 2 * std::numbers::pi * step / (4 * curveSteps);
        polygon.emplace_back(r.midX() + r.w() / 2 * std::cos(angle),
                             r.midY() + r.h() / 2 * std::sin(angle));
    }
    return polygon;
}

Polygon outline(FieldShape shape, const Box& r)
{
    switch (shape) {
    case FieldShape::round:
        return ellipse(r);
    case FieldShape::kite:
        return kite(r);
    case FieldShape::banner:
        return {{r.minX, r.minY},
                {r.maxX, r.minY},
                {r.maxX, r.maxY},
                {r.midX(), r.maxY - 0.22 * r.h()},
                {r.minX, r.maxY}};
    case FieldShape::square:
        return {{r.minX, r.minY}, {r.maxX, r.minY}, {r.maxX, r.maxY}, {r.minX, r.maxY}};
    }
    return {};
}

/// Where the house's soft corners of a square decide, which have a test of their own.
bool isInSoftCorner(const Box& r, Point p)
{
    const double radius = 0.16 * r.w() + 1;
    return (p.x() < r.minX + radius || p.x() > r.maxX - radius)
           && (p.y() < r.minY + radius || p.y() > r.maxY - radius);
}

bool isSecond(Division division, const Box& r, Point p)
{
    const double b = 0.24 * r.h();
    switch (division) {
    case Division::plain:
        return false;
    case Division::halved:
        return p.x() > r.midX();
    case Division::striped:
        return p.y() > r.minY + r.h() / 3 && p.y() < r.minY + 2 * r.h() / 3;
    case Division::chevron:
        return inPolygon({{r.minX, r.maxY},
                          {r.midX(), r.midY()},
                          {r.maxX, r.maxY},
                          {r.maxX, r.maxY - b},
                          {r.midX(), r.midY() - b},
                          {r.minX, r.maxY - b}},
                         p);
    }
    return false;
}

bool inRing(const Box& outer, double inset, Point p)
{
    return inEllipse(outer, p) && !inEllipse(outer.inset(inset), p);
}

bool inRounded(const Box& b, double radius, Point p)
{
    const double x = std::clamp(p.x(), b.minX + radius, b.maxX - radius);
    const double y = std::clamp(p.y(), b.minY + radius, b.maxY - radius);
    return std::hypot(p.x() - x, p.y() - y) < radius;
}

Polygon star(const Box& c, double s)
{
    Polygon polygon;
    for (int i = 0; i < 10; ++i) {
        const double radius = i % 2 == 0 ? s / 2 : 0.42 * s / 2;
        const double turn = 2 * std::numbers::pi * i / 10;
        polygon.emplace_back(c.midX() + radius * std::sin(turn),
                             c.midY() - radius * std::cos(turn));
    }
    return polygon;
}

Polygon tusk(const Box& c, double s)
{
    const Point start(c.minX + 0.15 * s, c.minY + 0.15 * s);
    const Point end(c.minX + 0.35 * s, c.maxY);
    Polygon polygon = {start};
    addQuadratic(polygon, start, {c.minX, c.midY()}, end);
    addQuadratic(polygon, end, {0.9 * c.maxX, c.midY()}, start);
    return polygon;
}

bool inKey(const Box& c, double s, Point p)
{
    const double d = 0.42 * s;
    const Box bow = box(c.minX, c.minY + (s - d) / 2, d, d);
    const double t = 0.16 * s;
    const double start = bow.maxX - 0.1 * d;
    const Box shaft = box(start, c.midY() - t / 2, c.maxX - start, t);
    const double u = 0.8 * t;
    return inRing(bow, 0.28 * d, p) || shaft.holds(p)
           || box(c.maxX - 1.8 * u, shaft.maxY, u, 0.9 * t).holds(p)
           || box(c.maxX - 0.6 * u, shaft.maxY, u, 1.3 * t).holds(p);
}

/// How strongly the charge covers a point.
double chargeAt(Charge charge, const Box& c, Point p)
{
    const double s = c.w();
    switch (charge) {
    case Charge::disk:
        return inRing(c, 0.28 * s, p) ? 1 : 0;
    case Charge::lantern: {
        const Box body = box(c.minX + 0.2 * s, c.minY + 0.3 * s, 0.6 * s, 0.6 * s);
        return inRounded(body, 0.15 * s, p)
               || inPolygon({{body.minX, body.minY}, {body.midX(), c.minY}, {body.maxX, body.minY}},
                            p);
    }
    case Charge::tree:
        return inPolygon(
                   {{c.midX(), c.minY}, {c.minX, c.minY + 0.65 * s}, {c.maxX, c.minY + 0.65 * s}},
                   p)
               || box(c.midX() - 0.08 * s, c.minY + 0.65 * s, 0.16 * s, 0.35 * s).holds(p);
    case Charge::mountain:
        if (inPolygon({{c.minX + 0.1 * s, c.maxY},
                       {c.minX + 0.42 * s, c.minY + 0.28 * s},
                       {c.minX + 0.74 * s, c.maxY}},
                      p)) {
            return 1;
        }
        return inPolygon({{c.minX, c.maxY}, {c.minX + 0.62 * s, c.minY}, {c.maxX, c.maxY}}, p) ? 0.7
                                                                                               : 0;
    case Charge::star:
        return inPolygon(star(c, s), p);
    case Charge::tusk:
        return inPolygon(tusk(c, s), p);
    case Charge::key:
        return inKey(c, s, p);
    case Charge::acorn: {
        const Box nut = box(c.minX + 0.2 * s, c.minY + 0.35 * s, 0.6 * s, 0.55 * s);
        const Point centre(c.midX(), nut.minY + 0.12 * nut.h());
        return inEllipse(nut, p)
               || (p.y() < centre.y()
                   && std::hypot(p.x() - centre.x(), p.y() - centre.y()) < 0.36 * s);
    }
    }
    return 0;
}

/// A shield by the figures: what covers each point.
class Expected {
public:
    Expected(FieldShape shape, const Box& canvas)
        : r_{canvas.minX + 0.04 * canvas.w(), canvas.minY + 0.04 * canvas.h(),
             canvas.maxX - 0.04 * canvas.w(), canvas.maxY - 0.04 * canvas.h()},
          outline_(outline(shape, r_))
    {
        const double s = 0.45 * std::min(r_.w(), r_.h());
        c_ = box(r_.midX() - s / 2, r_.midY() - s / 2, s, s);
    }

    [[nodiscard]] std::vector<Colour> at(const RealmIdentity& identity, Point p) const
    {
        if (distanceTo(outline_, p) < 0.75) {
            return {{Role::ink, 1}};
        }
        std::vector<Colour> seen;
        if (const double strength = chargeAt(identity.charge, c_, p); strength > 0) {
            seen.push_back({Role::paperCard, strength});
            if (strength == 1) {
                return seen;
            }
        }
        if (inPolygon(outline_, p)) {
            const bool second = isSecond(identity.division, r_, p);
            seen.push_back({roleOf(second ? identity.secondary : identity.primary), 1});
        }
        return seen;
    }

    /// What covers a point, where it is the same for a little way round it.
    [[nodiscard]] std::optional<std::vector<Colour>> around(const RealmIdentity& identity,
                                                            Point p) const
    {
        constexpr double near = 0.05;
        if (identity.shape == FieldShape::square && isInSoftCorner(r_, p)) {
            return std::nullopt;
        }
        std::vector<Colour> here = at(identity, p);
        for (const Point step :
             {Point(near, 0), Point(-near, 0), Point(0, near), Point(0, -near)}) {
            if (at(identity, p + step) != here) {
                return std::nullopt;
            }
        }
        return here;
    }

private:
    Box r_;
    Box c_{};
    Polygon outline_;
};

RealmIdentity identityOf(FieldShape shape, Division division, Charge charge)
{
    return {shape, division, Tincture::teal, Tincture::plum, charge, Species::gruk};
}

struct Sampled {
    int compared = 0;
    int wrong = 0;
};

Sampled compare(const RealmIdentity& identity, const Box& canvas)
{
    constexpr int samples = 19;
    const test::Probe probe(
        shieldDrawing(identity, QRectF(canvas.minX, canvas.minY, canvas.w(), canvas.h())));
    const Expected expected(identity.shape, canvas);
    Sampled sampled;
    for (int column = 0; column < samples; ++column) {
        for (int row = 0; row < samples; ++row) {
            const Point p(canvas.minX + canvas.w() * (column + 0.37) / samples,
                          canvas.minY + canvas.h() * (row + 0.61) / samples);
            if (const auto colours = expected.around(identity, p)) {
                ++sampled.compared;
                sampled.wrong += probe.coloursAt(p) == *colours ? 0 : 1;
            }
        }
    }
    return sampled;
}

class EveryShield : public testing::TestWithParam<int> {};

}  // namespace

TEST_P(EveryShield, isDrawnByItsFiguresAtEverySize)
{
    const Charge charge = static_cast<Charge>(GetParam());
    const std::array canvases = {box(0, 0, 30, 30), box(0, 0, 180, 70), box(12, 7, 64, 96)};
    for (std::size_t shape = 0; shape < 4; ++shape) {
        for (std::size_t division = 0; division < 4; ++division) {
            const RealmIdentity identity =
                identityOf(static_cast<FieldShape>(shape), static_cast<Division>(division), charge);
            for (std::size_t size = 0; size < canvases.size(); ++size) {
                if (test::isSanitized && (shape + division + size) % canvases.size() != 0) {
                    continue;  // one size of each instead of all
                }
                const Box& canvas = canvases[size];
                const Sampled sampled = compare(identity, canvas);
                EXPECT_GT(sampled.compared, 200);
                EXPECT_EQ(sampled.wrong, 0)
                    << rawString(identity.shape) << ' ' << rawString(identity.division) << ' '
                    << rawString(charge) << ' ' << canvas.w() << " by " << canvas.h();
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Charges, EveryShield, testing::Range(0, 8), [](const auto& each) {
    return std::string(rawString(static_cast<Charge>(each.param)));
});

TEST(ShieldDrawing, twoRealmsThatDifferOnlyInSpeciesHaveIdenticalShields)
{
    RealmIdentity identity = RealmIdentity::derive("/home/ada");
    const QRectF canvas(0, 0, 40, 40);
    const Drawing first = shieldDrawing(identity, canvas);
    identity.species = identity.species == Species::dragon ? Species::fairy : Species::dragon;
    EXPECT_TRUE(test::isSame(first, shieldDrawing(identity, canvas)));
    identity.charge = identity.charge == Charge::star ? Charge::key : Charge::star;
    EXPECT_FALSE(test::isSame(first, shieldDrawing(identity, canvas)));
}

TEST(ShieldDrawing, aShieldOnAVeryWideCanvasKeepsASquareCharge)
{
    const Drawing drawing = shieldDrawing(
        identityOf(FieldShape::banner, Division::plain, Charge::disk), QRectF(0, 0, 1000, 50));
    ASSERT_EQ(drawing.size(), 3U);
    const QRectF charge = drawing[1].path.boundingRect();
    const double side = 0.45 * 50 * 0.92;
    EXPECT_NEAR(charge.width(), side, 1e-9);
    EXPECT_NEAR(charge.height(), side, 1e-9);
    EXPECT_NEAR(charge.center().x(), 500, 1e-9);
    EXPECT_NEAR(charge.center().y(), 25, 1e-9);
}

TEST(ShieldDrawing, theBellyOfTheTuskDependsOnWhereTheCanvasLies)
{
    const RealmIdentity identity = identityOf(FieldShape::round, Division::plain, Charge::tusk);
    const auto widthAt = [&](double x) {
        return shieldDrawing(identity, QRectF(x, 0, 100, 100))[1].path.boundingRect().width();
    };
    EXPECT_GT(widthAt(0), widthAt(60));
    EXPECT_GT(widthAt(60), widthAt(120));
}

TEST(ShieldDrawing, theSquareHasSoftCornersOfASixthOfItsWidth)
{
    const QPainterPath outline = shieldOutline(FieldShape::square, QRectF(0, 0, 100, 50));
    EXPECT_EQ(outline.boundingRect(), QRectF(0, 0, 100, 50));
    for (const QPointF corner :
         {QPointF(0, 0), QPointF(100, 0), QPointF(0, 50), QPointF(100, 50)}) {
        const QPointF inward((corner.x() == 0 ? 1 : -1), (corner.y() == 0 ? 1 : -1));
        EXPECT_FALSE(outline.contains(corner + 3 * inward));
        EXPECT_TRUE(outline.contains(corner + 5 * inward));
        EXPECT_TRUE(outline.contains(corner + QPointF(16.5 * inward.x(), 0.1 * inward.y())));
        EXPECT_FALSE(outline.contains(corner + QPointF(10 * inward.x(), 0.1 * inward.y())));
    }
}

TEST(ShieldDrawing, endsWithTheOutlineInInk)
{
    for (const Charge charge : {Charge::disk, Charge::mountain, Charge::acorn}) {
        const DrawingStep last =
            shieldDrawing(identityOf(FieldShape::kite, Division::chevron, charge),
                          QRectF(0, 0, 300, 300))
                .back();
        EXPECT_EQ(last.role, Role::ink);
        ASSERT_TRUE(last.stroke.has_value());
        EXPECT_EQ(last.stroke->width, 1.5);
        EXPECT_EQ(last.stroke->cap, Qt::RoundCap);
        EXPECT_EQ(last.stroke->join, Qt::RoundJoin);
        EXPECT_TRUE(last.stroke->dashes.empty());
    }
}

TEST(ShieldDrawing, aTinctureShowsTheColourOfItsName)
{
    const std::pair<Tincture, Role> pairs[] = {
        {Tincture::fern, Role::fern},
        {Tincture::fernDark, Role::fernDark},
        {Tincture::blue, Role::blue},
        {Tincture::yellow, Role::yellow},
        {Tincture::red, Role::red},
        {Tincture::ink, Role::ink},
        {Tincture::terracotta, Role::terracotta},
        {Tincture::teal, Role::teal},
        {Tincture::plum, Role::plum},
        {Tincture::olive, Role::olive},
        {Tincture::slate, Role::slate},
        {Tincture::sand, Role::sand},
    };
    for (const auto& [tincture, role] : pairs) {
        EXPECT_EQ(roleOf(tincture), role);
    }
}

}  // namespace gruk
