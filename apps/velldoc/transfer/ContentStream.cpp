#include <velldoc/transfer/ContentStream.h>

#include <velldoc/output/Progress.h>
#include <velldoc/program/Context.h>
#include <velldoc/program/Text.h>
#include <velldoc/system/Interrupt.h>
#include <velldoc/system/Terminal.h>
#include <velldoc/transfer/DownloadPlan.h>

#include <transfer/VellContentReader.h>

#include <QFile>
#include <QIODevice>
#include <QScopeGuard>

#include <cerrno>
#include <cstdio>
#include <optional>

namespace velldoc {

bool streamContent(Context &context, const DownloadTask &task, QIODevice &device)
{
    // Histories do not contain the sizes of large contents.
    const bool isSizeKnown = !task.isVersion || task.document.fileSize > 0;
    Progress progress(context.out);
    const auto clearing = qScopeGuard([&progress] { progress.clear(); });
    progress.begin(task.document.name, task.document.fileSize);
    QEventLoop loop;
    const QFile *const file = qobject_cast<QFile *>(&device);
    const bool isTerminal = file && file->handle() == fileno(stdout) && terminal::isTerminal(stdout)
        && !context.isSet("force");
    std::optional<Failure> failure;
    bool isReaderGone = false;
    qint64 bytes = 0;
    VellContentReader reader(context.session().documents().session(), task.document.fileId,
                             isSizeKnown ? task.document.fileSize : -1);
    QObject::connect(&reader, &VellContentReader::received, &loop, [&](const QByteArray &data) {
        if (failure || isReaderGone)
            return;
        if (bytes == 0 && isTerminal && data.contains('\0')) {
            failure.emplace(
                ExitFailed,
                Text::tr("%1 is not a text: redirect the output to a file, or pass --force.")
                    .arg(task.document.name));
            loop.quit();
            return;
        }
        errno = 0;
        if (device.write(data) != data.size()) {
            isReaderGone = errno == EPIPE;
            if (!isReaderGone) {
                failure.emplace(
                    ExitFailed,
                    Text::tr("The content cannot be written: %1.").arg(device.errorString()));
            }
            loop.quit();
        }
        progress.update(bytes += data.size());
    });
    QObject::connect(&reader, &VellContentReader::finished, &loop, &QEventLoop::quit);
    QObject::connect(&reader, &VellContentReader::failed, &loop, [&](const VellError &error) {
        failure.emplace(context.session().describe(error));
        loop.quit();
    });
    Interrupt::check();
    loop.exec();
    Interrupt::check();
    if (failure)
        throw Failure(*failure);
    progress.end();
    return !isReaderGone;
}

void prepareStandardOutput(const Context &context, QFile &output)
{
    if (context.out.isJson())
        throw Failure(
            ExitUsage,
            Text::tr("The content and --json cannot both be written to the standard output."));
    if (!output.open(stdout, QIODevice::WriteOnly))
        throw Failure(ExitFailed, Text::tr("The output could not be written."));
}

} // namespace velldoc
