#include "tests/support/window_user.h"

#include <chrono>
#include <stdexcept>

#include <QAction>
#include <QApplication>
#include <QEventLoop>
#include <QLabel>
#include <QMenu>
#include <QScrollArea>
#include <QTest>
#include <QTimer>

namespace gruk::test {

namespace {

/// Long enough for any machine, also for one whose disk is busy with something else and makes each
/// save wait; reached only by a failure.
constexpr auto patience = std::chrono::minutes(5);
constexpr auto lookAgain = std::chrono::milliseconds(5);

}  // namespace

WindowUser::WindowUser(QWidget& window, std::string pictures, int taken)
    : window_(window), pictures_(std::move(pictures)), taken_(taken)
{
}

void WindowUser::until(const std::string& what, const std::function<bool()>& holds) const
{
    const auto end = std::chrono::steady_clock::now() + patience;
    QTimer wakes;
    wakes.start(lookAgain);
    while (!holds()) {
        if (std::chrono::steady_clock::now() > end) {
            throw std::runtime_error("never came: " + what);
        }
        QApplication::processEvents(QEventLoop::WaitForMoreEvents);
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}

bool WindowUser::sees(const QString& text) const
{
    for (const QLabel* label : all<QLabel>()) {
        if (label->text() == text) {
            return true;
        }
    }
    return button(text, nullptr) != nullptr;
}

bool WindowUser::seesPart(const QString& text) const
{
    for (const QLabel* label : all<QLabel>()) {
        if (label->text().contains(text)) {
            return true;
        }
    }
    return false;
}

void WindowUser::waitToSee(const QString& text) const
{
    until(text.toStdString(), [&] { return sees(text); });
}

QAbstractButton* WindowUser::button(const QString& text, const QWidget* place) const
{
    const QWidget& within = place != nullptr ? *place : window_;
    for (QAbstractButton* each : within.findChildren<QAbstractButton*>()) {
        if (each->isVisible() && (each->text() == text || each->accessibleName() == text)) {
            return each;
        }
    }
    return nullptr;
}

void WindowUser::bringIntoView(QWidget& widget) const
{
    for (QWidget* above = widget.parentWidget(); above != nullptr; above = above->parentWidget()) {
        if (auto* scroll = qobject_cast<QScrollArea*>(above)) {
            scroll->ensureWidgetVisible(&widget);
        }
    }
    QApplication::processEvents();
}

void WindowUser::click(const QString& text, const QWidget* place) const
{
    until("a button \"" + text.toStdString() + "\" that can be pressed", [&] {
        const QAbstractButton* each = button(text, place);
        return each != nullptr && each->isEnabled();
    });
    clickOn(*button(text, place));
}

void WindowUser::clickOn(QWidget& widget, QPoint at) const
{
    bringIntoView(widget);
    const QPoint place = at.isNull() ? widget.rect().center() : at;
    // What lies on top gets the click, as it would from a hand.
    const QPoint inWindow = widget.mapTo(widget.window(), place);
    QWidget* under = widget.window()->childAt(inWindow);
    if (under == nullptr) {
        under = &widget;
    }
    QTest::mouseClick(under, Qt::LeftButton, {}, under->mapFrom(widget.window(), inWindow));
    QApplication::processEvents();
}

void WindowUser::contextMenu(QWidget& widget, const QString& entry) const
{
    bringIntoView(widget);
    Q_EMIT widget.customContextMenuRequested(widget.rect().center());
    until("the menu entry \"" + entry.toStdString() + "\"",
          [] { return QApplication::activePopupWidget() != nullptr; });
    auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    for (QAction* action : menu->actions()) {
        if (action->text() == entry) {
            QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(action).center());
            return;
        }
    }
    throw std::runtime_error("no such menu entry");
}

void WindowUser::press(Qt::Key key, Qt::KeyboardModifiers modifiers) const
{
    // Without a desktop nobody else says so, and only the active window has keys.
    QApplication::setActiveWindow(&window_);
    QWidget* focus = window_.focusWidget();
    QTest::keyClick(focus != nullptr ? focus : &window_, key, modifiers);
    QApplication::processEvents();
}

void WindowUser::type(QWidget& field, const QString& text) const
{
    clickOn(field);
    QTest::keyClick(&field, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(&field, text);
}

QWidget& WindowUser::named(const char* objectName) const
{
    const QString name = QString::fromLatin1(objectName);
    QWidget* found = nullptr;
    until(objectName, [&] {
        found = window_.findChild<QWidget*>(name);
        return found != nullptr && found->isVisible();
    });
    return *found;
}

void WindowUser::show(const std::string& step)
{
    if (pictures_.empty()) {
        return;
    }
    QApplication::processEvents();
    const std::string number = std::to_string(++taken_);
    const std::string name = (number.size() < 2 ? "0" + number : number) + "-" + step + ".png";
    if (!window_.grab().save(QString::fromStdString(pictures_ + "/" + name))) {
        throw std::runtime_error("cannot write " + name);
    }
}

}  // namespace gruk::test
