#pragma once

#include <QWidget>

#include "app/theme/button.h"
#include "app/theme/label.h"

namespace gruk {

/// The controls of a selection: all, all of one kind, none, and what is done with it.
class SelectionBar : public QWidget {
    Q_OBJECT

public:
    /// What the bar shows.
    struct State {
        bool reviewOnly = true;
        bool hasRows = false;
        bool hasFilter = false;
        std::size_t selected = 0;
        /// How many of the selected ones the filter leaves out.
        std::size_t notShown = 0;
        qint64 bytes = 0;
    };

    explicit SelectionBar(Theme& theme, QWidget* parent = nullptr);

    void setState(const State& state);

Q_SIGNALS:
    void selectAllRequested();
    void selectAllOfKindRequested();
    void clearRequested();
    void trashRequested();
    void unlockRequested();

private:
    Button* all_;
    Button* allOfKind_;
    Button* clear_;
    QWidget* chosen_;
    Label* count_;
    Label* notShown_;
    Button* trash_;
    Button* unlock_;
};

}  // namespace gruk
