#include "core/actions/organise_plan.h"

namespace gruk::OrganiseDefaults {

std::string_view folderName(FileKind kind)
{
    switch (kind) {
    case FileKind::screenshot:
        return "Screenshots";
    case FileKind::image:
        return "Images";
    case FileKind::video:
        return "Video";
    case FileKind::audio:
        return "Audio";
    case FileKind::pdf:
        return "PDFs";
    case FileKind::archive:
        return "Archives";
    case FileKind::installer:
        return "Installers";
    case FileKind::document:
        return "Documents";
    case FileKind::application:
        return "Apps";
    case FileKind::folder:
        return "";
    case FileKind::other:
        break;
    }
    return "Bits and Bobs";
}

}  // namespace gruk::OrganiseDefaults
