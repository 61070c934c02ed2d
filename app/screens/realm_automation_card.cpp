#include "app/screens/realm_automation_card.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include <QHBoxLayout>
#include <QVBoxLayout>

#include "app/screens/file_kind_copy.h"
#include "app/screens/filing_rule_row.h"
#include "app/screens/repaint_once.h"
#include "app/screens/section_title.h"
#include "app/theme/accessible.h"
#include "app/theme/tab_order.h"
#include "app/theme/text.h"

namespace gruk {

namespace {

/// In the order of the cadences.
QStringList cadenceNames()
{
    return {QStringLiteral("Off"), QStringLiteral("Daily"), QStringLiteral("Weekly"),
            QStringLiteral("Stand Guard")};
}

int indexOf(PatrolCadence cadence)
{
    return static_cast<int>(std::ranges::find(allPatrolCadences, cadence)
                            - allPatrolCadences.begin());
}

}  // namespace

RealmAutomationCard::RealmAutomationCard(AppModel& model, Theme& theme, Grant grant,
                                         QWidget* parent)
    : Card(theme, Measure::cardPadding, parent), model_(model), grant_(std::move(grant)),
      realm_(FileURL::directory(FileURL::directory(grant_.path).standardized().path())),
      cadence_(new Picker(theme, cadenceNames(), QStringLiteral("Cadence"))),
      guardNote_(sectionNote(
          theme, QStringLiteral("The Gruk asks the system to tell it the moment anything changes "
                                "here, then patrols once things go quiet — usually within a couple "
                                "of minutes. No constant scanning, and nothing extra sitting in "
                                "memory: it's a standing order with the system, not a clock."))),
      disclosure_(new DisclosureButton(theme, QStringLiteral("Filing rules"),
                                       QStringLiteral("Filing rules"))),
      rows_(new QVBoxLayout), removalNote_(sectionNote(theme, {})),
      undo_(new Button(theme, Button::Kind::link, QStringLiteral("Undo"))),
      removal_(makeRemovalNote()), form_(new FilingRulesForm(theme)), rules_(makeRules())
{
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(Measure::medium);
    column->addLayout(makeCadence());
    column->addWidget(guardNote_);
    column->addWidget(disclosure_, 0, Qt::AlignLeft);
    column->addWidget(rules_);
    rules_->hide();

    connect(cadence_, &QComboBox::activated, this, [this](int index) {
        model_.setCadence(allPatrolCadences.at(static_cast<std::size_t>(index)), grant_);
        // What was refused is not shown.
        showCadence();
    });
    connect(disclosure_, &QAbstractButton::toggled, rules_, &QWidget::setVisible);
    auto* repaint = new RepaintOnce([this] { showCadence(); }, this);
    repaint->on(model_, &AppModel::territoriesAreStaleChanged);
    showCadence();
    showRules();
}

QLayout* RealmAutomationCard::makeCadence()
{
    auto* title = new Label(theme(), TextStyle::bodyStrong);
    title->setText(QStringLiteral("Cadence"));
    auto* line = new QHBoxLayout;
    line->setSpacing(Measure::medium);
    line->addWidget(title);
    line->addWidget(cadence_);
    line->addStretch();
    return line;
}

QWidget* RealmAutomationCard::makeRules()
{
    auto* rules = new QWidget(this);
    auto* list = new QWidget;
    setAccessibleRole(*list, QAccessible::List);
    list->setAccessibleName(QStringLiteral("Filing rules"));
    list->setLayout(rows_);
    rows_->setContentsMargins(0, 0, 0, 0);
    rows_->setSpacing(0);
    auto* column = new QVBoxLayout(rules);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(Measure::medium);
    column->addWidget(sectionNote(
        theme(), QStringLiteral("Tell the Gruk where things go, once. Screenshots into "
                                "Screenshots, installers into Installers — set it and forget it. "
                                "Forgetting is the feature.")));
    column->addWidget(list);
    column->addWidget(removal_);
    column->addWidget(form_);
    connect(form_, &FilingRulesForm::addRequested, this, &RealmAutomationCard::addRule);
    return rules;
}

QWidget* RealmAutomationCard::makeRemovalNote()
{
    auto* note = new QWidget(this);
    setAccessibleRole(*note, QAccessible::Notification);
    auto* line = new QHBoxLayout(note);
    line->setContentsMargins(0, 0, 0, 0);
    line->setSpacing(Measure::medium);
    line->addWidget(removalNote_, 1);
    line->addWidget(undo_);
    connect(undo_, &QPushButton::clicked, this, &RealmAutomationCard::undoRemoval);
    return note;
}

void RealmAutomationCard::showCadence()
{
    const PatrolCadence cadence = model_.cadence(grant_);
    cadence_->setCurrentIndex(indexOf(cadence));
    guardNote_->setVisible(cadence == PatrolCadence::standGuard);
}

void RealmAutomationCard::showRules()
{
    const std::vector<RealmRule> rules = model_.realmRules(realm_);
    removeRows(*rows_);
    shown_.clear();
    for (const RealmRule& rule : rules) {
        auto* row = new FilingRuleRow(theme(), rule);
        connect(row, &FilingRuleRow::removeRequested, this,
                [this, id = rule.id] { removeRule(id); });
        rows_->addWidget(row);
        shown_.push_back(row);
        // At once, so that one of them can have the focus.
        row->show();
    }
    const bool isFull = rules.size() >= RealmRules::maximumRulesPerRealm;
    form_->setFull(isFull);
    showRemoval(isFull);
    chainTabStops(tabStops());
}

void RealmAutomationCard::showRemoval(bool isFull)
{
    // There would be no room for it.
    const bool isOffered = !removed_.empty() && !isFull;
    removal_->setVisible(isOffered);
    if (!isOffered) {
        return;
    }
    const RealmRule& rule = removed_.back().rule;
    const QString text =
        QStringLiteral("Removed: %1 files to %2")
            .arg(nameInSentence(rule.kind), displayName(rule.destinationFolderName));
    removalNote_->setText(text);
    removal_->setAccessibleName(text);
    undo_->setAccessibleDescription(text);
    announce(*removal_);
}

void RealmAutomationCard::addRule(FileKind kind, const QString& name, bool applyAfterPatrol)
{
    model_.addRealmRule(kind, name.toStdString(), applyAfterPatrol, realm_);
    showRules();
    form_->clear();
    if (shown_.size() >= RealmRules::maximumRulesPerRealm) {
        // The form that had the focus is gone.
        focusRule(shown_.size());
    }
}

void RealmAutomationCard::removeRule(const UUID& id)
{
    std::vector<RealmRule> rules = model_.realmRules(realm_);
    const auto found = std::ranges::find(rules, id, &RealmRule::id);
    const auto place = static_cast<std::size_t>(found - rules.begin());
    if (found != rules.end()) {
        const RealmRule removed = *found;
        rules.erase(found);
        model_.saveRealmRules(rules, realm_);
        // Not when it could not be saved: then the rule is still there.
        if (model_.realmRules(realm_) == rules) {
            removed_.push_back({removed, place});
        }
    }
    showRules();
    // The focus stays among the rules: on the one that has moved up.
    focusRule(place);
}

void RealmAutomationCard::undoRemoval()
{
    if (removed_.empty()) {
        return;
    }
    const auto [rule, place] = removed_.back();
    std::vector<RealmRule> rules = model_.realmRules(realm_);
    const std::size_t at = std::min(place, rules.size());
    rules.insert(rules.begin() + static_cast<std::ptrdiff_t>(at), rule);
    model_.saveRealmRules(rules, realm_);
    if (model_.realmRules(realm_) == rules) {
        removed_.pop_back();
    }
    showRules();
    focusRule(at);
}

void RealmAutomationCard::focusRule(std::size_t place)
{
    QWidget* control = removal_->isVisibleTo(rules_) ? undo_ : disclosure_;
    if (!shown_.empty()) {
        control = shown_[std::min(place, shown_.size() - 1)]->removal();
    }
    control->setFocus(Qt::OtherFocusReason);
}

void RealmAutomationCard::setGrant(const Grant& grant)
{
    grant_ = grant;
    showCadence();
}

std::vector<QWidget*> RealmAutomationCard::tabStops() const
{
    std::vector<QWidget*> stops = {cadence_, disclosure_};
    for (const FilingRuleRow* row : shown_) {
        stops.push_back(row->removal());
    }
    stops.push_back(undo_);
    std::ranges::copy(form_->tabStops(), std::back_inserter(stops));
    return stops;
}

}  // namespace gruk
