#pragma once

#include <QWidget>

#include "app/model/app_model.h"
#include "app/screens/status_banner.h"

namespace gruk {

/// What happened and what did not, each a banner, with the way back where there is one.
class MessagesSection : public QWidget {
    Q_OBJECT

public:
    enum class Place {
        /// Among the figures of the open realm: also what they leave out, and what can be filed
        /// there.
        realmPage,
        /// Over a page of whatever kind: only what the last operation said.
        anyPage,
        /// Over the page of a realm that has them as well, where they are out of view.
        echo,
    };

    MessagesSection(AppModel& model, Theme& theme, Place place, QWidget* parent = nullptr);

    [[nodiscard]] bool isEmpty() const { return isEmpty_; }
    /// Where it says what the last operation did and did not; null while it says neither.
    [[nodiscard]] QRect whatHappened() const;

Q_SIGNALS:
    /// It shows what the model says now.
    void shown();

private:
    [[nodiscard]] QString coverage() const;
    /// What can be done about the error.
    [[nodiscard]] std::vector<BannerAction> choices() const;
    void showModel();
    void showFiling();

    AppModel& model_;
    Theme& theme_;
    Place place_;
    bool isEmpty_ = true;
    StatusBanner* coverage_;
    StatusBanner* error_;
    StatusBanner* filing_;
    StatusBanner* action_;
};

}  // namespace gruk
