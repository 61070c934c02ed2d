#pragma once

#include <optional>

#include <QPushButton>
#include <QVariantAnimation>

#include "app/theme/icons.h"
#include "app/theme/theme.h"

namespace gruk {

class GrukTactileButtonStyle;

/// A button with the press of the house. Return and Space press it.
class Button : public QPushButton {
    Q_OBJECT

public:
    enum class Kind {
        /// The one action of a page.
        primary,
        secondary,
        /// One that takes something away: outlined in red, never filled, never the default. No
        /// palette has a red that can be read on paper, so its text is ink.
        destructive,
        /// Text alone, underlined under the pointer.
        link,
    };

    Button(Theme& theme, Kind kind, const QString& text, QWidget* parent = nullptr);

    /// The icon before the text.
    void setSymbol(Icon icon);
    /// Puts the words of a link on the line of the buttons that it stands beside, which their
    /// shadow lifts.
    void setBesideButtons();
    /// Turned by so many degrees, clockwise.
    void setSymbolTurn(double degrees);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;

    [[nodiscard]] Theme& theme() const { return theme_; }
    [[nodiscard]] const GrukTactileButtonStyle& press() const { return *press_; }

private:
    [[nodiscard]] int iconWidth() const;
    [[nodiscard]] QColor textColour() const;
    void paintGround(QPainter& painter, const QRectF& body) const;
    void paintContent(QPainter& painter, const QRectF& body) const;

    Theme& theme_;
    Kind kind_;
    GrukTactileButtonStyle* press_;
    std::optional<Icon> symbol_;
    double symbolTurn_ = 0;
    int lift_ = 0;
};

/// A link that gives way: elided where it does not fit, whole in its tooltip and to assistive
/// technology.
class ElidedLink : public Button {
    Q_OBJECT

public:
    ElidedLink(Theme& theme, TextStyle style, QWidget* parent = nullptr);

    void setFullText(const QString& text);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    QString fullText_;
};

/// A link with a chevron that opens and closes what stands under it.
class DisclosureButton : public Button {
    Q_OBJECT

public:
    DisclosureButton(Theme& theme, const QString& closedText, const QString& openText,
                     QWidget* parent = nullptr);

    [[nodiscard]] bool isOpen() const { return isChecked(); }
    void setOpen(bool open) { setChecked(open); }

    /// The same open and closed, so that it does not move away under the pointer.
    [[nodiscard]] QSize sizeHint() const override;

private:
    void showState();

    QString closedText_;
    QString openText_;
    QVariantAnimation turn_;
};

}  // namespace gruk
