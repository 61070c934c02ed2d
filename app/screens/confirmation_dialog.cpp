#include "app/screens/confirmation_dialog.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>

#include "app/theme/label.h"
#include "app/theme/scroll_keys.h"

namespace gruk {

namespace {

/// The title of a question about a long name takes more lines, and no more room to the side.
constexpr int widestTitle = 2 * Measure::dialogTextWidth - 4 * Measure::huge;

/// As tall as its words, and where the window has no room for all of them, as tall as it can be.
class WordsArea : public QScrollArea {
public:
    explicit WordsArea(QWidget* words)
    {
        setFrameShape(QFrame::NoFrame);
        setFocusPolicy(Qt::NoFocus);
        setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        setWidgetResizable(true);
        setWidget(words);
        words->setAutoFillBackground(false);
        viewport()->setAutoFillBackground(false);
        setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    }

    [[nodiscard]] QSize sizeHint() const override { return widget()->sizeHint(); }
    [[nodiscard]] QSize minimumSizeHint() const override
    {
        return {widget()->minimumSizeHint().width(), Measure::huge};
    }
    [[nodiscard]] bool hasHeightForWidth() const override { return true; }
    [[nodiscard]] int heightForWidth(int width) const override
    {
        return widget()->heightForWidth(width);
    }
};

}  // namespace

ConfirmationDialog::ConfirmationDialog(Theme& theme, const Confirmation& confirmation,
                                       QWidget* anyWidget)
    : Sheet(theme, confirmation.title, anyWidget)
{
    setAccessibleDescription(confirmation.message);
    auto* title = new Label(theme, TextStyle::sectionTitle);
    title->setText(confirmation.title);
    title->setWordWrap(true);
    title->setMaximumWidth(widestTitle);
    auto* message = new Label(theme, TextStyle::body);
    message->setText(confirmation.message);
    message->setWordWrap(true);
    message->setMinimumWidth(Measure::dialogTextWidth);
    auto* words = new QWidget;
    auto* lines = new QVBoxLayout(words);
    lines->setContentsMargins(0, 0, 0, 0);
    lines->setSpacing(Measure::medium);
    lines->addWidget(title);
    lines->addWidget(message);
    auto* area = new WordsArea(words);
    scrollBar_ = area->verticalScrollBar();

    auto* refusal = new Button(theme, Button::Kind::secondary, confirmation.refusal);
    auto* action = new Button(theme, confirmation.actionKind, confirmation.action);
    refusal->setDefault(true);
    setDefaultButton(refusal);
    setInitialFocus(refusal);

    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(Measure::small);
    buttons->addStretch();
    buttons->addWidget(refusal);
    buttons->addWidget(action);
    column()->addWidget(area);
    column()->addSpacing(Measure::small);
    column()->addLayout(buttons);

    connect(refusal, &QPushButton::clicked, this, &Overlay::reject);
    connect(action, &QPushButton::clicked, this, &Overlay::accept);
}

void ConfirmationDialog::keyPressEvent(QKeyEvent* event)
{
    if (!scrolledByKey(*scrollBar_, *event)) {
        Sheet::keyPressEvent(event);
    }
}

}  // namespace gruk
