#include <velldoc/transfer/UploadTarget.h>

#include <velldoc/program/Context.h>
#include <velldoc/program/Text.h>
#include <velldoc/transfer/OwnTargets.h>

namespace velldoc {

UploadTarget findUploadTarget(Context &context, const QString &text, int sourceCount,
                              const OwnTargets *ownTargets)
{
    const RemotePath path = RemotePath::parse(text);
    const std::optional<VellDocument> there = context.tree().tryFind(path);
    const bool isOwn = there && ownTargets && ownTargets->hasMade(there->_id);
    if (there && isFolder(*there) && !isOwn)
        return {*there, path, {}};
    if (sourceCount == 1 && !path.endsWithSlash())
        return {context.tree().findFolder(path.parent()), path.parent(), path.name(), !there};
    if (there && !isFolder(*there))
        throw notAFolder(path);
    throw Failure(
        ExitNotFound,
        Text::tr("There is no folder %1: create it with \"velldoc mkdir -p\".").arg(path.text()));
}

} // namespace velldoc
