#include "app/theme/land_geometry.h"

#include <cmath>
#include <numbers>

#include <gtest/gtest.h>

#include "core/realm/seeded_generator.h"
#include "core/realm/stable_hash.h"
#include "tests/app/theme/drawing_probe.h"

namespace gruk {

namespace {

constexpr RealmIdentity archive = {FieldShape::square, Division::plain, Tincture::teal,
                                   Tincture::sand,     Charge::tree,    Species::gruk};
constexpr QRectF canvas(10, 20, 320, 180);

}  // namespace

TEST(LandDrawing, theSameIdentityDrawsTheSameBackdropOnEveryLaunch)
{
    // The draws once more, in their order, from a seed that is spelled out.
    SeededGenerator generator(stableHash("square|plain|teal|sand|tree"));
    const Drawing drawing = landDrawing(archive, canvas);
    const std::uint64_t count = 10 + generator.bounded(5);
    ASSERT_EQ(drawing[0].path.elementCount(), static_cast<int>(count) + 1);
    for (std::uint64_t i = 0; i < count; ++i) {
        const double r = generator.unit(0.82, 1.18);
        const double angle =
            2 * std::numbers::pi * static_cast<double>(i) / static_cast<double>(count);
        const auto vertex = drawing[0].path.elementAt(static_cast<int>(i));
        EXPECT_NEAR(vertex.x, 170 + 0.46 * 320 * std::cos(angle) * r, 1e-9);
        EXPECT_NEAR(vertex.y, 110 + 0.46 * 180 * std::sin(angle) * r, 1e-9);
    }
    std::size_t step = 2;
    for (int cluster = 0; cluster < 6; ++cluster) {
        const double x = 10 + 320 * generator.unit(0.12, 0.88);
        const double y = 20 + 180 * generator.unit(0.12, 0.88);
        const std::uint64_t dots = 2 + generator.bounded(3);
        for (std::uint64_t dot = 0; dot < dots; ++dot, ++step) {
            const double dx = generator.unit(-8, 8);
            const double dy = generator.unit(-8, 8);
            const double radius = generator.unit(1.0, 2.2);
            ASSERT_LT(step, drawing.size());
            const QRectF bounds = drawing[step].path.boundingRect();
            EXPECT_NEAR(bounds.center().x(), x + dx, 1e-9);
            EXPECT_NEAR(bounds.center().y(), y + dy, 1e-9);
            EXPECT_NEAR(bounds.width(), 2 * radius, 1e-9);
            EXPECT_EQ(drawing[step].role, Role::ink);
            EXPECT_EQ(drawing[step].opacity, 0.09);
        }
    }
    EXPECT_EQ(step, drawing.size());
}

TEST(LandDrawing, theCoastIsFilledFaintlyAndStrokedWithDashes)
{
    const Drawing drawing = landDrawing(archive, canvas);
    EXPECT_EQ(drawing[0].role, Role::paperInset);
    EXPECT_EQ(drawing[0].opacity, 0.5);
    EXPECT_FALSE(drawing[0].stroke.has_value());
    EXPECT_EQ(drawing[1].path, drawing[0].path);
    EXPECT_EQ(drawing[1].role, Role::ink);
    EXPECT_EQ(drawing[1].opacity, 0.25);
    ASSERT_TRUE(drawing[1].stroke.has_value());
    EXPECT_EQ(drawing[1].stroke->width, 1.2);
    EXPECT_EQ(drawing[1].stroke->miterLimit, 10);
    EXPECT_EQ(drawing[1].stroke->join, Qt::MiterJoin);
    EXPECT_EQ(drawing[1].stroke->dashes, (std::vector<double>{4, 3}));
}

TEST(LandDrawing, twoRealmsThatDifferOnlyInSpeciesHaveIdenticalBackdrops)
{
    RealmIdentity other = archive;
    other.species = Species::wizard;
    EXPECT_TRUE(test::isSame(landDrawing(archive, canvas), landDrawing(other, canvas)));
}

TEST(LandDrawing, everyOtherFieldMakesAnotherLand)
{
    const Drawing land = landDrawing(archive, canvas);
    RealmIdentity others[] = {archive, archive, archive, archive, archive};
    others[0].shape = FieldShape::kite;
    others[1].division = Division::halved;
    others[2].primary = Tincture::red;
    others[3].secondary = Tincture::red;
    others[4].charge = Charge::key;
    for (const RealmIdentity& other : others) {
        EXPECT_FALSE(test::isSame(land, landDrawing(other, canvas)));
    }
}

}  // namespace gruk
