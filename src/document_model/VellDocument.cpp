#include <document_model/VellDocument.h>

namespace {

// Called when the library is loaded, so that the names are registered before a client's first queued connection.
void registerMetaTypes()
{
    qRegisterMetaType<VellDocument>("VellDocument");
    qRegisterMetaType<VellDocumentList>("VellDocumentList");
}
Q_CONSTRUCTOR_FUNCTION(registerMetaTypes)

} // namespace
