#pragma once

namespace service {

class Router;

//! \name The endpoints, one function for each group
//! @{
void addAccountRoutes(Router &router); //!< the user of the token
void addProjectRoutes(Router &router); //!< lists, new documents, rights, linked documents
void addDocumentRoutes(Router &router); //!< one document, changes of several, the recycle bin
void addHistoryRoutes(Router &router); //!< versions and their remarks
void addMarkRoutes(Router &router); //!< frequent, recent, favourite
void addFileRoutes(Router &router); //!< upload and download of whole contents
void addLargeFileRoutes(Router &router); //!< uploads by chunks
void addMonitorRoutes(Router &router); //!< health and metrics
void addShareRoutes(Router &router); //!< creating shares, and their pages
//! @}

} // namespace service
