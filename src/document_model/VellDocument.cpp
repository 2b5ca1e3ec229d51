#include <document_model/VellDocument.h>

namespace {

// When the library is loaded, so that a client's first queued connection already finds the names.
void registerMetaTypes()
{
    qRegisterMetaType<VellDocument>("VellDocument");
    qRegisterMetaType<VellDocumentList>("VellDocumentList");
}
Q_CONSTRUCTOR_FUNCTION(registerMetaTypes)

} // namespace
