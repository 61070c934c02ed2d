#include "app/screens/shield_editor.h"

#include <filesystem>

#include <QAccessible>
#include <QApplication>
#include <QImage>
#include <QLabel>
#include <QTest>
#include <QTimer>
#include <QVBoxLayout>
#include <gtest/gtest.h>

#include "app/screens/realm_map_backdrop.h"
#include "app/screens/shield_button.h"
#include "app/screens/shield_choice.h"
#include "app/screens/shield_view.h"
#include "app/theme/shield_geometry.h"
#include "tests/app/theme/drawing_probe.h"
#include "tests/support/screen_house.h"
#include "tests/support/territory_house.h"

namespace gruk {

namespace {

class ShieldEditorTest : public testing::Test {
protected:
    ShieldEditorTest()
    {
        realm = house.makeRealm("Archive");
        house.settle();
        window.resize(820, 560);
        button = new ShieldButton(*house.model, theme, &window);
        window.show();
        QApplication::setActiveWindow(&window);
        house.rest();
    }

    ShieldEditorPopover& open()
    {
        button->click();
        house.rest();
        return *editor();
    }
    [[nodiscard]] ShieldEditorPopover* editor() const
    {
        return window.findChild<ShieldEditorPopover*>();
    }
    [[nodiscard]] ShieldChoiceRow& row(ShieldField field) const
    {
        for (ShieldChoiceRow* each : window.findChildren<ShieldChoiceRow*>()) {
            if (each->field() == field) {
                return *each;
            }
        }
        throw std::runtime_error("no such row");
    }
    [[nodiscard]] QList<ShieldChoice*> choices(ShieldField field) const
    {
        return row(field).findChildren<ShieldChoice*>();
    }
    [[nodiscard]] RealmIdentity stored() const
    {
        return house.model->realmIdentityStore().identity(realm.path());
    }
    [[nodiscard]] QAbstractButton& reset() const
    {
        for (QAbstractButton* each : window.findChildren<QAbstractButton*>()) {
            if (each->text() == QStringLiteral("Back to the Gruk's design")) {
                return *each;
            }
        }
        throw std::runtime_error("no way back");
    }
    /// Lets the time pass in which the user might choose again.
    void letRest()
    {
        auto* rest = editor()->findChild<QTimer*>(QStringLiteral("rest"));
        ASSERT_NE(rest, nullptr);
        ASSERT_TRUE(rest->isActive());
        rest->start(0);
        house.rest();
    }
    /// Another choice than the present one.
    [[nodiscard]] int otherThan(ShieldField field) const
    {
        return (choiceIn(editor()->draft(), field) + 1) % choicesOf(field);
    }

    Theme theme;
    test::TerritoryHouse house;
    FileURL realm;
    QWidget window;
    ShieldButton* button = nullptr;
};

}  // namespace

TEST_F(ShieldEditorTest, theShieldAtTheHeadInvitesToCustomiseIt)
{
    EXPECT_TRUE(button->toolTip().contains(QStringLiteral("Customise this realm&#x27;s shield"))
                || button->toolTip().contains(QStringLiteral("Customise this realm's shield")));
    EXPECT_EQ(button->accessibleName(), QStringLiteral("Customise this realm's shield"));
    EXPECT_TRUE(button->isEnabled());
    house.model->showTerritories();
    house.rest();
    EXPECT_FALSE(button->isEnabled()) << "no realm is open";
}

TEST_F(ShieldEditorTest, hasARowForEachFieldInTheirOrder)
{
    open();
    QStringList titles;
    QList<qsizetype> counts;
    for (ShieldChoiceRow* each : window.findChildren<ShieldChoiceRow*>()) {
        titles.append(each->findChild<QLabel*>()->text());
        counts.append(each->findChildren<ShieldChoice*>().size());
    }
    EXPECT_EQ(titles, QStringList({QStringLiteral("SHAPE"), QStringLiteral("DIVISION"),
                                   QStringLiteral("CHARGE"), QStringLiteral("PRIMARY"),
                                   QStringLiteral("SECONDARY"), QStringLiteral("SPECIES")}));
    EXPECT_EQ(counts, QList<qsizetype>({4, 4, 8, 12, 12, 5}));
    QStringList texts;
    for (const QLabel* label : editor()->findChildren<QLabel*>()) {
        texts.append(label->text());
    }
    EXPECT_TRUE(texts.contains(
        QStringLiteral("Your realm, your colours. The Gruk just paints what you choose.")));
}

TEST_F(ShieldEditorTest, beginsWithTheShieldOfTheRealm)
{
    const RealmIdentity painted = {FieldShape::banner, Division::striped, Tincture::plum,
                                   Tincture::sand,     Charge::key,       Species::fairy};
    house.model->saveShield(painted, realm.path());
    open();
    EXPECT_EQ(editor()->draft(), painted);
    for (const ShieldField field : shieldFields) {
        for (int choice = 0; choice < choicesOf(field); ++choice) {
            EXPECT_EQ(choices(field)[choice]->isChecked(), choice == choiceIn(painted, field));
        }
    }
    EXPECT_EQ(editor()->findChild<RealmShieldView*>()->identity(), painted);
}

TEST_F(ShieldEditorTest, everyChoiceIsShownAtTheHeadAtOnceAndKeptWhenItRests)
{
    open();
    for (const ShieldField field : shieldFields) {
        const int choice = otherThan(field);
        const RealmIdentity expected = withChoice(stored(), field, choice);
        choices(field)[choice]->click();
        EXPECT_EQ(editor()->draft(), expected);
        EXPECT_EQ(editor()->findChild<RealmShieldView*>()->identity(), expected);
        letRest();
        EXPECT_EQ(stored(), expected);
    }
    EXPECT_NE(stored(), RealmIdentity::derive(realm.path()));
}

TEST_F(ShieldEditorTest, manyChoicesInARowAreWrittenOnce)
{
    open();
    int writes = 0;
    QObject::connect(house.model.get(), &AppModel::realmIdentityStoreChanged, &window,
                     [&writes] { ++writes; });
    const QList<ShieldChoice*> all = choices(ShieldField::primary);
    const int chosen = choiceIn(editor()->draft(), ShieldField::primary);
    all[chosen]->setFocus(Qt::TabFocusReason);
    // Away from the nearer end of the row, where the keys would stop.
    const Qt::Key key = chosen < all.size() / 2 ? Qt::Key_Right : Qt::Key_Left;
    for (int press = 0; press < 5; ++press) {
        QTest::keyClick(QApplication::focusWidget(), key);
    }
    const RealmIdentity last = editor()->draft();
    EXPECT_NE(last, stored());
    EXPECT_EQ(writes, 0);
    letRest();
    EXPECT_EQ(writes, 1);
    EXPECT_EQ(stored(), last);
}

TEST_F(ShieldEditorTest, whatWasChosenLastIsKeptWhenItCloses)
{
    open();
    choices(ShieldField::charge)[otherThan(ShieldField::charge)]->click();
    const RealmIdentity last = editor()->draft();
    editor()->reject();
    EXPECT_EQ(stored(), last);
}

TEST_F(ShieldEditorTest, whatWasChosenLastIsKeptForItsRealmWhenAnotherOneIsOpened)
{
    open();
    choices(ShieldField::charge)[otherThan(ShieldField::charge)]->click();
    const RealmIdentity last = editor()->draft();
    const FileURL other = house.makeRealm("Other");
    house.rest();
    EXPECT_EQ(stored(), last);
    EXPECT_EQ(house.model->realmIdentityStore().identity(other.path()),
              RealmIdentity::derive(other.path()));
}

TEST_F(ShieldEditorTest, whatWasChosenLastIsKeptWhenTheProgramIsQuit)
{
    open();
    choices(ShieldField::charge)[otherThan(ShieldField::charge)]->click();
    const RealmIdentity last = editor()->draft();
    QMetaObject::invokeMethod(qApp, "aboutToQuit", Qt::DirectConnection);
    EXPECT_EQ(stored(), last);
}

TEST_F(ShieldEditorTest, choosingWhatIsChosenAlreadyKeepsNothing)
{
    open();
    int changes = 0;
    QObject::connect(house.model.get(), &AppModel::realmIdentityStoreChanged, &window,
                     [&changes] { ++changes; });
    for (const ShieldField field : shieldFields) {
        choices(field)[choiceIn(stored(), field)]->click();
    }
    EXPECT_EQ(changes, 0);
}

TEST_F(ShieldEditorTest, backToTheGruksDesignShowsAndKeepsTheDerivedShield)
{
    open();
    choices(ShieldField::charge)[otherThan(ShieldField::charge)]->click();
    letRest();
    choices(ShieldField::shape)[otherThan(ShieldField::shape)]->click();
    reset().click();
    const RealmIdentity derived = RealmIdentity::derive(realm.path());
    EXPECT_EQ(stored(), derived);
    EXPECT_TRUE(house.model->realmIdentityStore().overrides().empty());
    EXPECT_EQ(editor()->draft(), derived);
    EXPECT_EQ(editor()->findChild<RealmShieldView*>()->identity(), derived);
    EXPECT_TRUE(choices(ShieldField::charge)[static_cast<int>(derived.charge)]->isChecked());
    editor()->reject();
    EXPECT_EQ(stored(), derived) << "no choice from before comes back";
}

TEST_F(ShieldEditorTest, aResetThatCannotBeWrittenShowsTheShieldThatTheRealmHasFromThen)
{
    open();
    choices(ShieldField::charge)[otherThan(ShieldField::charge)]->click();
    letRest();
    // Where the file has to go there is a folder now.
    std::filesystem::remove(house.directory.path("app/identities.json"));
    house.directory.folder("app/identities.json/in the way");
    reset().click();
    EXPECT_EQ(house.model->errorMessage(),
              "Gruk could not reset that shield. Nothing was changed.");
    EXPECT_EQ(editor()->draft(), stored());
    EXPECT_EQ(editor()->findChild<RealmShieldView*>()->identity(), stored());
    for (const ShieldField field : shieldFields) {
        EXPECT_TRUE(choices(field)[choiceIn(stored(), field)]->isChecked());
    }
}

TEST_F(ShieldEditorTest, aShieldIsKeptForTheVeryPathOfItsRealm)
{
    const FileURL other = house.makeRealm("Other");
    house.rest();
    house.select(realm);
    open();
    choices(ShieldField::charge)[otherThan(ShieldField::charge)]->click();
    editor()->reject();
    house.rest();
    ASSERT_EQ(house.model->realmIdentityStore().overrides().size(), 1U);
    EXPECT_NE(stored(), RealmIdentity::derive(realm.path()));
    EXPECT_EQ(house.model->realmIdentityStore().identity(other.path()),
              RealmIdentity::derive(other.path()));
}

TEST_F(ShieldEditorTest, aFailedSaveShowsOnThePageAndTheDraftKeepsTheChoice)
{
    open();
    // Where the file has to go there is a folder now.
    house.directory.folder("app/identities.json/in the way");
    const int choice = otherThan(ShieldField::shape);
    choices(ShieldField::shape)[choice]->click();
    letRest();
    EXPECT_EQ(house.model->errorMessage(), "Gruk could not save that shield. Nothing was changed.");
    EXPECT_EQ(static_cast<int>(editor()->draft().shape), choice);
    EXPECT_TRUE(choices(ShieldField::shape)[choice]->isChecked());
    EXPECT_TRUE(editor()->isOpen());
}

TEST_F(ShieldEditorTest, aChangeOfSpeciesIsKeptAndShowsNowhere)
{
    open();
    const QSize size = editor()->findChild<RealmShieldView*>()->size();
    const auto picture = [&] {
        return editor()->findChild<RealmShieldView*>()->grab(QRect(QPoint(), size)).toImage();
    };
    const QImage before = picture();
    const int choice = otherThan(ShieldField::species);
    choices(ShieldField::species)[choice]->click();
    letRest();
    EXPECT_EQ(static_cast<int>(stored().species), choice);
    EXPECT_EQ(picture(), before);
}

TEST_F(ShieldEditorTest, everyChoiceHasANameAndATooltip)
{
    open();
    EXPECT_EQ(test::namelessControls(window), QStringList());
    for (const ShieldField field : shieldFields) {
        for (int choice = 0; choice < choicesOf(field); ++choice) {
            ShieldChoice* each = choices(field)[choice];
            QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(each);
            EXPECT_EQ(accessible->role(), QAccessible::RadioButton);
            EXPECT_EQ(accessible->text(QAccessible::Name), nameOfChoice(field, choice));
            EXPECT_EQ(accessible->text(QAccessible::Description), titleOf(field));
            EXPECT_TRUE(each->toolTip().contains(nameOfChoice(field, choice)));
            EXPECT_EQ(accessible->state().checked, each->isChecked());
        }
    }
}

TEST_F(ShieldEditorTest, theArrowKeysChooseWithinARow)
{
    open();
    ShieldChoice* first = choices(ShieldField::charge)[0];
    first->click();
    first->setFocus(Qt::TabFocusReason);
    QTest::keyClick(first, Qt::Key_Right);
    EXPECT_EQ(editor()->draft().charge, Charge::lantern);
    EXPECT_TRUE(choices(ShieldField::charge)[1]->hasFocus());
    QTest::keyClick(choices(ShieldField::charge)[1], Qt::Key_Left);
    EXPECT_EQ(editor()->draft().charge, Charge::disk);
}

TEST_F(ShieldEditorTest, tabGoesFromRowToRow)
{
    open();
    ShieldChoice* shape = choices(ShieldField::shape)[static_cast<int>(stored().shape)];
    shape->setFocus(Qt::TabFocusReason);
    for (const ShieldField field :
         {ShieldField::division, ShieldField::charge, ShieldField::primary, ShieldField::secondary,
          ShieldField::species}) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        EXPECT_EQ(QApplication::focusWidget(), choices(field)[choiceIn(stored(), field)])
            << titleOf(field).toStdString();
    }
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), &reset());
}

TEST_F(ShieldEditorTest, theChosenOneIsMarkedByMoreThanItsColour)
{
    open();
    // Two swatches of one colour, of which one is chosen.
    ShieldChoice chosen(theme, ShieldField::primary, 2);
    ShieldChoice other(theme, ShieldField::primary, 2);
    chosen.setChecked(true);
    const auto inkIn = [this](ShieldChoice& choice) {
        choice.resize(choice.sizeHint());
        const QImage image = choice.grab().toImage();
        int count = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                count += image.pixelColor(x, y) == theme.colour(Role::ink) ? 1 : 0;
            }
        }
        return count;
    };
    EXPECT_EQ(inkIn(other), 0);
    EXPECT_GT(inkIn(chosen), 80);
}

TEST_F(ShieldEditorTest, aSwatchHasTheColourThatItGives)
{
    open();
    for (int choice = 0; choice < choicesOf(ShieldField::primary); ++choice) {
        ShieldChoice* each = choices(ShieldField::primary)[choice];
        EXPECT_EQ(each->grab().toImage().pixelColor(10, 10),
                  theme.colour(roleOf(static_cast<Tincture>(choice))));
    }
}

TEST_F(ShieldEditorTest, closesWhenAnotherRealmIsOpened)
{
    open();
    house.makeRealm("Other");
    house.rest();
    EXPECT_EQ(editor(), nullptr);
}

TEST_F(ShieldEditorTest, doesNotOpenWithoutARealm)
{
    house.model->showTerritories();
    house.rest();
    openShieldEditor(*house.model, theme, *button);
    EXPECT_EQ(editor(), nullptr);
}

TEST_F(ShieldEditorTest, theButtonShowsEachChangeOfTheShield)
{
    const QImage before = button->grab().toImage();
    RealmIdentity painted = RealmIdentity::derive(realm.path());
    painted.primary = painted.primary == Tincture::red ? Tincture::blue : Tincture::red;
    house.model->saveShield(painted, realm.path());
    house.rest();
    EXPECT_NE(button->grab().toImage(), before);
}

TEST_F(ShieldEditorTest, fitsTheSmallestWindow)
{
    window.resize(Measure::smallestWindowWidth, Measure::smallestWindowHeight);
    open();
    for (const ShieldField field : shieldFields) {
        for (const ShieldChoice* each : choices(field)) {
            const QRect place(each->mapTo(&window, QPoint()), each->size());
            EXPECT_TRUE(window.rect().contains(place)) << titleOf(field).toStdString();
            EXPECT_GE(each->width(), Measure::smallestTarget);
            EXPECT_GE(each->height(), Measure::smallestTarget);
        }
    }
}

TEST(ShieldField, aChoiceChangesItsFieldAndNoOther)
{
    const RealmIdentity plain;
    for (const ShieldField field : shieldFields) {
        for (int choice = 0; choice < choicesOf(field); ++choice) {
            const RealmIdentity chosen = withChoice(plain, field, choice);
            for (const ShieldField other : shieldFields) {
                EXPECT_EQ(choiceIn(chosen, other), other == field ? choice : 0);
            }
        }
    }
}

TEST(ShieldFieldDeathTest, aChoiceThatDoesNotExistStopsTheProgram)
{
    EXPECT_DEATH((void)withChoice({}, ShieldField::shape, 4), "no such choice");
    EXPECT_DEATH((void)withChoice({}, ShieldField::species, -1), "no such choice");
}

TEST(FieldDrawing, isTheShieldWithoutItsCharge)
{
    const QRectF canvas(0, 0, 100, 100);
    const RealmIdentity identity = {FieldShape::square, Division::halved, Tincture::red,
                                    Tincture::blue,     Charge::disk,     Species::gruk};
    const Drawing field = fieldDrawing(identity, canvas);
    const test::Probe probe(field);
    EXPECT_EQ(probe.coloursAt({20, 50}).front().role, Role::red);
    EXPECT_EQ(probe.coloursAt({80, 50}).front().role, Role::blue);
    for (const DrawingStep& step : field) {
        EXPECT_NE(step.role, Role::paperCard);
    }
    Drawing shield = shieldDrawing(identity, canvas);
    std::erase_if(shield, [](const DrawingStep& step) { return step.role == Role::paperCard; });
    EXPECT_TRUE(test::isSame(field, shield));
}

TEST_F(ShieldEditorTest, isClosedByAButtonThatIsSeen)
{
    open();
    const QPointer<ShieldEditorPopover> opened = editor();
    QAbstractButton* done = nullptr;
    for (QAbstractButton* each : opened->findChildren<QAbstractButton*>()) {
        done = each->text() == QStringLiteral("Done") ? each : done;
    }
    ASSERT_NE(done, nullptr);
    EXPECT_TRUE(done->isVisible());
    done->click();
    EXPECT_FALSE(opened != nullptr && opened->isOpen());
}

}  // namespace gruk
