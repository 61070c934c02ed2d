#pragma once

#include <map>

#include <QElapsedTimer>

#include "app/desktop/activation.h"
#include "app/model/app_model.h"
#include "app/screens/menu_bar_entries.h"
#include "app/theme/paper_backdrop.h"

class QVBoxLayout;

namespace gruk {

class Button;
class WrappedLabel;

/// The panel of the tray item: a small window of its own that says how things stand and has the
/// few things to do. Where a window may choose its place it stands at the item and has no frame;
/// elsewhere it is an ordinary window. Escape closes it, as does the loss of the focus.
class GrukMenuBarView : public PaperBackdrop {
    Q_OBJECT

public:
    GrukMenuBarView(AppModel& model, Theme& theme);

    /// Shows it at the tray item, which is at `anchor`; where that is not known when it is empty.
    void showAt(const QRect& anchor, const ActivationTokens& tokens);
    /// A click on the tray item: shows the panel, or hides it. Does nothing more within the time of
    /// a double click, in which the panel may have gone already because the click took the focus.
    void toggleAt(const QRect& anchor, const ActivationTokens& tokens);

Q_SIGNALS:
    void chosen(gruk::MenuBarItem item);

protected:
    void changeEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    [[nodiscard]] QWidget* makeHead();
    void addButtons(QVBoxLayout& column);
    void addButton(QVBoxLayout& column, MenuBarItem item, Button* button);
    void showModel();
    void fitHeight();
    void standAtAnchor();

    AppModel& model_;
    Theme& theme_;
    WrappedLabel* status_;
    WrappedLabel* progress_;
    std::map<MenuBarItem, Button*> buttons_;
    /// Empty where it is not known, or of no use.
    QRect anchor_;
    /// Since a click on the tray item showed or hid it, or may have.
    QElapsedTimer sinceClick_;
};

/// Where a panel of this size stands so that it hangs on `anchor`, all of it within `available`
/// where that is large enough: under an anchor in the upper half, else above it.
[[nodiscard]] QPoint panelPlace(const QRect& anchor, const QSize& panel, const QRect& available);

}  // namespace gruk
