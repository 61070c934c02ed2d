#include "app/screens/browse_empty_note.h"

#include <QVBoxLayout>

#include "app/theme/art.h"

namespace gruk {

namespace {

constexpr int longestFilterShown = 40;

}  // namespace

BrowseEmptyNote::BrowseEmptyNote(Theme& theme, QWidget* parent)
    : QWidget(parent), sentence_(new Label(theme, TextStyle::body)),
      clearFilter_(new Button(theme, Button::Kind::link, QStringLiteral("Clear filter")))
{
    auto* gruk = new ArtView(theme, Art::grukStateMap, QString());
    gruk->setFixedSize(Measure::noteHero, Measure::noteHero);
    sentence_->setObjectName(QStringLiteral("emptySentence"));
    sentence_->setColour(Role::ink, Strength::quiet);
    // What lies on rows would take the colour of their text.
    sentence_->setForegroundRole(QPalette::WindowText);
    sentence_->setAlignment(Qt::AlignCenter);
    sentence_->setWordWrap(true);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(Measure::wide, Measure::wide, Measure::wide, Measure::wide);
    column->setSpacing(Measure::medium);
    column->addStretch();
    column->addWidget(gruk, 0, Qt::AlignHCenter);
    column->addWidget(sentence_);
    column->addWidget(clearFilter_, 0, Qt::AlignHCenter);
    column->addStretch();
}

void BrowseEmptyNote::setSentence(const QString& sentence)
{
    sentence_->setText(sentence);
}

QString emptyFolderSentence(EmptyReason reason)
{
    switch (reason) {
    case EmptyReason::isEmpty:
        return QStringLiteral("Nothing in here. The Gruk looked twice.");
    case EmptyReason::isRefused:
        return QStringLiteral("This folder is closed to the Gruk.");
    case EmptyReason::isGone:
        return QStringLiteral("This folder is not here any more.");
    case EmptyReason::isUnreadable:
        break;
    }
    return QStringLiteral("The Gruk cannot read this folder.");
}

QString nothingFilteredSentence(const QString& filter)
{
    const QString shown = filter.size() > longestFilterShown
                              ? filter.left(longestFilterShown) + QStringLiteral("…")
                              : filter;
    return QStringLiteral("Nothing here has “%1” in its name.").arg(shown);
}

}  // namespace gruk
