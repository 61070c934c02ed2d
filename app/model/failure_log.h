#pragma once

#include "app/model/app_model.h"
#include "app/model/model_copy.h"

namespace gruk {

template <typename Failures>
void AppModel::log(const Failures& failures) const
{
    for (const auto& failure : failures) {
        if (!failure.message.empty()) {
            with_.log(ModelCopy::notMovedLog(failure.message));
        }
    }
}

}  // namespace gruk
