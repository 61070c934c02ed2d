#include "app/screens/trash_questions.h"

#include <utility>

#include "app/screens/confirmation_dialog.h"
#include "app/theme/text.h"
#include "core/patrol/outermost_findings.h"

namespace gruk::TrashQuestions {

namespace {

QString kindName(FileIdentity::Kind kind)
{
    switch (kind) {
    case FileIdentity::Kind::file:
        return QStringLiteral("File");
    case FileIdentity::Kind::directory:
        return QStringLiteral("Folder");
    case FileIdentity::Kind::symbolicLink:
        return QStringLiteral("Symbolic link");
    case FileIdentity::Kind::other:
        break;
    }
    return QStringLiteral("Filesystem item");
}

/// What a batch of findings may hide: that of some files nothing is left over.
QString copiesNote(std::size_t files)
{
    if (files == 0) {
        return {};
    }
    const QString count = groupedNumber(static_cast<qint64>(files));
    return QStringLiteral("Among them are both copies of %1 %2.\n\n")
        .arg(count, files == 1 ? QStringLiteral("file") : QStringLiteral("files"));
}

/// Where the items will lie, behind the rest of a question, if nothing else would show them there.
QString placeNote(const std::optional<FileURL>& hiddenTrash, const QString& note)
{
    return hiddenTrash ? QStringLiteral("\n\n") + note.arg(displayName(hiddenTrash->path()))
                       : QString();
}

void ask(Theme& theme, const Confirmation& confirmation, const QString& name, QWidget& place,
         AppModel& model, std::function<void()> yes)
{
    auto* question = new ConfirmationDialog(theme, confirmation, &place);
    question->setObjectName(name);
    QObject::connect(question, &ConfirmationDialog::accepted, &model,
                     [yes = std::move(yes)] { yes(); });
    question->open();
}

}  // namespace

void askToTrash(AppModel& model, Theme& theme, const ReviewFinding& finding, QWidget& place)
{
    const std::optional<FileIdentity> identity = TrashService::currentIdentity(finding.url);
    if (!identity) {
        // Nobody can confirm what is not there; the model says so in its own words.
        return model.moveFindingToTrash(finding, {});
    }
    const Confirmation confirmation = {
        QStringLiteral("Move %1 to Trash?").arg(displayName(finding.url.lastPathComponent())),
        QStringLiteral("%1 · %2\n%3\n\nGruk will use the system Trash. It will stop if this item "
                       "changed after you opened this confirmation.")
                .arg(kindName(identity->kind), bytesText(finding.allocatedSize),
                     displayName(finding.url.path()))
            + placeNote(model.hiddenTrash(finding.url),
                        QStringLiteral("Your file manager may not show the Trash of this disk. The "
                                       "item will lie in %1.")),
        QStringLiteral("Move to Trash"),
        QStringLiteral("Cancel"),
    };
    ask(theme, confirmation, QStringLiteral("trashQuestion"), place, model,
        [&model, finding, identity = *identity] { model.moveFindingToTrash(finding, identity); });
}

void askToTrash(AppModel& model, Theme& theme, std::vector<ReviewFinding> findings, QWidget& place,
                std::function<void()> trashed)
{
    // What lies in a folder that moves is neither counted nor moved by itself.
    std::vector<ReviewFinding> outermost = OutermostFindings::among(findings);
    Bytes bytes = 0;
    for (const ReviewFinding& finding : outermost) {
        bytes = checkedAdd(bytes, finding.allocatedSize);
    }
    // All of a realm lies on one disk.
    const std::optional<FileURL>& root = model.activeRootURL();
    const std::optional<FileURL> hidden =
        root && !findings.empty()
            ? model.hiddenTrash(root->appending(findings.front().url.lastPathComponent()))
            : std::nullopt;
    const Confirmation confirmation = {
        QStringLiteral("Move %1 items to Trash?")
            .arg(groupedNumber(static_cast<qint64>(findings.size()))),
        copiesNote(OutermostFindings::filesWithoutACopyLeft(findings))
            + QStringLiteral(
                  "Together they hold %1. The Gruk will check each item hasn't changed since "
                  "you selected it, use only the system Trash, and tell you honestly "
                  "about anything it had to skip.")
                  .arg(bytesText(bytes))
            + placeNote(hidden,
                        QStringLiteral("Your file manager may not show the Trash of this disk. The "
                                       "items will lie in %1.")),
        QStringLiteral("Move to Trash"),
        QStringLiteral("Cancel"),
    };
    ask(theme, confirmation, QStringLiteral("batchTrashQuestion"), place, model,
        [&model, findings = std::move(outermost), trashed = std::move(trashed)] {
            model.moveFindingsToTrash(findings);
            trashed();
        });
}

}  // namespace gruk::TrashQuestions
