#pragma once

#include <service/api/ServiceContext.h>
#include <service/records/Access.h>
#include <service/records/Contents.h>
#include <service/records/Documents.h>

#include <optional>

namespace service {

//! \brief The objects of one request: the user, the user's rights, and what the user can access.
class RequestState
{
public:
    RequestState(ServiceContext &serviceContext, const User &user,
                 std::optional<FaultRule> faultRule)
        : context(serviceContext), database(serviceContext.database),
          access(serviceContext.database, user), documents(serviceContext.database, user.id),
          contents(serviceContext.database, serviceContext.contents, access),
          fault(std::move(faultRule))
    {}

    const User &user() const { return access.user(); }

    //! \throws ServiceError: NotFound, Forbidden
    Document readable(const QString &id)
    {
        Document document = documents.require(id);
        access.require(document, Action::Read);
        return document;
    }

    ServiceContext &context;
    Database &database;
    Access access;
    Documents documents;
    Contents contents;
    const std::optional<FaultRule> fault;
};

} // namespace service
