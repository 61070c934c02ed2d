#pragma once

#include <optional>

#include <QPushButton>

#include "app/theme/label.h"
#include "app/theme/tactile_press.h"
#include "core/actions/grant.h"
#include "core/realm/realm_identity.h"
#include "platform/foundation/file_url.h"

namespace gruk {

class RealmShieldView;

/// A realm in the sidebar that can be opened: its shield, and its name over its path.
class RealmRow : public QPushButton {
    Q_OBJECT

public:
    RealmRow(Theme& theme, const Grant& grant, const RealmIdentity& identity,
             QWidget* parent = nullptr);

    /// Repaints the shield, if it is another one.
    void setIdentity(const RealmIdentity& identity);

    /// Marks the realm whose page shows.
    void setActive(bool isActive);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void paintTexts(QPainter& painter, const QRectF& bounds) const;

    Theme& theme_;
    GrukTactileButtonStyle* press_;
    RealmIdentity identity_;
    QString name_;
    QString path_;
    bool isActive_ = false;
};

/// A realm whose directory is not at its place, with the way to bring it back. Where the directory
/// was found under another name, that is the way.
class DisconnectedRealmRow : public QWidget {
    Q_OBJECT

public:
    DisconnectedRealmRow(Theme& theme, const Grant& grant, const RealmIdentity& identity,
                         const std::optional<FileURL>& nowCalled = std::nullopt,
                         QWidget* parent = nullptr);

    void setIdentity(const RealmIdentity& identity);

Q_SIGNALS:
    void regrantRequested();
    void renamingRequested();

private:
    RealmShieldView* shield_;
};

}  // namespace gruk
