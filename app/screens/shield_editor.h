#pragma once

#include <functional>
#include <vector>

#include <QTimer>
#include <QWidget>

#include "app/model/app_model.h"
#include "app/theme/popover.h"
#include "core/realm/realm_identity.h"

namespace gruk {

class RealmMapBackdrop;
class RealmShieldView;
class ShieldChoiceRow;

/// Lets the user repaint a realm's shield. Each choice is shown at once, and kept as soon as no
/// other follows it: there is nothing to confirm and nothing to lose.
///
/// `onChange` is called on the main thread with the identity that the choices have come to: when
/// they rest, and at the latest when the popover closes or the program quits; never for what it was
/// given last. `onReset` takes the user's choices back and returns the identity to go on with.
class ShieldEditorPopover : public Popover {
    Q_OBJECT

public:
    using OnChange = std::function<void(const RealmIdentity& identity)>;
    using OnReset = std::function<RealmIdentity()>;

    ShieldEditorPopover(Theme& theme, QWidget& anchor, const RealmIdentity& identity,
                        OnChange onChange, OnReset onReset);

    /// What the user has chosen so far, whether or not it could be kept.
    [[nodiscard]] const RealmIdentity& draft() const { return draft_; }

private:
    [[nodiscard]] QWidget* makeHead();
    void showDraft();
    void choose(const RealmIdentity& identity);
    void reset();
    void keep();

    RealmIdentity draft_;
    /// What the realm has, but for choices that have not come to rest.
    RealmIdentity kept_;
    QTimer* rest_;
    OnChange onChange_;
    OnReset onReset_;
    RealmMapBackdrop* land_ = nullptr;
    RealmShieldView* shield_ = nullptr;
    std::vector<ShieldChoiceRow*> rows_;
};

/// Opens the editor of the active realm's shield beside `shieldButton`. Each choice is saved; it
/// closes when another realm becomes the active one. Does nothing while no realm is.
void openShieldEditor(AppModel& model, Theme& theme, QWidget& shieldButton);

}  // namespace gruk
