#pragma once

#include "app/model/app_model.h"
#include "app/theme/art.h"
#include "app/theme/paper_backdrop.h"

class QBoxLayout;

namespace gruk {

/// What a first start shows: what Gruk does, what it promises, and the one thing to do. The Gruk
/// stands beside it, or over it where there is little room, and nowhere where there is none.
class GrukWelcomeView : public PaperBackdrop {
    Q_OBJECT

public:
    GrukWelcomeView(AppModel& model, Theme& theme, QWidget* parent = nullptr);

    /// What the words need.
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    [[nodiscard]] QBoxLayout* makeWords(AppModel& model, Theme& theme);

    QBoxLayout* halves_;
    ArtView* hero_;
};

}  // namespace gruk
