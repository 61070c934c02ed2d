#pragma once

#include <functional>
#include <string>

#include <QAbstractButton>
#include <QWidget>

namespace gruk::test {

/// Somebody at the window: looks at what can be seen, and uses the mouse and the keys on it. What
/// is not on the screen is scrolled to first, and what is asked for and never comes fails the test
/// by an exception that names it.
class WindowUser {
public:
    /// `pictures` is a folder that gets a picture of each step; empty for none. They are numbered
    /// from `taken` on.
    explicit WindowUser(QWidget& window, std::string pictures = {}, int taken = 0);

    /// Lets the program go on until `holds`, or fails after a long time.
    void until(const std::string& what, const std::function<bool()>& holds) const;

    /// Whether some label or button that can be seen reads so, or holds that as a part.
    [[nodiscard]] bool sees(const QString& text) const;
    [[nodiscard]] bool seesPart(const QString& text) const;
    void waitToSee(const QString& text) const;

    /// Clicks the button with that text inside `place`, anywhere in the window without one.
    void click(const QString& text, const QWidget* place = nullptr) const;
    void clickOn(QWidget& widget, QPoint at = {}) const;
    void contextMenu(QWidget& widget, const QString& entry) const;
    /// Presses a key on what has the focus.
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) const;
    void type(QWidget& field, const QString& text) const;

    /// The widget of that name that can be seen; waits for it.
    [[nodiscard]] QWidget& named(const char* objectName) const;

    template <typename Widget>
    [[nodiscard]] QList<Widget*> all() const
    {
        QList<Widget*> shown;
        for (Widget* widget : window_.findChildren<Widget*>()) {
            if (widget->isVisible()) {
                shown.append(widget);
            }
        }
        return shown;
    }

    /// Takes a picture of the step that has just been made.
    void show(const std::string& step);
    [[nodiscard]] int picturesTaken() const { return taken_; }

private:
    [[nodiscard]] QAbstractButton* button(const QString& text, const QWidget* place) const;
    void bringIntoView(QWidget& widget) const;

    QWidget& window_;
    std::string pictures_;
    int taken_;
};

}  // namespace gruk::test
