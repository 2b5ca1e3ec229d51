// Creates a folder at the top level of a project and lists its entries.
//   minimal ADDRESS PROJECT [TOKEN]

#include <document_service/VellDocumentData.h>

#include <VellNetwork/NetworkManager.h>
#include <VellNetwork/NetworkSettings.h>
#include <VellNetwork/VellBaseApi.h>
#include <VellSoftBase/VellSoftCache.h>

#include <QCoreApplication>
#include <QTextStream>

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = application.arguments();
    QTextStream out(stdout);
    QTextStream err(stderr);
    if (arguments.size() < 3) {
        err << "usage: minimal ADDRESS PROJECT [TOKEN]\n";
        return 2;
    }

    // The address of the service, the token of the user, and the open project.
    VellBaseApi::GetInstance().setBaseApi(arguments[1]);
    GetSoftCache()->setCurrentProjectId(arguments[2]);
    NetworkSettings::instance().setAccessToken(arguments.value(3));

    // The methods only return whether they have succeeded; this signal has the reason of a failure.
    QObject::connect(NetworkManager::instance(), &NetworkManager::requestFailed,
                     [&err](const NetworkFailure &failure) { err << failure.message << '\n'; });

    VellDocument folder;
    folder.name = QStringLiteral("Drawings");
    if (!VellDocumentData::instance()->createDocFolder(folder))
        return 1;

    QList<VellDocument> entries;
    VellDocumentData::instance()->getDocuments(VellDocumentConditon(), entries);
    for (const VellDocument &entry : qAsConst(entries))
        out << entry.type << ' ' << entry.name << '\n';
    return 0;
}
