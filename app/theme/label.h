#pragma once

#include <QLabel>

#include "app/theme/icons.h"
#include "app/theme/theme.h"

namespace gruk {

/// Plain text in one of the theme's fonts and colours. Never takes markup. One that wraps does so
/// between words, and within one that is too long for a line, so that no name makes it wider than
/// its place.
class Label : public QLabel {
    Q_OBJECT

public:
    Label(Theme& theme, TextStyle style, QWidget* parent = nullptr);

    /// In this role, or in the nearest that can be read (`textRole`).
    void setColour(Role role, double opacity = Strength::full);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;
    [[nodiscard]] int heightForWidth(int width) const override;

protected:
    [[nodiscard]] Theme& theme() const { return theme_; }
    void paintEvent(QPaintEvent* event) override;

private:
    void recolour();

    Theme& theme_;
    Role role_ = Role::ink;
    double opacity_ = Strength::full;
};

/// Plain text of any length, on as many lines as it takes.
[[nodiscard]] Label* paragraph(Theme& theme, TextStyle style, const QString& text = {});

/// One line of text that gives way: elided where it does not fit, whole in its tooltip and to
/// assistive technology.
class ElidedLabel : public Label {
    Q_OBJECT

public:
    ElidedLabel(Theme& theme, TextStyle style, Qt::TextElideMode mode, QWidget* parent = nullptr);

    void setFullText(const QString& text);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Qt::TextElideMode mode_;
};

/// One icon. Decoration: what it means stands beside it in words.
class IconLabel : public QWidget {
    Q_OBJECT

public:
    IconLabel(Theme& theme, Icon icon, int size, QWidget* parent = nullptr);

    void setIcon(Icon icon);
    /// The accent is the one that shows on the paper of the scheme in force.
    void setColour(Role role, double opacity = Strength::full);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Theme& theme_;
    Icon icon_;
    Role role_ = Role::ink;
    double opacity_ = Strength::full;
};

}  // namespace gruk
