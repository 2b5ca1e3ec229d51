// The parts of Boost.Asio and Boost.Beast that are not templates, compiled once for all sources of this folder.
#include <boost/asio/impl/src.hpp>
#include <boost/beast/src.hpp>
