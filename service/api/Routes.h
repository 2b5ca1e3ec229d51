#pragma once

namespace service {

class Router;

//! \name The endpoints, one function for each group
//! @{
void addAccountRoutes(Router &router); //!< who asks
void addProjectRoutes(Router &router); //!< lists, new documents, rights, linked documents
void addDocumentRoutes(Router &router); //!< one document, changes of several, the recycle bin
void addHistoryRoutes(Router &router); //!< versions and their remarks
void addMarkRoutes(Router &router); //!< frequent, recent, favourite
void addFileRoutes(Router &router); //!< whole contents up and down
void addLargeFileRoutes(Router &router); //!< uploads by chunks
void addShareRoutes(Router &router); //!< making shares, and their pages
//! @}

} // namespace service
