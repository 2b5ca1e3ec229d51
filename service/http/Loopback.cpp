#include <service/http/Loopback.h>

#include <boost/asio/ip/address.hpp>

namespace service {

bool isLoopback(const QString &host)
{
    boost::system::error_code error;
    const auto address = boost::asio::ip::make_address(host.toStdString(), error);
    return error ? host == QLatin1String("localhost") : address.is_loopback();
}

} // namespace service
