#include "BareRequests.h"

#include <VellNetwork/VellBaseApi.h>

#include <QCoreApplication>
#include <QJsonDocument>
#include <QStringList>

#include <cstdio>

// velldoc's requests without velldoc, for a benchmark:
// bare_requests URL put LOCAL NAME | list NAME | fill NAME COUNT | folders COUNT

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    VellBaseApi::GetInstance().setBaseApi(arguments.value(1));
    const QString action = arguments.value(2);
    if (action == QLatin1String("put") && arguments.size() == 5) {
        putFolder(arguments.at(3), arguments.at(4));
    } else if (action == QLatin1String("list") && arguments.size() == 4) {
        const QJsonDocument result(listFolder(arguments.at(3)));
        std::printf("%s\n", result.toJson(QJsonDocument::Compact).constData());
    } else if (action == QLatin1String("fill") && arguments.size() == 5) {
        fillFolder(arguments.at(3), arguments.at(4).toInt());
    } else if (action == QLatin1String("folders") && arguments.size() == 4) {
        makeFolders(arguments.at(3).toInt());
    } else {
        std::fprintf(stderr,
                     "Usage: bare_requests URL put LOCAL NAME | list NAME | fill NAME COUNT | "
                     "folders COUNT\n");
        return 2;
    }
    return 0;
}
