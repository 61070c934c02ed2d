#pragma once

#include <optional>
#include <utility>
#include <vector>

#include <QWidget>

#include "app/model/app_model.h"
#include "app/theme/theme.h"

class QVBoxLayout;

namespace gruk {

class DesktopTidySection;
class DisconnectedRealmRow;
class RealmRow;

/// The left of the window: the realms and well-known places, the way to grant another, the Desktop,
/// and a patrol of everything.
class SidebarView : public QWidget {
    Q_OBJECT

public:
    SidebarView(AppModel& model, Theme& theme, QWidget* parent = nullptr);

    /// Looks again which realms are connected: a disk may have come or gone.
    void refresh();

Q_SIGNALS:
    void stashRequested();
    void organiseRequested(const gruk::OrganisePlan& plan, const gruk::FileURL& realm);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    /// What a row shows.
    struct ShownRealm {
        Grant grant;
        bool isConnected = false;
        /// Where a realm that is not connected was found.
        std::optional<FileURL> nowCalled;

        friend bool operator==(const ShownRealm&, const ShownRealm&) = default;
    };

    [[nodiscard]] QWidget* makeBrand();
    [[nodiscard]] QWidget* makePlaces();
    [[nodiscard]] QWidget* makePatrolAll();
    [[nodiscard]] QWidget* scrolling(QWidget* content);
    void showRealms();
    void showShortcuts();
    void showShields();
    /// Puts what was made anew in its place for Tab.
    void chainRows();
    [[nodiscard]] RealmIdentity identityOf(const Grant& grant) const;
    void addRow(const ShownRealm& realm);
    void showContextMenu(QWidget& row, const ShownRealm& realm, const QPoint& at);
    void confirmRemoval(const Grant& grant);
    void confirmRenaming(const Grant& grant);

    AppModel& model_;
    Theme& theme_;
    QWidget* back_ = nullptr;
    QVBoxLayout* rows_ = nullptr;
    QVBoxLayout* shortcuts_ = nullptr;
    DesktopTidySection* tidy_ = nullptr;
    QStringList shownShortcuts_;
    std::vector<ShownRealm> shown_;
    std::vector<std::pair<Grant, RealmRow*>> realmRows_;
    std::vector<std::pair<Grant, DisconnectedRealmRow*>> disconnectedRows_;
};

}  // namespace gruk
