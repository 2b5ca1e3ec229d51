#include <velldoc/commands/Commands.h>
#include <velldoc/documents/Versions.h>
#include <velldoc/output/DisplayWidth.h>
#include <velldoc/program/Context.h>
#include <velldoc/program/GlobalOptions.h>
#include <velldoc/program/Text.h>

namespace velldoc {

namespace {

//! The target of the remark: the document, or one of its versions.
struct Place
{
    QString id;
    bool isVersion = false;
    QString remark;
};

Place findPlace(Context &context, const QString &path)
{
    const VellDocument document = context.tree().find(RemotePath::parse(path));
    if (document._id.isEmpty())
        throw Failure(ExitUsage, Text::tr("The top level has no remark."));
    const int number = context.versionNumber();
    if (number == 0)
        return {document._id, false, document.remark};
    const VellDocument version = versionOf(context.session(), document, number);
    return {version._id, true, version.remark};
}

void run(Context &context)
{
    const QStringList arguments = context.arguments(1, 2);
    Place place = findPlace(context, arguments.constFirst());
    if (arguments.size() == 2) {
        if (context.leaves(arguments.constFirst()))
            return;
        place.remark = arguments.constLast();
        Session &session = context.session();
        session.await(place.isVersion ? session.documents().setVersionRemark(place.id, place.remark)
                                      : session.documents().setRemark(place.id, place.remark));
    } else if (!place.remark.isEmpty()) {
        context.out.print(printable(place.remark));
    }
    context.out.setResult(
        {{QStringLiteral("id"), place.id}, {QStringLiteral("remark"), place.remark}});
}

} // namespace

const Command &remarkCommand()
{
    static const Command command{
        "remark",
        "PATH [TEXT]",
        QT_TRANSLATE_NOOP("velldoc", "read or write a remark"),
        QT_TRANSLATE_NOOP("velldoc",
                          "Prints the remark of the document PATH, or sets it to TEXT; an empty "
                          "TEXT removes it."),
        {{"version", "N",
          QT_TRANSLATE_NOOP("velldoc", "Use the remark of version N; 1 is the oldest.")},
         dryRunOption()},
        {{"velldoc remark --version 2 /Drawings/plan.dwg 'as built'",
          QT_TRANSLATE_NOOP("velldoc", "the remark of one version")}},
        run,
    };
    return command;
}

} // namespace velldoc
