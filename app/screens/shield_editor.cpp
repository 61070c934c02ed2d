#include "app/screens/shield_editor.h"

#include <chrono>
#include <utility>

#include <QCoreApplication>
#include <QHBoxLayout>

#include "app/screens/realm_map_backdrop.h"
#include "app/screens/shield_choice.h"
#include "app/screens/shield_view.h"
#include "app/theme/button.h"
#include "app/theme/label.h"

namespace gruk {

namespace {

constexpr QSize editorLand{112, 88};
constexpr int editorShield = 64;
/// Longer than the pause between two repeats of a key that is held.
constexpr std::chrono::milliseconds timeToRest{250};

}  // namespace

ShieldEditorPopover::ShieldEditorPopover(Theme& theme, QWidget& anchor,
                                         const RealmIdentity& identity, OnChange onChange,
                                         OnReset onReset)
    : Popover(theme, QStringLiteral("Customise this realm's shield"), anchor), draft_(identity),
      kept_(identity), rest_(new QTimer(this)), onChange_(std::move(onChange)),
      onReset_(std::move(onReset))
{
    setObjectName(QStringLiteral("shieldEditor"));
    column()->setSpacing(Measure::small);
    column()->addWidget(makeHead());
    for (const ShieldField field : shieldFields) {
        auto* row = new ShieldChoiceRow(theme, field);
        rows_.push_back(row);
        column()->addWidget(row);
        connect(row, &ShieldChoiceRow::chosen, this,
                [this, field](int choice) { choose(withChoice(draft_, field, choice)); });
    }
    auto* reset =
        new Button(theme, Button::Kind::link, QStringLiteral("Back to the Gruk's design"));
    auto* done = new Button(theme, Button::Kind::secondary, QStringLiteral("Done"));
    auto* foot = new QHBoxLayout;
    foot->addWidget(reset);
    foot->addStretch();
    foot->addWidget(done);
    column()->addLayout(foot);
    setDefaultButton(done);
    connect(reset, &QPushButton::clicked, this, &ShieldEditorPopover::reset);
    connect(done, &QPushButton::clicked, this, &Overlay::accept);
    rest_->setObjectName(QStringLiteral("rest"));
    rest_->setSingleShot(true);
    rest_->setInterval(timeToRest);
    connect(rest_, &QTimer::timeout, this, &ShieldEditorPopover::keep);
    connect(this, &Overlay::finished, this, &ShieldEditorPopover::keep);
    connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, this,
            &ShieldEditorPopover::keep);
    showDraft();
}

QWidget* ShieldEditorPopover::makeHead()
{
    auto* head = new QWidget;
    land_ = new RealmMapBackdrop(theme(), draft_);
    land_->setFixedSize(editorLand);
    shield_ = new RealmShieldView(theme(), draft_);
    shield_->setFixedSize(editorShield, editorShield);
    auto* middle = new QHBoxLayout(land_);
    middle->setContentsMargins(0, 0, 0, 0);
    middle->addWidget(shield_, 0, Qt::AlignCenter);
    auto* words = new Label(theme(), TextStyle::lead);
    words->setText(
        QStringLiteral("Your realm, your colours. The Gruk just paints what you choose."));
    words->setWordWrap(true);
    auto* row = new QHBoxLayout(head);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(Measure::large);
    row->addWidget(land_);
    row->addWidget(words, 1);
    return head;
}

void ShieldEditorPopover::showDraft()
{
    land_->setIdentity(draft_);
    shield_->setIdentity(draft_);
    for (ShieldChoiceRow* row : rows_) {
        row->setDraft(draft_);
    }
}

void ShieldEditorPopover::choose(const RealmIdentity& identity)
{
    if (identity == draft_) {
        return;
    }
    draft_ = identity;
    showDraft();
    // A key that is held down chooses faster than a disk writes.
    rest_->start();
}

void ShieldEditorPopover::keep()
{
    rest_->stop();
    if (draft_ != kept_) {
        kept_ = draft_;
        onChange_(draft_);
    }
}

void ShieldEditorPopover::reset()
{
    // Should that fail, the realm keeps what was chosen.
    keep();
    draft_ = onReset_();
    kept_ = draft_;
    showDraft();
}

void openShieldEditor(AppModel& model, Theme& theme, QWidget& shieldButton)
{
    if (!model.activeRootURL()) {
        return;
    }
    const std::string path = model.activeRootURL()->path();
    auto* editor = new ShieldEditorPopover(
        theme, shieldButton, model.activeRealmIdentity(),
        [&model, path](const RealmIdentity& identity) { model.saveShield(identity, path); },
        [&model, path] {
            model.resetShield(path);
            return model.realmIdentityStore().identity(path);
        });
    QObject::connect(&model, &AppModel::activeRootURLChanged, editor, [editor, &model, path] {
        if (!model.activeRootURL() || model.activeRootURL()->path() != path) {
            editor->reject();
        }
    });
    editor->open();
}

}  // namespace gruk
