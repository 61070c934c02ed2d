#pragma once

#include <functional>
#include <vector>

#include "app/theme/button.h"
#include "app/theme/card.h"

class QHBoxLayout;

namespace gruk {

class Label;

/// What a banner's button does.
struct BannerAction {
    QString label = QStringLiteral("Undo");
    std::function<void()> run;
    /// What exactly it does, where the sentence beside it need not tell; else empty.
    QString description = {};
    /// What assistive technology calls it where the label could be taken for another's; else empty.
    QString spokenName = {};
};

/// A card with one sentence that wraps, an icon, a bar of its colour at the left, and at the right
/// at most one action, or several under the words.
class StatusBanner : public Card {
    Q_OBJECT

public:
    StatusBanner(Theme& theme, Role colour, Icon icon, QWidget* parent = nullptr);

    /// Shows the banner with this sentence, or hides it for none. An empty action has no button.
    void setMessage(const QString& message, BannerAction action = {});

    /// What else can be done about it, in buttons under the sentence.
    void setChoices(const std::vector<BannerAction>& choices);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Role colour_;
    Label* message_;
    Button* button_;
    BannerAction action_;
    QHBoxLayout* choices_;
    std::vector<QString> shownChoices_;
};

}  // namespace gruk
