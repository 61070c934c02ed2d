#include "app/theme/key_press.h"

#include <filesystem>
#include <fstream>
#include <functional>
#include <regex>
#include <set>
#include <sstream>
#include <string>

#include <QHeaderView>
#include <QPointer>
#include <gtest/gtest.h>

#include "app/screens/breadcrumb_bar.h"
#include "app/screens/browse_header.h"
#include "app/screens/icon_button.h"
#include "app/screens/palette_row.h"
#include "app/screens/realm_card.h"
#include "app/screens/realm_row.h"
#include "app/screens/scan_node_model.h"
#include "app/screens/selection_box.h"
#include "app/screens/shield_button.h"
#include "app/screens/shield_choice.h"
#include "app/screens/sidebar_link.h"
#include "app/theme/button.h"
#include "app/theme/segmented_control.h"
#include "app/theme/toggle.h"
#include "tests/support/screen_house.h"

namespace gruk {

namespace {

namespace fs = std::filesystem;

constexpr int repeats = 20;

/// What Return does to a class of button.
enum class Return { presses, nothing };

struct ButtonClass {
    std::string name;
    Return meaning;
    /// Makes one below `window`, or a widget that has one in it.
    std::function<QWidget*(Theme& theme, QWidget* window)> make;
};

/// The window of the folders is a realm's; the rest stand by themselves.
class KeyPressTest : public testing::Test {
protected:
    [[nodiscard]] std::vector<ButtonClass> classes()
    {
        const QString text = QStringLiteral("Name");
        return {
            {"Button", Return::presses,
             [=](Theme& theme, QWidget* window) {
                 return new Button(theme, Button::Kind::secondary, text, window);
             }},
            {"ElidedLink", Return::presses,
             [=](Theme& theme, QWidget* window) {
                 return new ElidedLink(theme, TextStyle::small, window);
             }},
            {"DisclosureButton", Return::presses,
             [=](Theme& theme, QWidget* window) {
                 return new DisclosureButton(theme, text, text, window);
             }},
            {"SidebarLink", Return::presses,
             [=](Theme& theme, QWidget* window) {
                 return new SidebarLink(theme, Icon::house, text, window);
             }},
            {"Toggle", Return::presses,
             [=](Theme& theme, QWidget* window) { return new Toggle(theme, text, window); }},
            {"IconButton", Return::presses,
             [=](Theme& theme, QWidget* window) {
                 return new IconButton(theme, Icon::trash, text, IconButton::Place::row, window);
             }},
            {"SelectionBox", Return::presses,
             [](Theme& theme, QWidget* window) { return new SelectionBox(theme, window); }},
            {"ShieldButton", Return::presses,
             [this](Theme& theme, QWidget* window) {
                 return new ShieldButton(*house.model, theme, window);
             }},
            {"RealmRow", Return::presses,
             [](Theme& theme, QWidget* window) {
                 return new RealmRow(theme, Grant(), RealmIdentity(), window);
             }},
            {"RealmCard", Return::presses,
             [](Theme& theme, QWidget* window) { return new RealmCard(theme, window); }},
            {"Crumb", Return::presses,
             [](Theme& theme, QWidget* window) {
                 return new Crumb(theme, FileURL("/home"), Crumb::Place::onTheWay, Role::fern,
                                  window);
             }},
            {"SortButton", Return::presses,
             [this](Theme& theme, QWidget* window) -> QWidget* {
                 auto* header = new BrowseHeader(theme, window);
                 header->setModel(&rows);
                 return header;
             }},
            // The arrow keys choose, and nothing is left for Return.
            {"PaletteRow", Return::nothing,
             [](Theme& theme, QWidget* window) {
                 return new PaletteRow(theme, AppPaletteTheme::ember, window);
             }},
            {"ShieldChoice", Return::nothing,
             [](Theme& theme, QWidget* window) {
                 return new ShieldChoice(theme, ShieldField::shape, 1, window);
             }},
            {"Segment", Return::nothing,
             [=](Theme& theme, QWidget* window) {
                 return new SegmentedControl(theme, {text, text}, text, window);
             }},
        };
    }

    KeyPressTest()
    {
        // Whose shield can be changed.
        house.makeRealm("Home");
        house.settle();
    }

    test::ScreenHouse house;
    ScanNodeModel rows{house.model->session()};
};

/// Every class of button that the sources declare.
std::set<std::string> declaredButtons()
{
    static const std::regex declaration(
        R"(class (\w+)(?: final)?\s*: public (?:Q\w*(?:Button|CheckBox)|Button|IconButton) )");
    std::set<std::string> names;
    for (const char* folder : {"app/screens", "app/theme"}) {
        for (const auto& entry : fs::directory_iterator(fs::path(GRUK_SOURCE_DIRECTORY) / folder)) {
            std::stringstream text;
            text << std::ifstream(entry.path()).rdbuf();
            const std::string all = text.str();
            for (std::sregex_iterator at(all.begin(), all.end(), declaration), end; at != end;
                 ++at) {
                names.insert((*at)[1]);
            }
        }
    }
    return names;
}

void send(QObject& receiver, QEvent::Type type, Qt::Key key, bool isRepeat)
{
    QKeyEvent event(type, key, Qt::NoModifier, {}, isRepeat);
    QCoreApplication::sendEvent(&receiver, &event);
}

/// How often the button is pressed by a key that is held down and let go.
int pressesWhileHeld(QAbstractButton& button, Qt::Key key)
{
    int presses = 0;
    QObject context;
    QObject::connect(&button, &QAbstractButton::clicked, &context, [&presses] { ++presses; });
    if (auto* box = qobject_cast<SelectionBox*>(&button)) {
        QObject::connect(box, &SelectionBox::toggleRequested, &context, [&presses] { ++presses; });
    }
    send(button, QEvent::KeyPress, key, false);
    for (int repeat = 0; repeat < repeats; ++repeat) {
        send(button, QEvent::KeyRelease, key, true);
        send(button, QEvent::KeyPress, key, true);
    }
    send(button, QEvent::KeyRelease, key, false);
    return presses;
}

}  // namespace

TEST_F(KeyPressTest, aKeyThatIsHeldPressesEveryClassOfButtonOnce)
{
    for (const ButtonClass& each : classes()) {
        for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space}) {
            QWidget window;
            QWidget* made = each.make(house.theme, &window);
            auto* button = qobject_cast<QAbstractButton*>(made);
            button = button != nullptr ? button : made->findChild<QAbstractButton*>();
            ASSERT_NE(button, nullptr) << each.name;
            const bool isPressed = key == Qt::Key_Space || each.meaning == Return::presses;
            EXPECT_EQ(pressesWhileHeld(*button, key), isPressed ? 1 : 0)
                << each.name << ", key " << key;
        }
    }
}

TEST_F(KeyPressTest, noClassOfButtonIsLeftOut)
{
    std::set<std::string> known = {// It never has the focus.
                                   "FoldButton"};
    for (const ButtonClass& each : classes()) {
        known.insert(each.name);
    }
    EXPECT_EQ(declaredButtons(), known);
}

}  // namespace gruk
