#include "SecondLibrary.h"

#include <document_service/VellDocumentData.h>

#include <VellNetwork/NetworkManager.h>
#include <VellNetwork/VellBaseApi.h>
#include <VellSoftBase/VellSoftCache.h>

VellDocumentData *dataSeenBySecondLibrary()
{
    return VellDocumentData::instance();
}

NetworkManager *networkSeenBySecondLibrary()
{
    return NetworkManager::instance();
}

QString baseApiSeenBySecondLibrary()
{
    return VellBaseApi::GetInstance().getBaseApi();
}

QString projectSeenBySecondLibrary()
{
    return GetSoftCache()->currentProjectId();
}
