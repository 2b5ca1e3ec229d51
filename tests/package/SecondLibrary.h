#pragma once

#include <QString>
#include <QtGlobal>

class NetworkManager;
class VellDocumentData;

#ifdef SecondLibrary_EXPORTS
#define SECOND_LIBRARY_EXPORT Q_DECL_EXPORT
#else
#define SECOND_LIBRARY_EXPORT Q_DECL_IMPORT
#endif

//! \file
//! \brief What another shared library of the same program sees of the objects that there is one of.

SECOND_LIBRARY_EXPORT VellDocumentData *dataSeenBySecondLibrary();
SECOND_LIBRARY_EXPORT NetworkManager *networkSeenBySecondLibrary();
SECOND_LIBRARY_EXPORT QString baseApiSeenBySecondLibrary();
SECOND_LIBRARY_EXPORT QString projectSeenBySecondLibrary();
