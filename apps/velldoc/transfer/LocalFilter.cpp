#include <velldoc/transfer/LocalFilter.h>

#include <velldoc/program/Context.h>
#include <velldoc/program/Text.h>

#include <QDir>

namespace velldoc {

FilterOptions::FilterOptions(const Context &context)
    : include(context.values("include")), exclude(context.values("exclude")),
      ignoreFile(context.isSet("ignore-file") ? context.value("ignore-file")
                                              : QStringLiteral(".vellignore"))
{}

VellPathFilter FilterOptions::filterFor(const QString &root) const
{
    QStringList patterns = exclude;
    if (!ignoreFile.isEmpty()) {
        VellError error;
        const QString path = QDir(root).filePath(ignoreFile);
        patterns += VellPathFilter::ignorePatterns(path, &error);
        if (error)
            throw Failure(ExitFailed, Text::tr("%1 cannot be read.").arg(path));
    }
    // The temporary files of running downloads.
    patterns.append(QStringLiteral(".vell-*.part"));
    return {include, patterns};
}

VellSyncOptions FilterOptions::syncOptions() const
{
    VellSyncOptions options;
    options.include = include;
    options.exclude = exclude;
    options.ignoreFile = ignoreFile;
    return options;
}

} // namespace velldoc
