#pragma once

#include <QWidget>

#include "app/model/app_model.h"
#include "app/theme/button.h"
#include "app/theme/label.h"
#include "app/theme/theme.h"

namespace gruk {

/// What stands in the place of the rows when there are none: the Gruk, and one sentence that says
/// why.
class BrowseEmptyNote : public QWidget {
    Q_OBJECT

public:
    explicit BrowseEmptyNote(Theme& theme, QWidget* parent = nullptr);

    void setSentence(const QString& sentence);

    /// Shown while it is a filter that leaves no row.
    [[nodiscard]] Button& clearFilter() const { return *clearFilter_; }

private:
    Label* sentence_;
    Button* clearFilter_;
};

/// Why a folder shows no rows: on its own account, or since nothing in it has `filter` in its name.
[[nodiscard]] QString emptyFolderSentence(EmptyReason reason);
[[nodiscard]] QString nothingFilteredSentence(const QString& filter);

}  // namespace gruk
