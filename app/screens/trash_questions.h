#pragma once

#include <functional>
#include <vector>

#include "app/model/app_model.h"
#include "app/theme/theme.h"

class QWidget;

/// The questions before anything goes to the Trash. Each opens over the window of `place` and acts
/// on the model when the answer is yes, and then only.
namespace gruk::TrashQuestions {

/// Reads what stands at the finding's path now, shows it, and passes exactly that on.
void askToTrash(AppModel& model, Theme& theme, const ReviewFinding& finding, QWidget& place);

/// `trashed` is called once the items are on their way.
void askToTrash(AppModel& model, Theme& theme, std::vector<ReviewFinding> findings, QWidget& place,
                std::function<void()> trashed);

}  // namespace gruk::TrashQuestions
