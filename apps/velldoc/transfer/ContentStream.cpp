#include <velldoc/transfer/ContentStream.h>

#include <velldoc/Context.h>
#include <velldoc/Text.h>
#include <velldoc/output/Interrupt.h>
#include <velldoc/output/Progress.h>
#include <velldoc/transfer/DownloadPlan.h>

#include <transfer/VellContentReader.h>

#include <QIODevice>
#include <QScopeGuard>

#include <optional>

namespace velldoc {

void streamContent(Context &context, const DownloadTask &task, QIODevice &device)
{
    // Histories do not tell the sizes of large contents.
    const bool isSizeKnown = !task.isVersion || task.document.fileSize > 0;
    Progress progress(context.out);
    const auto clearing = qScopeGuard([&progress] { progress.clear(); });
    progress.begin(task.document.name, task.document.fileSize);
    QEventLoop loop;
    std::optional<Failure> failure;
    qint64 bytes = 0;
    VellContentReader reader(context.session().documents().session(), task.document.fileId,
                             isSizeKnown ? task.document.fileSize : -1);
    QObject::connect(&reader, &VellContentReader::received, &loop, [&](const QByteArray &data) {
        if (failure)
            return;
        if (device.write(data) != data.size()) {
            failure.emplace(
                ExitFailed,
                Text::tr("The content cannot be written: %1.").arg(device.errorString()));
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
}

} // namespace velldoc
