#pragma once

#include <QRadioButton>
#include <QWidget>

#include "app/screens/shield_field.h"
#include "app/theme/theme.h"

class QButtonGroup;

namespace gruk {

/// One choice of one field, drawn as what it would make of the shield: a field, a charge, a
/// colour, or its name where it shows nowhere. The chosen one has a frame and a tick.
class ShieldChoice : public QRadioButton {
    Q_OBJECT

public:
    ShieldChoice(Theme& theme, ShieldField field, int choice, QWidget* parent = nullptr);

    /// The shield that the choice is about.
    void setDraft(const RealmIdentity& draft);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    [[nodiscard]] bool hitButton(const QPoint& at) const override { return rect().contains(at); }
    void paintEvent(QPaintEvent* event) override;

private:
    void paintChoice(QPainter& painter, const QRectF& room) const;
    void paintMark(QPainter& painter) const;

    Theme& theme_;
    ShieldField field_;
    int choice_;
    RealmIdentity draft_;
};

/// The choices of one field side by side under its title, one of them chosen. Tab goes to the
/// chosen one, the arrow keys choose the next.
class ShieldChoiceRow : public QWidget {
    Q_OBJECT

public:
    ShieldChoiceRow(Theme& theme, ShieldField field, QWidget* parent = nullptr);

    [[nodiscard]] ShieldField field() const { return field_; }
    /// Shows what `draft` has chosen, and each choice in its light. Nothing is emitted.
    void setDraft(const RealmIdentity& draft);

Q_SIGNALS:
    /// The user chose.
    void chosen(int choice);

private:
    ShieldField field_;
    QButtonGroup* group_;
};

}  // namespace gruk
