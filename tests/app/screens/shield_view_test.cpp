#include "app/screens/shield_view.h"

#include <filesystem>

#include <QAccessible>
#include <QImage>
#include <QPainter>
#include <gtest/gtest.h>

#include "app/screens/realm_map_backdrop.h"
#include "app/screens/realm_row.h"
#include "app/screens/shield_copy.h"
#include "tests/support/screen_house.h"

namespace gruk {

namespace {

constexpr RealmIdentity sample = {FieldShape::square, Division::halved, Tincture::red,
                                  Tincture::blue,     Charge::disk,     Species::gruk};

/// The widget alone, over nothing.
QImage picture(QWidget& widget, int scale = 1)
{
    QImage image(widget.size() * scale, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(scale);
    image.fill(Qt::transparent);
    widget.render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
    return image;
}

RealmRow* rowOf(const test::ScreenHouse& house)
{
    return house.window->findChild<RealmRow*>();
}

bool shows(QWidget& widget, const QColor& colour)
{
    const QImage image = picture(widget);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixelColor(x, y) == colour) {
                return true;
            }
        }
    }
    return false;
}

}  // namespace

TEST(RealmShieldView, drawsItsShieldOverTheWholeOfItselfAtEveryScale)
{
    Theme theme;
    RealmShieldView view(theme, sample);
    view.resize(60, 60);
    for (const int scale : {1, 2, 3}) {
        const QImage image = picture(view, scale);
        EXPECT_EQ(image.pixelColor(10 * scale, 30 * scale), theme.colour(Role::red));
        EXPECT_EQ(image.pixelColor(50 * scale, 30 * scale), theme.colour(Role::blue));
        EXPECT_EQ(image.pixelColor(30 * scale, 20 * scale), theme.colour(Role::paperCard));
        EXPECT_EQ(image.pixelColor(0, 0).alpha(), 0);
    }
}

TEST(RealmShieldView, isRepaintedByAChangeOfPaletteWhileItsIdentityStays)
{
    Theme theme;
    RealmShieldView view(theme, sample);
    view.resize(60, 60);
    const QColor before = picture(view).pixelColor(10, 30);
    theme.setPaletteTheme(AppPaletteTheme::tide);
    EXPECT_EQ(picture(view).pixelColor(10, 30), theme.colour(Role::red));
    EXPECT_NE(picture(view).pixelColor(10, 30), before);
    EXPECT_EQ(view.identity(), sample);
}

TEST(RealmShieldView, isNamedByWhatItShows)
{
    Theme theme;
    RealmShieldView view(theme, sample);
    QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(&view);
    ASSERT_NE(accessible, nullptr);
    EXPECT_EQ(accessible->role(), QAccessible::Graphic);
    EXPECT_EQ(accessible->text(QAccessible::Name),
              QStringLiteral("Square shield, halved in red and blue, with a disk"));
    RealmIdentity other = sample;
    other.division = Division::plain;
    other.charge = Charge::acorn;
    view.setIdentity(other);
    EXPECT_EQ(accessible->text(QAccessible::Name),
              QStringLiteral("Square shield, plain red, with an acorn"));
}

TEST(RealmShieldView, standsOutAsStronglyAsItIsTold)
{
    Theme theme;
    RealmShieldView view(theme, sample);
    view.resize(60, 60);
    view.setOpacity(0.5);
    EXPECT_NEAR(picture(view).pixelColor(10, 30).alphaF(), 0.5, 0.01);
    // Also where the charge lies over the field: the shield fades as one.
    EXPECT_NEAR(picture(view).pixelColor(30, 20).alphaF(), 0.5, 0.01);
}

TEST(RealmMapBackdrop, drawsLandInTheMiddleAndNoneInTheCorners)
{
    Theme theme;
    RealmMapBackdrop backdrop(theme, sample);
    backdrop.resize(320, 180);
    const QImage image = picture(backdrop);
    EXPECT_NEAR(image.pixelColor(160, 90).alphaF(), 0.5, 0.1);
    EXPECT_EQ(image.pixelColor(0, 0).alpha(), 0);
    EXPECT_EQ(image.pixelColor(319, 179).alpha(), 0);
}

TEST(RealmMapBackdrop, keepsTheWholeCoastInItsBounds)
{
    Theme theme;
    for (std::size_t shape = 0; shape < 40; ++shape) {
        RealmMapBackdrop backdrop(theme, RealmIdentity::derive("/realm " + std::to_string(shape)));
        backdrop.resize(96, 96);
        const QImage image = picture(backdrop);
        for (int at = 0; at < 96; ++at) {
            for (const QPoint& edge :
                 {QPoint(at, 0), QPoint(at, 95), QPoint(0, at), QPoint(95, at)}) {
                EXPECT_LT(image.pixelColor(edge).alphaF(), 0.3) << shape;
            }
        }
    }
}

TEST(RealmRow, showsTheShieldOfItsRealmAndAnotherOneOnceItIsRepainted)
{
    test::ScreenHouse house;
    const FileURL realm = house.makeRealm("Archive");
    house.settle();
    RealmIdentity identity = sample;
    identity.primary = Tincture::plum;
    ASSERT_NE(rowOf(house), nullptr);
    house.model->saveShield(identity, realm.path());
    house.settle();
    EXPECT_TRUE(shows(*rowOf(house), house.theme.colour(Role::plum)));
    identity.primary = Tincture::teal;
    house.model->saveShield(identity, realm.path());
    house.settle();
    EXPECT_FALSE(shows(*rowOf(house), house.theme.colour(Role::plum)));
    EXPECT_TRUE(shows(*rowOf(house), house.theme.colour(Role::teal)));
}

TEST(RealmRow, aRealmThatIsNotThereKeepsItsShieldFainter)
{
    test::ScreenHouse house;
    const FileURL realm = house.makeRealm("Archive");
    house.settle();
    std::filesystem::remove_all(realm.path());
    house.patrol();
    auto* row = house.window->findChild<DisconnectedRealmRow*>();
    ASSERT_NE(row, nullptr);
    auto* shield = row->findChild<RealmShieldView*>();
    ASSERT_NE(shield, nullptr);
    EXPECT_EQ(shield->identity(), RealmIdentity::derive(realm.path()));
    house.model->saveShield(sample, realm.path());
    house.settle();
    EXPECT_EQ(shield->identity(), sample);
    EXPECT_NEAR(picture(*shield).pixelColor(6, 15).alphaF(), Strength::disconnected, 0.01);
}

TEST(ShieldCopy, everyChoiceHasANameOfItsOwn)
{
    QStringList names;
    for (int index = 0; index < static_cast<int>(tinctureCount); ++index) {
        names.append(nameOf(static_cast<Tincture>(index)));
    }
    for (int index = 0; index < 8; ++index) {
        names.append(nameOf(static_cast<Charge>(index)));
    }
    for (int index = 0; index < 5; ++index) {
        names.append(nameOf(static_cast<Species>(index)));
    }
    for (int index = 0; index < 4; ++index) {
        names.append(nameOf(static_cast<FieldShape>(index)));
        names.append(nameOf(static_cast<Division>(index)));
    }
    EXPECT_EQ(names.removeDuplicates(), 0);
    EXPECT_FALSE(names.contains(QString()));
}

}  // namespace gruk
