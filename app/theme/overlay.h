#pragma once

#include <set>

#include <QAbstractButton>
#include <QPointer>
#include <QWidget>

#include "app/theme/theme.h"

class QVBoxLayout;

namespace gruk {

class Card;

/// A card over its window, which is dimmed and out of reach until the card is closed: neither the
/// pointer, nor Tab, nor a shortcut of the window (but the one that quits) gets past it. It is no
/// window of its own. The base of `Sheet` and `Popover`.
///
/// Input that began before it opened is none of its own: it hears neither the repeats nor the
/// release of a key that was down already, nor the second click of a double click that opened it.
///
/// Closed, it gives the focus back to what had it, and deletes itself. The end of the widget that
/// it was opened for rejects it.
class Overlay : public QWidget {
    Q_OBJECT

public:
    /// Where the content goes. It has the padding and the gaps of the house.
    [[nodiscard]] QVBoxLayout* column() const { return column_; }

    /// What has the focus at first, instead of the first control that can have it.
    void setInitialFocus(QWidget* widget) { initialFocus_ = widget; }
    /// What Return presses where the control that has the focus makes nothing of it.
    void setDefaultButton(QAbstractButton* button) { defaultButton_ = button; }

    void open();
    /// Closes it once; what is closed stays so.
    void accept();
    void reject();

    [[nodiscard]] bool isOpen() const { return isOpen_; }

    bool eventFilter(QObject* watched, QEvent* event) override;

Q_SIGNALS:
    void accepted();
    void rejected();
    /// After either of the two.
    void finished();

protected:
    /// Over the window of `owner`, hidden until `open`.
    Overlay(Theme& theme, const QString& accessibleName, QWidget* owner);

    [[nodiscard]] Theme& theme() const { return theme_; }
    [[nodiscard]] Card& card() const { return *card_; }
    /// How large the card is to be: as its content asks for, within the window.
    [[nodiscard]] QSize cardSize() const;
    /// Gives the card its place in the window.
    virtual void placeCard() = 0;
    /// The pointer was pressed beside the card.
    virtual void pressedOutside() {}

    bool event(QEvent* event) override;
    bool focusNextPrevChild(bool next) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    enum class Answer { yes, no };

    void close(Answer answer);
    void fitWindow();
    [[nodiscard]] bool holds(const QObject* object) const;
    [[nodiscard]] bool canTakeFocus(const QWidget& widget) const;
    [[nodiscard]] QWidget* nextControl(QWidget* from, bool forwards) const;
    [[nodiscard]] bool beganBefore(const QEvent& event);

    Theme& theme_;
    Card* card_;
    QVBoxLayout* column_;
    QPointer<QWidget> previousFocus_;
    QPointer<QWidget> initialFocus_;
    QPointer<QAbstractButton> defaultButton_;
    std::set<int> keysDown_;
    bool wasPressed_ = false;
    quint64 strayClick_ = 0;
    bool isOpen_ = false;
    bool isClosed_ = false;
};

}  // namespace gruk
