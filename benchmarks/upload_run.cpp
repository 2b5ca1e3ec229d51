#include "UploadRun.h"

#include <VellNetwork/NetworkSettings.h>
#include <VellNetwork/VellBaseApi.h>

#include <QCoreApplication>
#include <QJsonDocument>
#include <QStringList>

#include <cstdio>

// One upload in a process of its own, for a benchmark: upload_run job|watched-job|bare URL FILE [CERTIFICATE AUTHORITY]

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() < 4) {
        std::fprintf(stderr, "Usage: upload_run job|watched-job|bare URL FILE [AUTHORITY]\n");
        return 2;
    }
    VellBaseApi::GetInstance().setBaseApi(arguments.at(2));
    NetworkSettings::instance().setCaCertificates(arguments.value(4));
    const QString how = arguments.at(1);
    const QString file = arguments.at(3);
    const QJsonObject result = how == QLatin1String("bare")
        ? runBare(file)
        : runJob(file, how == QLatin1String("watched-job"));
    if (result.isEmpty()) {
        std::fprintf(stderr, "The upload failed.\n");
        return 1;
    }
    std::printf("%s\n", QJsonDocument(result).toJson(QJsonDocument::Compact).constData());
    return 0;
}
