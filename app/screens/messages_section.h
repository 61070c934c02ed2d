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
    };

    MessagesSection(AppModel& model, Theme& theme, Place place, QWidget* parent = nullptr);

    [[nodiscard]] bool isEmpty() const { return isEmpty_; }

Q_SIGNALS:
    /// It shows what the model says now.
    void shown();

private:
    [[nodiscard]] QString coverage() const;
    void showModel();
    void showFiling();

    AppModel& model_;
    Place place_;
    bool isEmpty_ = true;
    StatusBanner* coverage_;
    StatusBanner* error_;
    Theme& theme_;
    StatusBanner* filing_;
    StatusBanner* action_;
};

}  // namespace gruk
