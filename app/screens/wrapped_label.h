#pragma once

#include <QStringList>

#include "app/theme/label.h"

namespace gruk {

/// Text that may have a long name in it: wraps between words, and within one that is too long for a
/// line. What does not fit into `mostLines` is elided, and whole in the tooltip and to assistive
/// technology.
class WrappedLabel : public Label {
    Q_OBJECT

public:
    WrappedLabel(Theme& theme, TextStyle style, int mostLines, QWidget* parent = nullptr);

    void setFullText(const QString& text);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;
    [[nodiscard]] bool hasHeightForWidth() const override { return true; }
    [[nodiscard]] int heightForWidth(int width) const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    /// The lines that are shown at that width.
    [[nodiscard]] QStringList lines(int width) const;

    int mostLines_;
};

}  // namespace gruk
