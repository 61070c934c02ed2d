#pragma once

#include <optional>
#include <set>
#include <string>

#include <QAbstractListModel>

#include "app/model/app_model.h"

namespace gruk {

/// The places of the open realm that its latest patrol could not see, each with the reason, in the
/// order of the snapshot. However many they are, none is copied.
class UnseenPlacesModel : public QAbstractListModel {
    Q_OBJECT

public:
    enum Role {
        reasonRole = Qt::UserRole,
        /// Whether the place can be granted as a realm of its own.
        offersGrantRole,
    };

    explicit UnseenPlacesModel(AppModel& model, QObject* parent = nullptr);
    ~UnseenPlacesModel() override;

    /// Takes both from the model.
    void showSnapshot();
    void showGrants();

    [[nodiscard]] FileURL place(int row) const;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;

private:
    [[nodiscard]] const ScanIssue& issue(int row) const;
    [[nodiscard]] bool isRealm(int row) const;
    [[nodiscard]] bool offersGrant(int row) const;

    AppModel& model_;
    /// None while there is nothing to list.
    AppModel::Snapshot snapshot_;
    std::set<std::string> granted_;
};

}  // namespace gruk
